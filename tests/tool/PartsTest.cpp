// What the command is made of.

#include "InertialFrame.h"
#include "Outline.h"
#include "Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>

using vorbel::scene::Instant;
using namespace vorbel::tool;

TEST(Text, NumbersHaveTheirDecimalsAndNoNegativeZero) {
    EXPECT_EQ(fixed(-60.337120403, 9), "-60.337120403");
    EXPECT_EQ(fixed(0.0625, 6), "0.062500");
    EXPECT_EQ(fixed(-0.99996, 4), "-1.0000");
    EXPECT_EQ(fixed(-4e-10, 9), "0.000000000");
    EXPECT_EQ(fixed(1e16, 1), "10000000000000000.0");  // beyond what goes by whole units
    EXPECT_EQ(fixed(std::numeric_limits<double>::quiet_NaN(), 3), "");
}

TEST(Text, TimesPassMidnightBothWays) {
    UtcText utc(Instant::of(2022, 12, 31, 23, 59, 59.25));
    std::string text;
    for (const double seconds : {0.5, 0.7500000004, -86400.0, 1e300}) {
        utc.append(text, seconds);
        text += ' ';
    }
    EXPECT_EQ(text, "2022-12-31T23:59:59.750000000 2023-01-01T00:00:00.000000000 2022-12-30T23:59:59.250000000  ");
}

TEST(Ut1, IsThatOfAnOrbitFileAndLeapsWithUtc) {
    // the precise orbit file of 2022 August 28 says so
    EXPECT_NEAR(ut1MinusUtc(Instant::of(2022, 8, 28, 4)), -0.014542, 0.006);
    const Instant leap = Instant::of(2017, 1, 1);
    EXPECT_NEAR(ut1MinusUtc(leap) - ut1MinusUtc(leap.later(-1.0)), 1.0, 1e-3);
    EXPECT_TRUE(hasUt1(leap));
    EXPECT_FALSE(hasUt1(Instant::of(2013, 12, 31)));
    EXPECT_FALSE(hasUt1(Instant::of(2040, 1, 1)));
}

TEST(Outline, GoesCounterclockwiseAndIsCutAtTheAntimeridian) {
    const Ring counterclockwise{{10, 0}, {12, 0}, {12, 1}, {10, 1}, {10, 0}};
    EXPECT_EQ(outline({{10, 0}, {12, 0}, {12, 1}, {10, 1}}), std::vector<Ring>{counterclockwise});
    EXPECT_EQ(outline({{10, 1}, {12, 1}, {12, 0}, {10, 0}}), std::vector<Ring>{counterclockwise});

    // clockwise from east of the antimeridian, its sides rising by a degree in the four degrees across it
    const auto rings = outline({{-179, 3}, {-179, 1}, {177, 0}, {177, 2}});
    ASSERT_EQ(rings.size(), 2U);
    const auto has = [](const Ring& ring, const Corner& corner) {
        return std::find(ring.begin(), ring.end(), corner) != ring.end();
    };
    for (const Ring& ring : rings) {
        const bool east = has(ring, {177, 0});
        const double meridian = east ? 180 : -180;
        EXPECT_EQ(ring.size(), 5U);
        EXPECT_EQ(ring.front(), ring.back());
        EXPECT_TRUE(has(ring, {meridian, 0.75}) && has(ring, {meridian, 2.75}));
        EXPECT_TRUE(east ? has(ring, {177, 2}) : has(ring, {-179, 1}) && has(ring, {-179, 3}));
        double area = 0.0;
        for (std::size_t i = 1; i < ring.size(); ++i) {
            area += ring[i - 1].longitude * ring[i].latitude - ring[i].longitude * ring[i - 1].latitude;
        }
        EXPECT_NEAR(area / 2, east ? 6.0 : 2.0, 1e-9);
    }
    EXPECT_THROW(outline({{0, 80}, {100, 80}, {-160, 80}, {-60, 80}}), std::runtime_error);
}
