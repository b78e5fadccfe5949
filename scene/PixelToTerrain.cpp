#include <vorbel/scene/Terrain.h>

#include "Arrays.h"
#include "Blocks.h"
#include "Ellipsoid.h"
#include "TerrainSearch.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace vorbel::scene {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// One call: what it was given, the same for all threads.
class Call {
public:
    Call(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels, const Terrain& terrain,
         const TerrainPoints& points, AmongSeveral choice)
        : m_orbit(orbit), m_side(side), m_extent(extent), m_terrain(terrain.raster()), m_points(points),
          m_choice(choice), m_time(pixels.time, extent, Input::Between::lines, "time"),
          m_range(pixels.slantRange, extent, Input::Between::samples, "slantRange"),
          m_rate(orZero(pixels.rangeRate), extent, Input::Between::samples, "rangeRate") {
        if (!pixels.height.empty()) {
            throw std::invalid_argument("height has " + std::to_string(pixels.height.size()) +
                                        " values; on terrain it is a result, so the input must be empty");
        }
        const std::size_t count = extent.lines * extent.samples;
        for (const auto& [output, name] :
             {std::pair(points.latitude, "latitude"), std::pair(points.longitude, "longitude"),
              std::pair(points.height, "height"), std::pair(points.x, "x"), std::pair(points.y, "y"),
              std::pair(points.z, "z"), std::pair(points.incidence, "incidence"),
              std::pair(points.localIncidence, "localIncidence"), std::pair(points.lookAngle, "lookAngle")}) {
            requireLength(output, count, name);
        }
        requireLength(points.mask, count, "mask");
        requireLength(points.status, count, "status");
    }

    /// Points [begin, end), counted line by line.
    void run(std::size_t begin, std::size_t end) const noexcept {
        std::size_t line = begin / m_extent.samples;
        std::size_t sample = begin % m_extent.samples;
        for (; begin < end; ++begin) {
            write(begin, locate(m_time.at(line, sample), m_range.at(line, sample), m_rate.at(line, sample)));
            if (++sample == m_extent.samples) {
                sample = 0;
                ++line;
            }
        }
    }

private:
    TerrainPoint locate(double time, double range, double rate) const noexcept {
        TerrainPoint point;
        PixelCircle circle{};
        const State state = m_orbit.at(time);
        if (std::isnan(state.x)) {
            point.status = std::isnan(time) ? Status::bad_input : Status::outside_orbit;
            return point;
        }
        point.status = pixelCircle(state, m_side, range, rate, circle);
        return point.status == Status::ok ? findOnTerrain(circle, m_terrain, m_choice) : point;
    }

    void write(std::size_t i, const TerrainPoint& point) const noexcept {
        const bool number = located(point.status);
        const auto set = [i, number](std::span<double> output, double value) {
            if (!output.empty()) {
                output[i] = number ? value : kNaN;
            }
        };
        set(m_points.latitude, point.latitude);
        set(m_points.longitude, point.longitude);
        set(m_points.height, point.height);
        set(m_points.x, point.position[0]);
        set(m_points.y, point.position[1]);
        set(m_points.z, point.position[2]);
        set(m_points.incidence, point.incidence);
        set(m_points.localIncidence, point.localIncidence);
        set(m_points.lookAngle, point.lookAngle);
        if (!m_points.mask.empty()) {
            m_points.mask[i] = point.mask;
        }
        if (!m_points.status.empty()) {
            m_points.status[i] = point.status;
        }
    }

    const Orbit& m_orbit;
    LookSide m_side;
    Extent m_extent;
    const TerrainRaster& m_terrain;
    const TerrainPoints& m_points;
    AmongSeveral m_choice;
    Input m_time;
    Input m_range;
    Input m_rate;
};

}  // namespace

void pixelToTerrain(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels,
                    const Terrain& terrain, const TerrainPoints& points, AmongSeveral choice,
                    const Execution& execution) {
    const Call call(orbit, side, extent, pixels, terrain, points, choice);
    forEachBlock(extent.lines * extent.samples, execution.threads,
                 [&](std::size_t begin, std::size_t end) noexcept { call.run(begin, end); });
}

void terrainGrid(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels, const Terrain& terrain,
                 std::size_t linesPerBlock, const std::function<void(const TerrainGridBlock&)>& take,
                 AmongSeveral choice, const Execution& execution) {
    if (linesPerBlock == 0) {
        throw std::invalid_argument("a block of a terrain grid has 0 lines, it must have at least 1");
    }
    const Call whole(orbit, side, extent, pixels, terrain, {},
                     choice);  // so that lengths are checked against the scene
    const std::size_t most = std::min(linesPerBlock, extent.lines) * extent.samples;
    std::vector<double> latitude(most);
    std::vector<double> longitude(most);
    std::vector<double> height(most);
    std::vector<double> localIncidence(most);
    std::vector<std::uint8_t> mask(most);
    std::vector<Status> status(most);
    // An array of one value for each line or each point is cut to the block.
    const auto part = [&](std::span<const double> values, bool perLine, std::size_t first, std::size_t lines) {
        const std::size_t step = values.size() <= 1                               ? 0
                                 : values.size() == extent.lines * extent.samples ? extent.samples
                                 : perLine && values.size() == extent.lines       ? 1
                                                                                  : 0;
        return step == 0 ? values : values.subspan(first * step, lines * step);
    };
    for (std::size_t first = 0; first < extent.lines; first += linesPerBlock) {
        const Extent block{std::min(linesPerBlock, extent.lines - first), extent.samples};
        const std::size_t count = block.lines * block.samples;
        const Pixels some{part(pixels.time, true, first, block.lines),
                          part(pixels.slantRange, false, first, block.lines),
                          part(pixels.rangeRate, false, first, block.lines)};
        TerrainPoints points;
        points.latitude = std::span(latitude).first(count);
        points.longitude = std::span(longitude).first(count);
        points.height = std::span(height).first(count);
        points.localIncidence = std::span(localIncidence).first(count);
        points.mask = std::span(mask).first(count);
        points.status = std::span(status).first(count);
        pixelToTerrain(orbit, side, block, some, terrain, points, choice, execution);
        take({first, block, points.latitude, points.longitude, points.height, points.localIncidence, points.mask,
              points.status});
    }
}

}  // namespace vorbel::scene
