#ifndef VORBEL_SCENE_GROUND_TO_PIXEL_H
#define VORBEL_SCENE_GROUND_TO_PIXEL_H

/// \file
/// When and at which range the radar sees points of the ground.

#include <vorbel/scene/PixelToGround.h>

#include <optional>
#include <span>

namespace vorbel::scene {

/// Points on the ground, a value for each: either latitude and longitude, or x, y and z, and the others empty.
struct GroundTargets {
    std::span<const double> latitude{};   ///< geodetic, degrees
    std::span<const double> longitude{};  ///< degrees, up to a hundred turns either way
    std::span<const double> height{};     ///< m above the WGS 84 ellipsoid, -12000 to 12000; or one for all; empty: 0
    std::span<const double> x{};          ///< m, Earth-fixed; a point within 12 km of the ellipsoid
    std::span<const double> y{};          ///< m
    std::span<const double> z{};          ///< m
    std::span<const double> notBefore{};  ///< s since the orbit's epoch, one for all or for each point: see below
};

/// The range rate at which the radar sees a point, up to 15 % of the satellite's speed either way: one for all points,
/// one for each, or a polynomial of slant range, as products give their Doppler centroid. Nothing: zero-Doppler.
struct Doppler {
    std::span<const double> rangeRate{};     ///< m/s, positive when the range grows; empty: 0, or the polynomial
    std::span<const double> coefficients{};  ///< m/s over powers of (slant range - referenceRange) in m, lowest first
    double referenceRange = 0.0;             ///< m
};

/// Where a point appears. An output that is not wanted is empty; the others have a value for each point.
struct PixelPositions {
    std::span<double> time{};        ///< s since the orbit's epoch
    std::span<double> slantRange{};  ///< m
    std::span<double> rangeRate{};   ///< m/s
    std::span<LookSide> side{};      ///< the side it is seen on; `right` where there is none
    std::span<Status> status{};      ///< whether it appears, and if not, why
};

/// Time and slant range at which the satellite sees points, in the first pass at or after `notBefore`, or of all if
/// that is empty.
///
/// A pass is a time of the orbit's span at which the point has the range rate and stands above the horizon of a flat
/// place there (to 1e-6 rad), on the given side; without one, on either side: the side found is among the outputs. To
/// go through all passes, call again with each `time` plus a second as `notBefore`, until the status is not `ok`.
///
/// Time holds to 1e-9 s and range to 1 um against pixelToGround(). Status of a point: `ok`; `bad_input` for a value
/// that is not a number or outside the ranges above; without a pass `wrong_side` if it is seen on the other side only,
/// `not_converged` if the satellite hardly moves over the ground (by less than 4e-7 of its distance from the Earth's
/// centre in a second, 17 m for a geostationary one), `beyond_horizon` if it comes abreast of the point but below its
/// horizon, and else `outside_orbit`. Times are never outside the span.
///
/// \throws std::invalid_argument  arrays whose lengths do not fit each other, both kinds of coordinates or of range
///                                rates; nothing has been written then
VORBEL_SCENE_API void groundToPixel(const Orbit& orbit, std::optional<LookSide> side, const GroundTargets& targets,
                                    const Doppler& doppler, const PixelPositions& positions,
                                    const Execution& execution = {});

}  // namespace vorbel::scene

#endif
