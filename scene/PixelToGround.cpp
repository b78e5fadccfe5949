#include <vorbel/scene/PixelToGround.h>

#include "Arrays.h"
#include "Blocks.h"
#include "Ellipsoid.h"
#include "OrbitPieces.h"
#include "SightFrame.h"
#include "kernels/Kernels.h"

#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace vorbel::scene {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A line shorter than this shares its tiles with the next ones, each point with a frame of its own.
constexpr std::size_t kShortLine = 32;

/// One call: what it was given, the same for all threads.
class Call {
public:
    Call(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels, const Attitude* attitude,
         const GroundPoints& points, const Kernels& kernels)
        : m_orbit(orbit), m_side(side), m_extent(extent), m_points(points), m_kernels(kernels), m_beam(attitude),
          m_time(pixels.time, extent, Input::Between::lines, "time", kNaN),
          m_range(pixels.slantRange, extent, Input::Between::samples, "slantRange", kNaN),
          m_rate(pixels.rangeRate, extent, Input::Between::samples, "rangeRate", 0.0),
          m_height(pixels.height, extent, Input::Between::samples, "height", 0.0),
          m_pitch(attitude ? attitude->pitch : none(), extent, Input::Between::lines, "pitch", 0.0),
          m_yaw(attitude ? attitude->yaw : none(), extent, Input::Between::lines, "yaw", 0.0),
          m_roll(attitude ? attitude->roll : none(), extent, Input::Between::lines, "roll", 0.0) {
        const std::size_t count = extent.lines * extent.samples;
        for (const auto& [output, name] :
             {std::pair(points.latitude, "latitude"), std::pair(points.longitude, "longitude"),
              std::pair(points.height, "height"), std::pair(points.x, "x"), std::pair(points.y, "y"),
              std::pair(points.z, "z"), std::pair(points.incidence, "incidence"),
              std::pair(points.lookAngle, "lookAngle"), std::pair(points.azimuth, "azimuth"),
              std::pair(points.rangeRate, "rangeRate")}) {
            requireLength(output, count, name);
        }
        requireLength(points.status, count, "status");
    }

    /// Points [begin, end), counted line by line.
    void run(std::size_t begin, std::size_t end) const noexcept {
        const bool own = m_time.variesInLine() || m_pitch.variesInLine() || m_yaw.variesInLine() ||
                         m_roll.variesInLine() || m_extent.samples < kShortLine;
        SightFrames frames;
        PixelTile tile;
        std::array<Status, kTile> seen{};  // of the frames: not ok, no point of it is
        bool framed = false;  // all ok
        std::size_t lineOfFrame = m_extent.lines;
        while (begin < end) {
            const std::size_t line = begin / m_extent.samples;
            const std::size_t last = own ? end : std::min(end, (line + 1) * m_extent.samples);
            tile.count = static_cast<int>(std::min<std::size_t>(kTile, last - begin));
            if (own) {
                framed = true;
                for (int i = 0; i < tile.count; ++i) {
                    const std::size_t point = begin + static_cast<std::size_t>(i);
                    seen[i] = setFrame(frames, i, point / m_extent.samples, point % m_extent.samples);
                    framed = framed && seen[i] == Status::ok;
                }
            } else if (line != lineOfFrame) {
                seen.fill(setFrame(frames, 0, line, 0));
                framed = seen[0] == Status::ok;
                lineOfFrame = line;
            }
            locate(frames, seen, framed, tile, begin, own ? 1 : 0);
            begin += static_cast<std::size_t>(tile.count);
        }
    }

private:
    static std::span<const double> none() noexcept {
        return {};
    }

    /// The frame of a point, and why there is none.
    Status setFrame(SightFrames& frames, int entry, std::size_t line, std::size_t sample) const noexcept {
        const double time = m_time.at(line, sample);
        const OrbitPieces& orbit = m_orbit.pieces();
        const bool inside = time >= orbit.span.first && time <= orbit.span.last;
        const State state = inside ? evaluate(orbit.pieces[orbit.index(time)], time) : State{kNaN};
        if (m_beam) {
            setBeamFrame(frames, entry, state,
                         beamAxis(state, m_pitch.at(line, sample), m_yaw.at(line, sample), m_roll.at(line, sample)),
                         m_side);
        } else {
            setDopplerFrame(frames, entry, state, m_side);
        }
        if (std::isnan(time)) {
            return Status::bad_input;
        }
        return inside ? Status::ok : Status::outside_orbit;
    }

    void locate(const SightFrames& frames, const std::array<Status, kTile>& seen, bool framed, PixelTile& tile,
                std::size_t begin, int step) const noexcept {
        const auto count = static_cast<std::size_t>(tile.count);
        const std::size_t line = begin / m_extent.samples;
        const std::size_t sample = begin % m_extent.samples;
        m_range.copy(m_extent, line, sample, count, tile.range);
        m_rate.copy(m_extent, line, sample, count, tile.rate);
        m_height.copy(m_extent, line, sample, count, tile.height);
        const int open = m_kernels.solve[step](frames, tile);

        std::array<Status, kTile> status{};
        if (open > 0 || !framed) {
            for (int i = 0; i < tile.count; ++i) {
                if (seen[i] != Status::ok) {
                    status[i] = seen[i];
                    tile.X[i] = kNaN;
                } else if (tile.settled[i] == 0.0) {
                    status[i] = solveCarefully(frames, i * step, tile.range[i], tile.rate[i], tile.height[i],
                                               tile.X[i], tile.Y[i]);
                }
            }
        }
        m_kernels.finish[step](
            frames, tile,
            {from(m_points.latitude, begin), from(m_points.longitude, begin), from(m_points.incidence, begin),
             from(m_points.lookAngle, begin), from(m_points.azimuth, begin),
             m_beam ? from(m_points.rangeRate, begin) : nullptr});
        copy(tile.x, tile, from(m_points.x, begin));
        copy(tile.y, tile, from(m_points.y, begin));
        copy(tile.z, tile, from(m_points.z, begin));
        copyLocated(tile.height, tile, from(m_points.height, begin));
        if (!m_beam) {
            copyLocated(tile.rate, tile, from(m_points.rangeRate, begin));
        }
        if (!m_points.status.empty()) {
            std::copy_n(status.begin(), tile.count, m_points.status.begin() + static_cast<std::ptrdiff_t>(begin));
        }
    }

    static void copy(const double* values, const PixelTile& tile, double* out) noexcept {
        if (out != nullptr) {
            std::copy_n(values, tile.count, out);
        }
    }

    static void copyLocated(const double* values, const PixelTile& tile, double* out) noexcept {
        if (out != nullptr) {
            std::transform(values, values + tile.count, tile.X, out,
                           [](double value, double X) { return std::isnan(X) ? kNaN : value; });
        }
    }

    const Orbit& m_orbit;
    LookSide m_side;
    Extent m_extent;
    const GroundPoints& m_points;
    const Kernels& m_kernels;
    bool m_beam;
    Input m_time;
    Input m_range;
    Input m_rate;
    Input m_height;
    Input m_pitch;
    Input m_yaw;
    Input m_roll;
};

void carryOut(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels, const Attitude* attitude,
              const GroundPoints& points, const Execution& execution) {
    const Call call(orbit, side, extent, pixels, attitude, points, kernels(execution.instructionSet));
    forEachBlock(extent.lines * extent.samples, execution.threads,
                 [&](std::size_t begin, std::size_t end) noexcept { call.run(begin, end); });
}

}  // namespace

void pixelToGround(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels,
                   const GroundPoints& points, const Execution& execution) {
    carryOut(orbit, side, extent, pixels, nullptr, points, execution);
}

void beamToGround(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels,
                  const Attitude& attitude, const GroundPoints& points, const Execution& execution) {
    if (!pixels.rangeRate.empty()) {
        throw std::invalid_argument("rangeRate has " + std::to_string(pixels.rangeRate.size()) +
                                    " values; of a beam it is a result, so the input must be empty");
    }
    carryOut(orbit, side, extent, pixels, &attitude, points, execution);
}

}  // namespace vorbel::scene
