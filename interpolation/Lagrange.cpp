#include "ReadOut.h"

#include <vorbel/CVorbel.h>

// Dense output of an order chosen at each call, kept in the object as its last interpolated state.

namespace {

void readOrder(fVector& out, const fVector (&records)[10], double step, double time, int iOrder) {
    const vorbel::Trajectory trajectory = vorbel::trajectoryOf(records, step);
    const double s = vorbel::zeroAtEnd(vorbel::stepsBack(trajectory, time));
    switch (iOrder) {
    case 1:
        vorbel::readOut(out, trajectory, vorbel::oneNodeWeights(s), step);
        break;
    case 2:
        vorbel::readOut(out, trajectory, vorbel::twoNodeWeights(s), step);
        break;
    case 3:
        vorbel::readOut(out, trajectory, vorbel::threeNodeWeights(s), step);
        break;
    case 4:
        vorbel::readOut(out, trajectory, vorbel::fourNodeWeights(s), step);
        break;
    case 5:
    case 6:
    case 7:
        vorbel::readOut(out, trajectory, vorbel::eightNodeWeightsFromPowers(s), step);
        break;
    default:
        out = fVector();
        break;
    }
}

}  // namespace

fVector CVorbel::Lagrange(const double* pdTime, int iOrder) {
    if (iOrder == 4) {
        // rounds differently here alone: it scales once, at the end, as Lagrange4 does
        const vorbel::Trajectory trajectory = vorbel::trajectoryOf(m_afVector, m_dStep);
        const double s = vorbel::zeroAtEnd(vorbel::stepsBack(trajectory, *pdTime));
        vorbel::readOut(m_afVector[1], trajectory, vorbel::fourNodeWeightsTimes24(s), m_dStep * vorbel::kOver24);
    } else {
        readOrder(m_afVector[1], m_afVector, m_dStep, *pdTime, iOrder);
    }
    return m_afVector[1];
}

void CVorbel::Lagrange(fVector& out, const double* pdTime, int iOrder) {
    readOrder(out, m_afVector, m_dStep, *pdTime, iOrder);
    m_afVector[1] = out;
}
