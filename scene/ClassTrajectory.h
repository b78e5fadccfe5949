#ifndef VORBEL_SCENE_CLASS_TRAJECTORY_H
#define VORBEL_SCENE_CLASS_TRAJECTORY_H

#include "OrbitPieces.h"

#include <vorbel/CVorbel.h>

#include <cstddef>
#include <vector>

namespace vorbel::scene {

/// The components of a position and of a velocity.
inline constexpr double State::*kPosition[] = {&State::x, &State::y, &State::z};
inline constexpr double State::*kVelocity[] = {&State::vx, &State::vy, &State::vz};

/// What the class keeps of an integration.
inline constexpr int kHistorySteps = 7;
inline constexpr std::size_t kNodes = 8;

/// The class's record of a state, its time 0. The class counts seconds from 1900, which resolves 4.8e-7 s; its
/// Earth-fixed dynamics do not look at them, and from 0 they are as fine as a double can be.
fVector recordOf(const State& state, double drag);

/// The state of a record.
State stateOf(const fVector& record);

/// The polynomials of seven steps of an integration, as CVorbel::Lagrange of order 7 reads them out: those through the
/// derivatives at the last eight nodes, integrated back from the end state. The times of the piece are left at 0.
/// \param[in] uEnd  the end state's u
OrbitPiece readOut(CVorbel& trajectory, double uEnd);

/// An integration of a state in equal steps.
class Integration {
public:
    Integration(const State& state, double drag, double step);

    void advance(int steps);

    CVorbel& trajectory() {
        return m_trajectory;
    }

private:
    CVorbel m_trajectory;
    bool m_started = false;
};

/// The pieces of a propagation, in order of time.
/// \param[in] start     time of the state
/// \param[in] interval  s, negative propagates backwards; no pieces for 0
std::vector<OrbitPiece> propagate(const State& state, double drag, double start, double interval);

}  // namespace vorbel::scene

#endif
