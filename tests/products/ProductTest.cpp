#include "Extracts.h"

#include <vorbel/products/Product.h>
#include <vorbel/scene/PixelToGround.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using namespace vorbel;
using namespace vorbel::products;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// The greatest distance in m between the points of a product's grid and where their lines and pixels are located.
double worstDistance(const Product& product) {
    double worst = 0.0;
    for (const GridPoint& g : product.annotation.grid) {
        const RadarPosition radar = product.mapping.toRadar({g.line, g.pixel});
        double latitude = kNaN;
        double longitude = kNaN;
        pixelToGround(product.orbit, product.side, {1, 1},
                      {.time = {&radar.time, 1}, .slantRange = {&radar.slantRange, 1}, .height = {&g.height, 1}},
                      {.latitude = {&latitude, 1}, .longitude = {&longitude, 1}});
        const double metres = 111319.5;  // in a degree on the equator
        const double north = (latitude - g.latitude) * metres;
        const double east = std::remainder(longitude - g.longitude, 360.0) * metres * std::cos(g.latitude * M_PI / 180);
        const double distance = std::hypot(north, east);
        worst = distance <= worst ? worst : distance;  // keeps not-a-number
    }
    return worst;
}

}  // namespace

// The grids are rounded to 1 us. Those of two of the products follow from a pixel spacing of seven digits, and that of
// Hawaii is 12 us off in its last line.
TEST(Product, AgreesWithItsGeolocationGrid) {
    struct Case {
        std::string file;
        double time, uncorrected, range, distance;  // s, s, m, m
    };
    const Case cases[] = {{kBursts, 0.9e-6, 252e-6, 3e-10, 0.0115},
                          {kHawaii, 12.3e-6, 275e-6, 3.95e-3, 0.084},
                          {kStripmap, 0.71e-6, 71.6e-6, 1.27e-3, 0.012},
                          {kGround, 1.7e-6, 261e-6, 3e-10, 0.0075}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        const Product product = makeProduct(readAnnotation(c.file));
        const GridAgreement agreement = compareWithGrid(product.mapping, product.annotation);
        EXPECT_EQ(agreement.points, product.annotation.grid.size());
        EXPECT_LT(agreement.worstTime, c.time);
        EXPECT_LT(agreement.rmsTime, agreement.worstTime);
        EXPECT_LT(agreement.worstRange, c.range);
        EXPECT_LT(worstDistance(product), c.distance);
        const PixelMapping uncorrected(product.annotation, Bistatic::uncorrected);
        EXPECT_NEAR(compareWithGrid(uncorrected, product.annotation).worstTime, c.uncorrected, 1e-6);
    }
}

TEST(Product, LiesWithinCentimetresOnAnOrbitFile) {
    const OrbitFile orbit = readOrbitFile(kOrbit);
    const Product product = makeProduct(readAnnotation(kHawaii), orbit);
    EXPECT_LT(worstDistance(product), 0.070);
    EXPECT_NE(worstDistance(product), worstDistance(makeProduct(readAnnotation(kHawaii))));
    EXPECT_NE(refusal<std::runtime_error>([&] { makeProduct(readAnnotation(kBursts), orbit); }).find("does not cover"),
              std::string::npos);
    Annotation other = readAnnotation(kHawaii);
    other.mission = "S1B";
    EXPECT_NE(refusal<std::runtime_error>([&] { makeProduct(other, orbit); }).find("is of the satellite S1A, not S1B"),
              std::string::npos);
    other.vectors.resize(1);
    EXPECT_EQ(refusal<std::runtime_error>([&] { makeProduct(other); }).find(other.source + ": "), 0U);
}

TEST(PixelMapping, GoesThereAndBackOverTheWholeImage) {
    for (const std::string& file : {kBursts, kStripmap, kGround}) {
        SCOPED_TRACE(file);
        const Annotation a = readAnnotation(file);
        const PixelMapping mapping(a);
        std::vector<double> lines, pixels;
        for (int i = 0; i <= 200; ++i) {
            for (int k = 0; k <= 7; ++k) {
                lines.push_back(-0.49 + (a.lines - 0.02) * (i / 200.0));
                pixels.push_back(-0.49 + (a.samples - 0.02) * (k / 7.0));
            }
        }
        const std::size_t n = lines.size();
        std::vector<double> time(n), range(n), line(n), pixel(n), other(n);
        mapping.toRadar(lines, pixels, time, range);
        mapping.toImage(time, range, line, pixel, other);
        for (std::size_t i = 0; i < n; ++i) {
            const double miss = std::fmin(std::abs(line[i] - lines[i]), std::abs(other[i] - lines[i]));
            EXPECT_LT(miss, 1e-6) << lines[i] << " " << pixels[i];
            EXPECT_NEAR(pixel[i], pixels[i], 1e-6);
        }
    }
}

TEST(PixelMapping, FindsBothBurstsThatSawAPoint) {
    const Annotation a = readAnnotation(kBursts);
    const PixelMapping mapping(a);
    // a row of burst 4 at the time of a row of burst 3
    const double step = a.bursts[4].time.since(a.bursts[3].time) / a.lineInterval;
    ASSERT_GT(1500 - step, 100);  // lines of overlap
    for (const double row : {5.0, 100.0}) {
        const ImagePosition in4{4 * 1500 + row, 7000};
        const double lineIn3 = 3 * 1500 + step + row;
        const bool deeperIn3 = 1499 - (step + row) > row;
        EXPECT_EQ(deeperIn3, row == 5.0);
        const ImagePositions found = mapping.toImage(mapping.toRadar(in4));
        ASSERT_EQ(found.count, 2);
        EXPECT_NEAR(found.at[0].line, deeperIn3 ? lineIn3 : in4.line, 1e-5);
        EXPECT_NEAR(found.at[1].line, deeperIn3 ? in4.line : lineIn3, 1e-5);
        EXPECT_NEAR(found.at[1].pixel, 7000, 1e-6);
    }
    EXPECT_EQ(mapping.toImage(mapping.toRadar({4 * 1500 + 750, 7000})).count, 1);
}

TEST(PixelMapping, AnswersNothingOutsideTheImage) {
    const double inf = std::numeric_limits<double>::infinity();
    for (const std::string& file : {kBursts, kStripmap, kGround}) {
        SCOPED_TRACE(file);
        const Annotation a = readAnnotation(file);
        const PixelMapping mapping(a);
        for (const ImagePosition p : {ImagePosition{-0.51, 0},
                                      {a.lines - 0.49, 0},
                                      {0, -0.51},
                                      {0, a.samples - 0.49},
                                      {kNaN, 0},
                                      {0, kNaN},
                                      {inf, 0},
                                      {0, -inf}}) {
            EXPECT_TRUE(std::isnan(mapping.toRadar(p).time)) << p.line << " " << p.pixel;
            EXPECT_TRUE(std::isnan(mapping.toRadar(p).slantRange)) << p.line << " " << p.pixel;
        }
        const RadarPosition first = mapping.toRadar({0, 0});
        const RadarPosition last = mapping.toRadar({a.lines - 1.0, a.samples - 1.0});
        EXPECT_EQ(mapping.toImage(first).count, 1);
        for (const RadarPosition r : {RadarPosition{first.time - a.lineInterval, first.slantRange},
                                      {last.time + a.lineInterval, last.slantRange},
                                      {first.time, first.slantRange - 10},
                                      {last.time, last.slantRange + 10},
                                      {kNaN, first.slantRange},
                                      {first.time, kNaN},
                                      {inf, inf},
                                      {1e300, -1e300}}) {
            EXPECT_EQ(mapping.toImage(r).count, 0) << r.time << " " << r.slantRange;
        }
    }
    std::vector<double> two(2), one(1);
    const PixelMapping mapping(readAnnotation(kBursts));
    EXPECT_THROW(mapping.toRadar(two, one, two, two), std::invalid_argument);
    EXPECT_THROW(mapping.toImage(two, two, two, two, one), std::invalid_argument);
}

TEST(PixelMapping, TellsTheReferenceOfTheCorrection) {
    // known without a grid where the swath is the middle one
    Annotation stripmap = readAnnotation(kStripmap);
    const double fromGrid = PixelMapping(stripmap).bistaticReference();
    stripmap.grid.clear();
    EXPECT_NEAR(PixelMapping(stripmap).bistaticReference(), fromGrid, 1e-6);
    Annotation bursts = readAnnotation(kBursts);
    bursts.grid.clear();
    EXPECT_NE(refusal<std::runtime_error>([&] { PixelMapping{bursts}; }).find("no geolocation grid"),
              std::string::npos);
    EXPECT_TRUE(std::isnan(PixelMapping(bursts, Bistatic::uncorrected).bistaticReference()));
    std::swap(bursts.bursts[2], bursts.bursts[3]);
    EXPECT_NE(refusal<std::runtime_error>([&] { PixelMapping{bursts}; }).find("order of time"), std::string::npos);

    // a grid whose times are those of the lines has none; one that fits neither way is refused
    const Annotation a = readAnnotation(kBursts);
    const double reference = PixelMapping(a).bistaticReference();
    const auto shifted = [&](double part) {
        Annotation b = a;
        for (GridPoint& g : b.grid) {
            g.time = g.time.later(-part * (g.slantRangeTime - reference) / 2);
        }
        return b;
    };
    EXPECT_TRUE(std::isnan(PixelMapping(shifted(1.0)).bistaticReference()));
    EXPECT_NE(refusal<std::runtime_error>([&] { PixelMapping{shifted(0.5)}; }).find("not by a half or not at all"),
              std::string::npos);
}
