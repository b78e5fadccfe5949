#ifndef VORBEL_FRAMES_SIDEREAL_TIME_H
#define VORBEL_FRAMES_SIDEREAL_TIME_H

namespace vorbel {

inline constexpr double kSecondsPerDay = 86400.0;

/// Mean sidereal angle (rad) at 0h UT of a day, day 1 = 1900 January 1.
double siderealAngle(double day);

}  // namespace vorbel

#endif
