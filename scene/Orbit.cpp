#include "NotANumber.h"
#include "OrbitPieces.h"
#include "Polynomials.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>

namespace vorbel::scene {

namespace {

constexpr State kNoState{kNaN, kNaN, kNaN, kNaN, kNaN, kNaN};

bool contains(const Span& span, double time) {
    return time >= span.first && time <= span.last;
}

template <class T>
void requireOneForEachTime(const char* name, std::span<T> output, std::size_t length) {
    if (!output.empty() && output.size() != length) {
        throw std::invalid_argument(std::string("the output '") + name + "' of an orbit has " +
                                    std::to_string(output.size()) + " elements, it must have one for each of the " +
                                    std::to_string(length) + " times");
    }
}

}  // namespace

std::size_t OrbitPieces::index(double time) const noexcept {
    const auto next = std::upper_bound(pieces.begin() + 1, pieces.end(), time,
                                       [](double t, const OrbitPiece& piece) { return t < piece.first; });
    return static_cast<std::size_t>(next - pieces.begin()) - 1;
}

State evaluate(const OrbitPiece& piece, double time) noexcept {
    const double u = time - piece.centre;
    return {valueAt(piece.position[0], u), valueAt(piece.position[1], u), valueAt(piece.position[2], u),
            valueAt(piece.velocity[0], u), valueAt(piece.velocity[1], u), valueAt(piece.velocity[2], u)};
}

Orbit::Orbit(std::shared_ptr<const OrbitPieces> pieces) : m_pieces(std::move(pieces)) {}

const Instant& Orbit::epoch() const noexcept {
    return m_pieces->epoch;
}

Span Orbit::span() const noexcept {
    return m_pieces->span;
}

Span Orbit::covered() const noexcept {
    return m_pieces->covered;
}

const OrbitPieces& Orbit::pieces() const noexcept {
    return *m_pieces;
}

State Orbit::at(double time) const noexcept {
    if (!contains(m_pieces->span, time)) {
        return kNoState;
    }
    return evaluate(m_pieces->pieces[m_pieces->index(time)], time);
}

void Orbit::at(std::span<const double> times, const States& states) const {
    using Output = std::pair<std::span<double>, double State::*>;
    const Output outputs[] = {{states.x, &State::x},   {states.y, &State::y},   {states.z, &State::z},
                              {states.vx, &State::vx}, {states.vy, &State::vy}, {states.vz, &State::vz}};
    const char* const names[] = {"x", "y", "z", "vx", "vy", "vz"};
    for (std::size_t i = 0; i < std::size(outputs); ++i) {
        requireOneForEachTime(names[i], outputs[i].first, times.size());
    }
    requireOneForEachTime("status", states.status, times.size());

    for (std::size_t i = 0; i < times.size(); ++i) {
        const State state = at(times[i]);
        for (const auto& [output, field] : outputs) {
            if (!output.empty()) {
                output[i] = state.*field;
            }
        }
        if (!states.status.empty()) {
            const bool number = std::isfinite(times[i]);
            states.status[i] = contains(m_pieces->span, times[i]) ? Status::ok
                               : number                           ? Status::outside_orbit
                                                                  : Status::bad_input;
        }
    }
}

}  // namespace vorbel::scene
