#include <vorbel/scene/Terrain.h>

#include "Arrays.h"
#include "Blocks.h"
#include "NotANumber.h"
#include "SightFrame.h"
#include "TerrainLine.h"
#include "TerrainSearch.h"
#include "kernels/Kernels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace vorbel::scene {

namespace {

// Lines shorter than this are not worth the guards of TerrainLine.
constexpr std::size_t kLongLine = 64;

/// One call: what it was given, the same for all threads.
class TerrainCall {
public:
    TerrainCall(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels, const Terrain& terrain,
                const TerrainPoints& points, AmongSeveral choice, const Kernels& kernels)
        : m_orbit(orbit), m_side(side), m_extent(extent), m_terrain(terrain.raster()), m_points(points),
          m_choice(choice), m_kernels(kernels), m_squint(!pixels.rangeRate.empty()),
          m_time(pixels.time, extent, Input::Between::lines, "time"),
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

    /// Lines of their own time and rate are taken whole.
    bool byLines() const noexcept {
        return !m_time.variesInLine() && !m_rate.variesInLine() && m_extent.samples >= kLongLine;
    }

    /// Points [begin, end), counted line by line.
    void runPoints(std::size_t begin, std::size_t end) const {
        SightFrames frames;
        while (begin < end) {
            PixelTile tile;
            Findings findings;
            tile.count = static_cast<int>(std::min<std::size_t>(kTile, end - begin));
            for (int i = 0; i < tile.count; ++i) {
                const std::size_t line = (begin + static_cast<std::size_t>(i)) / m_extent.samples;
                const std::size_t sample = (begin + static_cast<std::size_t>(i)) % m_extent.samples;
                const double time = m_time.at(line, sample);
                const State state = m_orbit.at(time);
                setDopplerFrame(frames, i, state, m_side);
                tile.range[i] = m_range.at(line, sample);
                tile.rate[i] = m_rate.at(line, sample);
                tile.height[i] = findings.take(i, search(time, state, tile.range[i], tile.rate[i]));
            }
            solve(frames, 1, tile);
            settle(frames, 1, tile, findings);
            write(frames, 1, tile, findings, begin);
            begin += static_cast<std::size_t>(tile.count);
        }
    }

    /// Lines [begin, end).
    void runLines(std::size_t begin, std::size_t end) const {
        TerrainLine tracer(m_terrain, m_kernels, m_squint, m_side);
        SightFrames frames;
        std::vector<double> ranges(m_extent.samples);
        const std::vector<double> none(m_extent.samples, kNaN);
        for (std::size_t line = begin; line < end; ++line) {
            const bool same = line != begin && !m_range.variesByLine();
            if (!same) {
                m_range.copy(m_extent, line, 0, ranges.size(), ranges.data());
            }
            const double time = m_time.at(line, 0);
            const double rate = m_rate.at(line, 0);
            const State state = m_orbit.at(time);
            setDopplerFrame(frames, 0, state, m_side);
            const std::span<const double> found = tracer.find(state, rate, ranges, same);
            const std::span<const double> heights = found.empty() ? std::span(none) : found;
            PixelTile tile;
            std::fill_n(tile.rate, kTile, rate);
            for (std::size_t first = 0; first < ranges.size(); first += kTile) {
                Findings findings;
                tile.count = static_cast<int>(std::min<std::size_t>(kTile, ranges.size() - first));
                std::copy_n(&ranges[first], tile.count, tile.range);
                std::copy_n(&heights[first], tile.count, tile.height);
                if (solve(frames, 0, tile) > 0) {
                    searchOpen(time, state, tile, findings, tracer, first);
                    solve(frames, 0, tile);
                    settle(frames, 0, tile, findings);
                }
                write(frames, 0, tile, findings, line * m_extent.samples + first);
            }
        }
    }

private:
    /// What is said of the points of a tile.
    struct Findings {
        std::array<Status, kTile> status{};
        std::array<std::uint8_t, kTile> mask{};

        /// The point's height, or 0 for none.
        double take(int i, const TerrainPoint& point) noexcept {
            status[i] = point.status;
            mask[i] = point.mask;
            return located(point.status) ? point.height : 0.0;
        }
    };

    TerrainPoint search(double time, const State& state, double range, double rate) const noexcept {
        TerrainPoint point;
        PixelCircle circle{};
        if (std::isnan(state.x)) {
            point.status = std::isfinite(time) ? Status::outside_orbit : Status::bad_input;
            return point;
        }
        point.status = pixelCircle(state, m_side, range, rate, circle);
        if (point.status == Status::ok) {
            point = findOnTerrain(circle, m_terrain, m_choice);
            // TerrainLine gives nothing but steps, and nothing but points like these.
            constexpr double kSteep = 8.0;
            const bool tame = point.status == Status::ok && point.mask == 0 && std::abs(point.rise) < kSteep;
            point.height = tame ? stepOf(point, state, range, rate) : point.height;
        }
        return point;
    }

    double stepOf(const TerrainPoint& point, const State& state, double range, double rate) const noexcept {
        const double near = stepOrBorder(point.height, 1.0 / point.rise);
        if (near == steppedHeight(near)) {
            return near;
        }
        SightFrames frame;
        setDopplerFrame(frame, 0, state, m_side);
        PixelTile tile;
        tile.count = 1;
        tile.range[0] = range;
        tile.rate[0] = rate;
        tile.height[0] = near;
        settleBorders(m_kernels.pixelToGround[0][m_squint ? 1 : 0], frame, tile, m_terrain);
        return std::isnan(tile.height[0]) ? steppedHeight(point.height) : tile.height[0];
    }

    /// The points of a tile, pixels of a line from `first` on, that the line left open.
    void searchOpen(double time, const State& state, PixelTile& tile, Findings& findings, TerrainLine& tracer,
                    std::size_t first) const noexcept {
        for (int i = 0; i < tile.count; ++i) {
            if (std::isnan(tile.height[i])) {
                tile.height[i] = findings.take(i, search(time, state, tile.range[i], tile.rate[i]));
                if (located(findings.status[i])) {
                    tracer.remember(first + static_cast<std::size_t>(i), tile.height[i]);
                }
            }
        }
    }

    /// How many points of a tile have no height, or are left open at theirs.
    int solve(const SightFrames& frames, int step, PixelTile& tile) const noexcept {
        return m_kernels.pixelToGround[step][m_squint ? 1 : 0].solve(frames, tile);
    }

    /// What the solution of a tile leaves open.
    static void settle(const SightFrames& frames, int step, PixelTile& tile, Findings& findings) noexcept {
        for (int i = 0; i < tile.count; ++i) {
            Status& status = findings.status[i];
            if (located(status) && tile.settled[i] == 0.0) {
                const Status careful =
                    solveCarefully(frames, i * step, tile.range[i], tile.rate[i], tile.height[i], tile.X[i], tile.Y[i]);
                status = careful == Status::ok ? status : careful;
            }
            if (!located(status)) {
                tile.X[i] = kNaN;
                tile.Y[i] = kNaN;
                tile.height[i] = kNaN;
            }
        }
    }

    /// The points of a solved tile, from `begin` on.
    void write(const SightFrames& frames, int step, PixelTile& tile, const Findings& findings,
               std::size_t begin) const noexcept {
        const PixelToGround& kernel = m_kernels.pixelToGround[step][m_squint ? 1 : 0];
        std::array<double, kTile> room1;
        std::array<double, kTile> room2;
        const bool slopes = !m_points.localIncidence.empty();
        double* const latitude = slopes && m_points.latitude.empty() ? room1.data() : from(m_points.latitude, begin);
        double* const longitude = slopes && m_points.longitude.empty() ? room2.data() : from(m_points.longitude, begin);
        kernel.finish(
            frames, tile,
            {latitude, longitude, from(m_points.incidence, begin), from(m_points.lookAngle, begin), nullptr, nullptr});
        copy(tile.x, tile, from(m_points.x, begin));
        copy(tile.y, tile, from(m_points.y, begin));
        copy(tile.z, tile, from(m_points.z, begin));
        copy(tile.height, tile, from(m_points.height, begin));
        if (slopes) {
            std::array<double, kTile> eastward;
            std::array<double, kTile> southward;
            for (std::size_t i = 0; i < static_cast<std::size_t>(tile.count); ++i) {
                const TerrainSlope slope = m_terrain.slopeAt(latitude[i], longitude[i]);
                eastward[i] = slope.eastward;
                southward[i] = slope.southward;
            }
            kernel.localIncidence(frames, tile, eastward.data(), southward.data(),
                                  from(m_points.localIncidence, begin));
        }
        copy(findings.mask.data(), tile, from(m_points.mask, begin));
        copy(findings.status.data(), tile, from(m_points.status, begin));
    }

    template <class T>
    static void copy(const T* values, const PixelTile& tile, T* out) noexcept {
        if (out != nullptr) {
            std::copy_n(values, tile.count, out);
        }
    }

    const Orbit& m_orbit;
    LookSide m_side;
    Extent m_extent;
    const TerrainRaster& m_terrain;
    const TerrainPoints& m_points;
    AmongSeveral m_choice;
    const Kernels& m_kernels;
    bool m_squint;
    Input m_time;
    Input m_range;
    Input m_rate;
};

}  // namespace

void pixelToTerrain(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels,
                    const Terrain& terrain, const TerrainPoints& points, AmongSeveral choice,
                    const Execution& execution) {
    const TerrainCall call(orbit, side, extent, pixels, terrain, points, choice, kernels(execution.instructionSet));
    if (call.byLines()) {
        // Many lines at a time, since each is a start for the next, but some work for every thread
        const std::size_t threads =
            std::max(execution.threads == 0 ? std::thread::hardware_concurrency() : execution.threads, 1U);
        const std::size_t lines = std::clamp<std::size_t>(extent.lines / (4 * threads), 16, 256);
        forEachBlock(
            extent.lines, execution.threads, [&](std::size_t begin, std::size_t end) { call.runLines(begin, end); },
            lines);
    } else {
        constexpr std::size_t kPoints = 1024;  // much work each
        forEachBlock(
            extent.lines * extent.samples, execution.threads,
            [&](std::size_t begin, std::size_t end) { call.runPoints(begin, end); }, kPoints);
    }
}

void terrainGrid(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels, const Terrain& terrain,
                 std::size_t linesPerBlock, const std::function<void(const TerrainGridBlock&)>& take,
                 AmongSeveral choice, const Execution& execution) {
    if (linesPerBlock == 0) {
        throw std::invalid_argument("a block of a terrain grid has 0 lines, it must have at least 1");
    }
    const TerrainPoints none;
    [[maybe_unused]] const TerrainCall whole(orbit, side, extent, pixels, terrain, none, choice,
                                             kernels(execution.instructionSet));
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
