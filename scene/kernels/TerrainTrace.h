#ifndef VORBEL_SCENE_KERNELS_TERRAIN_TRACE_H
#define VORBEL_SCENE_KERNELS_TERRAIN_TRACE_H

#include "PixelToGround.h"

#include <cmath>
#include <cstdint>

namespace vorbel::scene {

/// Heights come in steps, finer than they are known: so the way a point is found leaves no trace in its bits.
constexpr double kHeightStep = 1.0 / 8192.0;  // m

static inline double steppedHeight(double height) {
    constexpr double kWhole = 6755399441055744.0;  // 1.5 * 2^52: what is added to it is rounded to whole numbers
    return ((height * (1.0 / kHeightStep) + kWhole) - kWhole) * kHeightStep;
}

/// The step nearest to a height; or the border between two steps, where it is so close to it that rounding would
/// decide: the more so the less the circle rises above the surface for each metre that it rises.
static inline double stepOrBorder(double height, double inverseRise) {
    constexpr double kUnsure = 2e-8;  // m
    constexpr double kHalf = 0.5 * kHeightStep;
    const double stepped = steppedHeight(height);
    const double off = height - stepped;
    return std::fabs(off) < kHalf - kUnsure * (1.0 + std::fabs(inverseRise)) ? stepped
                                                                             : stepped + std::copysign(kHalf, off);
}

/// Where a line of pixels, or a part of it, lies in a raster: column and row coordinates as polynomials in slant range
/// and height, of degree 4 in each and 5 together: u = sum of u[i][k] x^i y^k with x = (range - range0) / rangeScale,
/// y = (height - height0) / heightScale.
struct TerrainChart {
    static constexpr int kPowers = 5;
    double range0, rangeScale;    // m
    double height0, heightScale;  // m
    double u[kPowers][kPowers], v[kPowers][kPowers];
    double uPerRange, vPerRange;  // derivatives in the middle, 1/m
    double cosine;                // of the incidence in the middle
};

/// A raster, as far as a tile may look into it. One of the pointers is set.
struct TerrainWindow {
    const float* floats;  // value of row and column `base`
    const double* doubles;
    const std::int16_t* integers;
    int rowDistance;
    int baseRow, baseColumn;
    double firstRow, lastRow, firstColumn, lastColumn;  // cells that may be looked at
    double voidValue;
};

/// Points of a line on their way to the surface, kTile of them at most.
struct TerrainTile {
    int count;
    const double* range;  // m
    double* start;        // m: a guess; handed back as one for the next line, which goes on as this one did
    double* height;       // m: the last line's, then this one's; what does not settle stays as it is
    double* stepped;      // m, a step or the border between two; not-a-number if not plain
    double* row;          // of its cell; not-a-number unless the cell is plain: nowhere in it can the surface fold over
    double* column;       // in range, or hide in look angle
};

}  // namespace vorbel::scene

#endif
