#ifndef VORBEL_TESTS_TEST_ORBITS_H
#define VORBEL_TESTS_TEST_ORBITS_H

#include "../examples/sentinel1_scene.h"

#include <vorbel/CVorbel.h>

#include <cmath>
#include <ostream>

inline constexpr double kMetre = 1e-3;       // km
inline constexpr double kMillimetre = 1e-6;  // km

inline bool operator==(const fVector& a, const fVector& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z && a.vx == b.vx && a.vy == b.vy && a.vz == b.vz && a.date == b.date &&
           a.time == b.time && a.drag == b.drag;
}

// How GoogleTest shows a record
inline void PrintTo(const fVector& v, std::ostream* os) {
    os->precision(17);
    *os << "r (" << v.x << ", " << v.y << ", " << v.z << ") v (" << v.vx << ", " << v.vy << ", " << v.vz << ") date "
        << v.date << " time " << v.time << " drag " << v.drag;
}

namespace orbits {

/// Earth-fixed state of a radar satellite on 2022-04-14.
inline fVector sentinel() {
    return kStateBeforeScene;
}

/// A low, near-circular orbit on the X axis, going north at the inclination given (rad); day 1, time 0, no drag.
inline fVector low(double inclination) {
    return {6778.245, 0.0, 0.0, 0.0, 7.67 * std::cos(inclination), 7.67 * std::sin(inclination), 1.0, 0.0, 0.0};
}

/// The same in the plane of the equator, where `z` and `vz` stay exactly 0.
inline fVector equatorial() {
    return low(0.0);
}

/// Distance of two positions, km.
inline double distance(const fVector& a, const fVector& b) {
    return std::hypot(a.x - b.x, a.y - b.y, a.z - b.z);
}

/// Difference of two velocities, km/s.
inline double speedBetween(const fVector& a, const fVector& b) {
    return std::hypot(a.vx - b.vx, a.vy - b.vy, a.vz - b.vz);
}

/// Time derivative of a state: a step of length 0 leaves the state and stores its derivative.
inline fVector derivative(const fVector& state, int system) {
    CVorbel orbit;
    orbit.SetSystem(system);
    fVector same = state;
    orbit.adams(same, 0.0);
    return orbit.GetfVector(1)[7];
}

/// The state an interval later, by many equal Runge-Kutta steps.
inline fVector integrateFinely(fVector state, double interval, int steps, int system) {
    CVorbel orbit;
    orbit.SetSystem(system);
    for (int i = 0; i < steps; ++i) {
        state = orbit.runceK(state, interval / steps);
    }
    return state;
}

}  // namespace orbits

#endif
