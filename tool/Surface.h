#ifndef VORBEL_TOOL_SURFACE_H
#define VORBEL_TOOL_SURFACE_H

#include <vorbel/scene/Terrain.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vorbel::tool {

/// A raster of heights from a file.
struct Raster {
    std::vector<float> values;  ///< not-a-number where there is none
    scene::RasterGrid grid;
};

/// Reads the first image of a GeoTIFF in geographic coordinates (EPSG:4326 or 4979, north up), of one sample.
/// \throws std::runtime_error  any other file, with one sentence that says why
Raster readGeoTiff(const std::filesystem::path& file);

/// The ground: at one height, or a terrain.
struct Surface {
    double height = 0.0;                    ///< m above the WGS 84 ellipsoid
    Raster raster{};                        ///< heights above the ellipsoid, which the terrain needs
    std::optional<scene::Terrain> terrain;  ///< instead of the height
};

/// \param[in] terrain  a GeoTIFF of heights above the ellipsoid or, with `geoid`, above the geoid
/// \param[in] geoid    a GeoTIFF of the geoid's heights above the ellipsoid; empty: none
/// \throws std::runtime_error  as readGeoTiff()
Surface readTerrain(const std::filesystem::path& terrain, const std::filesystem::path& geoid);

}  // namespace vorbel::tool

#endif
