// Terrain whose answers are known, and the same answers by brute force.

#include "../Random.h"

#include <vorbel/scene/GroundToPixel.h>
#include <vorbel/scene/Terrain.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <set>
#include <stdexcept>
#include <vector>

namespace terrain_test {

using namespace vorbel::scene;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kEquator = 6378137.0;  // m
constexpr double kFlattening = 1.0 / 298.257223563;
constexpr double kRadius = 7071e3;  // of the orbit, m
constexpr double kHeight = 5e-4;    // m that a point may be off the surface
constexpr double kDegree = std::numbers::pi / 180.0;

/// A circle in the plane of a meridian, northwards over the equator at time 0: the zero-Doppler plane of that moment is
/// the equator's, in which the ellipsoid is a circle and everything can be written down.
Orbit overEquator(double longitude, double middle = 0.0) {
    const double rate = std::sqrt(3.986004418e14 / kRadius) / kRadius;
    std::vector<StateVector> vectors;
    const Instant epoch = Instant::of(2024, 1, 1);
    for (int i = -2; i <= 2; ++i) {
        const double t = middle + 10.0 * i;
        const double a = rate * t;
        const double out = kRadius * std::cos(a);
        const double outSpeed = -kRadius * rate * std::sin(a);
        const double c = std::cos(longitude * kDegree);
        const double s = std::sin(longitude * kDegree);
        vectors.push_back(
            {epoch.later(t),
             {out * c, out * s, kRadius * std::sin(a), outSpeed * c, outSpeed * s, kRadius * rate * std::cos(a)}});
    }
    return Orbit::fromVectors(vectors, epoch);
}

/// A strip along the equator east of the satellite, the same in all its rows, from a profile over its columns.
struct Strip {
    static constexpr std::size_t kColumns = 600;
    static constexpr double kStep = 1.0 / 1200.0;  // degrees, 93 m
    static constexpr double kWest = 3.0;           // degrees from the satellite's meridian

    double satellite;  // longitude, degrees
    std::vector<double> profile;
    std::vector<float> values;
    RasterGrid grid{0.005, 0.0, 0.0025, kStep, 5, kColumns};

    Strip(double longitude, const std::function<double(double)>& height) : satellite(longitude), profile(kColumns) {
        grid.west = longitude + kWest;
        for (std::size_t i = 0; i < kColumns; ++i) {
            profile[i] = static_cast<float>(height(static_cast<double>(i)));
        }
        for (int row = 0; row < 5; ++row) {
            values.insert(values.end(), profile.begin(), profile.end());
        }
    }

    double heightAt(double column) const {
        const auto i = std::min(static_cast<std::size_t>(column), kColumns - 2);
        const double a = column - static_cast<double>(i);
        return profile[i] + a * (profile[i + 1] - profile[i]);
    }

    double rangeTo(double column, double height) const {
        const double angle = (kWest + column * kStep) * kDegree;
        const double r = kEquator + height;
        return std::hypot(kRadius - r * std::cos(angle), r * std::sin(angle));
    }

    double lookAngleTo(double column, double height) const {
        const double angle = (kWest + column * kStep) * kDegree;
        const double r = kEquator + height;
        return std::atan2(r * std::sin(angle), kRadius - r * std::cos(angle));
    }
};

/// The visible and the hidden columns of a range, and whether the answer hangs on less than a march can tell.
struct March {
    std::vector<double> visible;
    std::vector<double> hidden;
    bool close = false;
};

class BruteForce {
public:
    static constexpr int kParts = 20;  // of a cell

    explicit BruteForce(const Strip& strip) {
        double highest = 0.0;
        for (std::size_t i = 0; i <= (Strip::kColumns - 1) * kParts; ++i) {
            const double column = static_cast<double>(i) / kParts;
            const double height = strip.heightAt(column);
            const double look = strip.lookAngleTo(column, height);
            m_column.push_back(column);
            m_range.push_back(strip.rangeTo(column, height));
            m_margin.push_back(look - highest);
            highest = std::max(highest, look);
        }
    }

    March at(double range) const {
        constexpr double kCloseLook = 2e-8;   // rad, 1 cm
        constexpr double kCloseRange = 0.05;  // m, from the top or bottom of a fold
        March march;
        for (std::size_t i = 1; i < m_range.size(); ++i) {
            if ((m_range[i - 1] < range) != (m_range[i] < range)) {
                (isVisible(i) ? march.visible : march.hidden).push_back(m_column[i]);
                march.close |= isVisible(i) != isVisible(i - 1) || (!isVisible(i) && m_margin[i] > -kCloseLook);
            }
            const bool turns = i + 1 < m_range.size() && (m_range[i] > m_range[i - 1]) != (m_range[i + 1] > m_range[i]);
            march.close |= turns && std::abs(m_range[i] - range) < kCloseRange;
        }
        return march;
    }

private:
    bool isVisible(std::size_t i) const {
        return m_margin[i] > 0.0;
    }

    std::vector<double> m_column;
    std::vector<double> m_range;
    std::vector<double> m_margin;  // of the look angle over all nearer ones, rad
};

struct Results {
    std::vector<double> latitude, longitude, height, x, y, z, localIncidence;
    std::vector<std::uint8_t> mask;
    std::vector<Status> status;

    explicit Results(std::size_t count)
        : latitude(count), longitude(count), height(count), x(count), y(count), z(count), localIncidence(count),
          mask(count), status(count) {}

    TerrainPoints points() {
        return {.latitude = latitude,
                .longitude = longitude,
                .height = height,
                .x = x,
                .y = y,
                .z = z,
                .localIncidence = localIncidence,
                .mask = mask,
                .status = status};
    }
};

Results locate(const Orbit& orbit, const Pixels& pixels, const Terrain& terrain, const Extent& extent,
               AmongSeveral choice = AmongSeveral::smallestLookAngle, LookSide side = LookSide::right) {
    Results results(extent.lines * extent.samples);
    pixelToTerrain(orbit, side, extent, pixels, terrain, results.points(), choice);
    return results;
}

std::vector<double> ranges(double first, double last, std::size_t count) {
    std::vector<double> all(count);
    for (std::size_t i = 0; i < count; ++i) {
        all[i] = first + (last - first) * static_cast<double>(i) / static_cast<double>(count - 1);
    }
    return all;
}

// Cone, step up and down, ramps steeper than the look angle (25 degrees: tan 0.53), flat sea, and noise.
const std::vector<std::function<double(double)>> kProfiles{
    [](double column) { return std::max(0.0, 1500.0 - 40.0 * std::abs(column - 300.0)); },
    [](double column) { return std::max(0.0, 3000.0 - 60.0 * std::abs(column - 300.0)); },
    [](double column) { return column > 250.0 && column < 300.0 ? 800.0 : -20.0; },
    [](double column) { return std::clamp((column - 200.0) * 70.0, 0.0, 4000.0); },
    [](double column) { return std::clamp((300.0 - column) * 230.0, 0.0, 4000.0); },
    [](double /*column*/) { return 0.0; },
    [](double column) { return 300.0 * std::sin(column * 0.9) + 500.0 * std::sin(column * 0.11); },
    [random = Random(5)](double /*column*/) mutable { return random.uniform(-100.0, 2000.0); },
};

TEST(Terrain, LayoverAndShadowAreThoseOfAMarchAlongEveryRange) {
    std::size_t several = 0;
    std::size_t shadows = 0;
    std::size_t compared = 0;
    for (const double longitude : {10.0, 176.8}) {  // the second strip crosses the antimeridian
        const Orbit orbit = overEquator(longitude);
        for (const auto& profile : kProfiles) {
            const Strip strip(longitude, profile);
            const Terrain terrain(strip.values, strip.grid);
            const BruteForce march(strip);
            const std::vector<double> range = ranges(strip.rangeTo(60, 0.0), strip.rangeTo(540, 0.0), 500);
            const std::vector<double> time{0.0};
            const Pixels pixels{time, range};
            const Extent extent{1, range.size()};
            const Results near = locate(orbit, pixels, terrain, extent);
            const Results far = locate(orbit, pixels, terrain, extent, AmongSeveral::greatestLookAngle);
            for (std::size_t i = 0; i < range.size(); ++i) {
                const March expected = march.at(range[i]);
                if (expected.close) {
                    continue;
                }
                ++compared;
                const std::size_t seen = expected.visible.size();
                several += seen > 1 ? 1 : 0;
                shadows += expected.hidden.empty() ? 0 : 1;
                ASSERT_EQ(near.status[i], seen > 1                  ? Status::layover
                                          : seen == 1               ? Status::ok
                                          : expected.hidden.empty() ? Status::outside_terrain
                                                                    : Status::hidden)
                    << i;
                ASSERT_EQ(near.mask[i], (seen > 1 ? kLayoverMask : 0) | (expected.hidden.empty() ? 0 : kShadowMask))
                    << i;
                if (seen > 0) {
                    const auto column = [&](double lon) {
                        return std::remainder(lon - strip.grid.west, 360.0) / Strip::kStep;
                    };
                    ASSERT_NEAR(column(near.longitude[i]), expected.visible.front(), 1.0 / BruteForce::kParts);
                    ASSERT_NEAR(column(far.longitude[i]), expected.visible.back(), 1.0 / BruteForce::kParts);
                    ASSERT_NEAR(near.height[i], strip.heightAt(column(near.longitude[i])), kHeight);
                    ASSERT_NEAR(strip.rangeTo(column(near.longitude[i]), near.height[i]), range[i], 1e-6);
                }
            }
        }
    }
    EXPECT_GT(several, 700U);
    EXPECT_GT(shadows, 300U);
    EXPECT_GT(compared, 7000U);
}

/// Hills over 2 by 2 degrees, to the side of where the satellite of overEquator(0) is after 900 s.
struct Hills {
    static constexpr std::size_t kSize = 601;
    RasterGrid grid{55.6, 0.0, 1.0 / 300.0, 1.0 / 300.0, kSize, kSize};
    std::vector<double> values;

    Hills(double west, double roughness) : values(kSize * kSize) {
        grid.west = west;
        Random random(7);
        for (std::size_t i = 0; i < kSize; ++i) {
            for (std::size_t j = 0; j < kSize; ++j) {
                const auto x = static_cast<double>(i);
                const auto y = static_cast<double>(j);
                values[i * kSize + j] = std::round(700.0 + 500.0 * std::sin(x * 0.05) * std::cos(y * 0.07) +
                                                   random.uniform(-roughness, roughness));
            }
        }
    }
};

/// Pixels of random times, ranges and rates, most of them over the hills.
struct RandomPixels {
    std::vector<double> time, range, rate;

    explicit RandomPixels(std::size_t count) {
        Random random(11);
        for (std::size_t i = 0; i < count; ++i) {
            time.push_back(random.uniform(890.0, 910.0));
            range.push_back(random.uniform(770e3, 840e3));
            rate.push_back(random.uniform(-150.0, 150.0));
        }
    }

    Pixels pixels() const {
        return {time, range, rate};
    }
};

TEST(Terrain, PointsHaveTheRangeTheRateAndTheHeightOfTheSurface) {
    const Orbit orbit = overEquator(0.0, 900.0);
    const RandomPixels random(3000);
    for (const LookSide side : {LookSide::left, LookSide::right}) {
        const Hills hills(side == LookSide::right ? 5.0 : -7.0, 30.0);
        const Terrain terrain(hills.values, hills.grid);
        const Results found =
            locate(orbit, random.pixels(), terrain, {1, random.time.size()}, AmongSeveral::smallestLookAngle, side);
        std::vector<double> surface(found.height.size());
        terrain.heights(found.latitude, found.longitude, surface);
        std::size_t locatedPoints = 0;
        for (std::size_t i = 0; i < random.time.size(); ++i) {
            if (!located(found.status[i])) {
                EXPECT_TRUE(std::isnan(found.x[i]) && std::isnan(found.latitude[i]) && std::isnan(found.height[i]));
                continue;
            }
            ++locatedPoints;
            const State s = orbit.at(random.time[i]);
            const double dx = found.x[i] - s.x;
            const double dy = found.y[i] - s.y;
            const double dz = found.z[i] - s.z;
            const double range = std::sqrt(dx * dx + dy * dy + dz * dz);
            EXPECT_NEAR(range, random.range[i], 1e-6);
            EXPECT_NEAR(-(dx * s.vx + dy * s.vy + dz * s.vz) / range, random.rate[i], 1e-6);
            EXPECT_EQ(dx * s.vy - dy * s.vx < 0.0, side == LookSide::left);
            EXPECT_NEAR(found.height[i], surface[i], kHeight);

            const double sine = std::sin(found.latitude[i] * kDegree);
            const double cosine = std::cos(found.latitude[i] * kDegree);
            const double e2 = kFlattening * (2.0 - kFlattening);
            const double normal = kEquator / std::sqrt(1.0 - e2 * sine * sine);
            EXPECT_NEAR((normal * (1.0 - e2) + found.height[i]) * sine, found.z[i], 2e-6);
            EXPECT_NEAR((normal + found.height[i]) * cosine * std::cos(found.longitude[i] * kDegree), found.x[i], 2e-6);
        }
        EXPECT_GT(locatedPoints, 2000U);
    }
}

// What is found for whole lines at once is what is found for each pixel by itself, to the bit, on every instruction
// set.
TEST(Terrain, LinesAreTheSameAsPixels) {
    const Orbit orbit = overEquator(0.0, 900.0);
    const Extent extent{9, 700};
    const std::vector<double> range = ranges(790e3, 794e3, extent.samples);
    const std::vector<double> time = ranges(899.99, 900.01, extent.lines);
    std::vector<double> times;
    for (std::size_t i = 0; i < extent.lines * extent.samples; ++i) {
        times.push_back(time[i / extent.samples]);
    }
    std::set<Status> statuses;
    for (const double roughness : {0.0, 10.0, 60.0, 400.0}) {
        for (const double rate : {0.0, 40.0}) {
            const std::vector<double> rates{rate};
            const Hills hills(5.0, roughness);
            const std::vector<float> floats(hills.values.begin(), hills.values.end());
            const Terrain terrain(floats, hills.grid);
            const Results pixels = locate(orbit, {times, range, rates}, terrain, extent);
            for (const InstructionSet set : instructionSets()) {
                Results lines(times.size());
                pixelToTerrain(orbit, LookSide::right, extent, {time, range, rates}, terrain, lines.points(),
                               AmongSeveral::smallestLookAngle, {.instructionSet = set});
                for (std::size_t i = 0; i < times.size(); ++i) {
                    ASSERT_EQ(lines.status[i], pixels.status[i]) << i;
                    ASSERT_EQ(lines.mask[i], pixels.mask[i]) << i;
                    if (located(pixels.status[i])) {
                        ASSERT_EQ(lines.height[i], pixels.height[i]) << i;
                        ASSERT_EQ(lines.latitude[i], pixels.latitude[i]) << i;
                        ASSERT_EQ(lines.longitude[i], pixels.longitude[i]) << i;
                        ASSERT_EQ(lines.localIncidence[i], pixels.localIncidence[i]) << i;
                    }
                }
            }
            statuses.insert(pixels.status.begin(), pixels.status.end());
        }
    }
    EXPECT_TRUE(statuses.contains(Status::layover) && statuses.contains(Status::ok));
}

// The raster's own points, which are where folds begin and end, forward to the radar and back.
TEST(Terrain, PointsOfTheRasterComeBack) {
    const Orbit orbit = overEquator(0.0, 900.0);
    const Hills hills(5.0, 110.0);
    const Terrain terrain(hills.values, hills.grid);
    std::vector<double> latitude, longitude, height;
    for (std::size_t i = 280; i < 310; ++i) {
        for (std::size_t j = 100; j < 500; ++j) {
            latitude.push_back(hills.grid.north - static_cast<double>(i) * hills.grid.latitudeStep);
            longitude.push_back(hills.grid.west + static_cast<double>(j) * hills.grid.longitudeStep);
            height.push_back(hills.values[i * Hills::kSize + j]);
        }
    }
    std::vector<double> time(height.size()), range(height.size());
    groundToPixel(orbit, LookSide::right, {.latitude = latitude, .longitude = longitude, .height = height}, {},
                  {.time = time, .slantRange = range});
    const Results back = locate(orbit, {time, range}, terrain, {1, time.size()});
    std::size_t unmasked = 0;
    for (std::size_t i = 0; i < time.size(); ++i) {
        if (back.mask[i] == 0 && located(back.status[i])) {
            ++unmasked;
            const double off = std::hypot((back.latitude[i] - latitude[i]) * 111e3,
                                          (back.longitude[i] - longitude[i]) * 65e3, back.height[i] - height[i]);
            EXPECT_LT(off, 1e-6) << i;
        }
    }
    EXPECT_GT(unmasked, 4000U);
    EXPECT_LT(unmasked, 11900U);
}

TEST(Terrain, LocalIncidenceIsThatOfTheSlope) {
    const Orbit orbit = overEquator(0.0);
    const double slope = 10.0;  // m a column
    const Strip strip(0.0, [&](double column) { return slope * column; });
    const Terrain terrain(strip.values, strip.grid);
    const std::vector<double> time{0.0};
    const std::vector<double> range{strip.rangeTo(250.5, strip.heightAt(250.5))};
    const Results found = locate(orbit, {time, range}, terrain, {1, 1});
    const double column = 1.0;
    const double rise = std::atan(slope * column / ((kEquator + strip.heightAt(250.5)) * Strip::kStep * kDegree));
    const double central = (Strip::kWest + 250.5 * Strip::kStep) * kDegree;
    const double look = strip.lookAngleTo(250.5, strip.heightAt(250.5));
    EXPECT_NEAR(found.localIncidence[0], (look + central - rise) / kDegree, 1e-9);
}

TEST(Terrain, HolesAndTheLandOutsideAreNotGuessed) {
    const Orbit orbit = overEquator(0.0);
    // A pit and a peak, so that circles begin and end far from the surface, and some of them beyond the raster.
    Strip strip(0.0, [](double column) {
        return column >= 200.0 && column <= 240.0 ? kNaN : column == 100.0 ? -2000.0 : column == 150.0 ? 2000.0 : 100.0;
    });
    for (float& value : strip.values) {
        value = std::isnan(value) ? -32768.0F : value;
    }
    const std::vector<std::int16_t> integers(strip.values.begin(), strip.values.end());
    const std::vector<double> columns{-10.0, 3.0, 198.9, 199.1, 220.0, 240.9, 241.1, 598.9, 599.1};
    const std::vector<Status> expected{
        Status::outside_terrain, Status::ok, Status::ok, Status::hole_in_terrain, Status::hole_in_terrain,
        Status::hole_in_terrain, Status::ok, Status::ok, Status::outside_terrain};
    std::vector<double> range(columns.size());
    std::transform(columns.begin(), columns.end(), range.begin(),
                   [&](double column) { return strip.rangeTo(column, 100.0); });
    const std::vector<double> time{0.0};
    const Extent extent{1, range.size()};
    const Results real = locate(orbit, {time, range}, Terrain(strip.values, strip.grid, -32768.0), extent);
    const Results whole = locate(orbit, {time, range}, Terrain(integers, strip.grid, -32768.0), extent);
    EXPECT_EQ(real.status, expected);
    EXPECT_EQ(whole.status, expected);
    EXPECT_EQ(real.longitude[2], whole.longitude[2]);
}

TEST(Terrain, BadInputsGetTheirStatusAndNothingElse) {
    const Orbit orbit = overEquator(0.0);
    const Strip strip(0.0, [](double /*column*/) { return 0.0; });
    const Terrain terrain(strip.values, strip.grid);
    const double good = strip.rangeTo(300.0, 0.0);
    const std::vector<double> time{0.0, kNaN, 30.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
    const std::vector<double> range{good, good, good, kNaN, -1.0, 600e3, 4e6, 1e9, good};
    const std::vector<double> rate{0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 8000.0};
    const Results found = locate(orbit, {time, range, rate}, terrain, {1, time.size()});
    const std::vector<Status> expected{
        Status::ok,        Status::bad_input,       Status::outside_orbit,  Status::bad_input,
        Status::bad_input, Status::range_too_short, Status::beyond_horizon, Status::beyond_horizon,
        Status::bad_input};
    EXPECT_EQ(found.status, expected);

    Results few(2);
    EXPECT_THROW(pixelToTerrain(orbit, LookSide::right, {1, 3}, {time, range}, terrain, few.points()),
                 std::invalid_argument);
    RasterGrid wide = strip.grid;
    wide.rows = 6;
    EXPECT_THROW(Terrain(strip.values, wide), std::invalid_argument);
    wide = strip.grid;
    wide.latitudeStep = -wide.latitudeStep;
    EXPECT_THROW(Terrain(strip.values, wide), std::invalid_argument);
}

// Values of any bits, cliffs of kilometres, holes everywhere: every pixel comes back, and with the same bits whether
// alone, among others, or on several threads.
TEST(Terrain, GarbageEndsAndNeighboursDoNotMatter) {
    const Orbit orbit = overEquator(0.0, 900.0);
    const RandomPixels random(400);
    const Extent extent{1, random.time.size()};
    std::set<Status> statuses;
    for (const unsigned rarity : {2U, 40U, 100000U}) {
        Hills hills(5.0, 4000.0);
        Random bits(3);
        for (double& value : hills.values) {
            const double any[] = {kNaN, std::numeric_limits<double>::infinity(), 1e300, -9000.0, 1e-310};
            value = bits.oneIn(rarity) ? bits.oneOf(any) : value;
        }
        const Terrain terrain(hills.values, hills.grid);
        const Results all = locate(orbit, random.pixels(), terrain, extent);
        Results threaded(random.time.size());
        pixelToTerrain(orbit, LookSide::right, extent, random.pixels(), terrain, threaded.points(),
                       AmongSeveral::smallestLookAngle, {.threads = 3});
        for (std::size_t i = 0; i < random.time.size(); ++i) {
            const Results alone = locate(orbit,
                                         {std::span(random.time).subspan(i, 1), std::span(random.range).subspan(i, 1),
                                          std::span(random.rate).subspan(i, 1)},
                                         terrain, {1, 1});
            statuses.insert(all.status[i]);
            ASSERT_EQ(alone.status[0], all.status[i]);
            ASSERT_EQ(threaded.status[i], all.status[i]);
            if (located(all.status[i])) {
                ASSERT_EQ(alone.x[0], all.x[i]);
                ASSERT_EQ(alone.longitude[0], all.longitude[i]);
                ASSERT_EQ(threaded.latitude[i], all.latitude[i]);
            }
        }
    }
    EXPECT_FALSE(statuses.contains(Status::not_converged));
    EXPECT_TRUE(statuses.contains(Status::layover) && statuses.contains(Status::hole_in_terrain));
}

TEST(Terrain, HeightsAreBilinearAcrossTheAntimeridianAndAroundTheEarth) {
    const std::vector<float> values{0.0F, 10.0F, 20.0F, 40.0F, 100.0F, 110.0F, 120.0F, kNaN};
    const auto heightOn = [&](const RasterGrid& grid, double latitude, double longitude, Status expected) {
        const Terrain terrain(values, grid);
        std::vector<double> height(1);
        std::vector<Status> status(1);
        terrain.heights(std::vector{latitude}, std::vector{longitude}, height, status);
        EXPECT_EQ(status[0], expected) << latitude << " " << longitude;
        EXPECT_EQ(std::isnan(height[0]), expected != Status::ok);
        return height[0];
    };
    const RasterGrid across{2.0, 179.0, 1.0, 1.0, 2, 4};
    EXPECT_NEAR(heightOn(across, 1.75, -179.5, Status::ok), 40.0, 1e-9);
    EXPECT_NEAR(heightOn(across, 1.75, 180.5, Status::ok), 40.0, 1e-9);
    EXPECT_NEAR(heightOn(across, 2.0, 179.0, Status::ok), 0.0, 1e-9);
    EXPECT_NEAR(heightOn(across, 1.0, -539.5, Status::ok), 115.0, 1e-9);
    heightOn(across, 1.5, -178.5, Status::hole_in_terrain);
    heightOn(across, 1.5, 178.9, Status::outside_terrain);
    heightOn(across, 2.1, 180.0, Status::outside_terrain);
    heightOn(across, kNaN, 180.0, Status::bad_input);

    const RasterGrid around{1.0, 0.0, 1.0, 120.0, 2, 3, 4};
    EXPECT_NEAR(heightOn(around, 0.5, -60.0, Status::ok), 60.0, 1e-9);
    const RasterGrid corner = RasterGrid::fromCorner(10.0, -20.0, 2.0, 4.0, 2, 4);
    EXPECT_NEAR(heightOn(corner, 8.0, -16.0, Status::ok), 55.0, 1e-9);
}

TEST(Terrain, BlocksOfLinesMakeUpTheScene) {
    const Orbit orbit = overEquator(0.0, 900.0);
    const Hills hills(5.0, 30.0);
    const Terrain terrain(hills.values, hills.grid);
    const Extent extent{7, 50};
    const std::vector<double> time = ranges(899.0, 901.0, extent.lines);
    const std::vector<double> range = ranges(780e3, 830e3, extent.samples);
    const Results whole = locate(orbit, {time, range}, terrain, extent);
    std::size_t points = 0;
    terrainGrid(orbit, LookSide::right, extent, {time, range}, terrain, 3, [&](const TerrainGridBlock& block) {
        ASSERT_EQ(block.firstLine * extent.samples, points);
        ASSERT_EQ(block.latitude.size(), block.extent.lines * extent.samples);
        for (std::size_t i = 0; i < block.latitude.size(); ++i, ++points) {
            ASSERT_EQ(block.status[i], whole.status[points]);
            ASSERT_EQ(block.mask[i], whole.mask[points]);
            ASSERT_TRUE(!located(block.status[i]) || block.longitude[i] == whole.longitude[points]);
        }
    });
    EXPECT_EQ(points, extent.lines * extent.samples);
}

}  // namespace terrain_test
