#include "../arithmetic/Vector3.h"
#include "Angles.h"
#include "Epoch.h"

#include <vorbel/CVorbel.h>

#include <cmath>

// Osculating Keplerian elements from a state and back, by the two-body relations.

namespace {

constexpr double kGravitationalParameter = 398600.398;  // km³/s²; not the product of the force model's two factors

}  // namespace

void CVorbel::Elements_to_Ephemeris(Ephemeris_Struct* eph, const Elements_Struct* el) const {
    const double cosNu = std::cos(el->nu);
    const double sinNu = std::sin(el->nu);
    const double cosU = std::cos(el->u);
    const double sinU = std::sin(el->u);
    const double cosNode = std::cos(el->raan);
    const double sinNode = std::sin(el->raan);
    const double cosI = std::cos(el->incl);
    const double sinI = std::sin(el->incl);

    const double p = (1.0 - el->e * el->e) * el->a;  // semi-latus rectum
    const double r = p / (1.0 + el->e * cosNu);
    const double w = std::sqrt(kGravitationalParameter / p);
    const double radialSpeed = sinNu * (w * el->e);
    const double transverseSpeed = w * (1.0 + el->e * cosNu);

    // direction cosines of the radius in the equatorial plane
    const double A = cosU * cosNode - sinU * sinNode * cosI;
    const double B = sinU * cosNode * cosI + sinNode * cosU;

    Ephemeris_Struct absolute;
    vorbel::copyEpoch(*el, absolute);
    absolute.system = 1;
    absolute.state.x = A * r;
    absolute.state.y = B * r;
    absolute.state.z = sinU * r * sinI;
    absolute.state.vx = A * radialSpeed - (sinNode * cosU * cosI + sinU * cosNode) * transverseSpeed;
    absolute.state.vy = B * radialSpeed - (sinU * sinNode - cosU * cosNode * cosI) * transverseSpeed;
    absolute.state.vz = sinU * radialSpeed * sinI + cosU * transverseSpeed * sinI;
    absolute.state.date = static_cast<double>(el->date);
    absolute.state.time = el->time;

    if (eph->system != 0) {
        *eph = absolute;
    } else {
        ABS_to_Grinvich(&absolute, eph);
    }
}

void CVorbel::Ephemeris_to_Elements(const Ephemeris_Struct* eph, Elements_Struct* el) const {
    Ephemeris_Struct absolute = *eph;
    if (eph->system == 0) {
        Grinvich_to_ABS(eph, &absolute);
    }
    const vorbel::Vector3 position = vorbel::position(absolute.state);
    const vorbel::Vector3 velocity = vorbel::velocity(absolute.state);

    const double r = vorbel::length(position);
    const double v = vorbel::length(velocity);
    const vorbel::Vector3 h = vorbel::cross(position, velocity);
    el->raan = vorbel::wrapped(std::atan2(h.x, -h.y));
    el->incl = std::acos(h.z / vorbel::length(h));

    const double D = vorbel::dot(position, velocity);
    const double sigma = std::sqrt(r * r * (v * v) - D * D) / r / v;  // sine of the angle between radius and velocity
    const double q = r * (v * v) / kGravitationalParameter;
    el->a = r / (2.0 - q);
    el->e = std::sqrt(1.0 - (2.0 - q) * q * (sigma * sigma));
    el->nu = vorbel::wrapped(std::atan2(D / r / v * q * sigma / el->e, (q * (sigma * sigma) - 1.0) / el->e));
    el->u = vorbel::wrapped(std::atan2(position.z / r / std::sin(el->incl),
                                       (std::sin(el->raan) * position.y + std::cos(el->raan) * position.x) / r));
}
