#ifndef VORBEL_SCENE_GROUND_TO_PIXEL_H
#define VORBEL_SCENE_GROUND_TO_PIXEL_H

/// \file
/// When and at which range the radar sees points of the ground.

#include <vorbel/scene/PixelToGround.h>

namespace vorbel::scene {

/// Points on the ground: either latitude, longitude and height, or x, y and z. All three have the same length, except
/// that `height` may have one value for all or be empty for 0.
struct GroundTargets {
    std::span<const double> latitude{};   ///< geodetic, degrees
    std::span<const double> longitude{};  ///< degrees, any turn
    std::span<const double> height{};     ///< m above the WGS 84 ellipsoid
    std::span<const double> x{};          ///< m, Earth-fixed
    std::span<const double> y{};          ///< m
    std::span<const double> z{};          ///< m
};

/// The range rate at which the radar sees a point: a value for all or for each point, or a polynomial of slant range.
struct Doppler {
    std::span<const double> rangeRate{};     ///< m/s, positive when the range grows; empty: 0, or the polynomial
    std::span<const double> coefficients{};  ///< m/s over powers of (slant range - referenceRange) in m; lowest first
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

/// Time and slant range of the first pass at or after `notBefore` (s since the epoch) in which the satellite sees the
/// point on the given side.
/// \throws std::invalid_argument  arrays whose lengths do not fit each other; nothing has been written then
VORBEL_SCENE_API void groundToPixel(const Orbit& orbit, LookSide side, const GroundTargets& targets,
                                    const Doppler& doppler, const PixelPositions& positions, double notBefore,
                                    const Execution& execution = {});

}  // namespace vorbel::scene

#endif
