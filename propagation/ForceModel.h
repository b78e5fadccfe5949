#ifndef VORBEL_PROPAGATION_FORCE_MODEL_H
#define VORBEL_PROPAGATION_FORCE_MODEL_H

#include "../arithmetic/Pair.h"

#include <vorbel/Records.h>

#include <cmath>
#include <type_traits>

namespace vorbel {

// Gravity. The field's parameter mu is split as 62.5647465 * 6371, and the J2 constant is -1.5 J2 R² times the first
// factor, with R the Earth's equatorial radius.
inline constexpr double kGravityFactor = 62.5647465;  // km²/s²
inline constexpr double kGravityRadius = 6371.0;      // km
inline constexpr double kJ2Term = -4133214.32438489;  // km⁴/s²

// Rotating frame. This rate is the force model's own: its square and double are not those of the 7.29211515e-5 rad/s
// that the frame conversions use.
inline constexpr double kRotationSquared = 5.31749528e-9;   // s⁻²
inline constexpr double kRotationDoubled = 0.000145842316;  // s⁻¹

// Figure of the Earth under the atmosphere: the Krasovsky ellipsoid, whatever ellipsoid the imaging geometry uses.
inline constexpr double kDragFigureRadius = 6378.245;                       // km, equatorial
inline constexpr double kDragFigureFlatteningFifth = 0.000670466385781764;  // a fifth of its flattening

/// Deceleration over speed, 1/s, at an altitude (km); 0 outside the atmosphere.
double dragFactor(const fVector& state, double altitude);

/// Time derivative of a state: central attraction and J2; centrifugal and Coriolis acceleration in the Greenwich frame
/// (system 0); drag against the velocity as given.
///
/// No drag acts on a state that has no altitude (at the Earth's centre or not finite); gravity is then not a number.
template <bool withDrag>
inline fVector derivative(const fVector& state, int system) {
    const double W2 = system == 0 ? kRotationSquared : 0.0;
    const double W = system == 0 ? kRotationDoubled : 0.0;
    const double x = state.x;
    const double y = state.y;
    const double z = state.z;
    const double r2 = x * x + y * y + z * z;
    const double r = std::sqrt(r2);
    const Pair overR2 = pairOf(kGravityRadius, kJ2Term) / pairOf(r2);  // the divider is what a step waits for
    const double A = upper(overR2);
    const double B = lower(overR2) / r;
    const double q = 5.0 * (z * z) / r2;  // five times the squared sine of the geocentric latitude
    const double F = ((q - 1.0) * A + kGravityFactor) * B;

    double D = 0.0;
    if constexpr (withDrag) {
        D = dragFactor(state, r - (1.0 - q * kDragFigureFlatteningFifth) * kDragFigureRadius);
    }

    fVector rate;
    rate.x = state.vx;
    rate.y = state.vy;
    rate.z = state.vz;
    rate.vx = (W2 - F) * x + W * state.vy - D * state.vx;
    rate.vy = (W2 - F) * y - W * state.vx - D * state.vy;
    rate.vz = ((B + B) * A - F) * z - D * state.vz;
    rate.date = state.date;
    rate.time = 1.0;
    rate.drag = state.drag;
    return rate;
}

/// Calls f with std::true_type for a state that feels drag and std::false_type for one whose drag factor is 0. A whole
/// step is compiled for each, since the factor never changes within one and most propagation for imaging has none.
template <class F>
inline auto withOrWithoutDrag(const fVector& state, F f) {
    return state.drag != 0.0 ? f(std::true_type()) : f(std::false_type());
}

}  // namespace vorbel

#endif
