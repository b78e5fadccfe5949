#ifndef VORBEL_SCENE_TERRAIN_SEARCH_H
#define VORBEL_SCENE_TERRAIN_SEARCH_H

#include "TerrainRaster.h"

#include <vorbel/scene/Orbit.h>
#include <vorbel/scene/Terrain.h>

#include <array>
#include <cstdint>

namespace vorbel::scene {

using Vector = std::array<double, 3>;

/// The circle that a pixel's range and range rate leave, seen from the satellite: the points
/// centre + across * sin(a) + down * cos(a) for angles a from the plane's lowest direction outwards.
struct PixelCircle {
    Vector satellite;  // m, Earth-fixed
    Vector centre;
    Vector across;  // as long as the radius, to the side the radar looks to
    Vector down;    // as long
    double range;   // m
};

/// The circle of a pixel: `ok` or `bad_input`.
Status pixelCircle(const State& state, LookSide side, double range, double rangeRate, PixelCircle& circle) noexcept;

/// What is found of a pixel on the terrain; the height holds if the status is located().
struct TerrainPoint {
    Status status = Status::not_converged;
    std::uint8_t mask = 0;
    double height = 0.0;  // m
    double rise = 1.0;    // of the circle above the surface, for each metre that it rises
};

/// Follows the circle across the terrain, cell by cell, from the lowest height of the raster up to the highest, finds
/// all its points on the surface, and follows the line of sight from each of them back up.
TerrainPoint findOnTerrain(const PixelCircle& circle, const TerrainRaster& terrain, AmongSeveral choice) noexcept;

}  // namespace vorbel::scene

#endif
