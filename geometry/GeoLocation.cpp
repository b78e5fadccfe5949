#include "Geodetic.h"
#include "LookAngle.h"

#include "../frames/EarthRotation.h"
#include "../frames/OrbitFrame.h"

#include <vorbel/CVorbel.h>

// Ground point in the beam of a given attitude, at a slant range.

Geopoint CVorbel::GeoLocation(double dTime, double dRange, int iSide, double dPitch, double dYaw, double dRoll) {
    if (dTime > m_afVector[0].time) {
        return Geopoint();
    }
    fVector state = Lagrange(&dTime, 7);
    const vorbel::Vector3 r = vorbel::position(state);
    const vorbel::OrbitFrame frame = vorbel::radiusAlignedFrame(r, vorbel::nonRotatingVelocity(state, m_iSystem));
    const vorbel::Vector3 point =
        vorbel::pointInBeam(r, frame, vorbel::beamPlane(dPitch, dYaw, dRoll), dRange, iSide, {m_dA, m_dB});
    if (m_iSystem == 1) {
        state.x = point.x;
        state.y = point.y;
        state.z = point.z;
        return vorbel::groundPoint(vorbel::position(ABS_Grnv(state)));
    }
    return vorbel::groundPoint(point);
}
