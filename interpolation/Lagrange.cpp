#include "ReadOut.h"

#include <vorbel/CVorbel.h>

// Dense output of an order chosen at each call, kept in the object as its last interpolated state.

namespace {

/// Below this distance from the end state, in steps, the weights are those of the end state itself.
constexpr double kAtEnd = 1e-13;

double stepsBackOrNone(const vorbel::Trajectory& trajectory, double time) {
    const double s = vorbel::stepsBack(trajectory, time);
    return s < kAtEnd ? 0.0 : s;
}

fVector stateOfOrder(const vorbel::Trajectory& trajectory, double s, int iOrder) {
    switch (iOrder) {
    case 1:
        return vorbel::readOut(trajectory, vorbel::oneNodeWeights(s), trajectory.step);
    case 2:
        return vorbel::readOut(trajectory, vorbel::twoNodeWeights(s), trajectory.step);
    case 3:
        return vorbel::readOut(trajectory, vorbel::threeNodeWeights(s), trajectory.step);
    case 4:
        return vorbel::readOut(trajectory, vorbel::fourNodeWeights(s), trajectory.step);
    case 5:
    case 6:
    case 7:
        return vorbel::readOut(trajectory, vorbel::eightNodeWeightsFromPowers(s), trajectory.step);
    default:
        return fVector();
    }
}

}  // namespace

fVector CVorbel::Lagrange(const double* pdTime, int iOrder) {
    const vorbel::Trajectory trajectory = vorbel::trajectoryOf(m_afVector, m_dStep);
    const double s = stepsBackOrNone(trajectory, *pdTime);
    // Order 4 alone rounds differently here: it scales once, at the end, as Lagrange4 does.
    m_afVector[1] =
        iOrder == 4 ? vorbel::readOut(trajectory, vorbel::fourNodeWeightsTimes24(s), trajectory.step * vorbel::kOver24)
                    : stateOfOrder(trajectory, s, iOrder);
    return m_afVector[1];
}

void CVorbel::Lagrange(fVector& out, const double* pdTime, int iOrder) {
    const vorbel::Trajectory trajectory = vorbel::trajectoryOf(m_afVector, m_dStep);
    out = stateOfOrder(trajectory, stepsBackOrNone(trajectory, *pdTime), iOrder);
    m_afVector[1] = out;
}
