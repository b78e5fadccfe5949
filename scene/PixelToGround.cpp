#include <vorbel/scene/PixelToGround.h>

#include "Arrays.h"
#include "Blocks.h"
#include "Ellipsoid.h"
#include "NotANumber.h"
#include "OrbitPieces.h"
#include "SightFrame.h"
#include "kernels/Kernels.h"

#include <array>
#include <cmath>
#include <utility>

namespace vorbel::scene {

namespace {

// A line shorter than this shares its tiles with the next ones, each point with a frame of its own.
constexpr std::size_t kShortLine = 32;

/// One call: what it was given, the same for all threads.
class GroundCall {
public:
    GroundCall(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels, bool beam,
               const Attitude& attitude, const GroundPoints& points, const Kernels& kernels)
        : m_orbit(orbit), m_side(side), m_extent(extent), m_points(points), m_kernels(kernels), m_beam(beam),
          m_squint(!pixels.rangeRate.empty()), m_time(pixels.time, extent, Input::Between::lines, "time"),
          m_range(pixels.slantRange, extent, Input::Between::samples, "slantRange"),
          m_rate(orZero(pixels.rangeRate), extent, Input::Between::samples, "rangeRate"),
          m_height(orZero(pixels.height), extent, Input::Between::samples, "height"),
          m_pitch(orZero(attitude.pitch), extent, Input::Between::lines, "pitch"),
          m_yaw(orZero(attitude.yaw), extent, Input::Between::lines, "yaw"),
          m_roll(orZero(attitude.roll), extent, Input::Between::lines, "roll") {
        const std::size_t count = extent.lines * extent.samples;
        constexpr std::array<const char*, 10> names{"latitude", "longitude", "height",    "x",       "y",
                                                    "z",        "incidence", "lookAngle", "azimuth", "rangeRate"};
        for (std::size_t i = 0; i < names.size(); ++i) {
            requireLength(outputs()[i], count, names[i]);
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
        bool framed = false;               // all ok
        std::size_t lineOfFrame = m_extent.lines;
        while (begin < end) {
            const std::size_t line = begin / m_extent.samples;
            const std::size_t last = own ? end : std::min(end, (line + 1) * m_extent.samples);
            tile.count = static_cast<int>(std::min<std::size_t>(kTile, last - begin));
            if (own) {
                framed = setFrames(frames, seen, begin, tile.count);
            } else if (line != lineOfFrame) {
                framed = setFrames(frames, seen, begin, 1);
                seen.fill(seen[0]);
                lineOfFrame = line;
            }
            locate(frames, seen, framed, tile, begin, own ? 1 : 0);
            begin += static_cast<std::size_t>(tile.count);
        }
    }

private:
    /// The frames of points from one on, and why some have none.
    /// \return whether all have one
    bool setFrames(SightFrames& frames, std::array<Status, kTile>& seen, std::size_t begin, int count) const noexcept {
        std::array<double, kTile> time{};
        std::size_t line = begin / m_extent.samples;
        std::size_t sample = begin % m_extent.samples;
        m_time.copy(m_extent, line, sample, static_cast<std::size_t>(count), time.data());
        const OrbitPieces& orbit = m_orbit.pieces();
        bool all = true;
        for (int i = 0; i < count; ++i) {
            const bool inside = time[i] >= orbit.span.first && time[i] <= orbit.span.last;
            seen[i] = inside ? Status::ok : std::isnan(time[i]) ? Status::bad_input : Status::outside_orbit;
            time[i] = inside ? time[i] : kNaN;
            all = all && inside;
        }
        // neighbours are mostly on one piece of the orbit
        for (int i = 0, next = 0; i < count; i = next) {
            const OrbitPiece& piece = orbit.pieces[orbit.index(time[i])];
            const auto& [x, y, z] = piece.position;
            const auto& [vx, vy, vz] = piece.velocity;
            for (next = i + 1; next < count && !(time[next] < piece.first || time[next] >= piece.last); ++next) {
            }
            m_kernels.frames.readStates({piece.centre, {x.data(), y.data(), z.data(), vx.data(), vy.data(), vz.data()}},
                                        time.data(), frames, i, next);
        }
        if (m_beam) {
            for (int i = 0; i < count; ++i) {
                setBeamAxis(frames, i, m_pitch.at(line, sample), m_yaw.at(line, sample), m_roll.at(line, sample));
                if (++sample == m_extent.samples) {
                    sample = 0;
                    ++line;
                }
            }
        } else {
            m_kernels.frames.setDopplerAxes(frames, 0, count);
        }
        m_kernels.frames.complete(frames, 0, count, signOf(m_side));
        return all;
    }

    void locate(const SightFrames& frames, const std::array<Status, kTile>& seen, bool framed, PixelTile& tile,
                std::size_t begin, int step) const noexcept {
        const auto count = static_cast<std::size_t>(tile.count);
        const std::size_t line = begin / m_extent.samples;
        const std::size_t sample = begin % m_extent.samples;
        m_range.copy(m_extent, line, sample, count, tile.range);
        m_rate.copy(m_extent, line, sample, count, tile.rate);
        m_height.copy(m_extent, line, sample, count, tile.height);
        const PixelToGround& kernel = m_kernels.pixelToGround[step][m_squint ? 1 : 0];
        const int open = kernel.solve(frames, tile);

        std::array<Status, kTile> status{};
        if (open > 0 || !framed) {
            for (int i = 0; i < tile.count; ++i) {
                if (seen[i] != Status::ok) {
                    status[i] = seen[i];
                    tile.X[i] = kNaN;
                } else if (tile.settled[i] == 0.0) {
                    status[i] = solveCarefully(frames, i * step, tile.range[i], tile.rate[i], tile.height[i], tile.X[i],
                                               tile.Y[i]);
                }
            }
        }
        kernel.finish(frames, tile,
                      {from(m_points.latitude, begin), from(m_points.longitude, begin), from(m_points.incidence, begin),
                       from(m_points.lookAngle, begin), from(m_points.azimuth, begin),
                       m_beam ? from(m_points.rangeRate, begin) : nullptr});
        copy(tile.x, tile, from(m_points.x, begin));
        copy(tile.y, tile, from(m_points.y, begin));
        copy(tile.z, tile, from(m_points.z, begin));
        copy(tile.height, tile, from(m_points.height, begin));
        if (!m_beam) {
            copy(tile.rate, tile, from(m_points.rangeRate, begin));
        }
        if (open > 0 || !framed) {
            clearUnlocated(status, tile, begin);
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

    /// One not-a-number for all: those that come out of a computation have signs of chance.
    void clearUnlocated(const std::array<Status, kTile>& status, const PixelTile& tile,
                        std::size_t begin) const noexcept {
        for (const std::span<double> output : outputs()) {
            double* const out = from(output, begin);
            for (int i = 0; out != nullptr && i < tile.count; ++i) {
                out[i] = located(status[i]) ? out[i] : kNaN;
            }
        }
    }

    std::array<std::span<double>, 10> outputs() const noexcept {
        return {m_points.latitude, m_points.longitude, m_points.height,    m_points.x,       m_points.y,
                m_points.z,        m_points.incidence, m_points.lookAngle, m_points.azimuth, m_points.rangeRate};
    }

    const Orbit& m_orbit;
    LookSide m_side;
    Extent m_extent;
    const GroundPoints& m_points;
    const Kernels& m_kernels;
    bool m_beam;
    bool m_squint;
    Input m_time;
    Input m_range;
    Input m_rate;
    Input m_height;
    Input m_pitch;
    Input m_yaw;
    Input m_roll;
};

void carryOut(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels, bool beam,
              const Attitude& attitude, const GroundPoints& points, const Execution& execution) {
    const GroundCall call(orbit, side, extent, pixels, beam, attitude, points, kernels(execution.instructionSet));
    forEachBlock(extent.lines * extent.samples, execution.threads,
                 [&](std::size_t begin, std::size_t end) noexcept { call.run(begin, end); });
}

}  // namespace

void pixelToGround(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels,
                   const GroundPoints& points, const Execution& execution) {
    carryOut(orbit, side, extent, pixels, false, {}, points, execution);
}

void beamToGround(const Orbit& orbit, LookSide side, const Extent& extent, const Pixels& pixels,
                  const Attitude& attitude, const GroundPoints& points, const Execution& execution) {
    if (!pixels.rangeRate.empty()) {
        throw std::invalid_argument("rangeRate has " + std::to_string(pixels.rangeRate.size()) +
                                    " values; of a beam it is a result, so the input must be empty");
    }
    carryOut(orbit, side, extent, pixels, true, attitude, points, execution);
}

}  // namespace vorbel::scene
