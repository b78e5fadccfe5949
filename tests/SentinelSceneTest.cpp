#include "Vectors.h"

#include <vorbel/CVorbel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

// A real scene. The figures are those of the annotation of swath IW1, HH, of the product
// S1A_IW_SLC__1SDH_20220414T102209_20220414T102236_042768_051AA4_E677: Copernicus Sentinel data 2022.
// The worst differences are asserted from both sides: they are the limits of the force model (J2 only), of the
// resolution of `time` (4.8e-7 s) and of the figures themselves, and a change of either should be seen.

namespace {

constexpr int kRight = -1;
constexpr double kMidnight = (44664.0 - 1.0) * 86400.0;  // 2022-04-14, 0h UTC

/// State vectors of 10:22:07.036420, before the scene, and 10:22:27.036419, in it.
constexpr fVector kBefore{2557.460552509, -3657.848009796, 5481.070859608,   1.600023313, -5.810531656,
                          -4.613139702,   44664.0,         3858920527.03642, 0.0};
constexpr fVector kAmid{2588.716886139, -3773.276262926, 5387.577775718,    1.525530964, -5.731825532,
                        -4.735818105,   44664.0,         3858920547.036419, 0.0};

/// First, middle and last point of four of the ten lines of the geolocation grid, and the point of the worst rate:
/// zero-Doppler time (s of the day), slant range (km), latitude, longitude (degrees, WGS 84), height (m).
constexpr double kGrid[][5] = {
    {37331.755370, 801.7197019847373, 51.50723309583149, -60.24826879672774, 364.9805947924033},
    {37331.755452, 826.3897647795726, 51.58829293779335, -60.9083051468636, 493.9712575562298},
    {37331.755534, 851.0318728290314, 51.65921159885288, -61.51427908339618, 353.9779941374436},
    {37340.031039, 801.7197019847373, 51.01273575096032, -60.40837111210524, 314.9833011757582},
    {37340.031122, 826.3897647795726, 51.09318692771934, -61.05859056942509, 315.981718249619},
    {37340.031204, 851.0318728290314, 51.1641216662725, -61.65977429309058, 254.9842111160979},
    {37351.059099, 801.7197019847373, 50.35296486215223, -60.61374008537911, 55.9973111320287},
    {37351.059181, 826.3897647795726, 50.43325574290341, -61.2561876967852, 98.99446008354425},
    {37351.059263, 851.0318728290314, 50.50421165422804, -61.85106777060157, 137.9915585722774},
    {37356.888657, 801.7197019847373, 50.00433856333687, -60.7226914621432, 0.00033549964427948},
    {37356.888739, 826.3897647795726, 50.08435314633293, -61.35958869440164, 0.0002658311277627945},
    {37356.888796, 843.6588087359572, 50.13476230526041, -61.77701107403779, 0.0002291910350322733},
    {37356.888821, 851.0318728290314, 50.15512372213917, -61.94949110259839, 0.0002157250419259071},
};

TEST(SentinelScene, PointsRangesAndRatesMeetTheProductsGrid) {
    CVorbel orbit;
    orbit.InitLagrange(&kBefore, 30.0, 0);
    double worstDistance = 0.0;
    double worstRange = 0.0;
    double worstRate = 0.0;
    for (const auto& [seconds, slantRange, latitude, longitude, metres] : kGrid) {
        SCOPED_TRACE(seconds);
        const double time = kMidnight + seconds;
        const double height = metres * 1e-3;
        orbit.SetEllipsoid(kWgs84A + height, kWgs84B + height);
        const Geopoint g = orbit.GeoProssess(time, slantRange, 0.0, kRight);
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

/// Geometry Doppler (Hz) at the near and the far range, and the attitudes (s of the day, rad) on either side of its
/// time.
constexpr struct {
    double seconds;
    struct {
        double seconds, pitch, yaw, roll;
    } before, after;
    double nearest, farthest;
} kDoppler[] = {
    {37334.261478,
     {37333.874998, -0.001336034, -0.042832991, -0.521708886},
     {37334.875003, -0.001338518, -0.042889252, -0.521723002},
     3.639130,
     3.614799},
    {37345.294585,
     {37344.874998, -0.001355803, -0.043451306, -0.521846166},
     {37345.875003, -0.001357871, -0.043507753, -0.521856391},
     4.693720,
     4.617693},
    {37356.327693,
     {37355.874999, -0.001367884, -0.044061111, -0.521988783},
     {37356.875003, -0.001368049, -0.044115522, -0.522001502},
     3.940248,
     3.888802},
};

TEST(SentinelScene, CentroidMeetsTheProductsGeometryDoppler) {
    const double wavelength = 0.05546576e-3;  // km
    CVorbel orbit;
    orbit.InitLagrange(&kAmid, 20.0, 0);  // and seven steps of 10 s back
    double worst = 0.0;
    for (const auto& d : kDoppler) {
        SCOPED_TRACE(d.seconds);
        const double part = (d.seconds - d.before.seconds) / (d.after.seconds - d.before.seconds);
        const double pitch = std::lerp(d.before.pitch, d.after.pitch, part);
        const double yaw = std::lerp(d.before.yaw, d.after.yaw, part);
        const double roll = std::lerp(d.before.roll, d.after.roll, part);
        const auto doppler = [&](double range) {
            return -2.0 / wavelength * orbit.centroid(kMidnight + d.seconds, range, pitch, yaw, roll, kRight);
        };
        const double nearest = doppler(801.7197019847373) - d.nearest;
        const double farthest = doppler(851.0318728290314) - d.farthest;
        EXPECT_LT(std::abs(nearest), 0.05);  // Hz, or 1.4 mm/s
        EXPECT_LT(std::abs(farthest), 0.05);
        worst = std::max({worst, std::abs(nearest), std::abs(farthest)});
    }
    EXPECT_NEAR(worst, 0.0494, 0.0005);
}

}  // namespace
