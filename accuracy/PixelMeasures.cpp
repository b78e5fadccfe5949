// Pixels to the ground and back, and the products' grids both ways.

#include "SceneMeasures.h"

#include "Reference.h"

#include "../tests/Random.h"
#include "../tests/scene/SceneOrbits.h"

#include <vorbel/scene/GroundToPixel.h>

#include <algorithm>
#include <cmath>

namespace accuracy {

namespace {

using namespace vorbel;
using scene::LookSide;
using scene::Status;

constexpr double kSpeedOfLight = 299792458;
constexpr double kPolarRadius = 6356752;  // m, roughly

/// Pixels of one orbit, each with a time of its own.
struct Pixels {
    scene::Orbit orbit;
    LookSide side;
    std::vector<double> time, range, rate, height;
};

Pixels randomPixels(Random& random, int number, bool squinted) {
    constexpr int kCount = 500;
    constexpr double kQuarter = 0.25 * 6.283185307179586;
    const bool polar = number % 4 == 0;
    const double radius = random.uniform(6.53e6, 7.08e6);
    const double inclination = polar ? kQuarter : random.uniform(0.2, 2.9);
    const double argument = polar ? kQuarter : random.uniform(0, 4 * kQuarter);
    const LookSide side = random.oneIn(2) ? LookSide::left : LookSide::right;
    Pixels p{circularOrbit(radius, inclination, argument, random.uniform(-4, 4)), side, {}, {}, {}, {}};
    const double nadir = radius - kPolarRadius;
    const double limb = std::sqrt(radius * radius - kPolarRadius * kPolarRadius);
    const double fastest = squinted ? 0.1 * 7500 : 0;  // m/s
    for (int i = 0; i < kCount; ++i) {
        p.time.push_back(random.uniform(-50, 100));
        p.range.push_back(random.uniform(1.05 * nadir, random.oneIn(2) ? limb : 1.5 * nadir));
        p.rate.push_back(random.uniform(-fastest, fastest));
        p.height.push_back(random.oneIn(8) ? 0.0 : random.uniform(-500, 9000));
    }
    return p;
}

/// What came of pixels.
struct Ground {
    std::vector<double> latitude, longitude, x, y, z, incidence, lookAngle, azimuth;
    std::vector<Status> status;

    explicit Ground(const Pixels& p)
        : latitude(p.time.size()), longitude(latitude), x(latitude), y(latitude), z(latitude), incidence(latitude),
          lookAngle(latitude), azimuth(latitude), status(p.time.size()) {
        scene::pixelToGround(p.orbit, p.side, {1, p.time.size()}, {p.time, p.range, p.rate, p.height},
                             {.latitude = latitude,
                              .longitude = longitude,
                              .x = x,
                              .y = y,
                              .z = z,
                              .incidence = incidence,
                              .lookAngle = lookAngle,
                              .azimuth = azimuth,
                              .status = status});
    }

    Vec point(std::size_t i) const {
        return (1 / Real(kMetres)) * Vec{x[i], y[i], z[i]};
    }
};

Motion motionAt(const scene::Orbit& orbit, double time) {
    return (1 / Real(kMetres)) * motionOf(orbit.at(time));
}

double angleBetween(const Vec& a, const Vec& b) {
    return static_cast<double>(std::atan2(norm(cross(a, b)), dot(a, b)) / kDegree);
}

void addErrors(const Pixels& p, const Ground& ground, std::size_t i, GroundError& error) {
    const Motion satellite = motionAt(p.orbit, p.time[i]);
    const Vec point = ground.point(i);
    const Vec sight = point - satellite.r;
    const Geodetic g = geodeticOf(point, kDefinedSemiMinorAxis);
    const Vec east{-std::sin(g.longitude), std::cos(g.longitude), 0};
    const Vec up{std::cos(g.latitude) * std::cos(g.longitude), std::cos(g.latitude) * std::sin(g.longitude),
                 std::sin(g.latitude)};
    const Vec north = cross(up, east);
    const Vec stated =
        cartesianOf({ground.latitude[i] * kDegree, ground.longitude[i] * kDegree, p.height[i] / Real(kMetres)},
                    kDefinedSemiMinorAxis);
    error.range.add(metres(norm(sight) - p.range[i] / Real(kMetres)));
    error.rangeRate.add(metres(-dot(sight, satellite.v) / norm(sight) - p.rate[i] / Real(kMetres)));
    error.height.add(metres(g.height - p.height[i] / Real(kMetres)));
    error.horizontal.add(metres(std::hypot(dot(stated - point, east), dot(stated - point, north))));
    error.incidence.add(angleBetween(up, Real(-1) * sight) - ground.incidence[i]);
    error.lookAngle.add(angleBetween(Real(-1) * satellite.r, sight) - ground.lookAngle[i]);
    const Real azimuth = std::atan2(dot(sight, east), dot(sight, north)) / kDegree;
    // near the nadir an azimuth means little
    const Real share = std::hypot(dot(sight, east), dot(sight, north)) / norm(sight);
    error.azimuth.add(static_cast<double>(std::remainder(azimuth - ground.azimuth[i], Real(360)) * share));
}

void addRoundTrip(const Pixels& p, RoundTrip& error) {
    const Ground ground(p);
    std::vector<double> time(p.time.size());
    std::vector<double> range(p.time.size());
    scene::groundToPixel(p.orbit, p.side, {ground.latitude, ground.longitude, p.height}, {.rangeRate = p.rate},
                         {.time = time, .slantRange = range});
    for (std::size_t i = 0; i < p.time.size(); ++i) {
        if (ground.status[i] == Status::ok) {
            error.time.add(time[i] - p.time[i]);
            error.range.add(range[i] - p.range[i]);
        }
    }
}

Pixels gridPixels(const NamedProduct& named) {
    const products::Product& product = named.product;
    Pixels p{product.orbit, product.side, {}, {}, {}, {}};
    for (const products::GridPoint& g : product.annotation.grid) {
        p.time.push_back(g.time.since(product.mapping.epoch()));
        p.range.push_back(g.slantRangeTime * (kSpeedOfLight / 2));
        p.rate.push_back(0);
        p.height.push_back(g.height);
    }
    return p;
}

}  // namespace

GroundError groundError() {
    Random random(1);
    GroundError error;
    for (int number = 0; number < kRandomScenes; ++number) {
        const Pixels p = randomPixels(random, number, number % 2 == 1);
        const Ground ground(p);
        for (std::size_t i = 0; i < p.time.size(); ++i) {
            if (ground.status[i] == Status::ok) {
                addErrors(p, ground, i, error);
            }
        }
    }
    return error;
}

BeamDifference beamDifference() {
    constexpr double kRadians = 3.141592653589793 / 180;
    Random random(4);
    const scene::Orbit orbit = circularOrbit(7.0e6, 1.71, 0.9);
    BeamDifference difference;
    for (int i = 0; i < 20000; ++i) {
        const LookSide side = random.oneIn(2) ? LookSide::left : LookSide::right;
        const int sideOfClass = side == LookSide::left ? 1 : -1;
        const double height = random.oneIn(2) ? 0 : random.uniform(0, 4000);
        const double range = random.uniform(7.2e5, 1.2e6);
        const double time = random.uniform(-50, 100);
        const double pitch = random.uniform(-0.5, 0.5);
        const double yaw = random.uniform(-5, 5);
        const double roll = random.uniform(-1, 1);
        double latitude = 0;
        double x = 0;
        double y = 0;
        double z = 0;
        double rate = 0;
        scene::beamToGround(
            orbit, side, {1, 1}, {{&time, 1}, {&range, 1}, {}, {&height, 1}}, {{&pitch, 1}, {&yaw, 1}, {&roll, 1}},
            {.latitude = {&latitude, 1}, .x = {&x, 1}, .y = {&y, 1}, .z = {&z, 1}, .rangeRate = {&rate, 1}});

        const scene::State s = orbit.at(time);
        CVorbel object;
        object.setStep(1.0);
        object.setVector({s.x / kMetres, s.y / kMetres, s.z / kMetres, s.vx / kMetres, s.vy / kMetres, s.vz / kMetres,
                          1.0, 0.0, 0.0});
        object.SetEllipsoid(static_cast<double>(kSemiMajorAxis) + height / kMetres,
                            static_cast<double>(kSemiMinorAxis) + height / kMetres);
        const Geopoint p =
            object.GeoLocation(0.0, range / kMetres, sideOfClass, pitch * kRadians, yaw * kRadians, roll * kRadians);
        (height == 0 ? difference.pointAtHeight0 : difference.pointAbove)
            .add(std::hypot(p.x * kMetres - x, p.y * kMetres - y, p.z * kMetres - z));
        difference.latitude.add((p.lat - latitude) * kRadians * static_cast<double>(kSemiMajorAxis) * kMetres);
        difference.centroid.add(
            object.centroid(0.0, range / kMetres, pitch * kRadians, yaw * kRadians, roll * kRadians, sideOfClass) *
                kMetres -
            rate);
    }
    return difference;
}

RoundTrip roundTrip(bool squinted) {
    Random random(2);
    RoundTrip error;
    for (int number = 0; number < kRandomScenes; ++number) {
        addRoundTrip(randomPixels(random, number, squinted), error);
    }
    return error;
}

RoundTrip roundTrip(const NamedProduct& product) {
    constexpr int kPixels = 20000;
    Random random(3);
    const Pixels grid = gridPixels(product);
    const auto anyOf = [&](const std::vector<double>& values) {
        const auto [low, high] = std::minmax_element(values.begin(), values.end());
        return random.uniform(*low, *high);
    };
    Pixels p{grid.orbit, grid.side, {}, {}, {}, {}};
    for (int i = 0; i < kPixels; ++i) {
        p.time.push_back(anyOf(grid.time));
        p.range.push_back(anyOf(grid.range));
        p.rate.push_back(0);
        p.height.push_back(random.uniform(0, 4000));
    }
    RoundTrip error;
    addRoundTrip(p, error);
    return error;
}

GridError gridError(const NamedProduct& product) {
    const std::vector<products::GridPoint>& grid = product.product.annotation.grid;
    const Pixels p = gridPixels(product);
    const Ground ground(p);
    std::vector<double> latitude, longitude, time(grid.size()), range(grid.size());
    for (const products::GridPoint& g : grid) {
        latitude.push_back(g.latitude);
        longitude.push_back(g.longitude);
    }
    scene::groundToPixel(p.orbit, p.side, {latitude, longitude, p.height}, {}, {.time = time, .slantRange = range});
    GridError error;
    for (std::size_t i = 0; i < grid.size(); ++i) {
        const Vec exact = cartesianOf({latitude[i] * kDegree, longitude[i] * kDegree, p.height[i] / Real(kMetres)},
                                      kDefinedSemiMinorAxis);
        error.point.add(metres(norm(ground.point(i) - exact)));
        error.time.add(time[i] - p.time[i]);
        error.range.add(range[i] - p.range[i]);
    }
    return error;
}

}  // namespace accuracy
