#ifndef VORBEL_SCENE_PIXEL_TO_GROUND_H
#define VORBEL_SCENE_PIXEL_TO_GROUND_H

/// \file
/// Ground points of whole lines and scenes.

#include <vorbel/scene/Execution.h>
#include <vorbel/scene/Export.h>
#include <vorbel/scene/Orbit.h>
#include <vorbel/scene/Status.h>

#include <cstddef>
#include <span>

namespace vorbel::scene {

/// To which side of its flight direction the radar looks.
enum class LookSide { left, right };

/// A scene of `lines` times `samples` points, stored line by line. A list of points is one line.
struct Extent {
    std::size_t lines = 1;    ///< one for each azimuth time
    std::size_t samples = 0;  ///< of a line, one for each slant range
};

/// Where the radar sees the points of a scene. Each array has one value for all points, one for each sample of every
/// line, or one for each point; `time` one for all points, one for each line, or one for each point.
struct Pixels {
    std::span<const double> time;         ///< s since the orbit's epoch
    std::span<const double> slantRange;   ///< m, one way
    std::span<const double> rangeRate{};  ///< m/s, positive when the range grows; empty: 0, zero-Doppler geometry
    std::span<const double> height{};     ///< m above the WGS 84 ellipsoid, from -12000 to 12000; empty: 0
};

/// Attitude of the antenna out of the radius-aligned frame, as CVorbel::GeoLocation() composes it. One value for
/// all points, one for each line, or one for each point; empty: 0.
struct Attitude {
    std::span<const double> pitch{};  ///< degrees
    std::span<const double> yaw{};    ///< degrees
    std::span<const double> roll{};   ///< degrees
};

/// Where the points lie. An output that is not wanted is empty; the others have a value for each point.
struct GroundPoints {
    std::span<double> latitude{};   ///< geodetic, degrees
    std::span<double> longitude{};  ///< degrees, [-180, 180)
    std::span<double> height{};     ///< m above the WGS 84 ellipsoid: the one given
    std::span<double> x{};          ///< m, Earth-fixed
    std::span<double> y{};          ///< m
    std::span<double> z{};          ///< m
    std::span<double> incidence{};  ///< degrees between the line of sight and the ellipsoid's normal at the point
    std::span<double> lookAngle{};  ///< degrees at the satellite between the Earth's centre and the line of sight
    std::span<double> azimuth{};    ///< degrees from north over east, [0, 360): where the radar looks, at the point
    std::span<double> rangeRate{};  ///< m/s: the one given or, of a beam, the Doppler centroid
    std::span<Status> status{};     ///< whether the point was located, and if not, why
};

/// Ground points at slant range and range rate (range-Doppler solution), at exact geodetic heights.
/// \throws std::invalid_argument  arrays whose lengths do not fit the extent; nothing has been written then
VORBEL_SCENE_API void pixelToGround(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels,
                                    const GroundPoints& points, const Execution& execution = {});

/// Ground points in the beam of an attitude, and the Doppler centroid there; `pixels.rangeRate` must be empty.
/// \throws std::invalid_argument  as above
VORBEL_SCENE_API void beamToGround(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels,
                                   const Attitude& attitude, const GroundPoints& points,
                                   const Execution& execution = {});

}  // namespace vorbel::scene

#endif
