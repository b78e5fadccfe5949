#ifndef VORBEL_SCENE_SIGHT_FRAME_H
#define VORBEL_SCENE_SIGHT_FRAME_H

#include "kernels/PixelToGround.h"

#include <vorbel/scene/Orbit.h>
#include <vorbel/scene/PixelToGround.h>
#include <vorbel/scene/Status.h>

namespace vorbel::scene {

/// Fills one entry of the frames for a satellite whose points lie on cones about its velocity.
void setDopplerFrame(SightFrames& frames, int entry, const State& state, LookSide side) noexcept;

/// 1 for left, -1 for right.
inline double signOf(LookSide side) noexcept {
    return side == LookSide::left ? 1.0 : -1.0;
}

/// The axis of an entry that has its state, for points in the plane across it: the beam of an antenna that attitude
/// angles (degrees) turn out of the radius-aligned frame by Rz(yaw) Rx(roll) Ry(pitch).
void setBeamAxis(SightFrames& f, int i, double pitch, double yaw, double roll) noexcept;

/// One point from scratch, by bisection of the circle: for what the fast path leaves open. Not settled, X and Y are
/// not-a-number.
/// \param[in] rangeRate  m/s
Status solveCarefully(const SightFrames& f, int i, double range, double rangeRate, double height, double& X,
                      double& Y) noexcept;

}  // namespace vorbel::scene

#endif
