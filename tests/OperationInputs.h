#ifndef VORBEL_TESTS_OPERATION_INPUTS_H
#define VORBEL_TESTS_OPERATION_INPUTS_H

#include "Random.h"

#include <vorbel/Records.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

/// What one call of every operation takes.
struct Case {
    fVector state;
    int system = 0;
    double dt = 0.0;    // interval of InitLagrange, s
    double step = 0.0;  // its step, s; used if `ownStep`
    bool ownStep = false;
    double a = 0.0;  // ellipsoid, km
    double b = 0.0;
    double back = 0.0;       // read-out time behind the end state, in steps
    double range = 0.0;      // km
    double rangeRate = 0.0;  // km/s
    double range2 = 0.0;
    double rangeRate2 = 0.0;
    int side = 0;
    double pitch = 0.0;  // rad
    double yaw = 0.0;
    double roll = 0.0;
    double latitude = 0.0;  // degrees
    double longitude = 0.0;
    double height = 0.0;  // km
    double angle = 0.0;   // degrees
    Elements_Struct elements;
    Ephemeris_Struct ephemeris;
};

inline constexpr double kPi = 3.141592653589793;

/// Cosine and sine of an angle anywhere on the circle, by arithmetic alone.
struct Turn {
    double c;
    double s;

    explicit Turn(Random& random) {
        const double t = random.uniform(-1.0, 1.0);
        c = random.sign() * (1.0 - t * t) / (1.0 + t * t);
        s = 2.0 * t / (1.0 + t * t);
    }
};

/// A satellite in an orbit of any inclination, at a real date; mostly low and nearly circular.
inline fVector orbitState(Random& random, int system) {
    constexpr double kMu = 398600.4;            // km³/s²
    constexpr double kEarthRate = 7.292115e-5;  // rad/s
    const double altitude = random.oneIn(4)   ? random.uniform(2000.0, 40000.0)
                            : random.oneIn(4) ? random.uniform(90.0, 300.0)
                                              : random.uniform(300.0, 2000.0);
    const Turn node(random);
    const Turn inclination(random);
    const Turn latitude(random);
    const double along[3] = {node.c * latitude.c - node.s * latitude.s * inclination.c,
                             node.s * latitude.c + node.c * latitude.s * inclination.c, latitude.s * inclination.s};
    const double across[3] = {-node.c * latitude.s - node.s * latitude.c * inclination.c,
                              -node.s * latitude.s + node.c * latitude.c * inclination.c, latitude.c * inclination.s};
    const double r = 6378.0 + altitude;
    const double v = std::sqrt(kMu / r) * random.uniform(0.95, 1.1);
    const double climb = random.uniform(-0.02, 0.02);

    fVector state;
    state.x = r * along[0];
    state.y = r * along[1];
    state.z = r * along[2];
    state.vx = v * (across[0] + climb * along[0]);
    state.vy = v * (across[1] + climb * along[1]);
    state.vz = v * (across[2] + climb * along[2]);
    if (system == 0) {
        state.vx += kEarthRate * state.y;
        state.vy -= kEarthRate * state.x;
    }
    state.date = random.oneIn(4) ? 1.0 : std::floor(random.uniform(40000.0, 50000.0));
    state.time = (state.date - 1.0) * 86400.0 + random.uniform(0.0, 86400.0);
    state.drag = random.oneIn(2) ? random.uniform(1e-9, 1e-7) : 0.0;
    return state;
}

/// A scene that every operation can solve, but for a few whose satellite climbs out of the ranges' reach.
inline Case regularCase(std::uint64_t seed) {
    Random random(seed);
    Case c;
    c.system = random.oneIn(2) ? 1 : 0;
    c.state = orbitState(random, c.system);
    c.dt = random.sign() * (random.oneIn(3) ? random.uniform(120.0, 900.0) : random.uniform(1.0, 120.0));
    c.ownStep = random.oneIn(2);
    c.step = c.dt / std::floor(random.uniform(1.0, 20.0));
    c.a = 6378.137;
    c.b = 6356.752314245;
    if (random.oneIn(3)) {
        const double height = random.uniform(-0.5, 9.0);
        c.a += height;
        c.b += height;
    }
    c.back = random.oneIn(16) ? 0.0 : random.uniform(0.0, 7.0);

    const double r = std::sqrt(c.state.x * c.state.x + c.state.y * c.state.y + c.state.z * c.state.z);
    const double altitude = r - 6371.0;
    const double horizon = std::sqrt(r * r - 6371.0 * 6371.0);
    c.range = altitude + random.uniform(0.2, 0.7) * (horizon - altitude);
    c.rangeRate = random.uniform(-0.3, 0.3);
    c.range2 = altitude + random.uniform(0.2, 0.7) * (horizon - altitude);
    c.rangeRate2 = random.uniform(-0.3, 0.3);
    c.side = random.oneIn(2) ? 1 : -1;
    c.pitch = random.uniform(-0.05, 0.05);
    c.yaw = random.uniform(-0.1, 0.1);
    c.roll = random.uniform(-0.05, 0.05);
    c.latitude = random.uniform(-90.0, 90.0);
    c.longitude = random.uniform(-180.0, 360.0);
    c.height = random.uniform(-0.4, 9.0);
    c.angle = random.uniform(0.0, 360.0);

    c.elements.date = static_cast<int>(random.uniform(1.0, 50000.0));
    c.elements.time = random.uniform(0.0, 86400.0);
    c.elements.a = random.uniform(6700.0, 45000.0);
    c.elements.e = random.uniform(0.0001, 0.8);
    c.elements.incl = random.uniform(0.01, kPi - 0.01);
    c.elements.raan = random.uniform(0.0, 2.0 * kPi);
    c.elements.u = random.uniform(0.0, 2.0 * kPi);
    c.elements.nu = random.uniform(0.0, 2.0 * kPi);
    c.ephemeris.date = static_cast<int>(random.uniform(1.0, 50000.0));
    c.ephemeris.time = random.uniform(0.0, 86400.0);
    c.ephemeris.system = c.system;
    c.ephemeris.state = c.state;
    return c;
}

template <class... Double>
std::array<double*, sizeof...(Double)> pointersTo(Double&... numbers) {
    return {&numbers...};
}

/// The fields of a case that may hold any number.
inline auto numbersOf(Case& c) {
    fVector& s = c.state;
    return pointersTo(s.x, s.y, s.z, s.vx, s.vy, s.vz, s.date, s.time, s.drag, c.dt, c.step, c.a, c.b, c.back, c.range,
                      c.rangeRate, c.range2, c.rangeRate2, c.pitch, c.yaw, c.roll, c.latitude, c.longitude, c.height,
                      c.angle, c.elements.a, c.elements.e, c.elements.incl, c.elements.raan, c.elements.u,
                      c.elements.nu, c.ephemeris.time, c.ephemeris.state.x, c.ephemeris.state.vx, c.ephemeris.state.vz);
}

/// The same with values at and beyond the limits of the operations' domain.
inline Case edgeCase(std::uint64_t seed) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr double kSpecial[] = {
        0.0,    -0.0, 1.0,   -1.0,   kPi,       1e-13,      5e-324,
        1e-310, 1e17, 1e300, -1e300, kInfinity, -kInfinity, std::numeric_limits<double>::quiet_NaN()};
    Case c = regularCase(seed);
    Random random(~seed);
    const auto doubles = numbersOf(c);

    switch (random.bits() % 4) {
    case 0:  // one of them anything
        *doubles[random.bits() % doubles.size()] = random.oneOf(kSpecial);
        break;
    case 1:  // a scene out of reach of the beam, or before the end of the trajectory
        c.range = random.uniform(0.0, 60000.0);
        c.range2 = c.range;
        c.rangeRate = random.uniform(-10.0, 10.0);
        c.pitch = random.uniform(-4.0, 4.0);
        c.yaw = random.uniform(-4.0, 4.0);
        c.roll = random.uniform(-4.0, 4.0);
        c.back = random.uniform(-3.0, 12.0);
        c.side = static_cast<int>(random.bits() % 7) - 3;
        break;
    case 2:  // singular states and elements
        c.state.z = 0.0;
        c.state.vz = 0.0;
        c.elements.e = random.oneIn(2) ? 0.0 : 1.0;
        c.elements.incl = 0.0;
        if (random.oneIn(2)) {
            c.state.vx = c.state.x;
            c.state.vy = c.state.y;
        }
        c.ephemeris.state = c.state;
        c.latitude = random.sign() * 90.0;
        break;
    default:  // everything anything
        for (double* d : doubles) {
            if (random.oneIn(8)) {
                *d = random.oneOf(kSpecial);
            }
        }
        break;
    }
    c.system = static_cast<int>(random.bits() % 4) - 1;
    return c;
}

#endif
