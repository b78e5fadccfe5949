#ifndef VORBEL_SCENE_PASS_SEARCH_H
#define VORBEL_SCENE_PASS_SEARCH_H

#include "SightArcs.h"

#include <vorbel/scene/PixelToGround.h>

#include <optional>

namespace vorbel::scene {

/// A point that is looked for.
struct Target {
    double x, y, z;    // m, Earth-fixed
    double rate;       // m/s, unless there is a polynomial
    double notBefore;  // s since the epoch
};

struct Pass {
    double time;   // s since the epoch
    double range;  // m
    double rate;   // m/s
    LookSide side;
    Status status;
};

/// The status of a point that has no pass, of those its passes below the horizon or on the other side gave.
Status worthTelling(Status one, Status other) noexcept;

/// False if the point is not near the ellipsoid or its numbers are none.
bool isTarget(const Target& target, const RatePolynomial& polynomial) noexcept;

/// The first pass, by bisection on the orbit's own pieces: for the points that the kernels leave undecided.
Pass findPass(const OrbitPieces& orbit, const SightArcs& arcs, const Target& target, const RatePolynomial& polynomial,
              std::optional<LookSide> side) noexcept;

}  // namespace vorbel::scene

#endif
