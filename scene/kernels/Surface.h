#ifndef VORBEL_SCENE_KERNELS_SURFACE_H
#define VORBEL_SCENE_KERNELS_SURFACE_H

// The surface of constant height h above the ellipsoid, in the cylindrical coordinates p and z of its points, without
// latitude: zeta = z²/a², eta = h/a. At h = 0 both forms are the ellipsoid's own; the polynomials, from fits.py, carry
// them to heights of 12 km either way.

#include "../Ellipsoid.h"

namespace vorbel::scene {

// off by 4.9e-11 m
constexpr double kBulge00 = 0.0067849175586054312;
constexpr double kBulge01 = -0.0068306444896370842;
constexpr double kBulge02 = 0.0068767038389733753;
constexpr double kBulge03 = -0.0069225374939691225;
constexpr double kBulge10 = -1.1508776582488706e-5;
constexpr double kBulge11 = 4.6345367682712772e-5;
constexpr double kBulge12 = -0.00011663798548821404;
constexpr double kBulge13 = 0.00023052949161928265;
constexpr double kBulge20 = 3.9043088158585337e-8;
constexpr double kBulge21 = -3.144434886618941e-7;
constexpr double kBulge22 = 1.3642124411748382e-6;
constexpr double kBulge30 = -1.6559365723281004e-10;
constexpr double kBulge31 = 2.1050566981703295e-9;
constexpr double kBulge40 = 7.9130822690470441e-13;
constexpr double kBulge50 = -6.0383389743228203e-15;

// off by 7.9e-11 m
constexpr double kRatio00 = -0.006784917558607693;
constexpr double kRatio01 = 0.0068306444920613698;
constexpr double kRatio02 = -0.0068767025663412889;
constexpr double kRatio03 = 0.0069214593550460568;
constexpr double kRatio10 = 2.3017553192553389e-5;
constexpr double kRatio11 = -9.2690736462987847e-5;
constexpr double kRatio12 = 0.00023326061567926608;
constexpr double kRatio13 = -0.00045667664855050932;
constexpr double kRatio20 = -1.1712930324710459e-7;
constexpr double kRatio21 = 9.4329527026663133e-7;
constexpr double kRatio22 = -4.0720612556569045e-6;
constexpr double kRatio30 = 6.6237812961557548e-10;
constexpr double kRatio31 = -8.3920159564233131e-9;
constexpr double kRatio40 = -3.9561453471512349e-12;
constexpr double kRatio50 = 3.3963250253865783e-14;

/// g in p² + z² = a² + h (h + 2a) - z² g.
static inline double bulge(double zeta, double eta) {
    const double b0 = ((kBulge03 * eta + kBulge02) * eta + kBulge01) * eta + kBulge00;
    const double b1 = ((kBulge13 * eta + kBulge12) * eta + kBulge11) * eta + kBulge10;
    const double b2 = (kBulge22 * eta + kBulge21) * eta + kBulge20;
    const double b3 = kBulge31 * eta + kBulge30;
    const double q = ((((kBulge50 * zeta + kBulge40) * zeta + b3) * zeta + b2) * zeta + b1) * zeta + b0;
    return kSecondEccentricitySquared - eta * q;
}

/// t in tan(geodetic latitude) = t z / p.
static inline double latitudeRatio(double zeta, double eta) {
    const double r0 = ((kRatio03 * eta + kRatio02) * eta + kRatio01) * eta + kRatio00;
    const double r1 = ((kRatio13 * eta + kRatio12) * eta + kRatio11) * eta + kRatio10;
    const double r2 = (kRatio22 * eta + kRatio21) * eta + kRatio20;
    const double r3 = kRatio31 * eta + kRatio30;
    const double q = ((((kRatio50 * zeta + kRatio40) * zeta + r3) * zeta + r2) * zeta + r1) * zeta + r0;
    return 1.0 + kSecondEccentricitySquared + eta * q;
}

}  // namespace vorbel::scene

#endif
