#include "Vectors.h"

#include <vorbel/CVorbel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <ostream>
#include <utility>
#include <vector>

// Ground points, Doppler centroid, range rate and steering angles, against the same geometry solved by other means.

namespace {

constexpr double kNewton = 1e-7;  // km: the iteration's last step, 1e-10 rad, at a slant range of 1000 km

/// Over the X axis, climbing: r and v are perpendicular, so both orbit frames are one.
constexpr fVector kClimbing{7000.0, 0.0, 0.0, 0.0, 1.0, 7.4, 1.0, 0.0, 0.0};

/// Climbing and descending, forward and backward, with and without a radial speed. The velocity relative to the Earth
/// leans towards the orbit normal in the first three and away from it in the others.
constexpr fVector kStates[] = {
    kClimbing,
    {-3000.0, -4800.0, 4100.0, -0.9, 4.8, 5.5, 44664.0, 3858921200.5, 0.0},
    {300.0, -400.0, 6950.0, 4.0, 6.1, -0.35, 44664.0, 3858921200.5, 0.0},
    {5000.0, 3000.0, 4000.0, 3.0, 2.0, -6.5, 44664.0, 3858921200.5, 0.0},
    {-6980.0, 250.0, -300.0, 0.4, -1.2, -7.3, 1.0, 4000.0, 0.0},
};

/// A look at a state, taken as a Greenwich or an absolute one, to one side, at the ground of an ellipsoid.
struct Look {
    fVector state;
    int system;
    int side;
    double a, b;
    CVorbel orbit = holding(state, system);
    double time = state.time;
    Vec3 r = positionOf(state);
    Vec3 v = velocityOf(state);
    Vec3 inertial = system == 0 ? v + carried(r) : v;  // velocity relative to non-rotating axes
    Vec3 relative = system == 0 ? v : v - carried(r);  // to the Earth
    Axes frame = radiusAligned(r, inertial);

    /// Normal of the plane of a beam that is turned by attitude angles.
    Vec3 beamNormal(double pitch, double yaw, double roll) const {
        return frame * (rotationZ(yaw) * (rotationX(roll) * rotationY(pitch))).e1;
    }
};

std::vector<Look> looks() {
    std::vector<Look> all;
    for (const fVector& state : kStates) {
        for (const int system : {0, 1, 2}) {  // every frame but 0 is absolute
            all.push_back({state, system, 1, kWgs84A, kWgs84B});
            all.push_back({state, system, -1, 6380.0, 6350.0});
        }
    }
    for (Look& look : all) {
        look.orbit.SetEllipsoid(look.a, look.b);
    }
    return all;
}

/// How GoogleTest shows where a check failed.
std::ostream& operator<<(std::ostream& os, const Look& look) {
    return os << "x " << look.r.x << ", frame " << look.system << ", side " << look.side;
}

/// 0 on the surface of an ellipsoid, negative inside.
double overEllipsoid(const Vec3& p, double a, double b) {
    return std::sqrt((p.x * p.x + p.y * p.y) / (a * a) + p.z * p.z / (b * b)) - 1.0;
}

/// The point that a look sees at a slant range, `ahead` along the unit vector `axis`: by bisection of the
/// angle between straight down, as far as `axis` allows, and the horizon.
Vec3 pointOnGround(const Look& look, const Vec3& axis, double range, double ahead = 0.0) {
    const Vec3 down = unit(dot(look.r, axis) * axis - look.r);
    const Vec3 across = 1.0 * look.side * cross(axis, down);
    const double inPlane = std::sqrt(range * range - ahead * ahead);
    const auto at = [&](double angle) {
        return look.r + ahead * axis + inPlane * (std::sin(angle) * across + std::cos(angle) * down);
    };
    double inside = 0.0;
    double outside = kPi / 2.0;
    for (int i = 0; i < 60; ++i) {
        const double middle = 0.5 * (inside + outside);
        (overEllipsoid(at(middle), look.a, look.b) < 0.0 ? inside : outside) = middle;
    }
    return at(inside);
}

double distance(const Geopoint& a, const Vec3& b) {
    return length(positionOf(a) - b);
}

TEST(GeoLocation, FindsThePointOfASteeredBeam) {
    constexpr double attitudes[][3] = {
        {0.0, 0.0, 0.0}, {0.03, 0.0, 0.0}, {0.0, 0.06, 0.0}, {0.04, 0.0, 0.5}, {-0.03, 0.05, -0.2}};
    for (Look& look : looks()) {
        SCOPED_TRACE(look);
        const double seconds = look.time - (look.state.date - 1.0) * 86400.0;
        const double turned = look.orbit.StarTime(look.state.date) + kEarthRate * seconds;
        for (const auto& [pitch, yaw, roll] : attitudes) {
            const Geopoint g = look.orbit.GeoLocation(look.time, 900.0, look.side, pitch, yaw, roll);
            const Vec3 point = pointOnGround(look, look.beamNormal(pitch, yaw, roll), 900.0);
            // of the absolute frames it is 1 that is turned back
            EXPECT_LT(distance(g, look.system == 1 ? rotationZ(-turned) * point : point), kNewton)
                << pitch << ", " << yaw;
        }
    }
}

TEST(GeoLocation, IsTheSamePointFromEitherFrame) {
    for (const fVector& state : kStates) {
        CVorbel greenwich;
        greenwich.InitLagrange(&state, 30.0, 0);
        const fVector turned = greenwich.Grnv_ABS(state);
        CVorbel absolute;
        absolute.InitLagrange(&turned, 30.0, 1);
        for (const double seconds : {0.0, 20.0}) {
            const double time = state.time + seconds;
            const Geopoint a = greenwich.GeoLocation(time, 850.0, -1, 0.01, -0.04, 0.1);
            const Geopoint b = absolute.GeoLocation(time, 850.0, -1, 0.01, -0.04, 0.1);
            // rounding at first; then the force model turns the Earth at a rate of its own, 7e-12 rad/s off, and `time`
            // is rounded to 4.8e-7 s, in which the Earth's surface moves by 2e-7 km
            EXPECT_LT(distance(a, positionOf(b)), seconds == 0.0 ? 3e-7 : 1e-6) << state.x;
        }
    }
}

TEST(GeoProssess, FindsThePointOfARangeAndARangeRate) {
    for (Look& look : looks()) {
        SCOPED_TRACE(look);
        for (const double rate : {0.0, -0.7, 0.4}) {
            const Geopoint g = look.orbit.GeoProssess(look.time, 900.0, rate, look.side);
            const Vec3 point = pointOnGround(look, unit(look.v), 900.0, -rate / length(look.v) * 900.0);
            EXPECT_LT(distance(g, point), kNewton) << rate;  // in the frame of the trajectory
        }
    }
}

TEST(GroundPoint, IsOneForAllOperationsAndReckonedInWgs84) {
    for (Look& look : looks()) {
        if (look.system != 0) {
            continue;
        }
        SCOPED_TRACE(look);
        const double rate = look.orbit.centroid(look.time, 900.0, -0.02, 0.05, 0.1, look.side);
        const Geopoint g = look.orbit.GeoProssess(look.time, 900.0, rate, look.side);
        const Geopoint steered = look.orbit.GeoLocation(look.time, 900.0, look.side, -0.02, 0.05, 0.1);
        EXPECT_LT(distance(g, positionOf(steered)), 2.0 * kNewton);
        EXPECT_EQ(g.a, kWgs84A);
        EXPECT_EQ(g.f, (kWgs84A - kWgs84B) / kWgs84A);
        double range = 0.0;  // the latitude is off by up to 1.4e-4 km on the ground
        EXPECT_NEAR(look.orbit.radial_speed(look.time, g.lat, g.lon, g.h, &range), rate, 1.5e-6);
        EXPECT_NEAR(range, 900.0, 1.4e-4);
    }
}

TEST(Geometry, ReadsItsStateWithOrderSevenAndLeavesItInterpolated) {
    for (const int system : {0, 1}) {
        CVorbel orbit;
        orbit.InitLagrange(&kStates[1], 300.0, system);
        const double time = kStates[1].time + 170.0;
        double x, y, z;
        const std::function<void(CVorbel&)> operations[] = {
            [&](CVorbel& o) { o.GeoLocation(time, 900.0, 1, 0.0, 0.0, 0.0); },
            [&](CVorbel& o) { o.GeoProssess(time, 900.0, 0.1, 1); },
            [&](CVorbel& o) { o.centroid(time, 900.0, 0.0, 0.0, 0.0, 1); },
            [&](CVorbel& o) { o.centroid_NEW(time, 900.0, 0.0, 0.0, 0.0, 1); },
            [&](CVorbel& o) { o.radial_speed(time, 50.0, 60.0, 0.0, &x); },
            [&](CVorbel& o) { o.attitude(time, &x, &y, &z); },
            [&](CVorbel& o) { o.PitchYaw(time, 900.0, 0.1, 800.0, 0.2, &x, &y, 1); },
        };
        const auto bits = [](CVorbel& object) {
            std::array<fVector, 10> records;
            std::copy_n(object.GetfVector(0), 10, records.begin());
            return std::bit_cast<std::array<std::uint64_t, 90>>(records);
        };
        CVorbel expected = orbit;
        expected.Lagrange(&time, 7);
        for (const auto& operation : operations) {
            CVorbel used = orbit;
            operation(used);
            EXPECT_EQ(bits(used), bits(expected)) << &operation - operations;
        }
        CVorbel refused = expected;
        refused.GeoLocation(kStates[1].time + 1000.0, 900.0, 1, 0.0, 0.0, 0.0);
        EXPECT_EQ(bits(refused), bits(expected)) << "a refused time leaves the object alone";
    }
}

TEST(Geometry, TakesTheSideAsANumber) {
    CVorbel orbit = holding(kClimbing, 0);
    EXPECT_NEAR(orbit.GeoLocation(0.0, 900.0, 0, 0.0, 0.0, 0.0).x, kWgs84A, kNewton);
    const Vec3 wide = positionOf(orbit.GeoLocation(0.0, 900.0, 2, 0.0, 0.0, 0.0)) - positionOf(kClimbing);
    const Axes frame = Look{kClimbing, 0, 2, kWgs84A, kWgs84B}.frame;
    EXPECT_NEAR(std::hypot(dot(wide, frame.e2) / 2.0, dot(wide, frame.e3)), 900.0, kNewton);
}

TEST(Geometry, TellsWhatIsOutsideItsDomain) {
    CVorbel orbit = holding(kClimbing, 0);
    const auto located = [&](double time, double range, double pitch) {
        return orbit.GeoLocation(time, range, 1, pitch, 0.0, 0.0);
    };
    const auto isDefault = [](const Geopoint& g) { return g.x == kWgs84A && g.y == 0.0 && g.z == 0.0 && g.h == 0.0; };
    const auto isNotANumber = [](const Geopoint& g) {
        return std::isnan(g.x) && std::isnan(g.y) && std::isnan(g.z) && std::isnan(g.lat) && std::isnan(g.lon) &&
               std::isnan(g.h) && g.a == kWgs84A && g.f == Geopoint().f && g.kind == 0;
    };
    // a longitude of exactly 0 is no full turn: a look to the north from the meridian of Greenwich
    CVorbel east = holding({7000.0, 0.0, 0.0, 0.0, 7.5, 0.0}, 0);
    EXPECT_EQ(east.GeoLocation(0.0, 800.0, 1, 0.0, 0.0, 0.0).lon, 0.0);
    // GeoLocation alone refuses a time ahead of the state
    EXPECT_FALSE(isDefault(located(0.0, 800.0, 0.0)));
    EXPECT_TRUE(isDefault(located(std::nextafter(0.0, 1.0), 800.0, 0.0)));
    EXPECT_FALSE(isDefault(orbit.GeoProssess(1.0, 800.0, 0.0, 1)));
    // 7000 - 6371 and 7000 + 6371 km bound the range
    EXPECT_TRUE(isNotANumber(located(0.0, 628.9, 0.0)));
    EXPECT_FALSE(isNotANumber(located(0.0, 629.1, 0.0)));
    EXPECT_FALSE(isNotANumber(located(0.0, 13370.9, 0.0)));
    EXPECT_TRUE(isNotANumber(located(0.0, 13371.1, 0.0)));
    EXPECT_TRUE(isNotANumber(orbit.GeoProssess(0.0, 628.9, 0.0, 1)));
    EXPECT_TRUE(std::isnan(orbit.centroid(0.0, 628.9, 0.0, 0.0, 0.0, 1)));
    EXPECT_TRUE(std::isnan(orbit.centroid_NEW(0.0, 628.9, 0.0, 0.0, 0.0, 1)));
    // the speed, 7.47 km/s, bounds the rate
    EXPECT_TRUE(isNotANumber(orbit.GeoProssess(0.0, 800.0, 7.5, 1)));
    EXPECT_TRUE(isNotANumber(orbit.GeoProssess(0.0, 800.0, -7.5, 1)));
    // at a pitch of 57 degrees the ellipsoid is more than 1000 km away
    const Geopoint missed = located(0.0, 800.0, 1.0);
    EXPECT_TRUE(std::isfinite(missed.lat) && missed.h > 1.0);
    EXPECT_NEAR(distance(missed, positionOf(kClimbing)), 800.0, 1e-9);
    // From 7000 km, 900 km do not reach a sphere of 4240 km. Newton's steps there swing between two angles and draw
    // near them so slowly that two passes more or less move the point by 80 m: the 101st, by the law of cosines.
    CVorbel never = orbit;
    never.SetEllipsoid(4240.0, 4240.0);
    EXPECT_NEAR(never.GeoLocation(0.0, 900.0, 1, 0.0, 0.0, 0.0).x, 6575.121376812, 1e-6);

    double range = 9.0;
    EXPECT_TRUE(std::isnan(orbit.radial_speed(0.0, 0.0, 0.0, 7000.0 - kWgs84A, &range)));  // the satellite itself
    EXPECT_EQ(range, 0.0);
    double pitch, yaw, roll;
    CVorbel falling = holding({0.0, 0.0, 7000.0, 0.0, 0.0, -1.0, 0.0, 0.0, 0.0}, 0);
    falling.attitude(0.0, &pitch, &yaw, &roll);
    EXPECT_TRUE(std::isnan(pitch) && std::isnan(yaw));
    orbit.PitchYaw(0.0, 800.0, -0.5, 800.0, -0.5, &pitch, &yaw, 1);  // one point spans no plane
    EXPECT_TRUE(std::isnan(pitch) && std::isnan(yaw));
}

TEST(DopplerCentroid, IsTheRangeRateOfAPointOnTheTurningEarth) {
    for (Look& look : looks()) {
        SCOPED_TRACE(look);
        const Vec3 point = pointOnGround(look, look.beamNormal(-0.02, 0.05, 0.1), 900.0);
        // in a Greenwich trajectory the point stands still; in an absolute one it turns eastward
        const auto range = [&](double t) {
            return length(look.r + t * look.v - rotationZ(look.system == 0 ? 0.0 : kEarthRate * t) * point);
        };
        const double rate = look.orbit.centroid(look.time, 900.0, -0.02, 0.05, 0.1, look.side);
        // km/s: a few ulps of the range over 6 ms, and as much from the curvature of the range
        EXPECT_NEAR(rate, (range(0.003) - range(-0.003)) / 0.006, 2e-9);
    }
}

TEST(DopplerCentroid, InTheVelocityAlignedFrameIsAClosingSpeed) {
    for (Look& look : looks()) {
        SCOPED_TRACE(look);
        for (const auto& [pitch, yaw] : {std::pair(0.0, 0.0), std::pair(0.03, 0.0), std::pair(-0.02, 0.05)}) {
            const Vec3 normal = velocityAligned(look.r, look.inertial) * (rotationY(pitch) * rotationZ(-yaw)).e1;
            const Vec3 line = unit(pointOnGround(look, normal, 900.0) - look.r);
            const double unused = yaw == 0.0 ? 0.3 : std::nan("");
            EXPECT_NEAR(look.orbit.centroid_NEW(look.time, 900.0, pitch, yaw, unused, look.side), dot(look.v, line),
                        1e-9);
        }
    }
}

TEST(DopplerCentroid, IsFiniteForAPointOnTheEarthsAxis) {
    // straight below a satellite over the pole of a sphere, in round numbers that the iteration meets at once
    CVorbel orbit = holding({0.0, 0.0, 2.0 * 6371.0, 0.0, 7.5, 1.0, 0.0, 0.0, 0.0}, 1);
    orbit.SetEllipsoid(6371.0, 6371.0);
    const Geopoint pole = orbit.GeoLocation(0.0, 6371.0, 1, 0.0, 0.0, 0.0);
    ASSERT_TRUE(pole.x == 0.0 && pole.y == 0.0);
    EXPECT_EQ(orbit.centroid(0.0, 6371.0, 0.0, 0.0, 0.0, 1), 1.0);
}

TEST(GeoLocation, RoundsTheCosineOfItsStartingAngleInOneOrder) {
    // At the shortest range, straight down, the cosine is 1 to rounding. Above 1 there is no angle and no point; any
    // other order of its operations (bar a factor of two) parts at least one of these ranges otherwise.
    for (const auto& [range, isFound] : {std::pair(3016.1, true), std::pair(1495.3, false)}) {
        CVorbel orbit = holding({0.0, 0.0, 6371.0 + range, 0.0, 7.5, 1.0, 0.0, 0.0, 0.0}, 0);
        orbit.SetEllipsoid(6371.0, 6371.0);
        EXPECT_EQ(std::isfinite(orbit.GeoLocation(0.0, range, 1, 0.0, 0.0, 0.0).z), isFound) << range;
    }
}

TEST(Attitude, IsTheDirectionOfTheRelativeVelocityAndSteersToZeroDoppler) {
    int leaningToNormal = 0;
    for (Look& look : looks()) {
        SCOPED_TRACE(look);
        const double lean = dot(look.relative, look.frame.e2);
        double pitch, yaw;
        double roll = 9.0;
        EXPECT_NEAR(look.orbit.attitude(look.time, &pitch, &yaw, &roll), length(look.relative), 1e-14);
        EXPECT_NEAR(pitch, std::asin(dot(look.frame.e3, unit(look.relative))), 1e-14);
        EXPECT_NEAR(yaw, std::abs(std::atan2(lean, dot(look.frame.e1, look.relative))), 1e-13);
        EXPECT_EQ(roll, 0.0);
        double one = 9.0;  // variable for yaw and pitch keeps the pitch, for all three the roll: 0
        look.orbit.attitude(look.time, &one, &one, &roll);
        EXPECT_EQ(one, pitch);
        look.orbit.attitude(look.time, &one, &one, &one);
        EXPECT_EQ(one, 0.0);

        const double signedYaw = std::copysign(yaw, lean);
        EXPECT_NEAR(look.orbit.centroid(look.time, 900.0, -pitch, signedYaw, 0.0, look.side), 0.0, 1e-9);
        EXPECT_GT(std::abs(look.orbit.centroid(look.time, 900.0, -pitch, -signedYaw, 0.0, look.side)), 0.01);
        leaningToNormal += lean > 0.0 ? 1 : 0;
    }
    EXPECT_EQ(leaningToNormal, 3 * 3 * 2);
}

TEST(PitchYaw, IsTheNormalOfThePlaneThroughTwoPoints) {
    double pitch, yaw;
    for (Look& look : looks()) {
        SCOPED_TRACE(look);
        const Vec3 first = positionOf(look.orbit.GeoProssess(look.time, 800.0, -0.5, look.side));
        const Vec3 second = positionOf(look.orbit.GeoProssess(look.time, 900.0, -0.4, look.side));
        const Vec3 normal = unit(cross(second - look.r, first - look.r));
        const Axes frame = velocityAligned(look.r, look.v);
        const double expectedPitch = std::asin(dot(normal, frame.e3)) / kLibraryDegree;
        const double expectedYaw = std::atan2(std::abs(dot(normal, frame.e2)), dot(normal, frame.e1)) / kLibraryDegree;
        look.orbit.PitchYaw(look.time, 800.0, -0.5, 900.0, -0.4, &pitch, &yaw, look.side);
        EXPECT_NEAR(pitch, expectedPitch, 1e-9);
        EXPECT_NEAR(yaw, expectedYaw, 1e-9);
        // the normal turns round with the order of the points
        look.orbit.PitchYaw(look.time, 900.0, -0.4, 800.0, -0.5, &pitch, &yaw, look.side);
        EXPECT_NEAR(pitch, -expectedPitch, 1e-9);
        EXPECT_NEAR(yaw, kPi / kLibraryDegree - expectedYaw, 1e-9);
        // one variable for both keeps the pitch
        look.orbit.PitchYaw(look.time, 800.0, -0.5, 900.0, -0.4, &yaw, &yaw, look.side);
        EXPECT_NEAR(yaw, expectedPitch, 1e-9);
        // at no range rate the plane stands across the velocity; the yaw comes from an acos near 0 or 180 degrees
        look.orbit.PitchYaw(look.time, 800.0, 0.0, 900.0, 0.0, &pitch, &yaw, look.side);
        EXPECT_NEAR(pitch, 0.0, 1e-9);
        EXPECT_NEAR(yaw, look.side > 0 ? 180.0 : 0.0, 2e-6);
    }
}

}  // namespace
