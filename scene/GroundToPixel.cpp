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

/// A value for each point of a tile, aligned to the widest registers.
struct alignas(64) Tile : std::array<double, kTargets> {};

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

    /// A tile that is seen as wanted, but for the status.
    void putAll(std::size_t base, const std::uint32_t* index, const TargetTile& tile) const {
        const auto set = [&](const auto& output, const auto& valueOf) {
            for (int i = 0; i < tile.count && !output.empty(); ++i) {
                output[base + index[i]] = valueOf(i);
            }
        };
        set(positions.time, [&](int i) { return tile.time[i]; });
        set(positions.slantRange, [&](int i) { return tile.range[i]; });
        set(positions.rangeRate, [&](int i) { return squinted ? tile.rate[i] : 0.0; });
        set(positions.side, [&](int i) { return sideOf(tile.sight[i]); });
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

/// Points whose arc has still to be found, in any order. Each has a slot, which goes to the tray of its arc, and the
/// points of a tray are seen together.
class Waiting {
public:
    explicit Waiting(const Call& call) : m_call(call) {
        m_from.fill(call.notBefore.each() ? 0.0 : firstSegment(call.notBefore.at(0)));
    }

    /// Points of a tile from `first` on, of which that is number `index` of the call.
    void add(const TargetTile& tile, int first, int count, std::size_t index) {
        if (!m_store) {
            m_store = std::make_unique_for_overwrite<Store>();
        }
        if (m_count + count > kSlots) {
            finish();
        }
        if (m_count == 0) {
            m_base = index;
        }
        Store& store = *m_store;
        std::copy_n(tile.x + first, count, store.x + m_count);
        std::copy_n(tile.y + first, count, store.y + m_count);
        std::copy_n(tile.z + first, count, store.z + m_count);
        for (int i = 0; i < count; ++i) {
            store.index[m_count + i] = static_cast<std::uint32_t>(index - m_base) + static_cast<std::uint32_t>(i);
        }
        std::fill_n(store.told + m_count, count, Status::outside_orbit);
        if (!m_call.positions.status.empty()) {
            std::fill_n(m_call.positions.status.data() + index, count, Status::ok);  // until it is found otherwise
        }
        m_count += count;
        if (m_count - m_found >= kTargets) {
            findNew();
        }
    }

    /// Writes the outcome of all points.
    void finish() {
        if (m_count == 0) {
            return;
        }
        findNew();
        while (std::any_of(m_trays.begin(), m_trays.end(), [](const Tray& tray) { return tray.count > 0; })) {
            for (Tray& tray : m_trays) {
                see(tray);
            }
            serveAgain();
            findLost();
        }
        m_count = 0;
        m_found = 0;
    }

private:
    static constexpr int kSlots = 1024;  // so that their points stay in the first cache
    static constexpr int kTraySize = 128;
    static constexpr std::size_t kTrays = 32;

    using Slot = int;

    struct Store {
        alignas(64) double x[kSlots], y[kSlots], z[kSlots];
        std::uint32_t index[kSlots];    // of the point in the call, from m_base on
        std::uint32_t segment[kSlots];  // in which the point comes abreast
        std::uint8_t tries[kSlots];     // of arcs in that segment
        Status told[kSlots];            // what is to be told if there is no pass
    };

    struct Place {
        Tile x, y, z;
    };

    struct Tray {
        std::uint32_t arc = 0;
        int count = 0;
        std::array<Slot, kTraySize> slots;
    };

    double firstSegment(double notBefore) const noexcept {
        return static_cast<double>(m_call.arcs.firstSegment(notBefore));
    }

    std::size_t indexOf(int slot) const noexcept {
        return m_base + m_store->index[slot];
    }

    /// Puts the new points on trays, and those that were on one in vain.
    void findNew() {
        const Store& store = *m_store;
        while (m_found < m_count) {
            const int first = m_found;
            const int count = std::min(kTargets, m_count - first);
            m_found += count;
            for (int i = 0; i < count && m_call.notBefore.each(); ++i) {
                m_from[i] = firstSegment(m_call.notBefore.at(indexOf(first + i)));
            }
            findArcs({count, store.x + first, store.y + first, store.z + first, m_estimate.data(), m_part.data()},
                     m_from, [first](int i) { return static_cast<Slot>(first + i); });
            serveAgain();
        }
        findLost();
    }

    void findLost() {
        while (!m_lost.empty()) {
            const int count = static_cast<int>(std::min<std::size_t>(kTargets, m_lost.size()));
            std::array<Slot, kTargets> slots;
            std::copy_n(m_lost.end() - count, count, slots.begin());
            m_lost.resize(m_lost.size() - static_cast<std::size_t>(count));
            gather(slots.data(), count, m_lostPlace);
            Tile from;
            for (int i = 0; i < count; ++i) {
                from[i] = static_cast<double>(m_store->segment[slots[i]]) + 1.0;
            }
            findArcs({count, m_lostPlace.x.data(), m_lostPlace.y.data(), m_lostPlace.z.data(), m_estimate.data(),
                      m_part.data()},
                     from, [&slots](int i) { return slots[i]; });
            serveAgain();
        }
    }

    void gather(const Slot* slots, int count, Place& place) const {
        const Store& store = *m_store;
        m_call.kernels.gather(
            {count, slots, store.x, store.y, store.z, place.x.data(), place.y.data(), place.z.data()});
    }

    /// The next segment in which each point of a tile comes abreast, and the arc there.
    template <class SlotAt>
    void findArcs(const CoarseTile& tile, const Tile& from, const SlotAt& slotAt) {
        const SightArcs& arcs = m_call.arcs;
        const int alike = m_call.kernels.crossings({arcs.ends.data(), static_cast<int>(arcs.segments()), tile.count,
                                                    tile.x, tile.y, tile.z, from.data(), m_segment.data()});
        for (int first = 0, last = 0; first < tile.count; first = last) {
            last = alike == tile.count ? alike : first + 1;
            while (last < tile.count && m_segment[last] == m_segment[first]) {
                ++last;
            }
            const auto segment = static_cast<std::uint32_t>(m_segment[first]);
            if (segment == arcs.segments()) {
                for (int i = first; i < last; ++i) {
                    const int slot = slotAt(i);
                    m_call.put(indexOf(slot), none(isTarget(targetOf(slot), m_call.polynomial) ? m_store->told[slot]
                                                                                               : Status::bad_input));
                }
                continue;
            }
            m_call.kernels.coarseTimes(
                arcs.stretchOf(segment), arcs.spanParts,
                {last - first, tile.x + first, tile.y + first, tile.z + first, tile.time + first, tile.part + first});
            for (int i = first; i < last; ++i) {
                const Slot slot = slotAt(i);
                m_store->segment[slot] = segment;
                m_store->tries[slot] = 0;
                serve(slot, arcs.arcNear(tile.part[i]));
            }
        }
    }

    void serve(Slot slot, std::uint32_t arc) {
        Tray& tray = m_trays[arc % kTrays];
        if (tray.arc != arc) {
            see(tray);
            tray.arc = arc;
        }
        tray.slots[tray.count] = slot;
        if (++tray.count == kTraySize) {
            see(tray);
        }
    }

    void serveAgain() {
        while (!m_again.empty()) {
            const auto [slot, arc] = m_again.back();
            m_again.pop_back();
            serve(slot, arc);
        }
    }

    /// Sees the points of a tray and takes them off it.
    void see(Tray& tray) {
        if (tray.count == 0) {
            return;
        }
        // Whole vectors only: the last point stands for those that are missing.
        const int padded = (tray.count + kVector - 1) / kVector * kVector;
        std::fill(tray.slots.begin() + tray.count, tray.slots.begin() + padded, tray.slots[tray.count - 1]);
        gather(tray.slots.data(), padded, m_place);
        for (int i = 0; i < padded && m_call.squinted; ++i) {
            m_rate[i] = m_call.rate.at(indexOf(tray.slots[i]));
        }
        TargetTile tile{padded,        m_place.x.data(), m_place.y.data(), m_place.z.data(),
                        m_time.data(), m_range.data(),   m_sight.data(),   m_rate.data()};
        const int found = m_call.see(m_call.arcs.arcs[tray.arc], tile);
        tile.count = tray.count;
        tray.count = 0;
        if (found == padded && m_call.targets.notBefore.empty()) {
            std::array<std::uint32_t, kTraySize> index;
            for (int i = 0; i < tile.count; ++i) {
                index[i] = m_store->index[tray.slots[i]];
            }
            m_call.putAll(m_base, index.data(), tile);
            return;
        }
        for (int i = 0; i < tile.count; ++i) {
            const int slot = tray.slots[i];
            const std::size_t index = indexOf(slot);
            if (m_call.isWanted(m_sight[i]) && m_time[i] >= m_call.notBefore.at(index)) {
                m_call.put(index, m_call.passOf(tile, i));
            } else {
                seeElse(tray.slots[i], tray.arc, m_time[i], m_sight[i]);
            }
        }
    }

    void seeElse(Slot slot, std::uint32_t arc, double time, double sight) {
        if (sight == Sight::kDoubtful || std::isnan(time)) {
            search(slot);
        } else if (sight == Sight::kElsewhere) {
            const std::uint32_t other = m_call.arcs.arcOf(time + kOverlap);
            const bool inside = time >= m_call.arcs.span.first - kOutside && time <= m_call.arcs.span.last + kOutside;
            if (other != arc && ++m_store->tries[slot] < kMostArcs) {
                m_again.emplace_back(slot, other);
            } else if (other != arc || inside) {
                search(slot);
            } else {
                m_lost.push_back(slot);
            }
        } else {
            if (time >= m_call.notBefore.at(indexOf(slot))) {
                m_store->told[slot] = worthTelling(m_store->told[slot], sight == Sight::kBelow ? Status::beyond_horizon
                                                                                               : Status::wrong_side);
            }
            m_lost.push_back(slot);
        }
    }

    Target targetOf(int slot) const noexcept {
        const std::size_t index = indexOf(slot);
        return {m_store->x[slot], m_store->y[slot], m_store->z[slot], m_call.rate.at(index),
                m_call.notBefore.at(index)};
    }

    void search(int slot) const {
        m_call.put(indexOf(slot), findPass(m_call.orbit, m_call.arcs, targetOf(slot), m_call.polynomial, m_call.side));
    }

    const Call& m_call;
    std::unique_ptr<Store> m_store;
    std::size_t m_base = 0;
    int m_count = 0;
    int m_found = 0;  // of these the first, whose arcs have been looked for
    std::array<Tray, kTrays> m_trays;
    std::vector<std::pair<Slot, std::uint32_t>> m_again;  // with the next arc to try
    std::vector<Slot> m_lost;                             // not seen in their segment
    std::array<int, kTargets> m_part;
    Tile m_segment, m_estimate;  // of the points whose arcs are found
    Tile m_from;                 // of new ones
    Place m_lostPlace;           // of lost ones
    Place m_place;               // of a tray's
    Tile m_time, m_range, m_sight, m_rate;
};

/// Points one after the other: those that follow each other mostly lie on the same arc.
class Block {
public:
    explicit Block(const Call& call) : m_waiting(call), m_call(call) {
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
        int part = 0;
        m_call.kernels.coarseTimes(arcs.stretchOf(static_cast<std::size_t>(segment)), arcs.spanParts,
                                   {1, tile.x + i, tile.y + i, tile.z + i, &time, &part});
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
            m_waiting.add(tile, 0, tile.count, begin);
            return;
        }
        for (int i = 0; i < tile.count; ++i) {
            const std::size_t index = begin + static_cast<std::size_t>(i);
            if (m_call.isWanted(tile.sight[i])) {
                m_call.put(index, m_call.passOf(tile, i));
            } else {
                m_waiting.add(tile, i, 1, index);
            }
        }
    }

    static constexpr int kMostMisses = 3;
    static constexpr int kPause = 32;  // tiles

    Waiting m_waiting;
    const Call& m_call;
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
