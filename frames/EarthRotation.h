#ifndef VORBEL_FRAMES_EARTH_ROTATION_H
#define VORBEL_FRAMES_EARTH_ROTATION_H

#include "../arithmetic/Vector3.h"

namespace vorbel {

inline constexpr double kEarthRate = 7.29211515e-5;  // rad/s, the Earth's rotation

/// Velocity relative to non-rotating axes: v + omega × r of a Greenwich state (system 0), v of any other.
inline Vector3 nonRotatingVelocity(const fVector& state, int system) {
    if (system != 0) {
        return velocity(state);
    }
    return {state.vx - kEarthRate * state.y, state.vy + kEarthRate * state.x, state.vz};
}

/// Velocity relative to the Earth: v of a Greenwich state (system 0), v - omega × r of any other.
inline Vector3 earthRelativeVelocity(const fVector& state, int system) {
    if (system == 0) {
        return velocity(state);
    }
    return {state.vx + kEarthRate * state.y, state.vy - kEarthRate * state.x, state.vz};
}

}  // namespace vorbel

#endif
