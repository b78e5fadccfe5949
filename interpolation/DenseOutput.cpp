#include "ReadOut.h"

#include <vorbel/CVorbel.h>

// The dense-output functions of fixed order, for callers that take the function once and call it for many times.

namespace {

/// Orders 4 and up test the square of the distance from the end state, which ends at a distance three times as long.
constexpr double kAtEndSquared = 1e-25;

template <std::size_t N>
void readInto(fVector& out, const vorbel::Trajectory& trajectory, double time, vorbel::Weights<N> (&weights)(double)) {
    const double s = vorbel::stepsBack(trajectory, time);
    const bool atEnd = N < 4 ? s < vorbel::kAtEnd : s * s < kAtEndSquared;
    if (atEnd) {
        out = trajectory.end;
    } else {
        vorbel::readOut(out, trajectory, weights(s), trajectory.step);
    }
}

}  // namespace

FunLagrangeOpt CVorbel::ms_afunLagrangeOpt[8] = {
    s_LagrangeOpt_0, s_LagrangeOpt_1,   s_LagrangeOpt_2,   s_LagrangeOpt_3,
    s_LagrangeOpt_4, s_LagrangeOpt_567, s_LagrangeOpt_567, s_LagrangeOpt_567,
};

FunLagrangeOpt CVorbel::GetFunLagrangeOpt(int iOrder) const {
    return ms_afunLagrangeOpt[static_cast<unsigned>(iOrder) <= 7U ? iOrder : 0];
}

void CVorbel::s_LagrangeOpt_0(CVorbel& /*obj*/, fVector& out, double /*t*/) {
    out = fVector();
}

void CVorbel::s_LagrangeOpt_1(CVorbel& obj, fVector& out, double t) {
    readInto(out, vorbel::trajectoryOf(obj.m_afVector, obj.m_dStep), t, vorbel::oneNodeWeights);
}

void CVorbel::s_LagrangeOpt_2(CVorbel& obj, fVector& out, double t) {
    readInto(out, vorbel::trajectoryOf(obj.m_afVector, obj.m_dStep), t, vorbel::twoNodeWeights);
}

void CVorbel::s_LagrangeOpt_3(CVorbel& obj, fVector& out, double t) {
    readInto(out, vorbel::trajectoryOf(obj.m_afVector, obj.m_dStep), t, vorbel::threeNodeWeights);
}

void CVorbel::s_LagrangeOpt_4(CVorbel& obj, fVector& out, double t) {
    readInto(out, vorbel::trajectoryOf(obj.m_afVector, obj.m_dStep), t, vorbel::fourNodeWeights);
}

void CVorbel::s_LagrangeOpt_567(CVorbel& obj, fVector& out, double t) {
    readInto(out, vorbel::trajectoryOf(obj.m_afVector, obj.m_dStep), t, vorbel::eightNodeWeights);
}
