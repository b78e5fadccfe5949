#include "../arithmetic/Vector3.h"

#include <vorbel/CVorbel.h>

namespace {

// WGS 84
constexpr double kSemiMajorAxis = Geopoint{}.a;    // km
constexpr double kSemiMinorAxis = 6356.752314245;  // km

}  // namespace

CVorbel::CVorbel() : m_dStep(0.0), m_iSystem(0), m_dA(kSemiMajorAxis), m_dB(kSemiMinorAxis) {}

CVorbel::CVorbel(const CVorbel& other) = default;

CVorbel& CVorbel::operator=(const CVorbel& other) = default;

CVorbel& CVorbel::operator=(CVorbel&& other) noexcept = default;

void CVorbel::setVector(const fVector& state) {
    m_afVector[0] = state;
}

fVector CVorbel::getVector() const {
    return m_afVector[0];
}

fVector* CVorbel::GetfVector(int iIndex) {
    switch (iIndex) {
    case 0:
        return &m_afVector[0];
    case 1:
        return &m_afVector[2];
    default:
        return nullptr;
    }
}

void CVorbel::setStep(double dStep) {
    m_dStep = dStep;
}

double CVorbel::getStep() const {
    return m_dStep;
}

void CVorbel::SetSystem(int iSystem) {
    m_iSystem = iSystem;
}

int CVorbel::GetSystem() const {
    return m_iSystem;
}

void CVorbel::SetEllipsoid(double dA, double dB) {
    m_dA = dA;
    m_dB = dB;
}

void CVorbel::GetEllipsoid(double* pdA, double* pdB) const {
    *pdA = m_dA;
    *pdB = m_dB;
}

double CVorbel::dGetSat_radius() const {
    return vorbel::length(vorbel::position(m_afVector[0]));
}

void CVorbel::SetProgParam(const fVector* pState, double dStep, int iSystem) {
    m_afVector[0] = *pState;
    m_dStep = dStep;
    m_iSystem = iSystem;
}
