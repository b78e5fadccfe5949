#ifndef VORBEL_SCENE_TERRAIN_LINE_H
#define VORBEL_SCENE_TERRAIN_LINE_H

#include "TerrainRaster.h"
#include "kernels/Kernels.h"

#include <vorbel/scene/Orbit.h>
#include <vorbel/scene/PixelToGround.h>

#include <span>
#include <vector>

namespace vorbel::scene {

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
          m_side(side) {}

    /// Heights in steps of kHeightStep, or not-a-number for what is left open.
    /// \param[in]  ranges   m
    /// \param[out] heights  as many
    void find(const State& state, double rate, std::span<const double> ranges, std::span<double> heights);

    /// Where a pixel of the last line was found otherwise, as a start for the next.
    void remember(std::size_t sample, double height) {
        if (m_before + sample < m_height.size()) {
            m_height[m_before + sample] = height;
        }
    }

private:
    bool layOut(double rate, std::span<const double> ranges);
    void traceAll(double rate);
    void traceSpan(double rate, std::size_t begin, std::size_t end);
    bool chart(double rate, std::size_t begin, std::size_t end, double lowest, double highest, bool rough,
               TerrainChart& chart, TerrainWindow& window);
    void traceTile(const TerrainChart& chart, const TerrainWindow& window, std::size_t begin, std::size_t end,
                   int passes);
    bool plainBetween(std::size_t node) const;
    void openAround(double rate, std::size_t before, std::size_t after);
    void openBehind(double rate, std::size_t before, std::size_t after, double highest);

    const TerrainRaster& m_terrain;
    const PixelToGround& m_toGround;
    decltype(Kernels::trace) m_trace;
    LookSide m_side;
    SightFrames m_frames{};
    PixelTile m_pixels{};
    TerrainTile m_tile{};
    double m_cosine = 0.0;     // of the incidence at the first pixel
    std::size_t m_before = 0;  // guards before the first pixel
    bool m_started = false;    // the heights are those of the line before
    std::vector<double> m_range;
    std::vector<double> m_height;
    std::vector<double> m_stepped;
    std::vector<double> m_row;
    std::vector<double> m_column;
    std::vector<char> m_plain;
    std::vector<char> m_open;
    std::vector<TerrainChart> m_charts;
};

}  // namespace vorbel::scene

#endif
