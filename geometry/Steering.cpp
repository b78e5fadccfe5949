#include "../frames/Angles.h"
#include "../frames/EarthRotation.h"
#include "../frames/OrbitFrame.h"

#include <vorbel/CVorbel.h>

#include <cmath>

// Pitch and yaw of a direction in an orbit frame: of the Earth-relative velocity, and of the normal of an imaging
// plane.

namespace {

using vorbel::Vector3;

struct Direction {
    double horizontal;  // length of the part along the axes 0 and 1
    double up;
    double yaw;    // from axis 0, without its sign, rad
    double pitch;  // above the axes 0 and 1, rad
};

Direction directionIn(const vorbel::OrbitFrame& frame, const Vector3& d) {
    const double c1 = vorbel::dot(d, frame.axis0);
    const double c2 = vorbel::dot(d, frame.axis1);
    const double c3 = vorbel::dot(d, frame.axis2);
    const double H = std::sqrt(c2 * c2 + c1 * c1);
    return {H, c3, std::acos(c1 / H), std::atan(c3 / H)};
}

}  // namespace

double CVorbel::attitude(double dTime, double* pdPitch, double* pdYaw, double* pdRoll) {
    const fVector state = Lagrange(&dTime, 7);
    const vorbel::OrbitFrame frame =
        vorbel::radiusAlignedFrame(vorbel::position(state), vorbel::nonRotatingVelocity(state, m_iSystem));
    const Direction d = directionIn(frame, vorbel::earthRelativeVelocity(state, m_iSystem));
    *pdYaw = d.yaw;
    *pdPitch = d.pitch;
    *pdRoll = 0.0;
    return std::sqrt(d.up * d.up + d.horizontal * d.horizontal);
}

void CVorbel::PitchYaw(double dTime, double dRange1, double dRangeRate1, double dRange2, double dRangeRate2,
                       double* pdPitch, double* pdYaw, int iSide) {
    const Geopoint point1 = GeoProssess(dTime, dRange1, dRangeRate1, iSide);
    const Geopoint point2 = GeoProssess(dTime, dRange2, dRangeRate2, iSide);
    const fVector state = Lagrange(&dTime, 7);
    const Vector3 r = vorbel::position(state);
    const Vector3 toPoint1 = vorbel::difference({point1.x, point1.y, point1.z}, r);
    const Vector3 toPoint2 = vorbel::difference({point2.x, point2.y, point2.z}, r);

    const Vector3 N = vorbel::cross(toPoint2, toPoint1);

    const Direction d =
        directionIn(vorbel::velocityAlignedFrame(r, vorbel::velocity(state)), vorbel::quotient(N, vorbel::length(N)));
    *pdYaw = d.yaw / vorbel::kRadiansPerDegree;
    *pdPitch = d.pitch / vorbel::kRadiansPerDegree;
}
