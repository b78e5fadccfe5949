#include "Extracts.h"

#include <vorbel/products/Annotation.h>

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using namespace vorbel::products;

// One figure of each list: a field read from another's element shows.
TEST(Annotation, TakesEveryFieldFromItsElement) {
    const Annotation a = readAnnotation(kBursts);
    EXPECT_EQ(a.mission + a.productType + a.mode + a.swath + a.polarisation + a.pass, "S1ASLCIWIW1HHDescending");
    EXPECT_EQ(a.absoluteOrbit, 42768);
    EXPECT_EQ(a.kind, ImageKind::bursts);
    EXPECT_EQ(a.stopTime.text(), "2022-04-14T10:22:36.888909");
    EXPECT_EQ(a.samples, 21169);
    EXPECT_EQ(a.rangePixelSpacing, 2.329562);
    EXPECT_NEAR(wavelength(a), 0.0554657, 1e-7);
    EXPECT_EQ(a.azimuthSteeringRate, 1.590368784);
    EXPECT_TRUE(a.bistaticCorrected);
    EXPECT_EQ(a.topsFilterConvention, "Only Echo Lines");
    EXPECT_EQ(a.orbitSource + a.attitudeSource, "AuxiliaryDownlink");
    EXPECT_EQ(a.ellipsoidSemiMinorAxis, 6356752.314245);
    ASSERT_EQ(a.downlinks.size(), 1U);
    EXPECT_EQ(a.downlinks[0].pulseRepetitionFrequency, 1717.128973878037);
    EXPECT_EQ(a.downlinks[0].rank, 9);
    ASSERT_EQ(a.antennaPatterns.size(), 10U);
    EXPECT_EQ(a.antennaPatterns[0].roll, 29.93595854199524);
    EXPECT_EQ(a.antennaPatterns[0].terrainHeight, 453.86700525);
    ASSERT_EQ(a.terrainHeights.size(), 5U);
    EXPECT_EQ(a.terrainHeights[0].height, 397.9257891666667);

    ASSERT_EQ(a.vectors.size(), 16U);
    const auto& s = a.vectors[0].state;
    EXPECT_EQ((std::vector{s.x, s.y, s.z, s.vx, s.vy, s.vz}),
              (std::vector{2454823.841333, -3302515.651407, 5746540.991056, 1820.3649, -6029.571036, -4232.879633}));
    ASSERT_EQ(a.attitude.size(), 26U);
    const auto& t = a.attitude[0];
    EXPECT_EQ((std::vector{t.q0, t.q1, t.q2, t.q3, t.roll, t.pitch, t.yaw}),
              (std::vector{0.2609344, 0.3735838, 0.2161015, 0.8635094, -16.80854505629133, -52.35320346100081,
                           36.40797205829904}));
    EXPECT_NEAR(std::hypot(t.wx, t.wy, t.wz), 2 * M_PI / 5924.6, 5e-6);  // rad/s, the rate of the orbit
    ASSERT_EQ(a.dopplerCentroids.size(), 11U);
    EXPECT_EQ(a.dopplerCentroids[0].referenceTime, 5.357127927131715e-3);
    EXPECT_EQ(a.dopplerCentroids[0].geometry, (std::vector{1.857158, -117.2194, 7.853870}));
    EXPECT_EQ(a.dopplerCentroids[0].data, (std::vector{6.842789, 9857.615, -1.665294e7}));
    ASSERT_EQ(a.frequencyRates.size(), 11U);
    EXPECT_EQ(a.frequencyRates[0].coefficients[1], 449649.8190455896);
    ASSERT_EQ(a.bursts.size(), 9U);
    EXPECT_EQ(a.bursts[0].sensingTime.text(), "2022-04-14T10:22:12.889224");
    EXPECT_EQ(a.bursts[0].firstValidLine, -1);
    const Burst& b = a.bursts[1];  // as counted in the file's lists
    EXPECT_EQ((std::vector{b.firstValidLine, b.lastValidLine, b.firstValidSample, b.lastValidSample}),
              (std::vector{19, 1481, 460, 20867}));
    ASSERT_EQ(a.grid.size(), 15U);
    const GridPoint& g = a.grid[0];
    EXPECT_EQ(
        (std::vector{g.latitude, g.longitude, g.height, g.incidenceAngle, g.elevationAngle}),
        (std::vector{51.50723309583149, -60.24826879672774, 364.9805947924033, 30.41996676484543, 27.12768832817226}));

    const Annotation ground = readAnnotation(kGround);
    ASSERT_EQ(ground.groundRange.size(), 7U);
    EXPECT_EQ(ground.groundRange[0].slantOrigin, 802849.6949070616);
    EXPECT_EQ(ground.groundRange[0].slantToGround[1], 1.967233063394708);
    EXPECT_EQ(ground.groundRange[0].groundToSlant[1], 0.5083202249809083);
}

TEST(Annotation, ReadsTheFrequencyRatesOfTheFirstYears) {
    std::string text = content(kBursts);
    const std::size_t begin = text.find("<azimuthFmRatePolynomial");
    const std::string_view end = "</azimuthFmRatePolynomial>";
    text.replace(begin, text.find(end) + end.size() - begin, "<c0>-2300.5</c0> <c1>4.5e5</c1> <c2>-7.9e7</c2>");
    EXPECT_EQ(parseAnnotation(text).frequencyRates[0].coefficients, (std::vector{-2300.5, 4.5e5, -7.9e7}));
}

TEST(Annotation, RefusesInOneSentenceThatNamesTheFault) {
    const std::string good = content(kBursts);
    std::string nested;
    for (int i = 0; i < 1'000'000; ++i) {
        nested += "<product>";
    }
    std::string closed = nested;
    for (int i = 0; i < 1'000'000; ++i) {
        closed += "</product>";
    }
    std::string marks;
    marks.resize(9'000'000, '=');
    std::string blanks;
    blanks.resize((std::size_t{64} << 20U) + 1, ' ');
    const std::string x = "<x>2.454823841333000e+06</x>";
    const std::pair<std::string, std::string> cases[] = {
        {"", "f is empty"},
        {"\n ", "f is empty"},
        {good.substr(0, good.size() / 2), "f is cut or no XML: "},
        {std::string("\0\xff<", 3), "f is cut or no XML: "},
        {content(kOrbit), "f is no annotation file of a Sentinel-1 product: its outermost element is "
                          "'Earth_Explorer_File', not 'product'"},
        {"<product/>", "f: adsHeader is missing"},
        {with(good, "<orbit>", "<track>"), "f is cut or no XML: "},
        {with(with(good, "<orbitList", "<orbits"), "</orbitList", "</orbits"),
         "f has 0 orbit vectors, not two or more"},
        {with(good, x, "<x>nan</x>"),
         "f: generalAnnotation/orbitList/orbit[1]/position/x is 'nan', not a finite number"},
        {with(good, x, "<x>1e999</x>"), "orbit[1]/position/x is '1e999', not a finite"},
        {with(good, x, "<x/>"), "orbit[1]/position/x is '', not a finite number"},
        {with(good, x, ""), "orbit[1]/position/x is missing"},
        {with(good, "<time>2022-04-14T10:21:17", "<time>2022-13-14T10:21:17"),
         "orbit[2]/time is '2022-13-14T10:21:17.036420', not a time such as 2022-04-14T10:22:07.036419"},
        {with(good, "Earth Fixed", "True of Date"), "orbit[1]/frame is 'True of Date', not 'Earth Fixed'"},
        {with(good, "<numberOfLines>13500", "<numberOfLines>13501"),
         "f has 9 bursts of 1500 lines, not the 13501 lines of its image"},
        {with(good, "<numberOfSamples>21169", "<numberOfSamples>0"), "numberOfSamples is '0', not positive"},
        {with(good, "<azimuthTimeInterval>2", "<azimuthTimeInterval>-2"), "is '-2.055556299999998e-03', not positive"},
        {nested, "f is cut or no XML: "},
        {closed, "f: adsHeader is missing"},
        {marks, "f has millions of elements: no annotation or orbit file"},
        {blanks, "f is larger than 64 MiB: no annotation or orbit file"},
    };
    for (const auto& [text, message] : cases) {
        const std::string said = refusal<std::runtime_error>([&, &bad = text] { parseAnnotation(bad, "f"); });
        EXPECT_NE(said.find(message), std::string::npos) << said << "\nnot\n" << message;
        EXPECT_LT(said.size(), 200U);
    }
    EXPECT_EQ(refusal<std::runtime_error>([] { readAnnotation("/nowhere/at.xml"); }),
              "/nowhere/at.xml cannot be opened");
    EXPECT_EQ(refusal<std::runtime_error>([] { readAnnotation("/"); }), "/ is a folder, not a file");
}
