#ifndef VORBEL_SCENE_KERNELS_SURFACE_H
#define VORBEL_SCENE_KERNELS_SURFACE_H

#include "../Ellipsoid.h"

// The surface of constant height h above the ellipsoid, in the cylindrical coordinates p and z of its points, without
// latitude:
//
//     p² + z² = a² + h (h + 2a) - z² g     with g = e'² - h Q(z², h)
//
// At h = 0 this is the ellipsoid itself; the polynomial Q, from fits.py, carries it 12 km up and down. The normal of
// the surface, whose latitude is the geodetic one, follows by differentiating:
// tan(latitude) = (z/p) d(z² (1 + g))/d(z²).

namespace vorbel::scene {

// off by 7.0e-10 m in height, 1.2e-8 m in latitude
constexpr double kBulge00 = 1.0637773318594287e-9;    // 1/m^1
constexpr double kBulge01 = -1.679090122166189e-16;   // 1/m^2
constexpr double kBulge02 = 2.6500975353160193e-23;   // 1/m^3
constexpr double kBulge03 = -4.0673283191381362e-30;  // 1/m^4
constexpr double kBulge10 = -4.4355532444003737e-26;  // 1/m^3
constexpr double kBulge11 = 2.8003699244585189e-32;   // 1/m^4
constexpr double kBulge12 = -1.0870174656556506e-38;  // 1/m^5
constexpr double kBulge20 = 3.699100620930398e-42;    // 1/m^5
constexpr double kBulge21 = -4.6107334114701917e-48;  // 1/m^6
constexpr double kBulge30 = -3.8104463671528036e-58;  // 1/m^7

/// g of the points with this z².
static inline double bulge(double z2, double h) {
    const double b0 = ((kBulge03 * h + kBulge02) * h + kBulge01) * h + kBulge00;
    const double b1 = (kBulge12 * h + kBulge11) * h + kBulge10;
    const double b2 = kBulge21 * h + kBulge20;
    return kSecondEccentricitySquared - h * (((kBulge30 * z2 + b2) * z2 + b1) * z2 + b0);
}

/// z component of the normal (x, y, normalZ) at a point.
static inline double normalZ(double z, double h) {
    const double z2 = z * z;
    const double b0 = ((kBulge03 * h + kBulge02) * h + kBulge01) * h + kBulge00;
    const double b1 = (2.0 * kBulge12 * h + 2.0 * kBulge11) * h + 2.0 * kBulge10;
    const double b2 = 3.0 * kBulge21 * h + 3.0 * kBulge20;
    return z * (1.0 + kSecondEccentricitySquared - h * (((4.0 * kBulge30 * z2 + b2) * z2 + b1) * z2 + b0));
}

}  // namespace vorbel::scene

#endif
