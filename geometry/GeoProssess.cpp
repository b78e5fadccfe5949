#include "Geodetic.h"
#include "LookAngle.h"

#include "../frames/OrbitFrame.h"

#include <vorbel/CVorbel.h>

#include <cmath>

// Ground point at a slant range and range rate: the look direction lies on a cone about the velocity.

Geopoint CVorbel::GeoProssess(double dTime, double dRange, double dRangeRate, int iSide) {
    const fVector state = Lagrange(&dTime, 7);
    const vorbel::Vector3 v = vorbel::velocity(state);
    const double alpha = std::acos(dRangeRate / vorbel::length(v));  // from the velocity to the line of sight, reversed
    const double across = std::sin(alpha) * dRange;
    const double along = -(std::cos(alpha) * dRange);

    const vorbel::Vector3 r = vorbel::position(state);
    const vorbel::OrbitFrame frame = vorbel::velocityAlignedFrame(r, v);
    const vorbel::LookPlane plane{frame.axis1, frame.axis2, vorbel::product(along, frame.axis0)};
    return vorbel::groundPoint(vorbel::solveLookAngle(r, frame.radius, across, plane, iSide, {m_dA, m_dB}));
}
