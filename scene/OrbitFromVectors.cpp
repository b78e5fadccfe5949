#include "OrbitPieces.h"
#include "Polynomials.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace vorbel::scene {

namespace {

constexpr std::size_t kNodes = 8;

constexpr double State::*kPosition[] = {&State::x, &State::y, &State::z};
constexpr double State::*kVelocity[] = {&State::vx, &State::vy, &State::vz};

std::vector<StateVector> sorted(std::span<const StateVector> vectors) {
    std::vector<StateVector> result(vectors.begin(), vectors.end());
    std::sort(result.begin(), result.end(), [](const auto& a, const auto& b) { return a.time < b.time; });
    return result;
}

}  // namespace

Orbit Orbit::fromVectors(std::span<const StateVector> vectors) {
    const auto first =
        std::min_element(vectors.begin(), vectors.end(), [](const auto& a, const auto& b) { return a.time < b.time; });
    return fromVectors(vectors, first == vectors.end() ? Instant() : first->time);
}

Orbit Orbit::fromVectors(std::span<const StateVector> vectors, const Instant& epoch) {
    if (vectors.size() < 2) {
        throw std::invalid_argument("an orbit needs two state vectors at least");
    }
    const std::vector<StateVector> list = sorted(vectors);
    auto pieces = std::make_shared<OrbitPieces>();
    pieces->epoch = epoch;
    const std::size_t nodes = std::min(kNodes, list.size());
    for (std::size_t i = 0; i + 1 < list.size(); ++i) {
        OrbitPiece piece{};
        piece.first = list[i].time.since(epoch);
        piece.last = list[i + 1].time.since(epoch);
        piece.centre = std::round(0.5 * (piece.first + piece.last));
        const Instant centre = epoch.later(piece.centre);

        const std::size_t before = i + 1 > nodes / 2 ? i + 1 - nodes / 2 : 0;
        const std::size_t first = std::min(before, list.size() - nodes);
        std::array<const StateVector*, kNodes> near{};
        for (std::size_t k = 0; k < nodes; ++k) {
            near[k] = &list[first + k];
        }
        std::sort(near.begin(), near.begin() + nodes, [&](const auto* a, const auto* b) {
            return std::abs(a->time.since(centre)) < std::abs(b->time.since(centre));
        });
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const auto through = [&](double State::*field) {
                std::array<Condition, kNodes> conditions{};
                for (std::size_t k = 0; k < nodes; ++k) {
                    conditions[k] = {near[k]->time.since(centre), near[k]->state.*field};
                }
                return interpolate(std::span(conditions.data(), nodes));
            };
            piece.position[axis] = through(kPosition[axis]);
            piece.velocity[axis] = through(kVelocity[axis]);
        }
        pieces->pieces.push_back(piece);
    }
    pieces->span = {pieces->pieces.front().first, pieces->pieces.back().last};
    pieces->covered = pieces->span;
    return Orbit(pieces);
}

}  // namespace vorbel::scene
