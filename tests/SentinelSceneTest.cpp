#include "Vectors.h"

#include "../examples/sentinel1_scene.h"

#include <vorbel/CVorbel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

// The real scene of the examples. The worst differences are asserted from both sides: they are the limits of the force
// model (J2 only), of the resolution of `time` (4.8e-7 s) and of the figures themselves, and a change of either should
// be seen.

namespace {

TEST(SentinelScene, PointsRangesAndRatesMeetTheProductsGrid) {
    CVorbel orbit;
    orbit.InitLagrange(&kStateBeforeScene, 30.0, 0);
    double worstDistance = 0.0;
    double worstRange = 0.0;
    double worstRate = 0.0;
    for (const auto& [seconds, slantRange, latitude, longitude, metres] : kGrid) {
        SCOPED_TRACE(seconds);
        const double time = timeOfDay(seconds);
        const double height = metres * 1e-3;
        orbit.SetEllipsoid(kWgs84A + height, kWgs84B + height);
        const Geopoint g = orbit.GeoProssess(time, slantRange, 0.0, kLooksRight);
        const double distance = length(positionOf(g) - geodetic(latitude, longitude, height)) * 1e3;  // m
        EXPECT_LT(distance, 0.4);
        worstDistance = std::max(worstDistance, distance);

        double range = 0.0;
        const double rate = orbit.radial_speed(time, latitude, longitude, height, &range) * 1e6;  // mm/s
        EXPECT_LT(std::abs(range - slantRange) * 1e3, 0.06);                                      // m
        EXPECT_LT(std::abs(rate), 4.0);
        worstRange = std::min(worstRange, (range - slantRange) * 1e3);
        worstRate = std::min(worstRate, rate);
    }
    EXPECT_NEAR(worstDistance, 0.238, 0.005);
    EXPECT_NEAR(worstRange, -0.037, 0.001);
    EXPECT_NEAR(worstRate, -2.08, 0.05);
}

TEST(SentinelScene, CentroidMeetsTheProductsGeometryDoppler) {
    CVorbel orbit;
    orbit.InitLagrange(&kStateMidScene, 20.0, 0);  // and seven steps of 10 s back
    double worst = 0.0;
    for (const DopplerEstimate& estimate : kEstimates) {
        SCOPED_TRACE(estimate.seconds);
        const Attitude beam = between(estimate.before, estimate.after, estimate.seconds);
        for (int i = 0; i < 3; ++i) {
            const double rate = orbit.centroid(timeOfDay(estimate.seconds), kSlantRange[i], beam.pitch, beam.yaw,
                                               beam.roll, kLooksRight);
            const double difference = std::abs(dopplerOf(rate) - estimate.productDoppler[i]);
            EXPECT_LT(difference, 0.05);  // Hz, or 1.4 mm/s
            worst = std::max(worst, difference);
        }
    }
    EXPECT_NEAR(worst, 0.0494, 0.0005);
}

}  // namespace
