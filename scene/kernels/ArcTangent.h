#ifndef VORBEL_SCENE_KERNELS_ARC_TANGENT_H
#define VORBEL_SCENE_KERNELS_ARC_TANGENT_H

// Arc tangents in degrees, the same on every system: the C library's are not. The polynomial is from fits.py.

#include <cmath>

namespace vorbel::scene {

// off by 2.0e-14 degrees
constexpr double kArc0 = 57.295779513082268;
constexpr double kArc1 = -19.098593170965123;
constexpr double kArc2 = 11.459155890513757;
constexpr double kArc3 = -8.185110445025267;
constexpr double kArc4 = 6.3661625457462027;
constexpr double kArc5 = -5.2079253126282236;
constexpr double kArc6 = 4.3966934864617829;
constexpr double kArc7 = -3.7281224874824717;
constexpr double kArc8 = 2.8804306438120151;
constexpr double kArc9 = -1.4524068843137682;

// Where a condition chooses between a number and 0, the choice is a mask without a jump on every instruction set.

/// The angle of (x, y) from the x axis, degrees, for x and y not negative; 0 for (0, 0).
static inline double quadrantAngle(double y, double x) {
    constexpr double kTangent = 0.41421356237309503;  // of 22.5 degrees: beyond it the angle is reckoned from 45
    constexpr double kNothing = 1e-300;               // makes 0 of 0/0
    const double low = y < x ? y : x;
    const double high = y > x ? y : x;
    const bool fold = low > kTangent * high;
    const double t = (low - (fold ? high : 0.0)) / (high + (fold ? low : 0.0) + kNothing);
    // In two chains, of the even and of the odd powers, which a processor works off side by side.
    const double u = t * t;
    const double u2 = u * u;
    const double even = ((kArc8 * u2 + kArc6) * u2 + kArc4) * u2 + kArc2;
    const double odd = (((kArc9 * u2 + kArc7) * u2 + kArc5) * u2 + kArc3) * u2 + kArc1;
    const double tail = (odd + u * even) * u;
    const double octant = (fold ? 45.0 : 0.0) + (kArc0 * t + tail * t);
    return std::fabs((y > x ? 90.0 : 0.0) - octant);
}

/// The angle of (x, y) from the x axis towards the y axis, degrees, [-180, 180).
static inline double planeAngle(double y, double x) {
    const double quadrant = quadrantAngle(std::fabs(y), std::fabs(x));
    const double angle = std::copysign(std::fabs((x < 0.0 ? 180.0 : 0.0) - quadrant), y);
    return angle - (angle >= 180.0 ? 360.0 : 0.0);
}

/// The angle of (x, y) from the x axis towards the y axis, degrees, [0, 360).
static inline double fullAngle(double y, double x) {
    const double quadrant = quadrantAngle(std::fabs(y), std::fabs(x));
    const double angle = std::fabs((y < 0.0 ? 360.0 : 0.0) - std::fabs((x < 0.0 ? 180.0 : 0.0) - quadrant));
    return angle - (angle >= 360.0 ? 360.0 : 0.0);
}

}  // namespace vorbel::scene

#endif
