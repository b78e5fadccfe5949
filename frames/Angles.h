#ifndef VORBEL_FRAMES_ANGLES_H
#define VORBEL_FRAMES_ANGLES_H

namespace vorbel {

inline constexpr double kTwoPi = 6.283185307179586;
inline constexpr double kRadiansPerDegree = 0.0174532925156;  // 2.5e-10 of itself below pi/180, in the whole library

/// Into [0, 2 pi), for an angle from atan2.
inline double wrapped(double angle) {
    return angle < 0.0 ? angle + kTwoPi : angle;
}

}  // namespace vorbel

#endif
