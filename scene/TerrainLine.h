#ifndef VORBEL_SCENE_TERRAIN_LINE_H
#define VORBEL_SCENE_TERRAIN_LINE_H

#include "TerrainRaster.h"
#include "kernels/Kernels.h"

#include <vorbel/scene/Orbit.h>
#include <vorbel/scene/PixelToGround.h>

#include <cmath>
#include <span>
#include <vector>

namespace vorbel::scene {

/// Heights on the border between two steps, for pixels of a tile, to the step on whose side the surface is: above if it
/// is above the pixel's point of that height. Not-a-number where that cannot be told.
void settleBorders(const PixelToGround& toGround, const SightFrames& frames, PixelTile& tile,
                   const TerrainRaster& terrain) noexcept;

/// Brings whole lines onto the terrain at once, where it is tame, and says where it is.
///
/// The pixels of a line, and some guards before and after them, are traced to the surface with the heights of the line
/// before as a start. From one of them to the next the terrain is `plain` if in no cell in between it can fold over in
/// range or hide something in look angle; then it rises outwards in both, and each range there has one point. Where
/// this cannot be said, all pixels whose range or look angle such a stretch could have are left open. What is not left
/// open is what following every circle across the raster would find.
class TerrainLine {
public:
    TerrainLine(const TerrainRaster& terrain, const Kernels& kernels, bool squint, LookSide side)
        : m_terrain(terrain), m_toGround(kernels.pixelToGround[0][squint ? 1 : 0]), m_trace(kernels.trace),
          m_stepsOnPlain(kernels.stepsOnPlain), m_side(side) {}

    /// Heights in steps of kHeightStep, or not-a-number for what is left open; nothing if all is. They hold until the
    /// next line.
    /// \param[in] ranges  m
    /// \param[in] same    they are those of the last line
    std::span<const double> find(const State& state, double rate, std::span<const double> ranges, bool same);

    /// Where a pixel of the last line was found otherwise, as a start for the next.
    void remember(std::size_t sample, double height) {
        if (m_before + sample < m_height.size()) {
            m_start[m_before + sample] = height;
            m_height[m_before + sample] = height;
        }
    }

private:
    bool layOut(double rate, std::span<const double> ranges, bool same);
    void traceAll(double rate);
    bool startSpan(double rate, TerrainChart& rough, std::size_t begin, std::size_t end);
    void traceSpan(double rate, TerrainChart& own, std::size_t begin, std::size_t end);
    bool chart(double rate, std::size_t begin, std::size_t end, double lowest, double highest, bool rough,
               TerrainChart& chart, TerrainWindow& window);
    void settleBorders(double rate, std::size_t begin, std::size_t end);
    void leaveOpen(std::size_t begin, std::size_t end);
    bool isPlain(std::size_t node) const {
        return !std::isnan(m_row[node]);
    }
    bool plainBetween(std::size_t node) const;
    void openAround(double rate, std::size_t before, std::size_t after);
    void openBehind(double rate, std::size_t before, std::size_t after, double highest);

    const TerrainRaster& m_terrain;
    const PixelToGround& m_toGround;
    decltype(Kernels::trace) m_trace;
    decltype(Kernels::stepsOnPlain) m_stepsOnPlain;
    LookSide m_side;
    SightFrames m_frames{};
    PixelTile m_pixels{};
    double m_cosine = 0.0;     // of the incidence at the first pixel
    std::size_t m_before = 0;  // guards before the first pixel
    bool m_laidOut = false;    // for the last line's ranges
    bool m_started = false;    // the heights are those of the line before
    std::vector<double> m_range;
    std::vector<double> m_start;
    std::vector<double> m_height;
    std::vector<double> m_stepped;
    std::vector<double> m_row;  // not-a-number: not on the surface, or not in a plain cell
    std::vector<double> m_column;
    std::vector<std::size_t> m_spans;  // first nodes of the parts that have a chart each
    std::vector<TerrainChart> m_charts;
};

}  // namespace vorbel::scene

#endif
