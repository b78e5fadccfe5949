#include "PassSearch.h"

#include "Ellipsoid.h"
#include "NotANumber.h"

#include <algorithm>
#include <cmath>

namespace vorbel::scene {

namespace {

constexpr double kAtTheEdge = 1e-9;  // s; a solution this far outside the span is taken for its end

// Half a second is much more than a stretch's ends and the orbit's pieces can differ by.
constexpr double kAround = 0.5;  // s

constexpr int kMostSteps = 100;
constexpr double kTimeTolerance = 1e-12;  // s
constexpr double kRounding = 4e-16;

struct Sighting {
    double along;     // m^2/s, line of sight times velocity
    double range;     // m
    double rate;      // m/s, the one looked for at this range
    double function;  // m^2/s, zero at a pass and falling through it
    State state;
};

double rateAt(const RatePolynomial& polynomial, double given, double range) {
    if (polynomial.count == 0) {
        return given;
    }
    double rate = 0.0;
    for (int k = polynomial.count - 1; k >= 0; --k) {
        rate = rate * (range - polynomial.reference) + polynomial.coefficients[k];
    }
    return rate;
}

class Search {
public:
    Search(const OrbitPieces& orbit, const Target& target, const RatePolynomial& polynomial)
        : m_orbit(orbit), m_target(target), m_polynomial(polynomial) {}

    Sighting at(double time) const noexcept {
        Sighting s{};
        s.state = evaluate(m_orbit.pieces[m_orbit.index(time)], time);
        const double lx = m_target.x - s.state.x;
        const double ly = m_target.y - s.state.y;
        const double lz = m_target.z - s.state.z;
        s.along = lx * s.state.vx + ly * s.state.vy + lz * s.state.vz;
        s.range = std::sqrt(lx * lx + ly * ly + lz * lz);
        s.rate = rateAt(m_polynomial, m_target.rate, s.range);
        s.function = s.along + s.rate * s.range;
        return s;
    }

    /// The time in [first, last] at which the function falls through zero; not-a-number if it does not.
    double solve(double first, double last) const noexcept {
        const Sighting before = at(first);
        const Sighting after = at(last);
        if (!(before.function >= 0.0)) {
            return -before.function < kAtTheEdge * speedSquared(before.state) ? first : kNaN;
        }
        if (!(after.function <= 0.0)) {
            return after.function < kAtTheEdge * speedSquared(after.state) ? last : kNaN;
        }
        // False position; the weight of an end that stays is halved (Illinois).
        double low = first;
        double high = last;
        double weightLow = before.function;
        double weightHigh = after.function;
        for (int step = 0, stayed = 0; step < kMostSteps; ++step) {
            const double time = std::clamp(low + (high - low) * (weightLow / (weightLow - weightHigh)), low, high);
            const Sighting s = at(time);
            if (std::abs(s.function) <= (kTimeTolerance + kRounding * std::abs(time)) * speedSquared(s.state)) {
                return time;
            }
            if (s.function > 0.0) {
                low = time;
                weightLow = s.function;
                weightHigh = stayed > 0 ? 0.5 * weightHigh : weightHigh;
                stayed = 1;
            } else {
                high = time;
                weightHigh = s.function;
                weightLow = stayed < 0 ? 0.5 * weightLow : weightLow;
                stayed = -1;
            }
        }
        // Two pieces that do not quite meet, with no zero on either side of where they should.
        return high - low < kAtTheEdge ? low : kNaN;
    }

    /// What the satellite at this time sees of the point.
    Pass passAt(double time, std::optional<LookSide> side) const noexcept {
        const Sighting s = at(time);
        const State& o = s.state;
        const double toRight = m_target.x * (o.vy * o.z - o.vz * o.y) + m_target.y * (o.vz * o.x - o.vx * o.z) +
                               m_target.z * (o.vx * o.y - o.vy * o.x);
        const double uz = uprightZ(m_target.z, levelOf(m_target.x, m_target.y, m_target.z));
        const double up = (o.x - m_target.x) * m_target.x + (o.y - m_target.y) * m_target.y + (o.z - m_target.z) * uz;
        Pass pass{time, s.range, s.rate, toRight > 0.0 ? LookSide::right : LookSide::left, Status::ok};
        if (!(std::abs(s.rate) <= kMostRate * std::sqrt(speedSquared(o)))) {
            pass.status = Status::bad_input;
        } else if (isSlow(o)) {
            pass.status = Status::not_converged;
        } else if (!(up > -kBelowHorizon * kSemiMajorAxis * s.range)) {
            pass.status = Status::beyond_horizon;
        } else if (side && *side != pass.side) {
            pass.status = Status::wrong_side;
        }
        return pass;
    }

    /// Whether the satellite hardly moves over the ground, so that a time of passing cannot be told.
    bool isSlowAt(double time) const noexcept {
        return isSlow(at(time).state);
    }

private:
    static bool isSlow(const State& state) noexcept {
        const double distanceSquared = state.x * state.x + state.y * state.y + state.z * state.z;
        return speedSquared(state) < kLeastTurn * kLeastTurn * distanceSquared;
    }

    static double speedSquared(const State& state) noexcept {
        return state.vx * state.vx + state.vy * state.vy + state.vz * state.vz;
    }

    const OrbitPieces& m_orbit;
    const Target& m_target;
    const RatePolynomial& m_polynomial;
};

}  // namespace

Status worthTelling(Status one, Status other) noexcept {
    const auto worth = [](Status status) {
        switch (status) {
        case Status::bad_input:
            return 4;
        case Status::not_converged:
            return 3;
        case Status::wrong_side:
            return 2;
        case Status::beyond_horizon:
            return 1;
        default:
            return 0;
        }
    };
    return worth(one) < worth(other) ? other : one;
}

bool isTarget(const Target& target, const RatePolynomial& polynomial) noexcept {
    const double level = levelOf(target.x, target.y, target.z);
    return std::abs(level - 1.0) < kMostLevel && !std::isnan(target.notBefore) &&
           (polynomial.count > 0 || std::isfinite(target.rate));
}

Pass findPass(const OrbitPieces& orbit, const SightArcs& arcs, const Target& target, const RatePolynomial& polynomial,
              std::optional<LookSide> side) noexcept {
    if (!isTarget(target, polynomial)) {
        return {kNaN, kNaN, kNaN, LookSide::right, Status::bad_input};
    }
    const Search search(orbit, target, polynomial);
    const double around = kAround + (polynomial.count > 0 || target.rate != 0.0 ? arcs.reach : 0.0);
    const auto zeroDoppler = [&](const StretchEnd& end) {
        return target.x * end.velocity[0] + target.y * end.velocity[1] + target.z * end.velocity[2] - end.advance;
    };
    Status told = Status::outside_orbit;
    for (std::size_t segment = arcs.firstSegment(target.notBefore); segment < arcs.segments(); ++segment) {
        if (!(zeroDoppler(arcs.ends[segment]) >= 0.0 && zeroDoppler(arcs.ends[segment + 1]) < 0.0)) {
            continue;
        }
        const double first = std::max(arcs.bounds[segment] - around, arcs.span.first);
        const double last = std::min(arcs.bounds[segment + 1] + around, arcs.span.last);
        if (search.isSlowAt(first) && search.isSlowAt(last)) {
            told = worthTelling(told, Status::not_converged);
            continue;
        }
        const double time = search.solve(first, last);
        if (std::isnan(time)) {
            const bool inside = first > arcs.span.first && last < arcs.span.last;
            const bool far = search.passAt(0.5 * (first + last), side).status == Status::beyond_horizon;
            told = worthTelling(told, far      ? Status::beyond_horizon
                                      : inside ? Status::not_converged
                                               : Status::outside_orbit);
        } else if (time >= target.notBefore) {
            const Pass pass = search.passAt(time, side);
            if (pass.status == Status::ok) {
                return pass;
            }
            told = worthTelling(told, pass.status);
        }
    }
    return {kNaN, kNaN, kNaN, LookSide::right, told};
}

}  // namespace vorbel::scene
