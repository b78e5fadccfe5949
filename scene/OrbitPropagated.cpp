#include "ClassTrajectory.h"
#include "OrbitPieces.h"
#include "VectorList.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

// Orbits by propagation: from one vector, from a trajectory of the class, and beyond the vectors.

namespace vorbel::scene {

namespace {

constexpr std::int64_t kSecondsFrom1900To1970 = 25567LL * 86400;
constexpr double kLongestPropagation = 1e6;  // s

void requireReach(const char* name, double reach) {
    if (!(reach >= 0.0 && reach <= kLongestPropagation)) {
        throw std::invalid_argument(std::string("'") + name + "' is " + std::to_string(reach) +
                                    " s, it must be from 0 to 1000000");
    }
}

bool isFinite(const OrbitPiece& piece) {
    const auto finite = [](const OrbitPiece::Polynomial& polynomial) {
        return std::all_of(polynomial.begin(), polynomial.end(), [](double c) { return std::isfinite(c); });
    };
    return std::all_of(piece.position.begin(), piece.position.end(), finite) &&
           std::all_of(piece.velocity.begin(), piece.velocity.end(), finite);
}

/// Puts pieces by propagation before and behind those of an orbit.
void extend(OrbitPieces& orbit, const State& first, const State& last, double before, double after) {
    std::vector<OrbitPiece> pieces = propagate(first, orbit.drag, orbit.span.first, -before);
    const std::vector<OrbitPiece> behind = propagate(last, orbit.drag, orbit.span.last, after);
    pieces.insert(pieces.end(), orbit.pieces.begin(), orbit.pieces.end());
    pieces.insert(pieces.end(), behind.begin(), behind.end());
    if (!std::all_of(pieces.begin(), pieces.end(), isFinite)) {
        throw std::invalid_argument("the propagation by " + std::to_string(before) + " s back and " +
                                    std::to_string(after) + " s forward does not stay finite");
    }
    orbit.pieces = std::move(pieces);
    orbit.span = {orbit.pieces.front().first, orbit.pieces.back().last};
}

[[noreturn]] void refuseTrajectory(const char* fault) {
    throw std::invalid_argument(std::string("the trajectory ") + fault);
}

/// Refuses an object whose end state, step and history do not belong together.
void requireTrajectory(CVorbel& trajectory) {
    if (trajectory.GetSystem() != 0) {
        refuseTrajectory("is in the absolute frame, it must be in the Greenwich frame");
    }
    const fVector& end = *trajectory.GetfVector(0);
    const fVector* history = trajectory.GetfVector(1);
    const fVector& newest = history[kNodes - 1];
    const fVector& previous = history[kNodes - 2];
    const double step = trajectory.getStep();
    const bool derivatives = std::all_of(history, history + kNodes, [](const fVector& v) { return v.time == 1.0; });
    if (!derivatives || step == 0.0 || !std::isfinite(step) || !std::isfinite(end.time)) {
        refuseTrajectory("was not propagated");
    }
    if (newest.x != end.vx || newest.y != end.vy || newest.z != end.vz) {
        refuseTrajectory("has a state that was set after it was propagated");
    }
    const double forward =
        (newest.x - previous.x) * newest.vx + (newest.y - previous.y) * newest.vy + (newest.z - previous.z) * newest.vz;
    if (!(forward * step > 0.0)) {
        refuseTrajectory("has a step of the other sign than the interval it was propagated over");
    }
}

/// The instant of a record's time, s since 1900.
Instant instantOf(double time) {
    return Instant{-kSecondsFrom1900To1970, 0.0}.later(time);
}

}  // namespace

Orbit Orbit::propagated(const StateVector& vector, double before, double after, double drag) {
    requireState(vector, "the state vector of " + vector.time.text());
    requireReach("before", before);
    requireReach("after", after);
    if (before + after == 0.0) {
        throw std::invalid_argument("'before' and 'after' are both 0, a propagated orbit needs a span");
    }
    if (!std::isfinite(drag)) {
        throw std::invalid_argument("'drag' is not finite");
    }
    auto orbit = std::make_shared<OrbitPieces>();
    orbit->epoch = vector.time;
    orbit->drag = drag;
    extend(*orbit, vector.state, vector.state, before, after);
    orbit->covered = orbit->span;
    return Orbit(orbit);
}

Orbit Orbit::fromTrajectory(const CVorbel& trajectory) {
    CVorbel copy(trajectory);  // the records of a constant object cannot be reached
    requireTrajectory(copy);
    const fVector& end = *copy.GetfVector(0);
    const double behind = -kHistorySteps * copy.getStep();
    const double centre = std::round(0.5 * behind);
    OrbitPiece piece = readOut(copy, -centre);
    piece.first = std::min(0.0, behind);
    piece.last = std::max(0.0, behind);
    piece.centre = centre;

    auto orbit = std::make_shared<OrbitPieces>();
    orbit->epoch = instantOf(end.time);
    orbit->drag = end.drag;
    orbit->span = {piece.first, piece.last};
    orbit->covered = orbit->span;
    orbit->pieces.push_back(piece);
    return Orbit(orbit);
}

Orbit Orbit::extended(double before, double after) const {
    requireReach("before", before);
    requireReach("after", after);
    auto orbit = std::make_shared<OrbitPieces>(*m_pieces);
    extend(*orbit, at(orbit->span.first), at(orbit->span.last), before, after);
    return Orbit(orbit);
}

}  // namespace vorbel::scene
