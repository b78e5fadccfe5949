#include "Ellipsoid.h"
#include "TerrainRaster.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <utility>

namespace vorbel::scene {

namespace {

std::string text(double value) {
    return std::to_string(value);
}

RasterGrid checked(std::size_t values, RasterGrid grid) {
    const auto refuse = [](const std::string& reason) { throw std::invalid_argument("the terrain's grid " + reason); };
    if (grid.rows < 2 || grid.columns < 2) {
        refuse("has " + std::to_string(grid.rows) + " rows and " + std::to_string(grid.columns) +
               " columns, it must have at least 2 of each");
    }
    if (!(grid.latitudeStep > 0.0) || !(grid.longitudeStep > 0.0) || !std::isfinite(grid.latitudeStep) ||
        !std::isfinite(grid.longitudeStep)) {
        refuse("steps by " + text(grid.latitudeStep) + " and " + text(grid.longitudeStep) +
               " degrees, both must be positive");
    }
    if (!(std::abs(grid.west) <= 720.0)) {
        refuse("begins at longitude " + text(grid.west) + ", which must be in degrees");
    }
    const double south = grid.north - static_cast<double>(grid.rows - 1) * grid.latitudeStep;
    constexpr double kSlack = 1e-9;  // degrees, for steps that are rounded
    if (!(grid.north <= 90.0 + kSlack) || !(south >= -90.0 - kSlack)) {
        refuse("reaches from latitude " + text(grid.north) + " to " + text(south) + ", it must stay between the poles");
    }
    if (static_cast<double>(grid.columns - 1) * grid.longitudeStep > 360.0 + kSlack) {
        refuse("is " + text(static_cast<double>(grid.columns - 1) * grid.longitudeStep) +
               " degrees wide, it must not be more than 360");
    }
    if (grid.rowDistance == 0) {
        grid.rowDistance = grid.columns;
    }
    if (grid.rowDistance < grid.columns) {
        refuse("has " + std::to_string(grid.columns) + " columns, more than the " + std::to_string(grid.rowDistance) +
               " values from row to row");
    }
    if (values < grid.columns || (values - grid.columns) / grid.rowDistance < grid.rows - 1) {
        refuse("needs more than the " + std::to_string(values) + " values it is given");
    }
    return grid;
}

void include(HeightRange& range, double height) {
    // Rounded to float the wrong way it would leave the height out.
    const auto rounded = static_cast<float>(height);
    const float below = static_cast<double>(rounded) > height ? std::nextafter(rounded, -1e30F) : rounded;
    const float above = static_cast<double>(rounded) < height ? std::nextafter(rounded, 1e30F) : rounded;
    range.include({below, above});
}

}  // namespace

TerrainRaster::TerrainRaster(const Values& values, const RasterGrid& grid, double voidValue)
    : m_values(values), m_grid(grid), m_void(voidValue) {
    const auto rows = static_cast<std::ptrdiff_t>(grid.rows);
    const auto columns = static_cast<std::ptrdiff_t>(grid.columns);
    const double width = static_cast<double>(columns) * grid.longitudeStep;
    const bool closed = std::abs(width - 360.0) < 1e-6 * grid.longitudeStep;

    m_cellRows = rows - 1;
    m_cellColumns = closed ? columns : columns - 1;
    m_turn = closed ? static_cast<double>(columns) : 360.0 / grid.longitudeStep;
    m_beforeFirst = std::max(0.0, (360.0 - static_cast<double>(m_cellColumns) * grid.longitudeStep) / 2.0);
    m_cut = grid.west - m_beforeFirst;
    findRanges();
}

double TerrainRaster::value(std::ptrdiff_t row, std::ptrdiff_t column) const noexcept {
    const std::ptrdiff_t index = row * static_cast<std::ptrdiff_t>(m_grid.rowDistance) + column;
    const double height =
        std::visit([index](const auto* heights) { return static_cast<double>(heights[index]); }, m_values);
    return height == m_void || !(std::abs(height) <= kHighest) ? std::numeric_limits<double>::quiet_NaN() : height;
}

HeightRange TerrainRaster::rangeOf(std::ptrdiff_t firstRow, std::ptrdiff_t lastRow, std::ptrdiff_t firstColumn,
                                   std::ptrdiff_t lastColumn) const noexcept {
    HeightRange range;
    const auto columns = static_cast<std::ptrdiff_t>(m_grid.columns);
    for (std::ptrdiff_t row = firstRow; row <= lastRow + 1; ++row) {
        for (std::ptrdiff_t column = firstColumn; column <= lastColumn + 1; ++column) {
            const double height = value(row, column < columns ? column : 0);
            if (!std::isnan(height)) {
                include(range, height);
            }
        }
    }
    return range;
}

void TerrainRaster::findRanges() {
    const std::ptrdiff_t blockRows = (m_cellRows + kBlock - 1) / kBlock;
    m_blockColumns = (m_cellColumns + kBlock - 1) / kBlock;
    m_blocks.reserve(static_cast<std::size_t>(blockRows * m_blockColumns));
    for (std::ptrdiff_t row = 0; row < m_cellRows; row += kBlock) {
        for (std::ptrdiff_t column = 0; column < m_cellColumns; column += kBlock) {
            m_blocks.push_back(rangeOf(row, std::min(row + kBlock, m_cellRows) - 1, column,
                                       std::min(column + kBlock, m_cellColumns) - 1));
            m_range.include(m_blocks.back());
        }
    }
}

bool TerrainRaster::place(double u, double v, Place& place) const noexcept {
    const auto rows = static_cast<double>(m_cellRows);
    const auto columns = static_cast<double>(m_cellColumns);
    constexpr double kSlack = 1e-9;  // cells, for the rounding of a point on the edge
    place.turned = u < -kSlack ? m_turn : u > columns + kSlack ? -m_turn : 0.0;
    const double turned = u + place.turned;
    if (!(v >= -kSlack && v <= rows + kSlack && turned >= -kSlack && turned <= columns + kSlack)) {
        return false;
    }
    // A point on the southern or eastern edge belongs to the last cell.
    place.row = std::min(static_cast<std::ptrdiff_t>(v), m_cellRows - 1);
    place.column = std::min(static_cast<std::ptrdiff_t>(turned), m_cellColumns - 1);
    return true;
}

Status TerrainRaster::cellAt(double u, double v, TerrainCell& cell) const noexcept {
    Place at{};
    if (!place(u, v, at)) {
        return Status::outside_terrain;
    }
    const std::ptrdiff_t east = at.column + 1 < static_cast<std::ptrdiff_t>(m_grid.columns) ? at.column + 1 : 0;
    const double northWest = value(at.row, at.column);
    const double northEast = value(at.row, east);
    const double southWest = value(at.row + 1, at.column);
    const double southEast = value(at.row + 1, east);
    cell.row = static_cast<double>(at.row);
    cell.column = static_cast<double>(at.column) - at.turned;
    cell.corner = northWest;
    cell.eastward = northEast - northWest;
    cell.southward = southWest - northWest;
    cell.twist = (southEast - southWest) - cell.eastward;
    return std::isnan(cell.twist + cell.southward) ? Status::hole_in_terrain : Status::ok;
}

const HeightRange* TerrainRaster::blockAt(double u, double v) const noexcept {
    Place at{};
    if (!place(u, v, at)) {
        return nullptr;
    }
    return &m_blocks[static_cast<std::size_t>(at.row / kBlock * m_blockColumns + at.column / kBlock)];
}

bool TerrainRaster::reaches(double firstU, double lastU, double firstV, double lastV) const noexcept {
    constexpr double kMargin = 1.0;  // cells
    const auto columns = static_cast<double>(m_cellColumns) + kMargin;
    const auto across = [&](double turned) { return lastU + turned >= -kMargin && firstU + turned <= columns; };
    return lastV >= -kMargin && firstV <= static_cast<double>(m_cellRows) + kMargin &&
           (across(0.0) || across(m_turn) || across(-m_turn));
}

bool TerrainRaster::windowAt(double u, double v, TerrainWindow& window) const noexcept {
    const auto rows = static_cast<double>(m_cellRows);
    const auto columns = static_cast<double>(m_grid.columns - 1);
    constexpr double kMost = 1e9;  // that an int holds with ease
    if (!(u >= 0.0 && u < columns && v >= 0.0 && v < rows) || rows > kMost || columns > kMost) {
        return false;
    }
    constexpr double kReach = 1e9;  // values to either side, which an int can count
    const auto distance = static_cast<double>(m_grid.rowDistance);
    const double reach = std::floor(kReach / distance) - 2.0;
    if (reach < 1.0) {
        return false;
    }
    constexpr double kInside = 1.0 - 1e-9;  // of the last cell
    window.baseRow = static_cast<int>(v);
    window.baseColumn = static_cast<int>(u);
    window.firstRow = std::max(0.0, std::floor(v) - reach);
    window.lastRow = std::min(rows - 1.0 + kInside, std::floor(v) + reach);
    window.firstColumn = 0.0;
    window.lastColumn = columns - 1.0 + kInside;
    window.rowDistance = static_cast<int>(m_grid.rowDistance);
    window.voidValue = m_void;
    const std::ptrdiff_t base = static_cast<std::ptrdiff_t>(window.baseRow) * window.rowDistance + window.baseColumn;
    window.floats = nullptr;
    window.doubles = nullptr;
    window.integers = nullptr;
    if (const auto* const* floats = std::get_if<const float*>(&m_values)) {
        window.floats = *floats + base;
    } else if (const auto* const* doubles = std::get_if<const double*>(&m_values)) {
        window.doubles = *doubles + base;
    } else if (const auto* const* integers = std::get_if<const std::int16_t*>(&m_values)) {
        window.integers = *integers + base;
    }
    return true;
}

HeightRange TerrainRaster::rangeWithin(double firstRow, double lastRow, double firstColumn,
                                       double lastColumn) const noexcept {
    const auto inside = [](double cell, std::ptrdiff_t cells) {
        return static_cast<std::ptrdiff_t>(std::clamp(cell, 0.0, static_cast<double>(cells - 1)));
    };
    const std::ptrdiff_t rows[] = {inside(firstRow, m_cellRows), inside(lastRow, m_cellRows)};
    const std::ptrdiff_t columns[] = {inside(firstColumn, m_cellColumns), inside(lastColumn, m_cellColumns)};
    const auto count = [&](std::ptrdiff_t size) {
        return (rows[1] / size - rows[0] / size + 1) * (columns[1] / size - columns[0] / size + 1);
    };
    constexpr std::ptrdiff_t kMany = 256;
    if (count(1) <= kMany) {
        return rangeOf(rows[0], rows[1], columns[0], columns[1]);
    }
    if (count(kBlock) > kMany) {
        return m_range;
    }
    HeightRange all;
    for (std::ptrdiff_t row = rows[0] / kBlock; row <= rows[1] / kBlock; ++row) {
        for (std::ptrdiff_t column = columns[0] / kBlock; column <= columns[1] / kBlock; ++column) {
            all.include(m_blocks[static_cast<std::size_t>(row * m_blockColumns + column)]);
        }
    }
    return all;
}

Status TerrainRaster::heightAt(double latitude, double longitude, double& height) const noexcept {
    height = std::numeric_limits<double>::quiet_NaN();
    if (!(std::abs(latitude) <= 90.0) || !std::isfinite(longitude)) {
        return Status::bad_input;
    }
    const double column = u(longitude);
    const double row = v(latitude);
    TerrainCell cell;
    const Status status = cellAt(column, row, cell);
    if (status == Status::ok) {
        height = cell.heightAt(column, row);
    }
    return status;
}

TerrainSlope TerrainRaster::slopeAt(double latitude, double longitude) const noexcept {
    const double column = u(longitude);
    const double row = v(latitude);
    TerrainCell cell;
    Status status = cellAt(column, row, cell);
    // A point on the edge of a hole may be rounded into it.
    constexpr double kAside = 1e-4;  // cells
    for (const auto& [right, down] : {std::array{kAside, 0.0}, {-kAside, 0.0}, {0.0, kAside}, {0.0, -kAside}}) {
        if (status != Status::ok) {
            status = cellAt(column + right, row + down, cell);
        }
    }
    return {(cell.eastward + (row - cell.row) * cell.twist) / m_grid.longitudeStep * kDegreesPerRadian,
            (cell.southward + (column - cell.column) * cell.twist) / m_grid.latitudeStep * kDegreesPerRadian};
}

Terrain::Terrain(std::span<const float> heights, const RasterGrid& grid, double voidValue)
    : m_raster(std::make_shared<TerrainRaster>(heights.data(), checked(heights.size(), grid), voidValue)) {}

Terrain::Terrain(std::span<const double> heights, const RasterGrid& grid, double voidValue)
    : m_raster(std::make_shared<TerrainRaster>(heights.data(), checked(heights.size(), grid), voidValue)) {}

Terrain::Terrain(std::span<const std::int16_t> heights, const RasterGrid& grid, double voidValue)
    : m_raster(std::make_shared<TerrainRaster>(heights.data(), checked(heights.size(), grid), voidValue)) {}

void Terrain::heights(std::span<const double> latitude, std::span<const double> longitude, std::span<double> height,
                      std::span<Status> status) const {
    if (longitude.size() != latitude.size() || height.size() != latitude.size() ||
        (!status.empty() && status.size() != latitude.size())) {
        throw std::invalid_argument("heights of " + std::to_string(latitude.size()) + " latitudes need " +
                                    "as many longitudes, heights and, if any, statuses; there are " +
                                    std::to_string(longitude.size()) + ", " + std::to_string(height.size()) + " and " +
                                    std::to_string(status.size()));
    }
    for (std::size_t i = 0; i < latitude.size(); ++i) {
        const Status found = m_raster->heightAt(latitude[i], longitude[i], height[i]);
        if (!status.empty()) {
            status[i] = found;
        }
    }
}

const TerrainRaster& Terrain::raster() const noexcept {
    return *m_raster;
}

}  // namespace vorbel::scene
