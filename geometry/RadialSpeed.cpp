#include "Geodetic.h"

#include <vorbel/CVorbel.h>

// Slant range and range rate to a ground point.

double CVorbel::radial_speed(double dTime, double dLat, double dLon, double dHeight, double* pdRange) {
    const fVector state = Lagrange(&dTime, 7);
    const vorbel::Vector3 d = vorbel::difference(vorbel::position(state), vorbel::toCartesian(dLat, dLon, dHeight));
    const double range = vorbel::length(d);
    *pdRange = range;
    return vorbel::dot(vorbel::velocity(state), d) / range;
}
