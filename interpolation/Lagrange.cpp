#include "ReadOut.h"

#include <vorbel/CVorbel.h>

// Dense output of an order chosen at each call, kept in the object as its last interpolated state.

namespace {

/// Below this distance from the end state, in steps, the weights are those of the end state itself.
constexpr double kAtEnd = 1e-13;

double stepsBackOrNone(vorbel::Trajectory trajectory, double time) {
    const double s = vorbel::stepsBack(trajectory, time);
    return s < kAtEnd ? 0.0 : s;
}

void readOrder(fVector& out, vorbel::Trajectory trajectory, double s, int iOrder) {
    switch (iOrder) {
    case 1:
        vorbel::readOut(out, trajectory, vorbel::oneNodeWeights(s), trajectory.step);
        break;
    case 2:
        vorbel::readOut(out, trajectory, vorbel::twoNodeWeights(s), trajectory.step);
        break;
    case 3:
        vorbel::readOut(out, trajectory, vorbel::threeNodeWeights(s), trajectory.step);
        break;
    case 4:
        vorbel::readOut(out, trajectory, vorbel::fourNodeWeights(s), trajectory.step);
        break;
    case 5:
    case 6:
    case 7:
        vorbel::readOut(out, trajectory, vorbel::eightNodeWeightsFromPowers(s), trajectory.step);
        break;
    default:
        out = fVector();
        break;
    }
}

}  // namespace

fVector CVorbel::Lagrange(const double* pdTime, int iOrder) {
    const vorbel::Trajectory trajectory = vorbel::trajectoryOf(m_afVector, m_dStep);
    const double s = stepsBackOrNone(trajectory, *pdTime);
    if (iOrder == 4) {
        // rounds differently here alone: it scales once, at the end, as Lagrange4 does
        vorbel::readOut(m_afVector[1], trajectory, vorbel::fourNodeWeightsTimes24(s),
                        trajectory.step * vorbel::kOver24);
    } else {
        readOrder(m_afVector[1], trajectory, s, iOrder);
    }
    return m_afVector[1];
}

void CVorbel::Lagrange(fVector& out, const double* pdTime, int iOrder) {
    const vorbel::Trajectory trajectory = vorbel::trajectoryOf(m_afVector, m_dStep);
    readOrder(out, trajectory, stepsBackOrNone(trajectory, *pdTime), iOrder);
    m_afVector[1] = out;
}
