#ifndef VORBEL_BENCHMARKS_ARRAY_SCENE_H
#define VORBEL_BENCHMARKS_ARRAY_SCENE_H

#include "Scene.h"

#include <vorbel/scene/PixelToGround.h>
#include <vorbel/scene/Terrain.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

// What the operations on arrays work on: the acquisition of Scene.h, whose first state serves as the epoch.

namespace bench {

inline constexpr std::size_t kLine = 20000;  // pixels

/// The orbit of two minutes, as 13 state vectors 10 s apart that the class propagated.
inline vorbel::scene::Orbit arrayOrbit() {
    using namespace vorbel::scene;
    const Instant epoch = Instant::of(2022, 4, 14, 10, 21, 7.036419);
    CVorbel orbit = sceneOrbit();
    std::vector<StateVector> vectors;
    for (int i = 0; i <= 12; ++i) {
        const double time = startState().time + 10.0 * i;
        const fVector v = orbit.Lagrange(&time, 7);
        vectors.push_back(
            {epoch.later(10.0 * i), {v.x * 1e3, v.y * 1e3, v.z * 1e3, v.vx * 1e3, v.vy * 1e3, v.vz * 1e3}});
    }
    return Orbit::fromVectors(vectors, epoch);
}

/// Slant ranges of a line, m, from near to far.
inline std::vector<double> lineRanges(std::size_t pixels = kLine) {
    std::vector<double> ranges(pixels);
    for (std::size_t i = 0; i < pixels; ++i) {
        ranges[i] =
            1e3 * (kNearRange + (kFarRange - kNearRange) * static_cast<double>(i) / static_cast<double>(pixels));
    }
    return ranges;
}

/// Heights of a line, m: hills up to 3 km.
inline std::vector<double> lineHeights() {
    std::vector<double> heights(kLine);
    for (std::size_t i = 0; i < kLine; ++i) {
        heights[i] = static_cast<double>(i * 7919 % 3000);
    }
    return heights;
}

/// Rolling land under the first lines, 70 to 530 m high with slopes up to 0.4, 1 second of arc from value to value.
struct RollingLand {
    vorbel::scene::RasterGrid grid{};
    std::vector<float> heights;

    RollingLand() {
        using namespace vorbel::scene;
        const std::vector<double> times{kFirstLine - 0.2, kFirstLine + 0.2};
        const std::vector<double> ranges{1e3 * kNearRange - 2e3, 1e3 * kFarRange + 2e3};
        std::vector<double> latitude(4), longitude(4);
        pixelToGround(arrayOrbit(), LookSide::right, {2, 2}, {times, ranges},
                      {.latitude = latitude, .longitude = longitude});
        const auto [south, north] = std::minmax_element(latitude.begin(), latitude.end());
        const auto [west, east] = std::minmax_element(longitude.begin(), longitude.end());
        constexpr double step = 1.0 / 3600.0;
        grid = {*north,
                *west,
                step,
                step,
                static_cast<std::size_t>((*north - *south) / step),
                static_cast<std::size_t>((*east - *west) / step)};
        heights.resize(grid.rows * grid.columns);
        for (std::size_t i = 0; i < grid.rows; ++i) {
            for (std::size_t j = 0; j < grid.columns; ++j) {
                const auto row = static_cast<double>(i);
                const auto column = static_cast<double>(j);
                heights[i * grid.columns + j] =
                    static_cast<float>(300.0 + 200.0 * std::sin(0.02 * row) * std::cos(0.02 * column) +
                                       30.0 * std::sin(0.11 * row + 0.1 * column));
            }
        }
    }
};

}  // namespace bench

#endif
