#ifndef VORBEL_SCENE_TERRAIN_RASTER_H
#define VORBEL_SCENE_TERRAIN_RASTER_H

#include "kernels/TerrainTrace.h"

#include <vorbel/scene/Terrain.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <variant>
#include <vector>

namespace vorbel::scene {

/// The bilinear surface over one cell, from its four corners.
struct TerrainCell {
    double row = 0.0;  // of the north-western corner
    double column = 0.0;
    double corner = 0.0;    // m, there
    double eastward = 0.0;  // m from the western to the eastern corner of the northern side
    double southward = 0.0;
    double twist = 0.0;  // what the southern side rises to the east more than the northern one

    double heightAt(double u, double v) const noexcept {
        const double a = u - column;
        const double b = v - row;
        return corner + a * eastward + b * southward + a * b * twist;
    }
};

/// What a surface rises for each radian of longitude to the east and of latitude to the south, m.
struct TerrainSlope {
    double eastward;
    double southward;
};

/// Lowest and highest of some heights; of none, lowest is above highest.
struct HeightRange {
    float lowest = std::numeric_limits<float>::infinity();
    float highest = -std::numeric_limits<float>::infinity();

    void include(const HeightRange& other) noexcept {
        lowest = std::min(lowest, other.lowest);
        highest = std::max(highest, other.highest);
    }
};

/// A terrain's values, seen in units of cells: u counts columns eastward and v rows southward from the first value.
class TerrainRaster {
public:
    using Values = std::variant<const float*, const double*, const std::int16_t*>;

    static constexpr std::ptrdiff_t kBlock = 16;  // cells on a side of a block

    TerrainRaster(const Values& values, const RasterGrid& grid, double voidValue);

    /// Column coordinate of a longitude, within half a turn of the raster's middle.
    double u(double longitude) const noexcept {
        const double east = longitude - m_cut;
        return (east - 360.0 * std::floor(east / 360.0) - m_beforeFirst) / m_grid.longitudeStep;
    }

    /// The column coordinate of the same meridian that is nearest to another.
    double nearest(double u, double other) const noexcept {
        return u - m_turn * std::round((u - other) / m_turn);
    }

    double v(double latitude) const noexcept {
        return (m_grid.north - latitude) / m_grid.latitudeStep;
    }

    const RasterGrid& grid() const noexcept {
        return m_grid;
    }

    /// Of the whole raster; lowest above highest if it has no height at all.
    const HeightRange& range() const noexcept {
        return m_range;
    }

    /// The cell that contains a point: `ok`, `outside_terrain` or `hole_in_terrain`. The cell counts in the coordinates
    /// of the point, whatever the turn.
    Status cellAt(double u, double v, TerrainCell& cell) const noexcept;

    /// The heights of the block that contains a point; null outside.
    const HeightRange* blockAt(double u, double v) const noexcept;

    /// Whether a rectangle, within half a turn of where u() counts, may have a point in common with the raster.
    bool reaches(double firstU, double lastU, double firstV, double lastV) const noexcept;

    /// The raster around a point, for the kernels; false if it does not lie where u counts from the first column.
    bool windowAt(double u, double v, TerrainWindow& window) const noexcept;

    /// Lowest and highest of the cells that a rectangle touches; of the blocks that it touches, or of the whole raster,
    /// if these are many.
    HeightRange rangeWithin(double firstRow, double lastRow, double firstColumn, double lastColumn) const noexcept;

    /// Height of the surface at latitude and longitude (degrees).
    Status heightAt(double latitude, double longitude, double& height) const noexcept;

    /// At a point of the surface (degrees).
    TerrainSlope slopeAt(double latitude, double longitude) const noexcept;

private:
    struct Place {
        std::ptrdiff_t row;
        std::ptrdiff_t column;
        double turned;  // what was added to u to come here
    };
    bool place(double u, double v, Place& place) const noexcept;
    double value(std::ptrdiff_t row, std::ptrdiff_t column) const noexcept;
    HeightRange rangeOf(std::ptrdiff_t firstRow, std::ptrdiff_t lastRow, std::ptrdiff_t firstColumn,
                        std::ptrdiff_t lastColumn) const noexcept;
    void findRanges();

    Values m_values;
    RasterGrid m_grid;
    double m_void;
    double m_turn;         // columns in 360 degrees
    double m_cut;          // longitude opposite to the raster's middle, where u jumps; degrees
    double m_beforeFirst;  // degrees from there to the first column
    std::ptrdiff_t m_cellRows;
    std::ptrdiff_t m_cellColumns;
    std::ptrdiff_t m_blockColumns;
    std::vector<HeightRange> m_blocks;
    HeightRange m_range;
};

}  // namespace vorbel::scene

#endif
