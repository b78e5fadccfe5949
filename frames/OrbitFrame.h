#ifndef VORBEL_FRAMES_ORBIT_FRAME_H
#define VORBEL_FRAMES_ORBIT_FRAME_H

#include "../arithmetic/Vector3.h"

namespace vorbel {

/// The satellite's own right-handed orthonormal frame, and its distance from the Earth's centre.
struct OrbitFrame {
    Vector3 axis0;  // along track
    Vector3 axis1;  // orbit normal, to the left of the flight direction
    Vector3 axis2;  // up
    double radius;  // km
};

inline OrbitFrame velocityAlignedFrame(const Vector3& r, const Vector3& v) {
    const Vector3 h = cross(r, v);
    const double H = length(h);
    const double V = length(v);
    const Vector3 up{h.z * v.y - h.y * v.z, h.x * v.z - h.z * v.x, h.y * v.x - h.x * v.y};
    return {quotient(v, V), quotient(h, H), quotient(quotient(up, H), V), length(r)};
}

inline OrbitFrame radiusAlignedFrame(const Vector3& r, const Vector3& v) {
    const Vector3 h = cross(r, v);
    const double H = length(h);
    const double R = length(r);
    const Vector3 forward{r.z * h.y - r.y * h.z, r.x * h.z - r.z * h.x, r.y * h.x - r.x * h.y};
    return {quotient(quotient(forward, H), R), quotient(h, H), quotient(r, R), R};
}

/// A direction given in the frame, turned into the frame of the state.
inline Vector3 fromOrbitFrame(const OrbitFrame& f, const Vector3& d) {
    return {
        f.axis0.x * d.x + f.axis1.x * d.y + f.axis2.x * d.z,
        f.axis0.y * d.x + f.axis1.y * d.y + f.axis2.y * d.z,
        f.axis0.z * d.x + f.axis1.z * d.y + f.axis2.z * d.z,
    };
}

}  // namespace vorbel

#endif
