// Ground points of lines and scenes: what they promise, seen from formulas that share nothing with the library.

#include "../Random.h"
#include "SceneOrbits.h"

#include <vorbel/CVorbel.h>
#include <vorbel/scene/PixelToGround.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>

namespace pixel_to_ground_test {

using namespace vorbel::scene;

using Real = long double;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr Real kDegree = 180.0L / 3.14159265358979323846264338327950288L;

/// Room for every output of so many points.
struct Results {
    explicit Results(std::size_t count) : status(count, Status::not_converged) {
        values.fill(std::vector<double>(count, -1.0));
    }

    GroundPoints points() {
        auto& v = values;
        return {v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], v[9], status};
    }

    bool operator==(const Results& other) const {
        return status == other.status &&
               std::equal(values.begin(), values.end(), other.values.begin(), [](const auto& a, const auto& b) {
                   return std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
               });
    }

    // latitude, longitude, height, x, y, z, incidence, lookAngle, azimuth, rangeRate
    std::array<std::vector<double>, 10> values;
    std::vector<Status> status;
};

struct Geodetic {
    Real latitude, longitude, height;  // degrees, m
};

/// By iteration of the latitude to the end of its digits.
Geodetic geodetic(Real x, Real y, Real z) {
    const Real a = 6378137.0L;
    const Real f = 1.0L / 298.257223563L;
    const Real e2 = f * (2.0L - f);
    const Real p = std::hypot(x, y);
    Real latitude = std::atan2(z, p * (1.0L - e2));
    for (int i = 0; i < 30; ++i) {
        const Real s = std::sin(latitude);
        latitude = std::atan2(z + e2 * a / std::sqrt(1.0L - e2 * s * s) * s, p);
    }
    const Real s = std::sin(latitude);
    const Real c = std::cos(latitude);
    const Real height = p * c + z * s - a * std::sqrt(1.0L - e2 * s * s);
    return {latitude * kDegree, std::atan2(y, x) * kDegree, height};
}

/// The largest errors of points against formulas in long double.
struct Errors {
    Real range = 0, rate = 0, height = 0, latitude = 0, longitude = 0, incidence = 0, look = 0, azimuth = 0;

    void add(const State& s, double range_, double rate_, double height_, const Results& r, std::size_t i) {
        const Real x = r.values[3][i];
        const Real y = r.values[4][i];
        const Real z = r.values[5][i];
        const Real dx = x - s.x;
        const Real dy = y - s.y;
        const Real dz = z - s.z;
        const Real distance = std::sqrt(dx * dx + dy * dy + dz * dz);
        range = std::max(range, std::fabs(distance - range_));
        rate = std::max(rate, std::fabs(-(dx * s.vx + dy * s.vy + dz * s.vz) / distance - rate_));
        const Geodetic g = geodetic(x, y, z);
        height = std::max(height, std::fabs(g.height - height_));
        latitude = std::max(latitude, std::fabs(g.latitude - r.values[0][i]));
        const Real phi = g.latitude / kDegree;
        const Real lambda = g.longitude / kDegree;
        longitude =
            std::max(longitude, std::fabs(std::remainder(g.longitude - r.values[1][i], 360.0L)) * std::cos(phi));
        const Real north = -std::sin(phi) * (std::cos(lambda) * dx + std::sin(lambda) * dy) + std::cos(phi) * dz;
        const Real east = std::cos(lambda) * dy - std::sin(lambda) * dx;
        const Real up = std::cos(phi) * (std::cos(lambda) * dx + std::sin(lambda) * dy) + std::sin(phi) * dz;
        const Real flat = std::hypot(north, east);
        incidence = std::max(incidence, std::fabs(std::atan2(flat, -up) * kDegree - r.values[6][i]));
        azimuth =
            std::max(azimuth, std::fabs(std::remainder(std::atan2(east, north) * kDegree - r.values[8][i], 360.0L)) *
                                  flat / distance);
        const Real down = -(dx * s.x + dy * s.y + dz * s.z);
        const Real cx = dy * s.z - dz * s.y;
        const Real cy = dz * s.x - dx * s.z;
        const Real cz = dx * s.y - dy * s.x;
        look = std::max(look,
                        std::fabs(std::atan2(std::sqrt(cx * cx + cy * cy + cz * cz), down) * kDegree - r.values[7][i]));
    }

    void expectSmall() const {
        EXPECT_LT(range, 1e-8L);      // m
        EXPECT_LT(rate, 1e-9L);       // m/s
        EXPECT_LT(height, 2e-7L);     // m: the last Newton step near the nadir
        EXPECT_LT(latitude, 3e-13L);  // degrees
        EXPECT_LT(longitude, 1e-13L);
        EXPECT_LT(incidence, 1e-11L);  // at the limb
        EXPECT_LT(look, 1e-12L);
        EXPECT_LT(azimuth, 1e-12L);
    }
};

double speedOf(const State& s) {
    return std::sqrt(s.vx * s.vx + s.vy * s.vy + s.vz * s.vz);
}

// Over orbits of imaging satellites, both sides, every latitude with the poles and the antimeridian, ranges from close
// to the nadir to the limb, squints and heights.
TEST(PixelToGround, HoldsWhatItPromises) {
    Random random(1);
    constexpr std::size_t kCount = 2000;
    for (const InstructionSet set : instructionSets()) {
        Errors errors;
        std::size_t located = 0;
        for (int scene = 0; scene < 24; ++scene) {
            const bool polar = scene % 4 == 0;
            const Orbit orbit =
                circularOrbit(random.uniform(6.53e6, 7.08e6), polar ? kPi / 2 : random.uniform(0.2, 2.9),
                              polar ? kPi / 2 : random.uniform(0.0, 2.0 * kPi), random.uniform(-4.0, 4.0));
            const LookSide side = random.oneIn(2) ? LookSide::left : LookSide::right;
            const double time = random.uniform(-40.0, 90.0);
            const State state = orbit.at(time);
            const double squint = random.oneIn(2) ? 0.0 : 0.1 * speedOf(state);
            const double distance = std::sqrt(state.x * state.x + state.y * state.y + state.z * state.z);
            std::vector<double> range(kCount);
            std::vector<double> rate(kCount);
            std::vector<double> height(kCount);
            const double nadir = distance - 6356752.0;
            const double limb = std::sqrt(distance * distance - 6356752.0 * 6356752.0);
            for (std::size_t i = 0; i < kCount; ++i) {
                height[i] = random.oneIn(8) ? 0.0 : random.uniform(-500.0, 9000.0);
                range[i] = random.uniform(1.05 * nadir, random.oneIn(2) ? limb : 1.5 * nadir);
                rate[i] = random.uniform(-squint, squint);
            }
            Results r(kCount);
            pixelToGround(orbit, side, {1, kCount}, {{&time, 1}, range, rate, height}, r.points(), {1, set});
            for (std::size_t i = 0; i < kCount; ++i) {
                if (r.status[i] == Status::ok) {
                    errors.add(state, range[i], rate[i], height[i], r, i);
                    const double left = (state.y * state.vz - state.z * state.vy) * r.values[3][i] +
                                        (state.z * state.vx - state.x * state.vz) * r.values[4][i] +
                                        (state.x * state.vy - state.y * state.vx) * r.values[5][i];
                    EXPECT_EQ(left > 0.0, side == LookSide::left);
                    ++located;
                } else {
                    EXPECT_EQ(r.status[i], Status::beyond_horizon);
                    EXPECT_GT(range[i], 0.98 * limb - 130e3);
                }
            }
        }
        errors.expectSmall();
        EXPECT_GT(located, 24 * kCount * 9 / 10) << name(set);
    }
}

/// A number as it comes in broken files.
double garbage(Random& random, double sensible) {
    const double values[] = {0.0,  -0.0, kNaN, kInfinity, -kInfinity, 1e300, -1e300, 1e-300, 4e-324,
                             -1.0, 1.0,  1e9,  -1e9,      12000.0,    1e5,   7.5e3,  -7.5e3, 3e6};
    return random.oneIn(2) ? sensible : random.oneOf(values);
}

// Numbers without sense next to good ones: each point has a status, what is `ok` holds the promise, and a good point
// has the bits that it has alone.
TEST(PixelToGround, KeepsBadPointsToThemselves) {
    Random random(2);
    constexpr std::size_t kCount = 1000;
    const Orbit orbit = circularOrbit(7.07e6, 1.71, 0.7);
    std::array<std::size_t, 16> seen{};
    for (int scene = 0; scene < 1000; ++scene) {
        std::vector<double> time(kCount), range(kCount), rate(kCount), height(kCount);
        for (std::size_t i = 0; i < kCount; ++i) {
            time[i] = garbage(random, random.uniform(-51.0, 101.0));
            range[i] = garbage(random, random.uniform(6e5, 3.1e6));
            rate[i] = garbage(random, random.uniform(-500.0, 500.0));
            height[i] = garbage(random, random.uniform(-1000.0, 9000.0));
        }
        Results r(kCount);
        pixelToGround(orbit, LookSide::right, {1, kCount}, {time, range, rate, height}, r.points());
        for (std::size_t i = 0; i < kCount; ++i) {
            ++seen.at(static_cast<std::size_t>(r.status[i]));
            if (r.status[i] == Status::ok) {
                Errors errors;
                errors.add(orbit.at(time[i]), range[i], rate[i], height[i], r, i);
                EXPECT_LT(errors.range, 1e-6L);
                EXPECT_LT(errors.rate, 1e-6L);
                EXPECT_LT(errors.height, 1e-6L);
            } else {
                for (const std::vector<double>& values : r.values) {
                    EXPECT_TRUE(std::isnan(values[i]));
                }
            }
            if (i % 16 == 0) {
                Results one(1);
                pixelToGround(orbit, LookSide::right, {1, 1},
                              {{&time[i], 1}, {&range[i], 1}, {&rate[i], 1}, {&height[i], 1}}, one.points());
                EXPECT_EQ(one.status[0], r.status[i]);
                for (std::size_t k = 0; k < one.values.size(); ++k) {
                    EXPECT_EQ(std::bit_cast<std::uint64_t>(one.values[k][0]),
                              std::bit_cast<std::uint64_t>(r.values[k][i]));
                }
            }
        }
    }
    for (const Status status :
         {Status::ok, Status::bad_input, Status::outside_orbit, Status::range_too_short, Status::beyond_horizon}) {
        EXPECT_GT(seen.at(static_cast<std::size_t>(status)), 100U) << name(status);
    }
}

// A scene in one call, on other instruction sets and threads, in other pieces, and with every input spread out.
TEST(PixelToGround, GivesTheSameBitsHoweverItIsCarriedOut) {
    Random random(3);
    const Orbit orbit = circularOrbit(6.9e6, 1.6, 3.0);
    const Extent extent{37, 1501};
    const std::size_t count = extent.lines * extent.samples;
    std::vector<double> time(extent.lines), range(extent.samples), rate(extent.samples), height(count);
    std::generate(time.begin(), time.end(), [&] { return random.uniform(-60.0, 110.0); });
    std::generate(range.begin(), range.end(), [&] { return random.uniform(5e5, 2.9e6); });
    std::generate(rate.begin(), rate.end(), [&] { return random.uniform(-50.0, 50.0); });
    std::generate(height.begin(), height.end(), [&] { return random.uniform(-400.0, 9000.0); });
    Results expected(count);
    pixelToGround(orbit, LookSide::left, extent, {time, range, rate, height}, expected.points(),
                  {1, InstructionSet::baseline});
    EXPECT_GT(std::count(expected.status.begin(), expected.status.end(), Status::ok), 30000);

    for (const InstructionSet set : instructionSets()) {
        for (const unsigned threads : {1U, 2U, 5U, 0U}) {
            Results r(count);
            pixelToGround(orbit, LookSide::left, extent, {time, range, rate, height}, r.points(), {threads, set});
            EXPECT_TRUE(r == expected) << name(set) << ", " << threads << " threads";
        }
        std::vector<double> times(count), ranges(count), rates(count);
        for (std::size_t i = 0; i < count; ++i) {
            times[i] = time[i / extent.samples];
            ranges[i] = range[i % extent.samples];
            rates[i] = rate[i % extent.samples];
        }
        Results spread(count);
        pixelToGround(orbit, LookSide::left, {count / 19, 19}, {times, ranges, rates, height}, spread.points(),
                      {1, set});
        EXPECT_TRUE(spread == expected) << name(set) << ", an array of each";

        std::vector<double> yaw(times.size() / 19), yaws(times.size());
        std::generate(yaw.begin(), yaw.end(), [&] { return random.uniform(-4.0, 4.0); });
        for (std::size_t i = 0; i < count; ++i) {
            yaws[i] = yaw[i / 19];
        }
        Results beam(count), beams(count);
        beamToGround(orbit, LookSide::left, {count / 19, 19}, {times, ranges}, {{}, yaw}, beam.points(), {1, set});
        beamToGround(orbit, LookSide::left, {1, count}, {times, ranges}, {{}, yaws}, beams.points(), {1, set});
        EXPECT_TRUE(beam == beams) << name(set) << ", yaws of short lines";
    }
}

// The plane straight down, the limb, and the ends of the orbit's span.
TEST(PixelToGround, SaysWhereThePointsEnd) {
    const Orbit orbit = circularOrbit(7.0e6, kPi / 2, 0.0);  // at time 0 over the equator, flying north
    const auto status = [&](double time, double range, double height = 0.0) {
        Status result{};
        pixelToGround(orbit, LookSide::right, {1, 1}, {{&time, 1}, {&range, 1}, {}, {&height, 1}},
                      {.status = {&result, 1}});
        return result;
    };
    const double nadir = 7.0e6 - 6378137.0;
    EXPECT_EQ(status(0.0, nadir - 1e-3), Status::range_too_short);
    EXPECT_EQ(status(0.0, nadir + 1e-3), Status::ok);
    EXPECT_EQ(status(0.0, nadir - 5000.0, 5000.0 + 1e-3), Status::ok);
    EXPECT_EQ(status(0.0, nadir - 5000.0, 5000.0 - 1e-3), Status::range_too_short);
    const double limb = std::sqrt(7.0e6 * 7.0e6 - 6378137.0 * 6378137.0);  // nearly: the view is along the equator
    EXPECT_EQ(status(0.0, limb - 5e3), Status::ok);
    EXPECT_EQ(status(0.0, limb + 5e3), Status::beyond_horizon);
    EXPECT_EQ(status(0.0, 1.2e7), Status::beyond_horizon);
    EXPECT_EQ(status(0.0, 2.0e7), Status::beyond_horizon);
    EXPECT_EQ(status(100.0, 1e6), Status::ok);
    EXPECT_EQ(status(100.000001, 1e6), Status::outside_orbit);
    EXPECT_EQ(status(-50.000001, 1e6), Status::outside_orbit);
    EXPECT_EQ(status(0.0, 1e6, 12001.0), Status::bad_input);
}

// The class starts from states on a time scale of 4.8e-7 s, rounds a degree, and reckons latitude to first order; its
// Cartesian points and centroids differ by nothing else. Heights other than 0 it reaches by a swollen ellipsoid.
TEST(BeamToGround, IsTheClassOnExactHeights) {
    const std::vector<StateVector> vectors = circularVectors(7.0e6, 1.71, 0.9, 0.3, -50.0, 10.0, 16);
    const Orbit orbit = Orbit::fromVectors(vectors, vectors[5].time);
    Random random(4);
    double farthest = 0.0;
    double farthestHigh = 0.0;
    double latitude = 0.0;
    double rate = 0.0;
    for (int i = 0; i < 2000; ++i) {
        const bool left = random.oneIn(2);
        const double height = random.oneIn(2) ? 0.0 : random.uniform(0.0, 4000.0);
        const double range = random.uniform(7.2e5, 1.2e6);
        const double time = 10.0 * static_cast<double>(random.bits() % 10);
        const double pitch = random.uniform(-0.5, 0.5);
        const double yaw = random.uniform(-5.0, 5.0);
        const double roll = random.uniform(-1.0, 1.0);
        Results r(1);
        beamToGround(orbit, left ? LookSide::left : LookSide::right, {1, 1},
                     {{&time, 1}, {&range, 1}, {}, {&height, 1}}, {{&pitch, 1}, {&yaw, 1}, {&roll, 1}}, r.points());
        ASSERT_EQ(r.status[0], Status::ok);

        const State s = orbit.at(time);
        CVorbel object;
        object.setVector({s.x / 1e3, s.y / 1e3, s.z / 1e3, s.vx / 1e3, s.vy / 1e3, s.vz / 1e3, 1.0, 0.0, 0.0});
        object.setStep(1.0);
        object.SetEllipsoid(6378.137 + height / 1e3, 6356.752314245 + height / 1e3);
        const double radians = kPi / 180.0;
        const Geopoint p =
            object.GeoLocation(0.0, range / 1e3, left ? 1 : -1, pitch * radians, yaw * radians, roll * radians);
        const double distance =
            std::hypot(p.x * 1e3 - r.values[3][0], p.y * 1e3 - r.values[4][0], p.z * 1e3 - r.values[5][0]);
        (height == 0.0 ? farthest : farthestHigh) = std::max(height == 0.0 ? farthest : farthestHigh, distance);
        latitude = std::max(latitude, std::fabs(p.lat - r.values[0][0]) * 111e3);
        const double centroid =
            object.centroid(0.0, range / 1e3, pitch * radians, yaw * radians, roll * radians, left ? 1 : -1);
        rate = std::max(rate, std::fabs(centroid * 1e3 - r.values[9][0]));
    }
    EXPECT_LT(farthest, 1.2e-4);    // m: the class ends its iteration at 1e-10 rad of the range
    EXPECT_GT(farthestHigh, 1e-3);  // m: the swollen ellipsoid is 2 mm off for each km of height
    EXPECT_LT(farthestHigh, 2e-2);
    EXPECT_GT(latitude, 1e-2);  // m: first order in the flattening
    EXPECT_LT(latitude, 1e-1);
    EXPECT_LT(rate, 1e-4);  // m/s
}

TEST(PixelToGround, RefusesArraysThatDoNotFit) {
    const Orbit orbit = circularOrbit(7.0e6, 1.7, 0.0);
    const std::vector<double> ten(10, 8e5);
    std::vector<double> out(19, 5.0);
    const auto refusal = [](const auto& call) -> std::string {
        try {
            call();
        } catch (const std::invalid_argument& error) {
            return error.what();
        }
        return "nothing";
    };
    EXPECT_EQ(refusal([&] {
                  pixelToGround(orbit, LookSide::left, {2, 10}, {{ten.data(), 3}, ten}, {});
              }),
              "time has 3 values; 1, 2 (one for each line) or 20 (one for each point) would be right");
    EXPECT_EQ(refusal([&] {
                  pixelToGround(orbit, LookSide::left, {2, 10}, {{ten.data(), 2}, {}}, {});
              }),
              "slantRange has no values; 1, 10 (one for each sample) or 20 (one for each point) would be right");
    EXPECT_EQ(refusal([&] {
                  pixelToGround(orbit, LookSide::left, {2, 10}, {{ten.data(), 2}, ten}, {.z = out});
              }),
              "z has room for 19 values; the scene has 20 points");
    EXPECT_EQ(out, std::vector<double>(19, 5.0));
}

}  // namespace pixel_to_ground_test
