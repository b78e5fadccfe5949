#include <vorbel/scene/GroundToPixel.h>

#include "Arrays.h"
#include "Blocks.h"
#include "NotANumber.h"
#include "OrbitPieces.h"
#include "PassSearch.h"
#include "SightArcs.h"
#include "kernels/Kernels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace vorbel::scene {

namespace {

constexpr int kTargets = TargetTile::kMost;
constexpr int kVector = 8;
constexpr int kMostArcs = 3;       // that are tried for a point before the search takes it
constexpr double kOutside = 1e-6;  // s; closer to the span's ends the search decides

using Tile = std::array<double, kTargets>;

/// One value for all points, one for each, or none.
class OneOrEach {
public:
    OneOrEach(std::span<const double> values, std::size_t points, const char* name, double otherwise)
        : m_values(values.size() == 1 ? values.first(0) : values),
          m_one(values.size() == 1 ? values.front() : otherwise) {
        if (values.size() > 1 && values.size() != points) {
            throw std::invalid_argument(std::string(name) + " has " + std::to_string(values.size()) +
                                        " values; none, 1 or " + std::to_string(points) +
                                        " (one for each point) would be right");
        }
    }

    bool each() const noexcept {
        return !m_values.empty();
    }

    double at(std::size_t point) const noexcept {
        return each() ? m_values[point] : m_one;
    }

private:
    std::span<const double> m_values;
    double m_one;
};

LookSide sideOf(double sight) noexcept {
    return sight == Sight::kLeft ? LookSide::left : LookSide::right;
}

Pass none(Status status) noexcept {
    return {kNaN, kNaN, kNaN, LookSide::right, status};
}

/// One call: what it was given, the same for all threads.
struct Call {
    Call(const Orbit& o, std::optional<LookSide> s, const GroundTargets& t, const Doppler& d, const PixelPositions& p,
         const GroundToPixel& k)
        : orbit(o.pieces()), arcs(orbit.sightArcs()), kernels(k), side(s), targets(t), positions(p),
          geodetic(t.x.empty() && t.y.empty() && t.z.empty()), count(geodetic ? t.latitude.size() : t.x.size()),
          height(t.height, count, "height", 0.0), rate(d.rangeRate, count, "rangeRate", 0.0),
          notBefore(t.notBefore, count, "notBefore", -std::numeric_limits<double>::infinity()),
          polynomial{d.coefficients.data(), static_cast<int>(d.coefficients.size()), d.referenceRange},
          squinted(!d.rangeRate.empty() || !d.coefficients.empty()), wanted{s == LookSide::left ? Sight::kLeft
                                                                                                : Sight::kRight,
                                                                            s == LookSide::right ? Sight::kRight
                                                                                                 : Sight::kLeft} {
        if (!geodetic && !(t.latitude.empty() && t.longitude.empty() && t.height.empty())) {
            throw std::invalid_argument("the targets have x, y or z and latitude, longitude or height; one kind of "
                                        "coordinates would be right");
        }
        if (!d.rangeRate.empty() && !d.coefficients.empty()) {
            throw std::invalid_argument(
                "the range rate is given by values and by a polynomial; one of them would be right");
        }
        const auto requireAsMany = [this](std::span<const double> input, const char* name) {
            if (input.size() != count) {
                throw std::invalid_argument(std::string(name) + " has " + std::to_string(input.size()) + " values; " +
                                            (geodetic ? "latitude" : "x") + " has " + std::to_string(count));
            }
        };
        if (geodetic) {
            requireAsMany(t.longitude, "longitude");
        } else {
            requireAsMany(t.y, "y");
            requireAsMany(t.z, "z");
        }
        requireLength(p.time, count, "time");
        requireLength(p.slantRange, count, "slantRange");
        requireLength(p.rangeRate, count, "rangeRate");
        requireLength(p.side, count, "side");
        requireLength(p.status, count, "status");
    }

    const OrbitPieces& orbit;
    const SightArcs& arcs;
    const GroundToPixel& kernels;
    std::optional<LookSide> side;
    const GroundTargets& targets;
    const PixelPositions& positions;
    bool geodetic;
    std::size_t count;
    OneOrEach height;
    OneOrEach rate;
    OneOrEach notBefore;
    RatePolynomial polynomial;
    bool squinted;
    WantedSights wanted;

    int see(const SightArc& arc, const TargetTile& tile) const {
        return squinted ? kernels.squinted(arc, polynomial, wanted, tile) : kernels.zeroDoppler(arc, wanted, tile);
    }

    bool isWanted(double sight) const noexcept {
        return sight >= wanted.least && sight <= wanted.most;
    }

    /// A point of a tile that is seen where it is wanted.
    Pass passOf(const TargetTile& tile, int i) const noexcept {
        return {tile.time[i], tile.range[i], squinted ? tile.rate[i] : 0.0, sideOf(tile.sight[i]), Status::ok};
    }

    /// A tile that is seen as wanted.
    void putAll(const std::size_t* points, const TargetTile& tile) const {
        const auto set = [&](const auto& output, const auto& valueOf) {
            for (int i = 0; i < tile.count && !output.empty(); ++i) {
                output[points[i]] = valueOf(i);
            }
        };
        set(positions.time, [&](int i) { return tile.time[i]; });
        set(positions.slantRange, [&](int i) { return tile.range[i]; });
        set(positions.rangeRate, [&](int i) { return squinted ? tile.rate[i] : 0.0; });
        set(positions.side, [&](int i) { return sideOf(tile.sight[i]); });
        set(positions.status, [&](int) { return Status::ok; });
    }

    void put(std::size_t point, const Pass& pass) const {
        const auto set = [point](const auto& output, auto value) {
            if (!output.empty()) {
                output[point] = value;
            }
        };
        set(positions.time, pass.time);
        set(positions.slantRange, pass.range);
        set(positions.rangeRate, pass.rate);
        set(positions.side, pass.side);
        set(positions.status, pass.status);
    }
};

/// Points whose arc has still to be found, in any order. Each goes to the tray of its arc, and the points of a tray are
/// seen together.
class Waiting {
public:
    explicit Waiting(const Call& call) : m_call(call), m_first(firstSegment(call.notBefore.at(0))) {}

    void add(const TargetTile& tile, int i, std::size_t index) {
        const std::uint32_t segment = m_call.notBefore.each() ? firstSegment(m_call.notBefore.at(index)) : m_first;
        add({tile.x[i], tile.y[i], tile.z[i], index, {segment, 0, Status::outside_orbit}});
    }

    /// All points of a tile.
    void add(const TargetTile& tile, std::size_t begin) {
        if (m_call.notBefore.each()) {
            for (int i = 0; i < tile.count; ++i) {
                add(tile, i, begin + static_cast<std::size_t>(i));
            }
            return;
        }
        prepare();
        findArcs(tile.x, tile.y, tile.z, tile.count, [&](int i) {
            return Point{tile.x[i],
                         tile.y[i],
                         tile.z[i],
                         begin + static_cast<std::size_t>(i),
                         {m_first, 0, Status::outside_orbit}};
        });
        findLost();
    }

    /// Writes the outcome of all points.
    void finish() {
        while (m_new > 0 || m_onTrays > 0 || !m_lost.empty()) {
            findAll();
            for (Tray& tray : m_store->trays) {
                see(tray);
            }
            serveAgain();
        }
    }

private:
    struct History {
        std::uint32_t segment;  // in which the point comes abreast, or from which on that is looked for
        std::uint8_t tries;     // of arcs in that segment
        Status told;            // what is to be told if there is no pass
    };

    struct Point {
        double x, y, z;
        std::size_t index;  // in the call
        History history;
    };

    template <int kSize>
    struct Points {
        double x[kSize], y[kSize], z[kSize];
        std::size_t index[kSize];
        History history[kSize];

        void set(int i, const Point& point) noexcept {
            x[i] = point.x;
            y[i] = point.y;
            z[i] = point.z;
            index[i] = point.index;
            history[i] = point.history;
        }

        Point at(int i) const noexcept {
            return {x[i], y[i], z[i], index[i], history[i]};
        }
    };

    static constexpr int kTraySize = 128;
    static constexpr std::size_t kTrays = 32;

    struct Tray {
        std::uint32_t arc;
        int count;
        Points<kTraySize> points;
    };

    struct Store {
        Points<kTargets> fresh;
        Tray trays[kTrays];
    };

    std::uint32_t firstSegment(double notBefore) const noexcept {
        return static_cast<std::uint32_t>(m_call.arcs.firstSegment(notBefore));
    }

    void add(const Point& point) {
        prepare();
        m_store->fresh.set(m_new, point);
        if (++m_new == kTargets) {
            findAll();
        }
    }

    void prepare() {
        if (!m_store) {
            m_store = std::make_unique_for_overwrite<Store>();
            for (Tray& tray : m_store->trays) {
                tray.arc = 0;
                tray.count = 0;
            }
        }
    }

    /// Puts the new points on trays, and those that were in vain on one.
    void findAll() {
        findFresh();
        findLost();
    }

    void findLost() {
        serveAgain();
        while (!m_lost.empty()) {
            for (; m_new < kTargets && !m_lost.empty(); m_lost.pop_back()) {
                m_store->fresh.set(m_new++, m_lost.back());
            }
            findFresh();
            serveAgain();
        }
    }

    void findFresh() {
        const Points<kTargets>& fresh = m_store->fresh;
        const int count = m_new;
        m_new = 0;
        findArcs(fresh.x, fresh.y, fresh.z, count, [&](int i) { return fresh.at(i); });
    }

    /// The next segment in which each new point comes abreast, and the arc there.
    template <class PointAt>
    void findArcs(const double* x, const double* y, const double* z, int count, const PointAt& pointAt) {
        const SightArcs& arcs = m_call.arcs;
        for (int i = 0; i < count; ++i) {
            m_from[i] = pointAt(i).history.segment;
        }
        m_call.kernels.crossings(
            {arcs.ends.data(), static_cast<int>(arcs.segments()), count, x, y, z, m_from.data(), m_segment.data()});
        for (int first = 0; first < count;) {
            int last = first + 1;
            while (last < count && m_segment[last] == m_segment[first]) {
                ++last;
            }
            const auto segment = static_cast<std::uint32_t>(m_segment[first]);
            const bool crossed = segment < arcs.segments();
            if (crossed) {
                m_call.kernels.coarseTimes(arcs.stretchOf(segment), {last - first, x + first, y + first, z + first,
                                                                     m_estimate.data(), nullptr, nullptr, nullptr});
            }
            for (int i = first; i < last; ++i) {
                Point point = pointAt(i);
                if (crossed) {
                    point.history.segment = segment;
                    point.history.tries = 0;
                    serve(point, arcs.arcOf(m_estimate[i - first]));
                } else {
                    m_call.put(point.index, none(isTarget(targetOf(point), m_call.polynomial) ? point.history.told
                                                                                              : Status::bad_input));
                }
            }
            first = last;
        }
    }

    void serve(const Point& point, std::uint32_t arc) {
        Tray& tray = m_store->trays[arc % kTrays];
        if (tray.arc != arc) {
            see(tray);
            tray.arc = arc;
        }
        tray.points.set(tray.count, point);
        ++m_onTrays;
        if (++tray.count == kTraySize) {
            see(tray);
        }
    }

    void serveAgain() {
        while (!m_again.empty()) {
            const auto [point, arc] = m_again.back();
            m_again.pop_back();
            serve(point, arc);
        }
    }

    /// Sees the points of a tray and takes them off it.
    void see(Tray& tray) {
        if (tray.count == 0) {
            return;
        }
        Points<kTraySize>& points = tray.points;
        // Whole vectors only: the last point stands for those that are missing.
        const int padded = (tray.count + kVector - 1) / kVector * kVector;
        for (int i = tray.count; i < padded; ++i) {
            points.set(i, points.at(tray.count - 1));
        }
        for (int i = 0; i < padded && m_call.squinted; ++i) {
            m_rate[i] = m_call.rate.at(points.index[i]);
        }
        TargetTile tile{padded,        points.x,       points.y,       points.z,
                        m_time.data(), m_range.data(), m_sight.data(), m_rate.data()};
        const int found = m_call.see(m_call.arcs.arcs[tray.arc], tile);
        tile.count = tray.count;
        m_onTrays -= tray.count;
        tray.count = 0;
        if (found == padded && m_call.targets.notBefore.empty()) {
            m_call.putAll(points.index, tile);
            return;
        }
        for (int i = 0; i < tile.count; ++i) {
            const std::size_t index = points.index[i];
            if (m_call.isWanted(m_sight[i]) && m_time[i] >= m_call.notBefore.at(index)) {
                m_call.put(index, m_call.passOf(tile, i));
            } else {
                seeElse(points.at(i), tray.arc, m_time[i], m_sight[i]);
            }
        }
    }

    void seeElse(Point point, std::uint32_t arc, double time, double sight) {
        if (sight == Sight::kDoubtful || std::isnan(time)) {
            search(point);
        } else if (sight == Sight::kElsewhere) {
            const std::uint32_t other = m_call.arcs.arcOf(time + kOverlap);
            const bool inside = time >= m_call.arcs.span.first - kOutside && time <= m_call.arcs.span.last + kOutside;
            if (other != arc && ++point.history.tries < kMostArcs) {
                m_again.emplace_back(point, other);
            } else if (other != arc || inside) {
                search(point);
            } else {
                lookFurther(point);
            }
        } else {
            if (time >= m_call.notBefore.at(point.index)) {
                point.history.told = worthTelling(point.history.told,
                                                  sight == Sight::kBelow ? Status::beyond_horizon : Status::wrong_side);
            }
            lookFurther(point);
        }
    }

    void lookFurther(Point point) {
        ++point.history.segment;
        m_lost.push_back(point);
    }

    Target targetOf(const Point& point) const noexcept {
        return {point.x, point.y, point.z, m_call.rate.at(point.index), m_call.notBefore.at(point.index)};
    }

    void search(const Point& point) const {
        m_call.put(point.index, findPass(m_call.orbit, m_call.arcs, targetOf(point), m_call.polynomial, m_call.side));
    }

    const Call& m_call;
    std::uint32_t m_first;
    std::unique_ptr<Store> m_store;
    int m_new = 0;
    int m_onTrays = 0;
    std::vector<std::pair<Point, std::uint32_t>> m_again;  // with the next arc to try
    std::vector<Point> m_lost;                             // not seen in their segment
    Tile m_from, m_segment, m_estimate;                    // of the new points
    Tile m_time, m_range, m_sight, m_rate;                 // of a tray's
};

/// Points one after the other: those that follow each other mostly lie on the same arc.
class Block {
public:
    explicit Block(const Call& call) : m_call(call), m_waiting(call) {
        const double notBefore = call.notBefore.at(0);
        m_window = {notBefore, call.arcs.onePassUntil(notBefore)};
    }

    void run(std::size_t begin, std::size_t end) {
        for (; begin < end; begin += kTargets) {
            runTile(begin, static_cast<int>(std::min<std::size_t>(kTargets, end - begin)));
        }
        m_waiting.finish();
    }

private:
    void runTile(std::size_t begin, int count) {
        const TargetTile tile = read(begin, count);
        int found = 0;
        if (mayGuess() && guess(tile)) {
            found = m_call.see(m_arc, tile);
            learn(tile, found);
        }
        write(begin, tile, found);
    }

    TargetTile read(std::size_t begin, int count) {
        const GroundTargets& targets = m_call.targets;
        TargetTile tile{count,
                        m_x.data(),
                        m_y.data(),
                        m_z.data(),
                        from(m_call.positions.time, begin),
                        from(m_call.positions.slantRange, begin),
                        m_sight.data(),
                        m_rate.data()};
        if (tile.time == nullptr) {
            tile.time = m_time.data();
        }
        if (tile.range == nullptr) {
            tile.range = m_range.data();
        }
        if (m_call.geodetic) {
            fill(m_height, m_call.height, begin, count);
            m_call.kernels.cartesian({count, targets.latitude.data() + begin, targets.longitude.data() + begin,
                                      m_height.data(), m_x.data(), m_y.data(), m_z.data()});
        } else {
            tile.x = targets.x.data() + begin;
            tile.y = targets.y.data() + begin;
            tile.z = targets.z.data() + begin;
        }
        if (m_call.squinted) {
            fill(m_rate, m_call.rate, begin, count);
        }
        return tile;
    }

    static void fill(Tile& tile, const OneOrEach& input, std::size_t begin, int count) {
        for (int i = 0; i < count; ++i) {
            tile[static_cast<std::size_t>(i)] = input.at(begin + static_cast<std::size_t>(i));
        }
    }

    /// Whether a point that is seen on the arc at hand is seen in its first pass, whatever other points do.
    bool mayGuess() const noexcept {
        return m_call.polynomial.count == 0 && !m_call.notBefore.each();
    }

    bool guess(const TargetTile& tile) {
        if (m_pause > 0) {
            --m_pause;
            return false;
        }
        if (std::isnan(m_next)) {
            m_next = estimate(tile, 0);
            const double middle = estimate(tile, tile.count / 2);
            const double last = estimate(tile, tile.count - 1);
            const auto [least, most] = std::minmax({m_next, middle, last});
            if (!(m_call.arcs.arcOf(most) <= m_call.arcs.arcOf(least) + 1)) {
                m_next = kNaN;
                m_pause = kPause;
            }
        }
        if (std::isnan(m_next)) {
            return false;
        }
        m_arc = m_call.arcs.arcs[m_call.arcs.arcOf(m_next)];
        // Well inside the arc, where the same point comes to the same arc from any other
        m_arc.first = std::max(m_arc.first + 2.0 * kOverlap, m_window.first);
        m_arc.last = std::min(m_arc.last - kOverlap, m_window.last);
        return m_arc.first < m_arc.last;
    }

    /// When a point of the tile is abreast of the satellite, roughly.
    double estimate(const TargetTile& tile, int i) const {
        const SightArcs& arcs = m_call.arcs;
        const auto from = static_cast<double>(arcs.firstSegment(m_window.first));
        double segment = 0.0;
        m_call.kernels.crossings({arcs.ends.data(), static_cast<int>(arcs.segments()), 1, tile.x + i, tile.y + i,
                                  tile.z + i, &from, &segment});
        if (segment == static_cast<double>(arcs.segments())) {
            return kNaN;
        }
        double time = 0.0;
        m_call.kernels.coarseTimes(arcs.stretchOf(static_cast<std::size_t>(segment)),
                                   {1, tile.x + i, tile.y + i, tile.z + i, &time, nullptr, nullptr, nullptr});
        return time;
    }

    /// The next tile is expected where this one ends. After several tiles with points all over the orbit, the next ones
    /// are left to wait at once.
    void learn(const TargetTile& tile, int found) {
        m_next = tile.time[tile.count - 1];
        m_misses = found < tile.count / 4 ? m_misses + 1 : 0;
        if (m_misses == kMostMisses) {
            m_next = kNaN;
            m_misses = 0;
            m_pause = kPause;
        }
    }

    void write(std::size_t begin, const TargetTile& tile, int found) {
        const PixelPositions& positions = m_call.positions;
        const auto count = static_cast<std::size_t>(tile.count);
        if (found == tile.count) {
            if (!positions.status.empty()) {
                std::fill_n(positions.status.data() + begin, count, Status::ok);
            }
            if (!positions.rangeRate.empty()) {
                for (std::size_t i = 0; i < count; ++i) {
                    positions.rangeRate[begin + i] = m_call.squinted ? tile.rate[i] : 0.0;
                }
            }
            if (!positions.side.empty()) {
                for (std::size_t i = 0; i < count; ++i) {
                    positions.side[begin + i] = sideOf(tile.sight[i]);
                }
            }
            return;
        }
        if (found == 0) {
            m_waiting.add(tile, begin);
            return;
        }
        for (int i = 0; i < tile.count; ++i) {
            const std::size_t index = begin + static_cast<std::size_t>(i);
            if (m_call.isWanted(tile.sight[i])) {
                m_call.put(index, m_call.passOf(tile, i));
            } else {
                m_waiting.add(tile, i, index);
            }
        }
    }

    static constexpr int kMostMisses = 3;
    static constexpr int kPause = 32;  // tiles

    const Call& m_call;
    Waiting m_waiting;
    Span m_window{};
    SightArc m_arc{};
    double m_next = kNaN;
    int m_misses = 0;
    int m_pause = 0;
    Tile m_x, m_y, m_z, m_time, m_range, m_sight, m_rate, m_height;
};

}  // namespace

void groundToPixel(const Orbit& orbit, std::optional<LookSide> side, const GroundTargets& targets,
                   const Doppler& doppler, const PixelPositions& positions, const Execution& execution) {
    const Call call(orbit, side, targets, doppler, positions, kernels(execution.instructionSet).groundToPixel);
    forEachBlock(call.count, execution.threads,
                 [&](std::size_t begin, std::size_t end) { Block(call).run(begin, end); });
}

}  // namespace vorbel::scene
