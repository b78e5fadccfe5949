#ifndef VORBEL_PROPAGATION_ATMOSPHERE_H
#define VORBEL_PROPAGATION_ATMOSPHERE_H

#include <cmath>

namespace vorbel {

/// One altitude band of the piecewise-exponential density model, an exponential of a quadratic in the altitude.
struct DensityBand {
    double base;       // lower bound, km; the upper bound is the next band's base
    double density;    // at the base, kg/km³
    double slope;      // 1/m
    double curvature;  // 1/m²
};

/// The band's upper bound belongs to the band. The density jumps at several bounds: going up, down to a tenth at
/// 20 km and to 0.72 at 150 km, and up tenfold at 60 and 600 km.
inline constexpr DensityBand kDensityBands[] = {
    {0.0, 1225000000.0, 7.825e-05, -2.639e-09},  //
    {20.0, 8910000.0, 0.00016375, 4.407e-10},    //
    {60.0, 257800.0, 5.905e-05, -2.56e-09},      //
    {100.0, 406.1, 0.0001718, 1.469e-09},        //
    {150.0, 2.13, 3.734e-05, 8.004e-11},         //
    {300.0, 0.04764, 1.547e-05, 7.111e-12},      //
    {600.0, 0.008726, 9.28e-06, 1.831e-12},      //
    {900.0, 0.0006367, 9.54e-06, 0.0},           //
};
inline constexpr int kDensityBandCount = sizeof(kDensityBands) / sizeof(kDensityBands[0]);

inline constexpr double kAtmosphereTop = 20000.0;  // km; no drag above
inline constexpr double kMetresPerKilometre = 1000.0;

/// False also for an altitude that is not a number.
inline bool insideAtmosphere(double altitude) {
    return altitude >= 0.0 && altitude <= kAtmosphereTop;
}

/// Density in kg/km³ at an altitude (km) inside the atmosphere.
inline double atmosphericDensity(double altitude) {
    int band = 0;
    while (band + 1 < kDensityBandCount && altitude > kDensityBands[band + 1].base) {
        ++band;
    }
    const DensityBand& b = kDensityBands[band];
    const double u = (altitude - b.base) * kMetresPerKilometre;
    return std::exp((u * b.curvature - b.slope) * u) * b.density;
}

}  // namespace vorbel

#endif
