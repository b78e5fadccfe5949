#include "LookAngle.h"

#include "../frames/EarthRotation.h"

#include <vorbel/CVorbel.h>

#include <cmath>

// Doppler centroid of a steered beam, as a speed along the line of sight.

namespace {

using vorbel::Vector3;

/// Velocity of a point that the Earth carries along. The radius in the equatorial plane is multiplied in and divided
/// out again; on the axis itself, where that would be 0/0, the point stands still.
Vector3 carriedVelocity(const Vector3& point) {
    const double axial = std::sqrt(point.y * point.y + point.x * point.x);
    if (axial == 0.0) {
        return Vector3();
    }
    return {-(axial * vorbel::kEarthRate * point.y) / axial, (axial * vorbel::kEarthRate * point.x) / axial, 0.0};
}

}  // namespace

double CVorbel::centroid(double dTime, double dRange, double dPitch, double dYaw, double dRoll, int iSide) {
    const fVector state = Lagrange(&dTime, 7);
    const Vector3 r = vorbel::position(state);
    const Vector3 v = vorbel::nonRotatingVelocity(state, m_iSystem);
    const Vector3 point = vorbel::pointInBeam(r, vorbel::radiusAlignedFrame(r, v),
                                              vorbel::beamPlane(dPitch, dYaw, dRoll), dRange, iSide, {m_dA, m_dB});
    const Vector3 vT = carriedVelocity(point);
    const Vector3 d = vorbel::difference(point, r);
    return ((vT.x - v.x) * d.x + (vT.y - v.y) * d.y - v.z * d.z) / vorbel::length(d);
}

double CVorbel::centroid_NEW(double dTime, double dRange, double dPitch, double dYaw, double /*dUnused*/, int iSide) {
    const fVector state = Lagrange(&dTime, 7);
    const Vector3 r = vorbel::position(state);
    const vorbel::OrbitFrame frame = vorbel::velocityAlignedFrame(r, vorbel::nonRotatingVelocity(state, m_iSystem));
    const Vector3 point =
        vorbel::pointInBeam(r, frame, vorbel::beamPlaneWithoutRoll(dPitch, dYaw), dRange, iSide, {m_dA, m_dB});
    const Vector3 d = vorbel::difference(point, r);
    return vorbel::dot(d, vorbel::velocity(state)) / vorbel::length(d);
}
