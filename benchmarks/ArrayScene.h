#ifndef VORBEL_BENCHMARKS_ARRAY_SCENE_H
#define VORBEL_BENCHMARKS_ARRAY_SCENE_H

#include "Scene.h"

#include <vorbel/scene/PixelToGround.h>

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

}  // namespace bench

#endif
