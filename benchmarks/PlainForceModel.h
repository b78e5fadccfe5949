#ifndef VORBEL_BENCHMARKS_PLAIN_FORCE_MODEL_H
#define VORBEL_BENCHMARKS_PLAIN_FORCE_MODEL_H

#include "Scene.h"

#include <array>
#include <cmath>

namespace bench {

using PlainState = std::array<double, 6>;  // position, km, and velocity, km/s

/// Central attraction, J2 and the rotation of the Greenwich frame, for the other integrators: the library's arithmetic
/// with nothing but the six numbers, no drag and no choice of frame, so that they are at their best.
inline void plainForceModel(const PlainState& s, PlainState& rate, double /*time*/) {
    const double x = s[0];
    const double y = s[1];
    const double z = s[2];
    const double r2 = x * x + y * y + z * z;
    const double q = 5.0 * (z * z) / r2;
    const double A = -4133214.32438489 / r2;
    const double r = std::sqrt(r2);
    const double B = 6371.0 / r2 / r;
    const double F = ((q - 1.0) * A + 62.5647465) * B;
    const double vx = s[3];
    const double vy = s[4];
    rate[0] = vx;
    rate[1] = vy;
    rate[2] = s[5];
    rate[3] = (5.31749528e-9 - F) * x + 0.000145842316 * vy;
    rate[4] = (5.31749528e-9 - F) * y - 0.000145842316 * vx;
    rate[5] = ((B + B) * A - F) * z;
}

struct PlainForce {
    void operator()(const PlainState& s, PlainState& rate, double time) const {
        plainForceModel(s, rate, time);
    }
};

inline PlainState plainStart() {
    const fVector s = startState();
    return {s.x, s.y, s.z, s.vx, s.vy, s.vz};
}

/// Distance of a state a revolution after the start from the one that prog() reaches, m.
inline double metresFromProg(const PlainState& s) {
    const fVector start = startState();
    CVorbel orbit;
    orbit.SetProgParam(&start, kStep, kGreenwich);
    const fVector end = orbit.prog(kStep * kRevolutionSteps);
    return std::hypot(s[0] - end.x, s[1] - end.y, s[2] - end.z) * 1000.0;
}

}  // namespace bench

#endif
