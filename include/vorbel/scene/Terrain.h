#ifndef VORBEL_SCENE_TERRAIN_H
#define VORBEL_SCENE_TERRAIN_H

/// \file
/// Terrain, and where the radar sees it.

#include <vorbel/scene/Execution.h>
#include <vorbel/scene/Export.h>
#include <vorbel/scene/Orbit.h>
#include <vorbel/scene/PixelToGround.h>
#include <vorbel/scene/Status.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <span>

namespace vorbel::scene {

/// Where the values of a raster stand: row by row from north to south, each row from west to east, equally spaced in
/// geodetic latitude and longitude. A value is the height at the centre of its cell.
struct RasterGrid {
    double north = 0.0;           ///< latitude of the first row's centres, degrees
    double west = 0.0;            ///< longitude of the first column's centres, degrees, any turn
    double latitudeStep = 0.0;    ///< degrees from a row to the next one south, positive
    double longitudeStep = 0.0;   ///< degrees from a column to the next one east, positive
    std::size_t rows = 0;         ///< at least 2
    std::size_t columns = 0;      ///< at least 2
    std::size_t rowDistance = 0;  ///< values from the start of a row to the start of the next; 0: columns

    /// The same for a raster whose north-western corner is stated, half a step outside its first value.
    static constexpr RasterGrid fromCorner(double northEdge, double westEdge, double latitudeStep, double longitudeStep,
                                           std::size_t rows, std::size_t columns) noexcept {
        return {
            northEdge - latitudeStep / 2.0, westEdge + longitudeStep / 2.0, latitudeStep, longitudeStep, rows, columns};
    }
};

class TerrainRaster;

/// A raster of heights in m above the WGS 84 ellipsoid, not above the geoid, and the bilinear surface through them.
///
/// The values are the caller's: they are not copied, and must outlive the terrain and stay as they are. The terrain
/// adds the lowest and highest value of every 16 by 16 cells, 8 bytes for 256 values, which it looks up once when it is
/// made. Copies share these; any number of threads may use one.
///
/// The surface ends at the outermost values: there is none in the outer half of the outermost cells, except where a
/// raster closes around the Earth, `columns * longitudeStep` being 360 degrees; then its last column meets its first.
/// A cell of four values that lacks one of them is a hole: not-a-number, the void value, or beyond 12 km up or down.
class VORBEL_SCENE_API Terrain {
public:
    /// Not-a-number: no value but that itself stands for a missing height.
    static constexpr double kNoVoid = std::numeric_limits<double>::quiet_NaN();

    /// \param[in] heights    m, (rows - 1) * rowDistance + columns values at least
    /// \param[in] grid       where they stand
    /// \param[in] voidValue  stands for a missing height
    /// \throws std::invalid_argument  a grid without rows, columns or steps, one that leaves the Earth, or too few
    ///                                values
    Terrain(std::span<const float> heights, const RasterGrid& grid, double voidValue = kNoVoid);
    /// The same with heights in doubles.
    Terrain(std::span<const double> heights, const RasterGrid& grid, double voidValue = kNoVoid);
    /// The same with heights in whole metres.
    Terrain(std::span<const std::int16_t> heights, const RasterGrid& grid, double voidValue = kNoVoid);

    /// Heights of the surface at points: `ok`, `outside_terrain`, `hole_in_terrain` or `bad_input`; not-a-number unless
    /// `ok`.
    /// \param[in]  latitude   geodetic, degrees
    /// \param[in]  longitude  degrees, any turn
    /// \param[out] height     m above the WGS 84 ellipsoid
    /// \param[out] status     as long, or empty
    /// \throws std::invalid_argument  arrays of different lengths
    void heights(std::span<const double> latitude, std::span<const double> longitude, std::span<double> height,
                 std::span<Status> status = {}) const;

    /// What the layer itself keeps of it.
    const TerrainRaster& raster() const noexcept;

private:
    std::shared_ptr<const TerrainRaster> m_raster;
};

/// Which point to take where the radar sees several at one range.
enum class AmongSeveral {
    smallestLookAngle,  ///< the one that is met first from the nadir outwards
    greatestLookAngle,  ///< the outermost, often the top of the slope that lays over
};

/// Bits of TerrainPoints::mask.
inline constexpr std::uint8_t kLayoverMask = 1;  ///< the radar sees several points of the terrain at this range
inline constexpr std::uint8_t kShadowMask = 2;   ///< the terrain has points at this range that it hides from the radar

/// Where the radar sees the terrain. An output that is not wanted is empty; the others have a value for each point.
struct TerrainPoints {
    std::span<double> latitude{};        ///< geodetic, degrees
    std::span<double> longitude{};       ///< degrees, [-180, 180)
    std::span<double> height{};          ///< m above the WGS 84 ellipsoid
    std::span<double> x{};               ///< m, Earth-fixed
    std::span<double> y{};               ///< m
    std::span<double> z{};               ///< m
    std::span<double> incidence{};       ///< degrees between the line of sight and the ellipsoid's normal at the point
    std::span<double> localIncidence{};  ///< degrees between the line of sight and the terrain's normal at the point
    std::span<double> lookAngle{};       ///< degrees at the satellite between the Earth's centre and the line of sight
    std::span<std::uint8_t> mask{};      ///< kLayoverMask, kShadowMask, both or 0; whatever the status is
    std::span<Status> status{};          ///< whether the point was located, and if not, why
};

/// Points where the sphere of the slant range, the cone of the range rate and the terrain meet.
///
/// Of the points that a range has on the terrain, those count which the radar sees: no terrain rises more than 1 mm
/// above the line of sight. One: `ok`. Several: `layover`, and the point is the one that `choice` says. Only hidden
/// ones: `hidden`. On the edge of a fold, where two points become one, the circle comes within 0.2 mm of the surface
/// and turns back: that is `layover` too, and the point is one of those within 0.2 mm. Vertically a point lies within
/// 0.5 mm of the bilinear surface, since heights come in steps of 1/8192 m; mostly within 0.1 mm. At that height its
/// range and range rate are exact.
///
/// What is not known of the terrain is not guessed. Where the surface passes from below the circle of range and range
/// rate to above it, or back, within a hole or outside the raster, there is a point that cannot be told; if that would
/// be the chosen one, the status is `hole_in_terrain` or `outside_terrain`. Elsewhere holes and the land outside are
/// taken neither to have points nor to hide any: along the edge towards the radar of a raster that ends in high land,
/// layover and shadow may go unseen.
///
/// The work for a point is bounded by the cells below its circle and its line of sight, whatever the heights are. Where
/// it ends in no point within 0.5 mm, as it may on cells that rise thousands of times their width, the status is
/// `not_converged`.
/// `pixels.height` must be empty.
/// \throws std::invalid_argument  arrays whose lengths do not fit the extent; nothing has been written then
VORBEL_SCENE_API void pixelToTerrain(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels,
                                     const Terrain& terrain, const TerrainPoints& points,
                                     AmongSeveral choice = AmongSeveral::smallestLookAngle,
                                     const Execution& execution = {});

/// Some lines of a scene's terrain grid, valid while it is handed over.
struct TerrainGridBlock {
    std::size_t firstLine = 0;               ///< of the block, counted from 0 in the scene
    Extent extent{};                         ///< of the block; the arrays hold lines times samples values
    std::span<const double> latitude;        ///< geodetic, degrees
    std::span<const double> longitude;       ///< degrees, [-180, 180)
    std::span<const double> height;          ///< m above the WGS 84 ellipsoid
    std::span<const double> localIncidence;  ///< degrees
    std::span<const std::uint8_t> mask;      ///< as in TerrainPoints
    std::span<const Status> status;          ///< as in TerrainPoints
};

/// pixelToTerrain() over a scene, some lines at a time, so that memory does not grow with the scene: a block takes 34
/// bytes for each point. A block has `linesPerBlock` lines, at least 1. `take` is handed the blocks in order, in the
/// calling thread; what it throws ends the call.
VORBEL_SCENE_API void terrainGrid(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels,
                                  const Terrain& terrain, std::size_t linesPerBlock,
                                  const std::function<void(const TerrainGridBlock&)>& take,
                                  AmongSeveral choice = AmongSeveral::smallestLookAngle,
                                  const Execution& execution = {});

}  // namespace vorbel::scene

#endif
