#include "ClassTrajectory.h"

#include "Polynomials.h"

#include <algorithm>
#include <cmath>

namespace vorbel::scene {

namespace {

constexpr double kMetresPerKilometre = 1000.0;
constexpr double kLongestOfTwoSteps = 120.0;  // s, up to which InitLagrange makes an interval in two steps
constexpr double kLongestStep = 20.0;         // s, at which integration and read-out lose nanometres

constexpr double fVector::*kFields[] = {&fVector::x,  &fVector::y,  &fVector::z,
                                        &fVector::vx, &fVector::vy, &fVector::vz};

/// The integral of a polynomial of degree 7 that has a value at u.
Polynomial integralThrough(const Polynomial& polynomial, double u, double value) {
    Polynomial integral{};
    for (std::size_t k = 1; k < integral.size(); ++k) {
        integral[k] = polynomial[k - 1] / static_cast<double>(k);
    }
    integral[0] = value - valueAt(integral, u);
    return integral;
}

int stepsOf(double interval) {
    const double length = std::abs(interval);
    return length > kLongestOfTwoSteps ? static_cast<int>(std::ceil(length / kLongestStep)) : 2;
}

}  // namespace

fVector recordOf(const State& state, double drag) {
    fVector record;
    record.x = state.x / kMetresPerKilometre;
    record.y = state.y / kMetresPerKilometre;
    record.z = state.z / kMetresPerKilometre;
    record.vx = state.vx / kMetresPerKilometre;
    record.vy = state.vy / kMetresPerKilometre;
    record.vz = state.vz / kMetresPerKilometre;
    record.drag = drag;
    return record;
}

State stateOf(const fVector& record) {
    return {record.x * kMetresPerKilometre,  record.y * kMetresPerKilometre,  record.z * kMetresPerKilometre,
            record.vx * kMetresPerKilometre, record.vy * kMetresPerKilometre, record.vz * kMetresPerKilometre};
}

OrbitPiece readOut(CVorbel& trajectory, double uEnd) {
    const fVector* history = trajectory.GetfVector(1);
    const double step = trajectory.getStep();
    std::array<std::size_t, kNodes> order{};
    std::array<double, kNodes> u{};
    for (std::size_t i = 0; i < kNodes; ++i) {
        order[i] = i;
        u[i] = uEnd - static_cast<double>(kNodes - 1 - i) * step;
    }
    std::sort(order.begin(), order.end(), [&](auto i, auto j) { return std::abs(u[i]) < std::abs(u[j]); });

    const fVector& last = *trajectory.GetfVector(0);
    const auto integrated = [&](double fVector::*field) {
        std::array<Condition, kNodes> conditions{};
        for (std::size_t k = 0; k < kNodes; ++k) {
            conditions[k] = {u[order[k]], history[order[k]].*field * kMetresPerKilometre};
        }
        return integralThrough(interpolate(conditions), uEnd, last.*field * kMetresPerKilometre);
    };
    OrbitPiece piece{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        piece.position[axis] = integrated(kFields[axis]);
        piece.velocity[axis] = integrated(kFields[axis + 3]);
    }
    return piece;
}

Integration::Integration(const State& state, double drag, double step) {
    const fVector record = recordOf(state, drag);
    m_trajectory.SetProgParam(&record, step, 0);
}

void Integration::advance(int steps) {
    const double step = m_trajectory.getStep();
    for (int i = 0; i < steps; ++i) {
        if (m_started) {
            m_trajectory.adams(*m_trajectory.GetfVector(0), step);
        } else {
            m_trajectory.prog(0.5 * step);  // one step, with the history before it
            m_started = true;
        }
    }
}

std::vector<OrbitPiece> propagate(const State& state, double drag, double start, double interval) {
    std::vector<OrbitPiece> pieces;
    if (interval == 0.0) {
        return pieces;
    }
    const int steps = stepsOf(interval);
    const double step = interval / steps;
    Integration integration(state, drag, step);
    for (int done = 0; done < steps;) {
        const int next = std::min(kHistorySteps, done == 0 ? (steps - 1) % kHistorySteps + 1 : kHistorySteps);
        integration.advance(next);
        const double from = start + done * step;
        done += next;
        const double to = done == steps ? start + interval : start + done * step;
        const double centre = std::round(0.5 * (from + to));
        // from the difference, which is exact, so that the start of a long span does not round the times within it
        OrbitPiece piece = readOut(integration.trajectory(), (start - centre) + done * step);
        piece.first = std::min(from, to);
        piece.last = std::max(from, to);
        piece.centre = centre;
        pieces.push_back(piece);
    }
    if (interval < 0.0) {
        std::reverse(pieces.begin(), pieces.end());
    }
    return pieces;
}

}  // namespace vorbel::scene
