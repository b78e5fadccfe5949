// Pixels of a line to the bilinear surface of a raster, for tiles of points.

#include "TerrainTrace.h"

#include <cmath>
#include <cstring>

namespace vorbel::scene::VORBEL_KERNELS {

namespace {

/// Where points are in the cells that they are looked for in, and what they come to.
struct TraceRoom {
    int count;
    double range[kTile];   // m
    double height[kTile];  // m: a guess, then a better one
    double row[kTile], column[kTile];
    int cell[kTile];                              // its north-western value
    double a[kTile], b[kTile];                    // from the cell's western and northern side, in cells
    double uPerHeight[kTile], vPerHeight[kTile];  // 1/m
    double uCurvature[kTile], vCurvature[kTile];  // half the second derivatives, 1/m²
    double settled[kTile];                        // 1: the height is the surface's to 1e-8 m
    double stepped[kTile], plainRow[kTile];       // as in TerrainTile
};

inline double within(double value, double first, double last) {
    const double low = value > first ? value : first;
    return low < last ? low : last;
}

inline double larger(double a, double b) {
    return a > b ? a : b;
}

/// How many of these are 1, of zeros and ones.
inline int countOf(const double* __restrict ones, int count) {
    int sum = 0;
    for (int i = 0; i < count; ++i) {
        sum += static_cast<int>(ones[i]);
    }
    return sum;
}

}  // namespace

static void placeInCells(const TerrainChart& __restrict c, const TerrainWindow& __restrict w, TraceRoom& __restrict t) {
    const double perRange = 1.0 / c.rangeScale;
    const double perHeight = 1.0 / c.heightScale;
    const double lowest = c.height0 - c.heightScale, highest = c.height0 + c.heightScale;
    const double range0 = c.range0, height0 = c.height0;
    const double u00 = c.u[0][0], u10 = c.u[1][0], u20 = c.u[2][0], u30 = c.u[3][0], u40 = c.u[4][0];
    const double u01 = c.u[0][1], u11 = c.u[1][1], u21 = c.u[2][1], u31 = c.u[3][1], u41 = c.u[4][1];
    const double u02 = c.u[0][2], u12 = c.u[1][2], u22 = c.u[2][2], u32 = c.u[3][2];
    const double u03 = c.u[0][3], u13 = c.u[1][3], u23 = c.u[2][3], u04 = c.u[0][4], u14 = c.u[1][4];
    const double v00 = c.v[0][0], v10 = c.v[1][0], v20 = c.v[2][0], v30 = c.v[3][0], v40 = c.v[4][0];
    const double v01 = c.v[0][1], v11 = c.v[1][1], v21 = c.v[2][1], v31 = c.v[3][1], v41 = c.v[4][1];
    const double v02 = c.v[0][2], v12 = c.v[1][2], v22 = c.v[2][2], v32 = c.v[3][2];
    const double v03 = c.v[0][3], v13 = c.v[1][3], v23 = c.v[2][3], v04 = c.v[0][4], v14 = c.v[1][4];
    const double firstRow = w.firstRow, lastRow = w.lastRow, firstColumn = w.firstColumn, lastColumn = w.lastColumn;
    const int baseRow = w.baseRow, baseColumn = w.baseColumn, rowDistance = w.rowDistance;
    for (int i = 0; i < t.count; ++i) {
        const double x = (t.range[i] - range0) * perRange;
        const double height = within(t.height[i], lowest, highest);
        const double y = (height - height0) * perHeight;
        const double u0 = (((u40 * x + u30) * x + u20) * x + u10) * x + u00;
        const double u1 = (((u41 * x + u31) * x + u21) * x + u11) * x + u01;
        const double u2 = ((u32 * x + u22) * x + u12) * x + u02;
        const double u3 = (u23 * x + u13) * x + u03;
        const double u4 = u14 * x + u04;
        const double v0 = (((v40 * x + v30) * x + v20) * x + v10) * x + v00;
        const double v1 = (((v41 * x + v31) * x + v21) * x + v11) * x + v01;
        const double v2 = ((v32 * x + v22) * x + v12) * x + v02;
        const double v3 = (v23 * x + v13) * x + v03;
        const double v4 = v14 * x + v04;
        const double u = (((u4 * y + u3) * y + u2) * y + u1) * y + u0;
        const double v = (((v4 * y + v3) * y + v2) * y + v1) * y + v0;
        t.height[i] = height;
        t.uPerHeight[i] = (((4.0 * u4 * y + 3.0 * u3) * y + 2.0 * u2) * y + u1) * perHeight;
        t.vPerHeight[i] = (((4.0 * v4 * y + 3.0 * v3) * y + 2.0 * v2) * y + v1) * perHeight;
        t.uCurvature[i] = (3.0 * u3 * y + u2) * (perHeight * perHeight);
        t.vCurvature[i] = (3.0 * v3 * y + v2) * (perHeight * perHeight);
        const int column = static_cast<int>(within(u, firstColumn, lastColumn));
        const int row = static_cast<int>(within(v, firstRow, lastRow));
        const auto west = static_cast<double>(column);
        const auto north = static_cast<double>(row);
        t.column[i] = west;
        t.row[i] = north;
        t.a[i] = u - west;
        t.b[i] = v - north;
        t.cell[i] = (row - baseRow) * rowDistance + (column - baseColumn);
    }
}

/// Two of Newton's steps for all points, in the cell where each of them is, and what can be said of that cell. The way
/// of a point over it is taken to second order in height. How many are not settled.
template <class Value>
// NOLINTNEXTLINE(readability-function-cognitive-complexity): the conditions of one loop that the compiler vectorises
static int approach(const TerrainChart& __restrict c, const Value* __restrict values, int rowDistance, double voidValue,
                    TraceRoom& __restrict t) {
    constexpr double kCloseEnough = 1e-9;  // m
    constexpr double kLongest = 3.0;       // m, of a step: over it the way is of second order
    constexpr double kSteepest = 0.02;     // rise left, of 1 on level land
    constexpr double kLargestRise = 7.0;   // where heights in steps stay close to the surface
    // The values of a side stand beside each other, and are fetched together.
    Value north[2 * kTile];
    Value south[2 * kTile];
    for (int i = 0; i < t.count; ++i) {
        std::memcpy(&north[2 * i], &values[t.cell[i]], 2 * sizeof(Value));
        std::memcpy(&south[2 * i], &values[t.cell[i] + rowDistance], 2 * sizeof(Value));
    }
    const double cosine = c.cosine, uPerRange = c.uPerRange, vPerRange = c.vPerRange;
    const double height0 = c.height0, heightScale = c.heightScale;
    for (int i = 0; i < t.count; ++i) {
        const auto nw = static_cast<double>(north[2 * i]);
        const auto ne = static_cast<double>(north[2 * i + 1]);
        const auto sw = static_cast<double>(south[2 * i]);
        const auto se = static_cast<double>(south[2 * i + 1]);
        const double eastward = ne - nw;
        const double southward = sw - nw;
        const double twist = (se - sw) - eastward;
        const double a = t.a[i], b = t.b[i], uh = t.uPerHeight[i], vh = t.vPerHeight[i];
        const double rise = 1.0 - (eastward + b * twist) * uh - (southward + a * twist) * vh;
        const double inverse = 1.0 / rise;
        const double step = (nw + a * eastward + b * southward + a * b * twist - t.height[i]) * inverse;

        const double a1 = a + step * (uh + step * t.uCurvature[i]), b1 = b + step * (vh + step * t.vCurvature[i]);
        const double uh1 = uh + 2.0 * step * t.uCurvature[i], vh1 = vh + 2.0 * step * t.vCurvature[i];
        const double rise1 = 1.0 - (eastward + b1 * twist) * uh1 - (southward + a1 * twist) * vh1;
        const double inverse1 = 1.0 / rise1;
        const double height1 = t.height[i] + step;
        const double step1 = (nw + a1 * eastward + b1 * southward + a1 * b1 * twist - height1) * inverse1;
        const double a2 = a1 + step1 * uh1, b2 = b1 + step1 * vh1;
        const double height = height1 + step1;
        const double left = std::fabs(twist * uh * vh * inverse1) * (step1 * step1);

        // What is not-a-number gives no step; where a difference from the void value vanishes, a value is missing.
        const double most = larger(larger(std::fabs(nw), std::fabs(ne)), larger(std::fabs(sw), std::fabs(se)));
        const double given = ((nw - voidValue) * (ne - voidValue)) * ((sw - voidValue) * (se - voidValue));
        const bool good = (std::fabs(a2 - 0.5) <= 0.5) & (std::fabs(b2 - 0.5) <= 0.5) & (left < kCloseEnough) &
                          (std::fabs(step) < kLongest) & (most <= kHighest) & (given != 0.0);
        t.settled[i] = good ? 1.0 : 0.0;
        t.height[i] = height1 + (good ? step1 : 0.0);

        // Least rise of the line above the surface anywhere in the cell, along the circle and along the line of sight
        const double east2 = eastward + twist, south2 = southward + twist;
        const double outward = 1.0 - larger(eastward * uh, east2 * uh) - larger(southward * vh, south2 * vh);
        const double us = cosine * uh - uPerRange, vs = cosine * vh - vPerRange;
        const double inward = cosine - larger(eastward * us, east2 * us) - larger(southward * vs, south2 * vs);
        const bool plain = good & (std::fabs(height - height0) <= heightScale) & (outward > kSteepest) &
                           (inward > kSteepest) & (rise1 < kLargestRise);
        t.plainRow[i] = t.row[i] + (plain ? 0.0 : kNaN);
        t.stepped[i] = stepOrBorder(height, inverse1) + (plain ? 0.0 : kNaN);
    }
    return t.count - countOf(t.settled, t.count);
}

/// One pass over all points. How many are not settled.
static int approachOnce(const TerrainChart& chart, const TerrainWindow& window, TraceRoom& room) {
    placeInCells(chart, window, room);
    if (window.floats != nullptr) {
        return approach(chart, window.floats, window.rowDistance, window.voidValue, room);
    }
    if (window.doubles != nullptr) {
        return approach(chart, window.doubles, window.rowDistance, window.voidValue, room);
    }
    return approach(chart, window.integers, window.rowDistance, window.voidValue, room);
}

static void copyPoint(const TraceRoom& from, int i, TraceRoom& to, int j) {
    to.height[j] = from.height[i];
    to.column[j] = from.column[i];
    to.settled[j] = from.settled[i];
    to.stepped[j] = from.stepped[i];
    to.plainRow[j] = from.plainRow[i];
}

/// How many are on a border between steps.
static int writeTile(const TraceRoom& __restrict r, double* __restrict start, double* __restrict height,
                     double* __restrict stepped, double* __restrict row, double* __restrict column) {
    double border[kTile];
    for (int i = 0; i < r.count; ++i) {
        const double before = height[i];
        const double change = r.height[i] - before;
        const double now = before + (r.settled[i] > 0.0 ? change : 0.0);
        height[i] = now;
        start[i] = now + (now - before);
        stepped[i] = r.stepped[i];
        row[i] = r.plainRow[i];
        column[i] = r.column[i];
        border[i] = std::fabs(r.stepped[i] - steppedHeight(r.stepped[i])) > 0.0 ? 1.0 : 0.0;
    }
    return countOf(border, r.count);
}

/// Brings the points of a tile onto the surface. How many are on a border between steps.
static int trace(const TerrainChart& chart, const TerrainWindow& window, const TerrainTile& tile, int mostPasses) {
    TraceRoom all;
    all.count = tile.count;
    for (int i = 0; i < tile.count; ++i) {
        all.range[i] = tile.range[i];
        all.height[i] = tile.start[i];
    }
    int open = approachOnce(chart, window, all);
    if (open > 0) {
        // The others by themselves, fewer from pass to pass
        TraceRoom rest;
        int point[kTile];
        rest.count = 0;
        for (int i = 0; i < all.count; ++i) {
            if (all.settled[i] == 0.0) {
                point[rest.count] = i;
                rest.range[rest.count] = all.range[i];
                rest.height[rest.count] = all.height[i];
                ++rest.count;
            }
        }
        for (int pass = 1; pass < mostPasses && open > 0; ++pass) {
            open = approachOnce(chart, window, rest);
            int left = 0;
            for (int j = 0; j < rest.count; ++j) {
                if (rest.settled[j] != 0.0) {
                    copyPoint(rest, j, all, point[j]);
                } else {
                    point[left] = point[j];
                    rest.range[left] = rest.range[j];
                    rest.height[left] = rest.height[j];
                    ++left;
                }
            }
            rest.count = left;
        }
    }
    return writeTile(all, tile.start, tile.height, tile.stepped, tile.row, tile.column);
}

/// How many steps from point to point, of kTile at most, each end in a plain cell that is the last one's or beside it.
static int stepsOnPlain(const double* __restrict row, const double* __restrict column, int most) {
    double plain[kTile];
    for (int i = 0; i < most; ++i) {
        plain[i] = std::fabs(row[i + 1] - row[i]) + std::fabs(column[i + 1] - column[i]) <= 1.0 ? 1.0 : 0.0;
    }
    if (countOf(plain, most) == most) {
        return most;
    }
    int steps = 0;
    while (plain[steps] > 0.0) {
        ++steps;
    }
    return steps;
}

}  // namespace vorbel::scene::VORBEL_KERNELS
