// Pixels of a line to the bilinear surface of a raster, for tiles of points.

#include "TerrainTrace.h"

namespace vorbel::scene::VORBEL_KERNELS {

/// The chart's polynomials in height, for the range of each point.
static void openChart(const TerrainChart& __restrict c, TerrainTile& __restrict t) {
    for (int k = 0; k < TerrainChart::kPowers; ++k) {
        const double u0 = c.u[0][k], u1 = c.u[1][k], u2 = c.u[2][k], u3 = c.u[3][k], u4 = c.u[4][k];
        const double v0 = c.v[0][k], v1 = c.v[1][k], v2 = c.v[2][k], v3 = c.v[3][k], v4 = c.v[4][k];
        const double scale = 1.0 / c.rangeScale;
        for (int i = 0; i < t.count; ++i) {
            const double x = (t.range[i] - c.range0) * scale;
            t.u[k][i] = (((u4 * x + u3) * x + u2) * x + u1) * x + u0;
            t.v[k][i] = (((v4 * x + v3) * x + v2) * x + v1) * x + v0;
        }
    }
}

static inline double within(double value, double first, double last) {
    const double low = value > first ? value : first;
    return low < last ? low : last;
}

static void placeInCells(const TerrainChart& __restrict c, const TerrainWindow& __restrict w,
                         TerrainTile& __restrict t) {
    const double scale = 1.0 / c.heightScale;
    for (int i = 0; i < t.count; ++i) {
        const double y = (t.height[i] - c.height0) * scale;
        const double u = (((t.u[4][i] * y + t.u[3][i]) * y + t.u[2][i]) * y + t.u[1][i]) * y + t.u[0][i];
        const double v = (((t.v[4][i] * y + t.v[3][i]) * y + t.v[2][i]) * y + t.v[1][i]) * y + t.v[0][i];
        t.uPerHeight[i] = (((4.0 * t.u[4][i] * y + 3.0 * t.u[3][i]) * y + 2.0 * t.u[2][i]) * y + t.u[1][i]) * scale;
        t.vPerHeight[i] = (((4.0 * t.v[4][i] * y + 3.0 * t.v[3][i]) * y + 2.0 * t.v[2][i]) * y + t.v[1][i]) * scale;
        const int column = static_cast<int>(within(u, w.firstColumn, w.lastColumn));
        const int row = static_cast<int>(within(v, w.firstRow, w.lastRow));
        t.column[i] = static_cast<double>(column);
        t.row[i] = static_cast<double>(row);
        t.a[i] = u - t.column[i];
        t.b[i] = v - t.row[i];
        t.cell[i] = (row - w.baseRow) * w.rowDistance + (column - w.baseColumn);
    }
}

template <class Value>
static void lookUp(const Value* __restrict values, int rowDistance, TerrainTile& __restrict t) {
    for (int i = 0; i < t.count; ++i) {
        t.northWest[i] = static_cast<double>(values[t.cell[i]]);
        t.northEast[i] = static_cast<double>(values[t.cell[i] + 1]);
        t.southWest[i] = static_cast<double>(values[t.cell[i] + rowDistance]);
        t.southEast[i] = static_cast<double>(values[t.cell[i] + rowDistance + 1]);
    }
}

static inline double larger(double a, double b) {
    return a > b ? a : b;
}

/// One of Newton's steps for all points, in the cell where each of them is. How many are not settled.
static int approach(double voidValue, TerrainTile& __restrict t) {
    constexpr double kCloseEnough = 1e-9;  // m
    constexpr double kStraight = 0.05;     // m, over which the chart is
    double open = 0.0;
    for (int i = 0; i < t.count; ++i) {
        const double nw = t.northWest[i], ne = t.northEast[i], sw = t.southWest[i], se = t.southEast[i];
        const double eastward = ne - nw;
        const double southward = sw - nw;
        const double twist = (se - sw) - eastward;
        const double a = t.a[i], b = t.b[i];
        const double surface = nw + a * eastward + b * southward + a * b * twist;
        const double uh = t.uPerHeight[i], vh = t.vPerHeight[i];
        const double rise = 1.0 - (eastward + b * twist) * uh - (southward + a * twist) * vh;
        const double step = (surface - t.height[i]) / rise;
        t.height[i] += step;

        const double nextA = a + step * uh, nextB = b + step * vh;
        const bool stays = (nextA >= 0.0) & (nextA <= 1.0) & (nextB >= 0.0) & (nextB <= 1.0);
        const double left = std::fabs(twist * uh * vh) * (step * step);
        const bool land = (std::fabs(nw) <= kHighest) & (std::fabs(ne) <= kHighest) & (std::fabs(sw) <= kHighest) &
                          (std::fabs(se) <= kHighest) & (nw != voidValue) & (ne != voidValue) & (sw != voidValue) &
                          (se != voidValue);
        const bool settled = stays & land & (left < kCloseEnough * std::fabs(rise)) & (std::fabs(step) < kStraight);
        t.settled[i] = settled ? 1.0 : 0.0;
        open += settled ? 0.0 : 1.0;
    }
    return static_cast<int>(open);
}

/// What can be said of the points' cells, and the heights to give out.
static void judge(const TerrainChart& __restrict c, TerrainTile& __restrict t) {
    constexpr double kSteepest = 0.02;    // rise left, of 1 on level land
    constexpr double kLargestRise = 7.0;  // where heights in steps stay close to the surface
    constexpr double kUnsure = 5e-8;      // m: what is as close as this to the next step may be taken for it
    constexpr double kTie = 0.5 - kUnsure / kHeightStep;
    for (int i = 0; i < t.count; ++i) {
        const double eastward = t.northEast[i] - t.northWest[i];
        const double southward = t.southWest[i] - t.northWest[i];
        const double twist = (t.southEast[i] - t.southWest[i]) - eastward;
        const double uh = t.uPerHeight[i], vh = t.vPerHeight[i];
        const double rise = 1.0 - (eastward + t.b[i] * twist) * uh - (southward + t.a[i] * twist) * vh;
        // Least rise of the line above the surface anywhere in the cell, along the circle and along the line of sight
        const double east2 = eastward + twist, south2 = southward + twist;
        const double outward = 1.0 - larger(eastward * uh, east2 * uh) - larger(southward * vh, south2 * vh);
        const double us = c.cosine * uh - c.uPerRange, vs = c.cosine * vh - c.vPerRange;
        const double inward = c.cosine - larger(eastward * us, east2 * us) - larger(southward * vs, south2 * vs);
        const bool charted = std::fabs(t.height[i] - c.height0) <= c.heightScale;
        const bool plain =
            (t.settled[i] != 0.0) & charted & (outward > kSteepest) & (inward > kSteepest) & (rise < kLargestRise);
        const double stepped = steppedHeight(t.height[i]);
        const bool sure = std::fabs(t.height[i] - stepped) < kTie * kHeightStep;
        t.settled[i] = charted ? t.settled[i] : 0.0;
        t.plain[i] = plain ? 1.0 : 0.0;
        t.stepped[i] = plain & sure ? stepped : __builtin_nan("");
    }
}

/// Newton's steps until all points are settled. How many are not.
static int approachOften(const TerrainChart& chart, const TerrainWindow& window, TerrainTile& tile, int mostPasses) {
    int open = tile.count;
    for (int pass = 0; pass < mostPasses && open > 0; ++pass) {
        placeInCells(chart, window, tile);
        if (window.floats != nullptr) {
            lookUp(window.floats, window.rowDistance, tile);
        } else if (window.doubles != nullptr) {
            lookUp(window.doubles, window.rowDistance, tile);
        } else {
            lookUp(window.integers, window.rowDistance, tile);
        }
        open = approach(window.voidValue, tile);
    }
    return open;
}

static void copyPoint(const TerrainTile& from, int i, TerrainTile& to, int j) {
    to.height[j] = from.height[i];
    to.row[j] = from.row[i];
    to.column[j] = from.column[i];
    to.settled[j] = from.settled[i];
    to.a[j] = from.a[i];
    to.b[j] = from.b[i];
    to.uPerHeight[j] = from.uPerHeight[i];
    to.vPerHeight[j] = from.vPerHeight[i];
    to.northWest[j] = from.northWest[i];
    to.northEast[j] = from.northEast[i];
    to.southWest[j] = from.southWest[i];
    to.southEast[j] = from.southEast[i];
}

/// Brings the points of a tile onto the surface, from the heights they have.
static void trace(const TerrainChart& chart, const TerrainWindow& window, TerrainTile& tile, int mostPasses) {
    constexpr int kTogether = 2;  // passes that most points need
    openChart(chart, tile);
    if (approachOften(chart, window, tile, kTogether) > 0) {
        // The others by themselves
        TerrainTile rest;
        int point[kTile];
        rest.count = 0;
        for (int i = 0; i < tile.count; ++i) {
            if (tile.settled[i] == 0.0) {
                point[rest.count] = i;
                rest.height[rest.count] = tile.height[i];
                for (int k = 0; k < TerrainChart::kPowers; ++k) {
                    rest.u[k][rest.count] = tile.u[k][i];
                    rest.v[k][rest.count] = tile.v[k][i];
                }
                ++rest.count;
            }
        }
        approachOften(chart, window, rest, mostPasses - kTogether);
        for (int j = 0; j < rest.count; ++j) {
            copyPoint(rest, j, tile, point[j]);
        }
    }
    judge(chart, tile);
}

}  // namespace vorbel::scene::VORBEL_KERNELS
