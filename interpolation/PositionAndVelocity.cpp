#include "ReadOut.h"

#include "../arithmetic/Vector3.h"

#include <vorbel/CVorbel.h>

// Dense output of position and velocity alone, and of the distance from a ground point.

namespace {

/// One field of the four-node read-out, s steps back.
struct FourNodeReadOut {
    const vorbel::Trajectory& trajectory;
    bool atEnd;
    vorbel::Weights<4> weights;
    double scale;

    FourNodeReadOut(const vorbel::Trajectory& t, double s)
        : trajectory(t), atEnd(s < vorbel::kAtEnd), weights(vorbel::fourNodeWeightsTimes24(s)),
          scale(t.step * vorbel::kOver24) {}

    double operator()(double fVector::*field) const {
        const double end = trajectory.end.*field;
        return atEnd ? end : end - vorbel::weightedSum(trajectory, weights, field) * scale;
    }
};

template <class ReadField>
void store(fVectorSimple& out, const ReadField& field) {
    out.x = field(&fVector::x);
    out.y = field(&fVector::y);
    out.z = field(&fVector::z);
    out.vx = field(&fVector::vx);
    out.vy = field(&fVector::vy);
    out.vz = field(&fVector::vz);
}

template <std::size_t N>
void store(fVectorSimple& out, const vorbel::Trajectory& t, const vorbel::Weights<N>& weights) {
    store(out, [&](double fVector::*field) { return t.end.*field - vorbel::weightedSum(t, weights, field) * t.step; });
}

}  // namespace

void CVorbel::Lagrange4(fVectorSimple& out, double t) const {
    const vorbel::Trajectory trajectory = vorbel::trajectoryOf(m_afVector, m_dStep);
    store(out, FourNodeReadOut(trajectory, vorbel::stepsBack(trajectory, t)));
}

void CVorbel::Lagrange4_rFv_t(fVectorSimple& out, double dt) const {
    const vorbel::Trajectory trajectory = vorbel::trajectoryOf(m_afVector, m_dStep);
    store(out, FourNodeReadOut(trajectory, vorbel::stepsOfOffset(trajectory, dt)));
}

double CVorbel::dLagrange4_rFv_t(const Geopoint& point, double dt) const {
    const vorbel::Trajectory trajectory = vorbel::trajectoryOf(m_afVector, m_dStep);
    const FourNodeReadOut field(trajectory, vorbel::stepsOfOffset(trajectory, dt));
    const vorbel::Vector3 satellite{field(&fVector::x), field(&fVector::y), field(&fVector::z)};
    return vorbel::length(vorbel::difference({point.x, point.y, point.z}, satellite));
}

void CVorbel::s_Lagrange4(CVorbel& obj, fVectorSimple& out, double t) {
    obj.Lagrange4(out, t);
}

void CVorbel::s_Lagrange4_m_Fv_t(CVorbel& obj, fVectorSimple& out, double dt) {
    obj.Lagrange4_rFv_t(out, dt);
}

double CVorbel::s_dLagrange4_rFv_t(CVorbel& obj, Geopoint& point, double dt) {
    return obj.dLagrange4_rFv_t(point, dt);
}

void CVorbel::s_Lagrange_m_Fv_t(CVorbel& obj, fVectorSimple& out, double dt, int iOrder) {
    const vorbel::Trajectory t = vorbel::trajectoryOf(obj.m_afVector, obj.m_dStep);
    const double s = vorbel::zeroAtEnd(vorbel::stepsOfOffset(t, dt));
    switch (iOrder) {
    case 1:
        // h and the derivative first: the one read-out that multiplies by s last
        store(out, [&](double fVector::*field) { return t.end.*field - t.step * (t.newest->*field) * s; });
        break;
    case 2:
        store(out, t, vorbel::twoNodeWeights(s));
        break;
    case 3:
        store(out, t, vorbel::threeNodeWeightsScaledLast(s));
        break;
    case 4:
        store(out, t, vorbel::fourNodeWeightsScaledLast(s));
        break;
    case 5:
    case 6:
    case 7:
        store(out, t, vorbel::eightNodeWeightsScaledLast(s));
        break;
    default:
        store(out, [](double fVector::*) { return 0.0; });
        break;
    }
}
