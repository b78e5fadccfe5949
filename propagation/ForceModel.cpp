#include "ForceModel.h"

#include "Atmosphere.h"

#include <vorbel/CVorbel.h>

#include <cmath>

double vorbel::dragFactor(const fVector& state, double altitude) {
    if (!insideAtmosphere(altitude)) {
        return 0.0;
    }
    const double speed = std::sqrt(state.vx * state.vx + state.vy * state.vy + state.vz * state.vz);
    return atmosphericDensity(altitude) * state.drag * speed;
}

fVector CVorbel::right(const fVector& state) const {
    return vorbel::withOrWithoutDrag(state, [&](auto drag) { return vorbel::derivative<drag()>(state, m_iSystem); });
}
