// When and at which range points are seen: against pixelToGround(), and against a search in long double that shares
// nothing with the library but the states of the orbit.

#include "../../examples/sentinel1_scene.h"
#include "../Random.h"
#include "SceneOrbits.h"

#include <vorbel/scene/GroundToPixel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <stdexcept>

namespace ground_to_pixel_test {

using namespace vorbel::scene;

using Real = long double;
using Values = std::vector<double>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr Real kDegree = 180.0L / 3.14159265358979323846264338327950288L;

struct Results {
    explicit Results(std::size_t count)
        : time(count, -1.0), range(count, -1.0), rate(count, -1.0), side(count), status(count) {}

    PixelPositions positions() {
        return {time, range, rate, side, status};
    }

    bool sameAt(std::size_t i, const Results& other, std::size_t k) const {
        const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
        return status[i] == other.status[k] && side[i] == other.side[k] && bits(time[i]) == bits(other.time[k]) &&
               bits(range[i]) == bits(other.range[k]) && bits(rate[i]) == bits(other.rate[k]);
    }

    Values time, range, rate;
    std::vector<LookSide> side;
    std::vector<Status> status;
};

struct Ground {
    explicit Ground(std::size_t count)
        : latitude(count), longitude(count), height(count), x(count), y(count), z(count), status(count) {}

    Values latitude, longitude, height, x, y, z;
    std::vector<Status> status;
};

struct Place {
    Real x, y, z;     // m
    Real ux, uy, uz;  // upright
};

Place placeOf(Real latitude, Real longitude, Real height) {
    const Real a = 6378137.0L;
    const Real f = 1.0L / 298.257223563L;
    const Real e2 = f * (2.0L - f);
    const Real b = latitude / kDegree;
    const Real l = longitude / kDegree;
    const Real n = a / std::sqrt(1.0L - e2 * std::sin(b) * std::sin(b));
    const Real ux = std::cos(b) * std::cos(l);
    const Real uy = std::cos(b) * std::sin(l);
    const Real uz = std::sin(b);
    return {(n + height) * ux, (n + height) * uy, (n * (1.0L - e2) + height) * uz, ux, uy, uz};
}

/// What the satellite sees of a place at a time.
struct View {
    View(const State& s, const Place& p) {
        const Real dx = p.x - s.x;
        const Real dy = p.y - s.y;
        const Real dz = p.z - s.z;
        range = std::sqrt(dx * dx + dy * dy + dz * dz);
        rate = -(dx * s.vx + dy * s.vy + dz * s.vz) / range;
        up = -(dx * p.ux + dy * p.uy + dz * p.uz) / range;
        const Real right = dx * (Real(s.vy) * s.z - Real(s.vz) * s.y) + dy * (Real(s.vz) * s.x - Real(s.vx) * s.z) +
                           dz * (Real(s.vx) * s.y - Real(s.vy) * s.x);
        side = right > 0.0L ? LookSide::right : LookSide::left;
        speedSquared = Real(s.vx) * s.vx + Real(s.vy) * s.vy + Real(s.vz) * s.vz;
    }

    Real range, rate, up, speedSquared;
    LookSide side;
};

/// There and back over orbits of imaging satellites, as pixelToGround() is tested; also what is found is held to the
/// equations themselves.
TEST(GroundToPixel, TakesEveryPixelBack) {
    Random random(11);
    constexpr std::size_t kCount = 3000;
    for (int scene = 0; scene < 24; ++scene) {
        const bool polar = scene % 4 == 0;
        const Orbit orbit = circularOrbit(random.uniform(6.88e6, 7.08e6), polar ? kPi / 2 : random.uniform(0.2, 2.9),
                                          polar ? kPi / 2 : random.uniform(0.0, 2.0 * kPi), random.uniform(-4.0, 4.0));
        const LookSide side = random.oneIn(2) ? LookSide::left : LookSide::right;
        const bool inOrder = random.oneIn(2);
        const double squint = scene % 3 == 0 ? 0.0 : scene % 3 == 1 ? 700.0 : 10.0;
        Values time(kCount), range(kCount), rate(kCount), height(kCount);
        for (std::size_t i = 0; i < kCount; ++i) {
            time[i] = random.oneIn(50) ? 10.0 * static_cast<double>(i % 16) - 50.0 : random.uniform(-50.0, 100.0);
            range[i] = random.uniform(7.5e5, random.oneIn(2) ? 3.1e6 : 1.0e6);
            rate[i] = random.uniform(-squint, squint);
            height[i] = random.uniform(-500.0, 9000.0);
        }
        if (inOrder) {
            std::sort(time.begin(), time.end());
        }
        Ground g(kCount);
        pixelToGround(orbit, side, {1, kCount}, {time, range, rate, height},
                      {g.latitude, g.longitude, g.height, g.x, g.y, g.z, {}, {}, {}, {}, g.status});
        std::replace_if(
            g.latitude.begin(), g.latitude.end(), [](double v) { return std::isnan(v); }, 0.0);
        for (const InstructionSet set : instructionSets()) {
            for (const bool geodetic : {false, true}) {
                const GroundTargets targets = geodetic ? GroundTargets{g.latitude, g.longitude, height}
                                                       : GroundTargets{{}, {}, {}, g.x, g.y, g.z};
                Results r(kCount);
                groundToPixel(orbit, side, targets, squint > 0.0 ? Doppler{rate} : Doppler{}, r.positions(), {1, set});
                Real late = 0.0L;
                Real far = 0.0L;
                Real off = 0.0L;
                for (std::size_t i = 0; i < kCount; ++i) {
                    if (g.status[i] == Status::ok) {
                        ASSERT_EQ(r.status[i], Status::ok) << scene << " " << i << " at " << time[i];
                        late = std::max<Real>(late, std::fabs(r.time[i] - time[i]));
                        far = std::max<Real>(far, std::fabs(r.range[i] - range[i]));
                        const View view(orbit.at(r.time[i]), placeOf(g.latitude[i], g.longitude[i], height[i]));
                        off = std::max(off, std::fabs(view.rate - rate[i]) * view.range / view.speedSquared);
                        EXPECT_EQ(r.side[i], side);
                        EXPECT_EQ(r.rate[i], rate[i]);
                    }
                }
                EXPECT_LT(late, 1e-9L) << scene;  // s
                EXPECT_LT(far, 1e-7L) << scene;   // m
                EXPECT_LT(off, 1e-9L) << scene;   // s
            }
        }
    }
}

// Vectors whose velocities are not the derivatives of their positions: `ok` still holds to 1e-9 s and 1 um.
TEST(GroundToPixel, IsAsExactOnNoisyVectors) {
    Random random(15);
    constexpr std::size_t kCount = 1000;
    Real off = 0.0L;
    Real far = 0.0L;
    std::size_t found = 0;
    for (int scene = 0; scene < 60; ++scene) {
        const double step = scene % 2 == 0 ? 3.0 : 20.0;
        auto vectors = circularVectors(6.9e6, 1.71, 0.4, 0.3, 0.0, step, 12);
        for (StateVector& v : vectors) {
            v.state.vx += random.uniform(-0.15, 0.15);
            v.state.vy += random.uniform(-0.15, 0.15);
            v.state.vz += random.uniform(-0.15, 0.15);
        }
        const Orbit orbit = Orbit::fromVectors(vectors);
        Values x(kCount), y(kCount), z(kCount), rate(kCount);
        for (std::size_t i = 0; i < kCount; ++i) {
            const State s = orbit.at(random.uniform(0.0, 11.0 * step));
            x[i] = s.x + random.uniform(-2e6, 2e6);
            y[i] = s.y + random.uniform(-2e6, 2e6);
            z[i] = s.z + random.uniform(-2e6, 2e6);
            rate[i] = random.uniform(-1000.0, 1000.0);
            const double level = std::hypot(x[i] / 6378137.0, y[i] / 6378137.0, z[i] / 6356752.0);
            x[i] /= level;
            y[i] /= level;
            z[i] /= level;
        }
        for (const bool squinted : {false, true}) {
            Results r(kCount);
            groundToPixel(orbit, {}, {.x = x, .y = y, .z = z}, squinted ? Doppler{rate} : Doppler{}, r.positions());
            for (std::size_t i = 0; i < kCount; ++i) {
                if (r.status[i] == Status::ok) {
                    const View view(orbit.at(r.time[i]), {x[i], y[i], z[i], 0.0L, 0.0L, 0.0L});
                    off = std::max(off, std::fabs(view.rate - r.rate[i]) * view.range / view.speedSquared);
                    far = std::max(far, std::fabs(view.range - r.range[i]));
                    ++found;
                }
            }
        }
    }
    EXPECT_LT(off, 1e-9L);  // s
    EXPECT_LT(far, 1e-6L);  // m
    EXPECT_GT(found, 10 * kCount);
}

/// The passes of a place by steps of 20 s and halving.
std::vector<double> passesOf(const Orbit& orbit, const Place& place, double rate) {
    const auto at = [&](double time) { return View(orbit.at(time), place); };
    std::vector<double> passes;
    double high = orbit.span().first;
    while (high < orbit.span().last) {
        double low = high;
        high = std::min(low + 20.0, orbit.span().last);
        if (at(low).rate > rate || at(high).rate <= rate) {
            continue;
        }
        double above = high;
        for (int i = 0; i < 60; ++i) {
            const double middle = 0.5 * (low + above);
            (at(middle).rate > rate ? above : low) = middle;
        }
        if (at(low).up > 0.0L) {
            passes.push_back(low);
        }
    }
    return passes;
}

// Places all over the Earth and six hours of orbit: every pass is found once, in its order, and none else.
TEST(GroundToPixel, FindsAllPasses) {
    Random random(12);
    const Orbit orbit =
        Orbit::fromVectors(circularVectors(7.07e6, 1.71, 0.4, 0.3, 0.0, 60.0, 361), Instant::of(2022, 4, 14, 10));
    constexpr std::size_t kCount = 400;
    Values latitude(kCount), longitude(kCount), rate(kCount), notBefore(kCount, -kInfinity);
    std::vector<std::vector<double>> passes;
    std::vector<std::size_t> next(kCount, 0);
    for (std::size_t i = 0; i < kCount; ++i) {
        latitude[i] = std::asin(random.uniform(-1.0, 1.0)) * 180.0 / kPi;
        longitude[i] = random.uniform(-720.0, 720.0);
        rate[i] = random.oneIn(2) ? 0.0 : random.uniform(-300.0, 300.0);
        passes.push_back(passesOf(orbit, placeOf(latitude[i], longitude[i], 0.0), rate[i]));
    }
    std::size_t found = 0;
    for (bool more = true; more;) {
        more = false;
        Results r(kCount);
        groundToPixel(orbit, {}, {.latitude = latitude, .longitude = longitude, .notBefore = notBefore}, {rate},
                      r.positions());
        for (std::size_t i = 0; i < kCount; ++i) {
            if (next[i] == passes[i].size()) {
                EXPECT_TRUE(r.status[i] == Status::outside_orbit || r.status[i] == Status::beyond_horizon)
                    << i << " " << name(r.status[i]) << " " << r.time[i];
                continue;
            }
            ASSERT_EQ(r.status[i], Status::ok) << i;
            EXPECT_NEAR(r.time[i], passes[i][next[i]], 1e-9) << i;
            notBefore[i] = std::nextafter(r.time[i], kInfinity);
            ++next[i];
            ++found;
            more = true;
        }
    }
    EXPECT_GT(found, kCount);
}

// The Doppler of products is a polynomial of slant range.
TEST(GroundToPixel, FollowsAPolynomialOfRange) {
    const Orbit orbit = circularOrbit(7.07e6, 1.71, 0.7);
    Random random(13);
    constexpr std::size_t kCount = 1000;
    const double coefficients[] = {-25.0, 3e-4, -2e-9, 1e-15};
    const double reference = 8e5;
    Ground g(kCount);
    const State middle = orbit.at(0.0);
    const double east = std::atan2(middle.y, middle.x) * 180.0 / kPi;
    const double north = std::atan2(middle.z, std::hypot(middle.x, middle.y)) * 180.0 / kPi;
    for (std::size_t i = 0; i < kCount; ++i) {
        g.latitude[i] = north + random.uniform(-4.0, 4.0);
        g.longitude[i] = east + random.uniform(-12.0, 12.0);
    }
    Results r(kCount);
    groundToPixel(orbit, {}, {.latitude = g.latitude, .longitude = g.longitude}, {{}, coefficients, reference},
                  r.positions());
    std::size_t found = 0;
    for (std::size_t i = 0; i < kCount; ++i) {
        if (r.status[i] == Status::ok) {
            const View view(orbit.at(r.time[i]), placeOf(g.latitude[i], g.longitude[i], 0.0));
            const Real d = view.range - reference;
            const Real rate = coefficients[0] + d * (coefficients[1] + d * (coefficients[2] + d * coefficients[3]));
            EXPECT_LT(std::fabs(view.rate - rate) * view.range / view.speedSquared, 1e-9L);
            EXPECT_NEAR(r.rate[i], static_cast<double>(rate), 1e-6);
            EXPECT_EQ(r.side[i], view.side);
            ++found;
        }
    }
    EXPECT_GT(found, kCount / 2);
}

// Good points, points of the other side, of the far side of the Earth and numbers without sense: each has the bits that
// it has alone, on every instruction set, in every order and on every number of threads, and nothing false is `ok`.
TEST(GroundToPixel, GivesAPointTheSameBitsInAnyCompany) {
    Random random(14);
    const Orbit orbit =
        Orbit::fromVectors(circularVectors(7.07e6, 1.71, 0.4, 0.3, 0.0, 10.0, 700), Instant::of(2022, 4, 14, 10));
    constexpr std::size_t kCount = 40000;
    const double bad[] = {kNaN, kInfinity, -kInfinity, 1e300, -1e300, 0.0, 4e-324, 1e9, -1e7};
    for (const bool squinted : {false, true}) {
        Ground g(kCount);
        Values rate(kCount);
        const auto value = [&](double sensible) { return random.oneIn(30) ? random.oneOf(bad) : sensible; };
        double along = 0.0;
        for (std::size_t i = 0; i < kCount; ++i) {
            along = random.oneIn(200) ? random.uniform(0.0, 6990.0) : std::min(along + 2e-3, 6990.0);
            const State s = orbit.at(along);
            const double size = 6.374e6 / std::sqrt(s.x * s.x + s.y * s.y + s.z * s.z);
            g.x[i] = value(s.x * size + random.uniform(-4e5, 4e5));
            g.y[i] = value(s.y * size);
            g.z[i] = value(s.z * size);
            rate[i] = squinted ? value(random.uniform(-200.0, 200.0)) : 0.0;
            const double level = std::hypot(g.x[i] / 6378137.0, g.y[i] / 6378137.0, g.z[i] / 6356752.0);
            if (level > 0.9 && level < 1.1) {
                g.x[i] /= level;
                g.y[i] /= level;
                g.z[i] /= level;
            }
        }
        const auto doppler = [&](std::size_t i, std::size_t n) {
            return squinted ? Doppler{std::span(rate).subspan(i, n)} : Doppler{};
        };
        const auto targets = [&](std::size_t i, std::size_t n) {
            return GroundTargets{.x = std::span(g.x).subspan(i, n),
                                 .y = std::span(g.y).subspan(i, n),
                                 .z = std::span(g.z).subspan(i, n)};
        };
        Results expected(kCount);
        groundToPixel(orbit, LookSide::right, targets(0, kCount), doppler(0, kCount), expected.positions(),
                      {1, InstructionSet::baseline});
        std::array<std::size_t, 16> seen{};
        for (std::size_t i = 0; i < kCount; ++i) {
            ++seen.at(static_cast<std::size_t>(expected.status[i]));
            if (expected.status[i] == Status::ok) {
                const View view(orbit.at(expected.time[i]), {g.x[i], g.y[i], g.z[i], 0.0L, 0.0L, 0.0L});
                EXPECT_LT(std::fabs(view.rate - rate[i]) * view.range / view.speedSquared, 1e-9L);
                EXPECT_LT(std::fabs(view.range - expected.range[i]), 1e-6L);
            } else {
                EXPECT_TRUE(std::isnan(expected.time[i]) && std::isnan(expected.range[i]));
            }
        }
        for (const Status status : {Status::ok, Status::bad_input, Status::wrong_side}) {
            EXPECT_GT(seen.at(static_cast<std::size_t>(status)), 300U) << name(status);
        }
        for (const InstructionSet set : instructionSets()) {
            Results threaded(kCount);
            groundToPixel(orbit, LookSide::right, targets(0, kCount), doppler(0, kCount), threaded.positions(),
                          {3, set});
            Results pieces(kCount);
            for (std::size_t i = 0, n = 0; i < kCount; i += n) {
                n = std::min<std::size_t>(1 + random.bits() % 700, kCount - i);
                Results part(n);
                groundToPixel(orbit, LookSide::right, targets(i, n), doppler(i, n), part.positions(), {1, set});
                for (std::size_t k = 0; k < n; ++k) {
                    ASSERT_TRUE(part.sameAt(k, expected, i + k)) << name(set) << " " << i + k;
                }
            }
            for (std::size_t i = 0; i < kCount; ++i) {
                ASSERT_TRUE(threaded.sameAt(i, expected, i)) << name(set) << " " << i;
            }
        }
    }
}

// Sixteen vectors of a product and its grid, which writes times to 1e-6 s and angles to 1e-9 degrees.
TEST(GroundToPixel, MeetsTheGridOfARealScene) {
    std::vector<StateVector> vectors;
    for (const OrbitVector& v : kOrbit) {
        const fVector s = stateOf(v);
        vectors.push_back({Instant::of(2022, 4, 14).later(v.seconds),
                           {s.x * 1e3, s.y * 1e3, s.z * 1e3, s.vx * 1e3, s.vy * 1e3, s.vz * 1e3}});
    }
    const Orbit orbit = Orbit::fromVectors(vectors, Instant::of(2022, 4, 14));
    for (const GridPoint& p : kGrid) {
        Results r(1);
        groundToPixel(orbit, LookSide::right, {{&p.latitude, 1}, {&p.longitude, 1}, {&p.height, 1}}, {}, r.positions());
        ASSERT_EQ(r.status[0], Status::ok);
        EXPECT_NEAR(r.time[0], p.seconds, 2.5e-6);
        EXPECT_NEAR(r.range[0], p.slantRange * 1e3, 5e-4);  // the height is written to 1e-3 m
    }
}

// Below a satellite that drifts by less than the rounding of its position in 1e-9 s no time is true; at 30 m/s it is.
TEST(GroundToPixel, GivesNoTimeWhereTheSatelliteHardlyMoves) {
    for (const double speed : {2e-5, 0.05, 1.0, 30.0}) {
        std::vector<StateVector> vectors;
        for (int i = 0; i < 10; ++i) {
            const double y = speed * 300.0 * (i - 4.5);
            vectors.push_back({Instant::of(2022, 4, 14).later(300.0 * i), {4.2164e7, y, 0.0, 0.0, speed, 0.0}});
        }
        const Orbit orbit = Orbit::fromVectors(vectors);
        constexpr std::size_t kCount = 200;
        Values latitude(kCount), longitude(kCount);
        for (std::size_t i = 0; i < kCount; ++i) {
            latitude[i] = -40.0 + 0.4 * static_cast<double>(i);
            longitude[i] = speed * (static_cast<double>(i) - 100.0) * 1e-5;
        }
        Results r(kCount);
        groundToPixel(orbit, {}, {latitude, longitude}, {}, r.positions());
        for (std::size_t i = 0; i < kCount; ++i) {
            EXPECT_EQ(r.status[i], speed > 10.0 ? Status::ok : Status::not_converged) << speed << " " << i;
        }
    }
}

// The ends of the span, the horizon, both sides and the ranges of the inputs.
TEST(GroundToPixel, SaysWhyAPointIsNotSeen) {
    const Orbit orbit = circularOrbit(7.0e6, kPi / 2, 0.0, 0.0);  // at time 0 over 0 N 0 E, flying north
    const double perSecond = 180.0 / kPi * std::sqrt(3.986004418e14 / 7.0e6) / 7.0e6;
    struct Found {
        Status status;
        double time;
        LookSide side;
    };
    const auto find = [&](double latitude, double longitude, std::optional<LookSide> side, double height = 0.0,
                          double rate = 0.0) {
        Results r(1);
        groundToPixel(orbit, side, {{&latitude, 1}, {&longitude, 1}, {&height, 1}}, {{&rate, 1}}, r.positions());
        return Found{r.status[0], r.time[0], r.side[0]};
    };
    const auto right = LookSide::right;
    EXPECT_EQ(find(0.0, 5.0, right).status, Status::ok);
    EXPECT_EQ(find(0.0, 365.0, right).time, find(0.0, 5.0, right).time);
    EXPECT_EQ(find(0.0, -5.0, right).status, Status::wrong_side);
    EXPECT_EQ(find(0.0, -5.0, {}).side, LookSide::left);
    EXPECT_EQ(find(0.0, 23.0, right).status, Status::ok);
    EXPECT_EQ(find(0.0, 25.0, right).status, Status::beyond_horizon);
    EXPECT_EQ(find(0.0, 180.0, right).status, Status::outside_orbit);
    // The Earth turns under the orbit: 5 degrees beside the track a place comes abreast some seconds early.
    const double early = 50.0 - find(50.0 * perSecond, 5.0, right).time;
    const auto findAt = [&](double time, double rate) {
        return find((time + early) * perSecond, 5.0, right, 0.0, rate).status;
    };
    EXPECT_EQ(findAt(99.5, 0.0), Status::ok);
    EXPECT_EQ(findAt(101.0, 0.0), Status::outside_orbit);
    EXPECT_EQ(findAt(-51.0, 0.0), Status::outside_orbit);
    EXPECT_EQ(findAt(101.0, 600.0), Status::outside_orbit);
    EXPECT_EQ(findAt(101.0, -600.0), Status::ok);
    for (const Found& found :
         {find(90.1, 0.0, right), find(0.0, kNaN, right), find(0.0, 36001.0, right), find(0.0, 5.0, right, 12001.0),
          find(0.0, 5.0, right, 0.0, kNaN), find(0.0, 5.0, right, 0.0, 1300.0)}) {
        EXPECT_EQ(found.status, Status::bad_input);
    }

    const Values two(2), three(3);
    Results r(3);
    EXPECT_THROW(groundToPixel(orbit, right, {two, three}, {}, r.positions()), std::invalid_argument);
    EXPECT_THROW(groundToPixel(orbit, right, {three, three, two}, {}, r.positions()), std::invalid_argument);
    EXPECT_THROW(groundToPixel(orbit, right, {two, two}, {}, r.positions()), std::invalid_argument);
    EXPECT_THROW(groundToPixel(orbit, right, {three, three, {}, three}, {}, r.positions()), std::invalid_argument);
    EXPECT_THROW(groundToPixel(orbit, right, {three, three}, {three, three}, r.positions()), std::invalid_argument);
}

}  // namespace ground_to_pixel_test
