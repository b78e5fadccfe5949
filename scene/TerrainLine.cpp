#include "TerrainLine.h"

#include "Ellipsoid.h"
#include "NotANumber.h"
#include "SightFrame.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace vorbel::scene {

namespace {

constexpr double kMetresPerDegree = 111.2e3;

constexpr std::size_t kEvery = 8;                     // one node of so many stands for its neighbours
constexpr std::size_t kLongestSpan = kEvery * kTile;  // nodes that share a chart
constexpr double kWidestSpan = 1400.0;                // m of range

// How far a cone of this range rate, or the plane of zero Doppler, may lean against the vertical
constexpr double kLargestRate = 100.0;  // m/s
constexpr double kLean = 0.03;

constexpr double kSteepest = 0.02;  // rise left, of 1 on level land: as in the kernel

constexpr std::size_t kPowers = TerrainChart::kPowers;
constexpr std::size_t kPoints = kPowers * kPowers;
using Powers = std::array<double, kPowers>;
using Grid = std::array<Powers, kPowers>;

constexpr Powers kNodes5{0.95105651629515357, 0.58778525229247313, 0.0, -0.58778525229247313,
                         -0.95105651629515357};  // Chebyshev's

/// Coefficients of Chebyshev's polynomials up to degree 4, through values at kNodes5.
Powers chebyshevThrough(const Powers& values) {
    Powers c{};
    for (std::size_t i = 0; i < kPowers; ++i) {
        const double x = kNodes5[i];
        const double x2 = x * x;
        const Powers t{1.0, x, 2.0 * x2 - 1.0, (4.0 * x2 - 3.0) * x, (8.0 * x2 - 8.0) * x2 + 1.0};
        for (std::size_t k = 0; k < kPowers; ++k) {
            c[k] += values[i] * t[k] * (k == 0 ? 0.2 : 0.4);
        }
    }
    return c;
}

/// The same polynomial in powers.
Powers inPowers(const Powers& c) {
    return {c[0] - c[2] + c[4], c[1] - 3.0 * c[3], 2.0 * c[2] - 8.0 * c[4], 4.0 * c[3], 8.0 * c[4]};
}

Grid turned(const Grid& grid) {
    Grid other;
    for (std::size_t i = 0; i < kPowers; ++i) {
        for (std::size_t k = 0; k < kPowers; ++k) {
            other[i][k] = grid[k][i];
        }
    }
    return other;
}

/// Coefficients in both directions, from values at all pairs of nodes.
void fit(const Grid& values, double (&coefficients)[kPowers][kPowers]) {
    const auto each = [](const Grid& rows, Powers (*change)(const Powers&)) {
        Grid changed;
        std::transform(rows.begin(), rows.end(), changed.begin(), change);
        return turned(changed);
    };
    Grid c = each(each(values, chebyshevThrough), chebyshevThrough);
    for (std::size_t i = 0; i < kPowers; ++i) {
        for (std::size_t k = 0; k < kPowers; ++k) {
            c[i][k] = i + k <= kPowers ? c[i][k] : 0.0;
        }
    }
    c = each(each(c, inPowers), inPowers);
    for (std::size_t i = 0; i < kPowers; ++i) {
        std::copy(c[i].begin(), c[i].end(), coefficients[i]);
    }
}

double valueAt(const double (&c)[kPowers][kPowers], double x, double y) {
    double value = 0.0;
    for (std::size_t i = kPowers; i-- > 0;) {
        double inner = 0.0;
        for (std::size_t k = kPowers; k-- > 0;) {
            inner = inner * y + c[i][k];
        }
        value = value * x + inner;
    }
    return value;
}

}  // namespace

void settleBorders(const PixelToGround& toGround, const SightFrames& frames, PixelTile& tile,
                   const TerrainRaster& terrain) noexcept {
    std::array<double, kTile> latitude{};
    std::array<double, kTile> longitude{};
    toGround.solve(frames, tile);
    toGround.finish(frames, tile, {latitude.data(), longitude.data(), nullptr, nullptr, nullptr, nullptr});
    for (int i = 0; i < tile.count; ++i) {
        const auto k = static_cast<std::size_t>(i);
        double surface = kNaN;
        const bool known = tile.settled[i] != 0.0 && terrain.heightAt(latitude[k], longitude[k], surface) == Status::ok;
        tile.height[i] += known ? std::copysign(0.5 * kHeightStep, surface - tile.height[i]) : kNaN;
    }
}

std::span<const double> TerrainLine::find(const State& state, double rate, std::span<const double> ranges, bool same) {
    if (!(std::abs(rate) <= kLargestRate) || std::isnan(state.x)) {
        m_laidOut = m_laidOut && same;
        return {};
    }
    setDopplerFrame(m_frames, 0, state, m_side);
    m_laidOut = layOut(rate, ranges, same);
    if (!m_laidOut) {
        m_started = false;
        return {};
    }
    traceAll(rate);

    // From each stretch that is not plain to the next
    const std::size_t nodes = m_range.size();
    std::size_t before = nodes;
    constexpr std::size_t kAhead = 64;  // about as many nodes as lie between two that differ in row and column
    for (std::size_t k = 0; k < nodes; ++k) {
        if (isPlain(k)) {
            if (before + 1 != k || !plainBetween(before)) {
                openAround(rate, before, k);
            }
            const auto most = static_cast<int>(std::min(kAhead, nodes - 1 - k));
            before = k + static_cast<std::size_t>(m_stepsOnPlain(&m_row[k], &m_column[k], most));
            k = before;
        }
    }
    if (before + 1 != nodes) {
        openAround(rate, before, nodes);
    }
    return std::span(m_stepped).subspan(m_before, ranges.size());
}

// Guards as far as terrain could share a range with a pixel or hide it.
bool TerrainLine::layOut(double rate, std::span<const double> ranges, bool same) {
    const HeightRange& all = m_terrain.range();
    const double relief = static_cast<double>(all.highest) - static_cast<double>(all.lowest);
    if (!(relief >= 0.0) || !(ranges.front() > 0.0)) {
        return false;
    }
    same = same && m_laidOut;
    for (std::size_t i = 1; i < ranges.size() && !same; ++i) {
        if (!(ranges[i] > ranges[i - 1])) {
            return false;
        }
    }
    m_pixels.count = 1;
    m_pixels.range[0] = ranges.front();
    m_pixels.rate[0] = rate;
    m_pixels.height[0] = static_cast<double>(all.lowest);
    double incidence = 0.0;
    m_toGround.solve(m_frames, m_pixels);
    m_toGround.finish(m_frames, m_pixels, {nullptr, nullptr, &incidence, nullptr, nullptr, nullptr});
    m_cosine = std::cos(incidence / kDegreesPerRadian);
    if (m_pixels.settled[0] == 0.0 || !(m_cosine > 0.1)) {
        return false;
    }
    constexpr double kMore = 30.0;  // m
    const double nearer = relief / m_cosine * (1.0 + kLean) + kMore;
    const double farther = relief * (m_cosine + kLean) + kMore;
    if (same && m_range.front() <= ranges.front() - nearer && m_range.back() >= ranges.back() + farther) {
        return true;
    }

    const RasterGrid& grid = m_terrain.grid();
    const double latitude = (grid.north - 0.5 * grid.latitudeStep * static_cast<double>(grid.rows)) / kDegreesPerRadian;
    const double cell =
        std::min(grid.latitudeStep, grid.longitudeStep * std::max(0.05, std::cos(latitude))) * kMetresPerDegree;
    const double spacing = 0.5 * cell * std::sqrt(1.0 - m_cosine * m_cosine);
    constexpr double kToSpare = 2.0;  // for the next lines
    const double guardsBefore = std::ceil(nearer / spacing + kToSpare);
    const double guardsAfter = std::ceil(farther / spacing + kToSpare);
    constexpr double kMost = 8.0;  // guards for a pixel
    if (!(guardsBefore + guardsAfter < kMost * static_cast<double>(ranges.size())) ||
        !(guardsBefore * spacing < ranges.front())) {
        return false;
    }
    const auto before = static_cast<std::size_t>(guardsBefore);
    const auto after = static_cast<std::size_t>(guardsAfter);
    const std::size_t nodes = before + ranges.size() + after;
    m_started = m_started && nodes == m_range.size() && before == m_before;
    m_before = before;
    for (std::vector<double>* values : {&m_range, &m_start, &m_height, &m_stepped, &m_row, &m_column}) {
        values->resize(nodes);
    }
    for (std::size_t i = 0; i < before; ++i) {
        m_range[i] = ranges.front() - static_cast<double>(before - i) * spacing;
    }
    std::copy(ranges.begin(), ranges.end(), m_range.begin() + static_cast<std::ptrdiff_t>(before));
    for (std::size_t i = 0; i < after; ++i) {
        m_range[before + ranges.size() + i] = ranges.back() + static_cast<double>(i + 1) * spacing;
    }
    m_spans.assign(1, 0);
    for (std::size_t end = kTile; end < nodes; end += kTile) {
        const std::size_t next = std::min(end + kTile, nodes) - 1;
        if (end + kTile > m_spans.back() + kLongestSpan || m_range[next] - m_range[m_spans.back()] > kWidestSpan) {
            m_spans.push_back(end);
        }
    }
    m_charts.resize(m_spans.size());
    return true;
}

void TerrainLine::traceAll(double rate) {
    for (std::size_t i = 0; i < m_spans.size(); ++i) {
        traceSpan(rate, m_charts[i], m_spans[i], i + 1 < m_spans.size() ? m_spans[i + 1] : m_range.size());
    }
    m_started = true;
}

// A start for a part of a line that has none, from some of its nodes.
bool TerrainLine::startSpan(double rate, TerrainChart& rough, std::size_t begin, std::size_t end) {
    const auto lowest = static_cast<double>(m_terrain.range().lowest);
    const auto highest = static_cast<double>(m_terrain.range().highest);
    TerrainWindow window{};
    if (!chart(rate, begin, end, lowest, highest, true, rough, window)) {
        return false;
    }
    using Some = std::array<double, kTile>;
    Some range{};
    Some start{};
    Some height{};
    Some stepped{};
    Some row{};
    Some column{};
    const std::size_t count = (end - begin + kEvery - 1) / kEvery;
    for (std::size_t k = 0; k < count; ++k) {
        range[k] = m_range[begin + k * kEvery];
    }
    start.fill(0.5 * (lowest + highest));
    height = start;
    constexpr int kMostPasses = 16;
    m_trace(
        rough, window,
        {static_cast<int>(count), range.data(), start.data(), height.data(), stepped.data(), row.data(), column.data()},
        kMostPasses);
    for (std::size_t i = begin; i < end; ++i) {
        const std::size_t k = (i - begin) / kEvery;
        const double part = static_cast<double>((i - begin) % kEvery) / static_cast<double>(kEvery);
        m_start[i] = height[k] + part * (height[std::min(k + 1, count - 1)] - height[k]);
        m_height[i] = m_start[i];
    }
    return true;
}

void TerrainLine::traceSpan(double rate, TerrainChart& own, std::size_t begin, std::size_t end) {
    if (!m_started && !startSpan(rate, own, begin, end)) {
        leaveOpen(begin, end);
        return;
    }
    // Some of the heights stand for all, with room for the others and for the way from line to line
    constexpr double kRoom = 20.0;  // m
    double least = m_start[end - 1];
    double most = least;
    for (std::size_t i = begin; i < end; i += kEvery) {
        least = std::min(least, m_start[i]);
        most = std::max(most, m_start[i]);
    }
    const auto lowest = static_cast<double>(m_terrain.range().lowest);
    const auto highest = static_cast<double>(m_terrain.range().highest);
    TerrainWindow window{};
    if (!chart(rate, begin, end, std::clamp(least, lowest, highest) - kRoom, std::clamp(most, lowest, highest) + kRoom,
               false, own, window)) {
        leaveOpen(begin, end);
        return;
    }
    for (std::size_t i = begin; i < end; i += kTile) {
        constexpr int kMostPasses = 6;
        const std::size_t last = std::min<std::size_t>(i + kTile, end);
        const int borders = m_trace(own, window,
                                    {static_cast<int>(last - i), &m_range[i], &m_start[i], &m_height[i], &m_stepped[i],
                                     &m_row[i], &m_column[i]},
                                    kMostPasses);
        if (borders > 0) {
            settleBorders(rate, i, last);
        }
    }
    if (!m_started) {
        std::copy(&m_height[begin], &m_height[end - 1] + 1, &m_start[begin]);  // no line before to go on from
    }
}

void TerrainLine::settleBorders(double rate, std::size_t begin, std::size_t end) {
    std::array<std::size_t, kTile> node{};
    m_pixels.count = 0;
    for (std::size_t i = begin; i < end; ++i) {
        if (std::abs(m_stepped[i] - steppedHeight(m_stepped[i])) > 0.0) {
            const int k = m_pixels.count++;
            node[static_cast<std::size_t>(k)] = i;
            m_pixels.range[k] = m_range[i];
            m_pixels.rate[k] = rate;
            m_pixels.height[k] = m_stepped[i];
        }
    }
    scene::settleBorders(m_toGround, m_frames, m_pixels, m_terrain);
    for (int k = 0; k < m_pixels.count; ++k) {
        m_stepped[node[static_cast<std::size_t>(k)]] = m_pixels.height[k];
    }
}

void TerrainLine::leaveOpen(std::size_t begin, std::size_t end) {
    std::fill(&m_row[begin], &m_row[end - 1] + 1, kNaN);
    std::fill(&m_stepped[begin], &m_stepped[end - 1] + 1, kNaN);
}

// False if the part of the line is not wholly within the raster, or not smooth enough to be charted.
bool TerrainLine::chart(double rate, std::size_t begin, std::size_t end, double lowest, double highest, bool rough,
                        TerrainChart& chart, TerrainWindow& window) {
    constexpr double kLeast = 1e-3;  // m
    chart.range0 = 0.5 * (m_range[begin] + m_range[end - 1]);
    chart.rangeScale = std::max(kLeast, 0.5 * (m_range[end - 1] - m_range[begin]));
    chart.height0 = 0.5 * (lowest + highest);
    chart.heightScale = std::max(kLeast, 0.5 * (highest - lowest));

    constexpr std::size_t kChecks = 4;
    constexpr std::array<std::array<double, 2>, kChecks> checks{{{0.0, 0.0}, {1.0, 1.0}, {-1.0, 0.7}, {0.6, -1.0}}};
    m_pixels.count = static_cast<int>(kPoints + kChecks);
    for (std::size_t i = 0; i < kPoints + kChecks; ++i) {
        const double x = i < kPoints ? kNodes5[i / kPowers] : checks[i - kPoints][0];
        const double y = i < kPoints ? kNodes5[i % kPowers] : checks[i - kPoints][1];
        m_pixels.range[i] = chart.range0 + x * chart.rangeScale;
        m_pixels.rate[i] = rate;
        m_pixels.height[i] = chart.height0 + y * chart.heightScale;
    }
    std::array<double, kPoints + kChecks> latitude{};
    std::array<double, kPoints + kChecks> longitude{};
    std::array<double, kPoints + kChecks> incidence{};
    m_toGround.solve(m_frames, m_pixels);
    m_toGround.finish(m_frames, m_pixels,
                      {latitude.data(), longitude.data(), incidence.data(), nullptr, nullptr, nullptr});
    if (!std::all_of(m_pixels.settled, m_pixels.settled + m_pixels.count, [](double one) { return one != 0.0; })) {
        return false;
    }
    Grid u;
    Grid v;
    const double middle = m_terrain.u(longitude[kPoints]);
    for (std::size_t i = 0; i < kPoints; ++i) {
        u[i / kPowers][i % kPowers] = m_terrain.nearest(m_terrain.u(longitude[i]), middle);
        v[i / kPowers][i % kPowers] = m_terrain.v(latitude[i]);
    }
    fit(u, chart.u);
    fit(v, chart.v);
    chart.uPerRange = chart.u[1][0] / chart.rangeScale;
    chart.vPerRange = chart.v[1][0] / chart.rangeScale;
    chart.cosine = std::cos(incidence[kPoints] / kDegreesPerRadian);

    constexpr double kExact = 2e-8;  // m
    const RasterGrid& grid = m_terrain.grid();
    for (std::size_t i = 0; i < kChecks && !rough; ++i) {
        const double x = checks[i][0];
        const double y = checks[i][1];
        const double offU = valueAt(chart.u, x, y) - m_terrain.nearest(m_terrain.u(longitude[kPoints + i]), middle);
        const double offV = valueAt(chart.v, x, y) - m_terrain.v(latitude[kPoints + i]);
        if (!(std::abs(offU) * grid.longitudeStep * kMetresPerDegree < kExact &&
              std::abs(offV) * grid.latitudeStep * kMetresPerDegree < kExact)) {
            return false;
        }
    }
    return m_terrain.windowAt(valueAt(chart.u, 0.0, 0.0), valueAt(chart.v, 0.0, 0.0), window);
}

// Whether the terrain is plain from this node to the next, which both are on it in plain cells.
bool TerrainLine::plainBetween(std::size_t node) const {
    const double down = m_row[node + 1] - m_row[node];
    const double right = m_column[node + 1] - m_column[node];
    if (std::abs(down) + std::abs(right) <= 1.0) {
        return true;
    }
    const double cells = (std::abs(down) + 1.0) * (std::abs(right) + 1.0);
    constexpr double kMost = 64.0;
    if (!(cells <= kMost)) {
        return false;
    }
    const auto span = std::upper_bound(m_spans.begin(), m_spans.end(), node) - m_spans.begin() - 1;
    const TerrainChart& c = m_charts[static_cast<std::size_t>(span)];
    const double uh = c.u[0][1] / c.heightScale;
    const double vh = c.v[0][1] / c.heightScale;
    const double us = c.cosine * uh - c.uPerRange;
    const double vs = c.cosine * vh - c.vPerRange;
    const double firstRow = std::min(m_row[node], m_row[node + 1]);
    const double firstColumn = std::min(m_column[node], m_column[node + 1]);
    const auto rows = static_cast<int>(std::abs(down));
    const auto columns = static_cast<int>(std::abs(right));
    for (int row = 0; row <= rows; ++row) {
        for (int column = 0; column <= columns; ++column) {
            const bool isEnd = (firstRow + row == m_row[node] && firstColumn + column == m_column[node]) ||
                               (firstRow + row == m_row[node + 1] && firstColumn + column == m_column[node + 1]);
            TerrainCell cell;
            if (isEnd) {
                continue;
            }
            if (m_terrain.cellAt(firstColumn + column + 0.5, firstRow + row + 0.5, cell) != Status::ok) {
                return false;
            }
            const double east = cell.eastward + cell.twist;
            const double south = cell.southward + cell.twist;
            const double outward =
                1.0 - std::max(cell.eastward * uh, east * uh) - std::max(cell.southward * vh, south * vh);
            const double inward =
                c.cosine - std::max(cell.eastward * us, east * us) - std::max(cell.southward * vs, south * vs);
            if (!(outward > kSteepest && inward > kSteepest)) {
                return false;
            }
        }
    }
    return true;
}

// Opens what terrain between two nodes, the number of nodes standing for none, could share a range with or hide.
void TerrainLine::openAround(double rate, std::size_t before, std::size_t after) {
    const std::size_t nodes = m_range.size();
    HeightRange range = m_terrain.range();
    if (before < nodes && after < nodes) {
        const double relief = static_cast<double>(range.highest) - static_cast<double>(range.lowest);
        const RasterGrid& grid = m_terrain.grid();
        const double side = 2.0 + kLean * relief / (std::min(grid.latitudeStep, grid.longitudeStep) * kMetresPerDegree);
        range = m_terrain.rangeWithin(
            std::min(m_row[before], m_row[after]) - side, std::max(m_row[before], m_row[after]) + side,
            std::min(m_column[before], m_column[after]) - side, std::max(m_column[before], m_column[after]) + side);
    }
    const auto lowest = static_cast<double>(range.lowest);
    const auto highest = static_cast<double>(range.highest);
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    double first = before < nodes ? kInfinity : -kInfinity;
    double last = after < nodes ? -kInfinity : kInfinity;
    constexpr double kMore = 1.0;  // m
    const double toRange = m_cosine + kLean;
    for (const std::size_t node : {before, after}) {
        if (node < nodes) {
            const double nearest = m_range[node] - (highest - m_height[node]) * toRange - kMore;
            const double farthest = m_range[node] + (m_height[node] - lowest) * toRange + kMore;
            first = std::min(first, nearest);
            last = std::max(last, farthest);
        }
    }
    const auto from = std::lower_bound(m_range.begin(), m_range.end(), first) - m_range.begin();
    const auto to = std::upper_bound(m_range.begin(), m_range.end(), last) - m_range.begin();
    if (from < to) {
        std::fill(m_stepped.begin() + from, m_stepped.begin() + to, kNaN);
    }
    if (after < nodes) {
        openBehind(rate, before, after, highest);
    }
}

// Opens what a stretch that reaches up to a height could hide: nodes behind it, as long as they are not seen above it.
void TerrainLine::openBehind(double rate, std::size_t before, std::size_t after, double highest) {
    // Cosine of the angle to the circle's lowest direction, X over the radius; the radius goes with the range.
    const auto solve = [&](std::size_t first, std::size_t last) {
        m_pixels.count = static_cast<int>(last - first);
        for (std::size_t i = first; i < last; ++i) {
            m_pixels.range[i - first] = m_range[i];
            m_pixels.rate[i - first] = rate;
            m_pixels.height[i - first] = m_height[i];
        }
        m_toGround.solve(m_frames, m_pixels);
    };
    double least = 1.0;
    for (const std::size_t node : {before, after}) {
        if (node < m_range.size()) {
            // Straight up by the rise: X shrinks by no more than that, the range by its cosine.
            const double rise = std::max(0.0, highest - m_height[node]);
            solve(node, node + 1);
            least = std::min(least, (m_pixels.X[0] - rise) / (m_range[node] - rise * (m_cosine - kLean)));
        }
    }
    for (std::size_t first = after; first < m_range.size(); first += kTile) {
        const std::size_t last = std::min<std::size_t>(first + kTile, m_range.size());
        solve(first, last);
        for (std::size_t i = first; i < last; ++i) {
            if (isPlain(i) && m_pixels.X[i - first] / m_range[i] < least) {
                return;
            }
            m_stepped[i] = kNaN;
        }
    }
}

}  // namespace vorbel::scene
