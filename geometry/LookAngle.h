#ifndef VORBEL_GEOMETRY_LOOK_ANGLE_H
#define VORBEL_GEOMETRY_LOOK_ANGLE_H

#include "../arithmetic/Vector3.h"
#include "../frames/OrbitFrame.h"

namespace vorbel {

struct Ellipsoid {
    double a;  // semi-axes, km
    double b;
};

/// A plane through the satellite, possibly shifted along its normal, in which the iteration looks for the ground point.
struct LookPlane {
    Vector3 U;       // unit vector to the left
    Vector3 W;       // unit vector upwards, perpendicular to U
    Vector3 offset;  // shift of the plane, km
};

/// The ground point: r + offset + range (side sin(theta) U - cos(theta) W) for the look angle theta that puts it on the
/// ellipsoid, by Newton steps. `side` is +1 or -1; `range` (km) is the part of the slant range within the plane.
///
/// Not-a-number when the range does not reach a sphere of 6371 km; the point of the last pass, off the ellipsoid, when
/// the beam misses it.
Vector3 solveLookAngle(const Vector3& r, double radius, double range, const LookPlane& plane, int side,
                       const Ellipsoid& ellipsoid);

/// An antenna's beam plane, as directions in an orbit frame.
struct BeamPlane {
    Vector3 u;  // to the left
    Vector3 w;  // upwards
};

/// Turned by attitude angles (rad): second and third column of Rz(yaw) Rx(roll) Ry(pitch).
BeamPlane beamPlane(double pitch, double yaw, double roll);

/// Turned without roll, by Ry(pitch) Rz(-yaw): its second and third column.
BeamPlane beamPlaneWithoutRoll(double pitch, double yaw);

/// The ground point in a beam at a slant range (km), for a satellite at r with the given orbit frame.
Vector3 pointInBeam(const Vector3& r, const OrbitFrame& frame, const BeamPlane& beam, double range, int side,
                    const Ellipsoid& ellipsoid);

}  // namespace vorbel

#endif
