#include "Geodetic.h"

#include <vorbel/CVorbel.h>

#include <cmath>

// Slant range and range rate to a ground point.

double CVorbel::radial_speed(double dTime, double dLat, double dLon, double dHeight, double* pdRange) {
    const fVector state = Lagrange(&dTime, 7);
    const vorbel::Vector3 d = vorbel::difference(vorbel::position(state), vorbel::toCartesian(dLat, dLon, dHeight));
    const double range = std::sqrt(d.z * d.z + (d.y * d.y + d.x * d.x));
    *pdRange = range;
    return (state.vy * d.y + state.vx * d.x + state.vz * d.z) / range;
}
