#ifndef VORBEL_SCENE_STATUS_H
#define VORBEL_SCENE_STATUS_H

/// \file
/// What is said of every point.

#include <vorbel/scene/Export.h>

#include <cstdint>

namespace vorbel::scene {

/// Whether a point can be trusted, and if not, why.
///
/// Every output of a point is not-a-number unless it is located(): `ok` or `layover`.
enum class Status : std::uint8_t {
    ok = 0,               ///< all outputs hold
    layover = 1,          ///< all outputs hold; the terrain has more points that the radar sees at this range
    bad_input = 2,        ///< an input is not finite or outside its domain
    outside_orbit = 3,    ///< the time, or the time that was looked for, is outside the orbit's span
    range_too_short = 4,  ///< the range does not reach down to the surface
    beyond_horizon = 5,   ///< the point would lie behind the Earth's limb
    not_converged = 6,    ///< the iteration did not reach its accuracy
    outside_terrain = 7,  ///< the line of sight leaves the raster before it meets the ground
    hole_in_terrain = 8,  ///< the raster has no height where it is needed
    wrong_side = 9,       ///< the point is seen on the other side of the flight direction
    hidden = 10,          ///< the terrain lies between the satellite and the point
};

/// True if a point with this status has numbers.
constexpr bool located(Status status) noexcept {
    return status == Status::ok || status == Status::layover;
}

/// The name of a status as it stands above, such as "outside_orbit"; "unknown" for any other value.
VORBEL_SCENE_API const char* name(Status status) noexcept;

}  // namespace vorbel::scene

#endif
