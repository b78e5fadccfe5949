#ifndef VORBEL_SCENE_KERNELS_KERNELS_H
#define VORBEL_SCENE_KERNELS_KERNELS_H

#include "GroundToPixel.h"
#include "PixelToGround.h"
#include "TerrainTrace.h"

#include <vorbel/scene/Execution.h>

namespace vorbel::scene {

/// How many points are seen on the wanted side on an arc, at zero-Doppler or with a range rate, and what leads there.
struct GroundToPixel {
    int (*zeroDoppler)(const SightArc& arc, const WantedSights& wanted, const TargetTile& tile);
    int (*squinted)(const SightArc& arc, const RatePolynomial& polynomial, const WantedSights& wanted,
                    const TargetTile& tile);
    void (*cartesian)(const GeodeticTile& tile);
    void (*gather)(const GatheringTile& tile);
    int (*crossings)(const CrossingTile& tile);
    void (*coarseTimes)(const CoarseStretch& stretch, const SpanParts& parts, const CoarseTile& tile);
};

/// The array kernels, compiled once for each instruction set from the same sources.
struct Kernels {
    FrameSteps frames;
    // [0][] one frame for the whole tile, [1][] one for each point; [][0] zero-Doppler, [][1] any range rate
    PixelToGround pixelToGround[2][2];
    GroundToPixel groundToPixel;
    int (*trace)(const TerrainChart& chart, const TerrainWindow& window, const TerrainTile& tile, int mostPasses);
    int (*stepsOnPlain)(const double* row, const double* column, int most);
};

/// The kernels of an instruction set.
/// \throws std::invalid_argument  one that this machine lacks
const Kernels& kernels(InstructionSet set);

// Where they stand: one object file each.
namespace baseline {
extern const Kernels kKernels;
}
namespace avx2 {
extern const Kernels kKernels;
}
namespace avx512 {
extern const Kernels kKernels;
}

}  // namespace vorbel::scene

#endif
