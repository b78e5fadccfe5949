#ifndef VORBEL_SCENE_KERNELS_ARC_TANGENT_H
#define VORBEL_SCENE_KERNELS_ARC_TANGENT_H

// Arc tangents in degrees, the same on every system: the C library's are not. The polynomial is from fits.py.

#include <cmath>

namespace vorbel::scene {

// off by 7.3e-16 degrees
constexpr double kArc0 = 57.295779513082319;
constexpr double kArc1 = -19.098593171024717;
constexpr double kArc2 = 11.459155901975942;
constexpr double kArc3 = -8.1851113001485279;
constexpr double kArc4 = 6.3661949418996601;
constexpr double kArc5 = -5.2086302354745391;
constexpr double kArc6 = 4.406031194276144;
constexpr double kArc7 = -3.8046751373401274;
constexpr double kArc8 = 3.2596849535783396;
constexpr double kArc9 = -2.4926215225344456;
constexpr double kArc10 = 1.2125630425926882;

/// The angle of (x, y) from the x axis, degrees, for x and y not negative; 0 for (0, 0).
static inline double quadrantAngle(double y, double x) {
    constexpr double kTangent = 0.41421356237309503;  // of 22.5 degrees: beyond it the angle is reckoned from 45
    constexpr double kNothing = 1e-300;               // makes 0 of 0/0
    const double low = y <= x ? y : x;
    const double high = y <= x ? x : y;
    const bool fold = low > kTangent * high;
    const double above = fold ? low - high : low;
    const double below = fold ? low + high : high;
    const double t = above / (below + kNothing);
    const double u = t * t;
    const double higher = ((((kArc10 * u + kArc9) * u + kArc8) * u + kArc7) * u + kArc6) * u + kArc5;
    const double tail = ((((higher * u + kArc4) * u + kArc3) * u + kArc2) * u + kArc1) * u;
    const double octant = (fold ? 45.0 : 0.0) + (kArc0 * t + tail * t);
    return y <= x ? octant : 90.0 - octant;
}

/// The angle of (x, y) from the x axis towards the y axis, degrees, [-180, 180).
static inline double planeAngle(double y, double x) {
    const double quadrant = quadrantAngle(std::fabs(y), std::fabs(x));
    const double half = x < 0.0 ? 180.0 - quadrant : quadrant;
    const double angle = y < 0.0 ? -half : half;
    return angle == 180.0 ? -180.0 : angle;
}

}  // namespace vorbel::scene

#endif
