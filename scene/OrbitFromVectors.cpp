#include "ClassTrajectory.h"
#include "OrbitPieces.h"
#include "Polynomials.h"
#include "VectorList.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

// Between two neighbouring vectors the class propagates a reference; what the vectors around deviate from it is small
// and slow, and is interpolated. So few or distant vectors serve nearly as well as many.

namespace vorbel::scene {

namespace {

constexpr double kDense = 30.0;         // s: up to here positions alone are enough
constexpr std::size_t kDenseReach = 3;  // vectors on either side of the two around an interval
constexpr std::size_t kSparseReach = 1;
constexpr std::size_t kFewestOfPositionsAlone = 4;
constexpr double kLongestReach = 750.0;  // s between the outermost nodes
constexpr int kReferenceSteps = 7;

using Nodes = std::span<const StateVector>;

bool isDense(const StateVector& from, const StateVector& to) {
    return to.time.since(from.time) <= kDense;
}

/// The vectors around the interval that begins with vector i, as many before as behind it. Towards the end of a list
/// there are fewer: further ones on one side alone would do more harm than good.
Nodes nodesAround(Nodes stretch, std::size_t i) {
    for (std::size_t reach = isDense(stretch[i], stretch[i + 1]) ? kDenseReach : kSparseReach;; --reach) {
        const std::size_t first = i - std::min(i, reach);
        const std::size_t last = std::min(i + 1 + reach, stretch.size() - 1);
        const Nodes nodes = stretch.subspan(first, last + 1 - first);
        if (reach == 0 || nodes.back().time.since(nodes.front().time) <= kLongestReach) {
            return nodes;
        }
    }
}

/// The propagation from the first node to the last.
OrbitPiece referenceOf(Nodes nodes, const Instant& centre) {
    const double step = nodes.back().time.since(nodes.front().time) / kReferenceSteps;
    Integration integration(nodes.front().state, 0.0, step);
    integration.advance(kReferenceSteps);
    return readOut(integration.trajectory(), nodes.front().time.since(centre) + kReferenceSteps * step);
}

/// A node and its u.
struct TimedNode {
    double u;
    const State* state;
};

/// The nodes in the order of their distance from the centre.
std::vector<TimedNode> timed(Nodes nodes, const Instant& centre) {
    std::vector<TimedNode> result;
    result.reserve(nodes.size());
    for (const StateVector& node : nodes) {
        result.push_back({node.time.since(centre), &node.state});
    }
    std::sort(result.begin(), result.end(), [](const auto& a, const auto& b) { return std::abs(a.u) < std::abs(b.u); });
    return result;
}

void add(Polynomial& polynomial, const Polynomial& other) {
    for (std::size_t k = 0; k < polynomial.size(); ++k) {
        polynomial[k] += other[k];
    }
}

/// Adds to a reference what the nodes deviate from it: positions and velocities apart, since those of a product do not
/// quite fit each other, or a position that meets both.
void correct(OrbitPiece& piece, std::span<const TimedNode> nodes, bool apart) {
    std::vector<Condition> positions;
    std::vector<Condition> velocities;
    std::vector<Condition> both;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        positions.clear();
        velocities.clear();
        both.clear();
        for (const auto& [u, state] : nodes) {
            positions.push_back({u, state->*kPosition[axis] - valueAt(piece.position[axis], u)});
            velocities.push_back({u, state->*kVelocity[axis] - valueAt(piece.velocity[axis], u)});
            both.push_back(positions.back());
            both.push_back({u, velocities.back().value, true});
        }
        const Polynomial position = interpolate(apart ? positions : both);
        add(piece.position[axis], position);
        add(piece.velocity[axis], apart ? interpolate(velocities) : derivative(position));
    }
}

OrbitPiece pieceBetween(const StateVector& from, const StateVector& to, Nodes nodes, const Instant& epoch) {
    const double first = from.time.since(epoch);
    const double last = to.time.since(epoch);
    const double middle = std::round(0.5 * (first + last));  // whole seconds: an exact instant
    const Instant centre = epoch.later(middle);
    OrbitPiece piece = referenceOf(nodes, centre);
    correct(piece, timed(nodes, centre), isDense(from, to) && nodes.size() >= kFewestOfPositionsAlone);
    piece.first = first;
    piece.last = last;
    piece.centre = middle;
    return piece;
}

}  // namespace

Orbit Orbit::fromVectors(std::span<const StateVector> vectors) {
    const auto first =
        std::min_element(vectors.begin(), vectors.end(), [](const auto& a, const auto& b) { return a.time < b.time; });
    return fromVectors(vectors, first == vectors.end() ? Instant() : first->time);
}

Orbit Orbit::fromVectors(std::span<const StateVector> vectors, const Instant& epoch) {
    const VectorList list = listOf(vectors);
    const Nodes all = list.vectors;
    auto orbit = std::make_shared<OrbitPieces>();
    orbit->epoch = epoch;
    orbit->pieces.reserve(all.size() - 1);
    for (std::size_t s = 0; s + 1 < list.stretches.size(); ++s) {
        const std::size_t begin = list.stretches[s];
        const std::size_t end = list.stretches[s + 1];
        const Nodes stretch = all.subspan(begin, end - begin);
        for (std::size_t i = 0; i + 1 < stretch.size(); ++i) {
            orbit->pieces.push_back(pieceBetween(stretch[i], stretch[i + 1], nodesAround(stretch, i), epoch));
        }
        if (end < all.size()) {
            orbit->pieces.push_back(pieceBetween(all[end - 1], all[end], all.subspan(end - 1, 2), epoch));
        }
    }
    orbit->span = {orbit->pieces.front().first, orbit->pieces.back().last};
    orbit->covered = orbit->span;
    return Orbit(orbit);
}

}  // namespace vorbel::scene
