#ifndef VORBEL_SCENE_SIGHT_FRAME_H
#define VORBEL_SCENE_SIGHT_FRAME_H

#include "kernels/PixelToGround.h"

#include <vorbel/scene/Orbit.h>
#include <vorbel/scene/PixelToGround.h>
#include <vorbel/scene/Status.h>

namespace vorbel::scene {

/// A direction in the Earth-fixed frame.
struct Direction {
    double x;
    double y;
    double z;
};

/// Fills one entry of the frames for a satellite whose points lie on cones about its velocity.
void setDopplerFrame(SightFrames& frames, int entry, const State& state, LookSide side) noexcept;

/// Fills one entry of the frames for a satellite whose points lie in the plane across an axis.
void setBeamFrame(SightFrames& frames, int entry, const State& state, const Direction& axis, LookSide side) noexcept;

/// The axis across the beam of an antenna that attitude angles (degrees) turn out of the radius-aligned frame by
/// Rz(yaw) Rx(roll) Ry(pitch).
Direction beamAxis(const State& state, double pitch, double yaw, double roll) noexcept;

/// One point from scratch, by bisection of the circle: for what the fast path leaves open. Not settled, X and Y are
/// not-a-number.
/// \param[in] rangeRate  m/s
Status solveCarefully(const SightFrames& f, int i, double range, double rangeRate, double height, double& X,
                      double& Y) noexcept;

}  // namespace vorbel::scene

#endif
