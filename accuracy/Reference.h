#ifndef VORBEL_ACCURACY_REFERENCE_H
#define VORBEL_ACCURACY_REFERENCE_H

#include <vorbel/Records.h>

#include <cmath>
#include <limits>

// The same physics as the library's, evaluated apart from it in extended precision: nothing here calls the library or
// shares a formula with it beyond the constants of its models.

namespace accuracy {

using Real = long double;

inline constexpr double kMetres = 1000;  // per kilometre

inline double metres(Real kilometres) {
    return static_cast<double>(kilometres * kMetres);
}

/// The reference is worth its name only where long double is wider than double.
inline constexpr bool kExtendedPrecision = std::numeric_limits<Real>::digits >= 64;

inline constexpr Real kPi = 3.141592653589793238462643383279502884L;
inline constexpr Real kDegree = kPi / 180;

struct Vec {
    Real x = 0;
    Real y = 0;
    Real z = 0;
};

inline Vec operator+(const Vec& a, const Vec& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec operator-(const Vec& a, const Vec& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec operator*(Real k, const Vec& a) {
    return {k * a.x, k * a.y, k * a.z};
}
inline Real dot(const Vec& a, const Vec& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec cross(const Vec& a, const Vec& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline Real norm(const Vec& a) {
    return std::sqrt(dot(a, a));
}

inline double metres(const Vec& kilometres) {
    return metres(norm(kilometres));
}
inline Vec unit(const Vec& a) {
    return (1 / norm(a)) * a;
}

/// Position (km) and velocity (km/s), or their derivatives.
struct Motion {
    Vec r;
    Vec v;
};

inline Motion operator+(const Motion& a, const Motion& b) {
    return {a.r + b.r, a.v + b.v};
}
inline Motion operator-(const Motion& a, const Motion& b) {
    return {a.r - b.r, a.v - b.v};
}
inline Motion operator*(Real k, const Motion& a) {
    return {k * a.r, k * a.v};
}

/// Position and velocity fields of any of the library's records.
template <class Record>
Motion motionOf(const Record& s) {
    return {{s.x, s.y, s.z}, {s.vx, s.vy, s.vz}};
}

/// Turn of a frame: what the Coriolis and the centrifugal acceleration take for its rate and the rate's square, which
/// the library's force model holds as two constants.
struct Turn {
    Real rate = 0;  // rad/s
    Real rateSquared = 0;
    Vec axis{0, 0, 1};

    Vec operator()(const Motion& m) const;
};

/// Central attraction and J2.
struct J2Model {
    Real mu;    // km³/s²
    Real j2R2;  // J2 times the squared equatorial radius, km²
    Turn turn;

    Vec operator()(const Motion& m) const;
};

/// The library's force model without drag, with its constants, in the Greenwich (0) or absolute (1) frame.
J2Model libraryModel(int system);

/// Gravity to degree and order 4 of EGM96, nearer to the real field, to show what the library's model leaves out.
struct DegreeFourModel {
    Turn turn;

    Vec operator()(const Motion& at) const;
};

/// The motion after `seconds` (of either sign): Gragg's midpoint rule extrapolated over five substep counts, an order
/// of 10, in equal steps of at most `longestStep`.
template <class Model>
Motion propagated(Motion m, Real seconds, const Model& acceleration, Real longestStep = 40) {
    constexpr int kColumns = 5;
    const auto rate = [&](const Motion& s) { return Motion{s.v, acceleration(s)}; };
    const int steps = static_cast<int>(std::ceil(std::abs(seconds) / longestStep));
    const Real H = steps == 0 ? 0 : seconds / static_cast<Real>(steps);
    for (int step = 0; step < steps; ++step) {
        Motion row[kColumns];  // of the extrapolation, the most recent one
        for (int k = 0; k < kColumns; ++k) {
            const int substeps = 2 * (k + 1);
            const Real h = H / static_cast<Real>(substeps);
            Motion before = m;
            Motion here = m + h * rate(m);
            for (int i = 1; i < substeps; ++i) {
                const Motion after = before + (2 * h) * rate(here);
                before = here;
                here = after;
            }
            Motion value = Real(0.5) * (before + here + h * rate(here));
            for (int j = 0; j < k; ++j) {
                const Real ratio = static_cast<Real>(k + 1) / static_cast<Real>(k - j);
                const Motion next = value + (1 / (ratio * ratio - 1)) * (value - row[j]);
                row[j] = value;
                value = next;
            }
            row[k] = value;
        }
        m = row[kColumns - 1];
    }
    return m;
}

/// WGS 84 as the library takes it.
inline constexpr Real kSemiMajorAxis = 6378.137;        // km
inline constexpr Real kSemiMinorAxis = 6356.752314245;  // km

/// The same from the flattening that defines it, 180 nm longer, as the operations on arrays have it.
inline constexpr Real kDefinedSemiMinorAxis = 6378.137L * (1 - 1 / 298.257223563L);  // km

struct Geodetic {
    Real latitude;   // rad
    Real longitude;  // rad, (-pi, pi]
    Real height;     // km
};

/// Exact geodetic coordinates on WGS 84 or with another semi-minor axis (km), iterated to convergence.
Geodetic geodeticOf(const Vec& p, Real semiMinorAxis = kSemiMinorAxis);
Vec cartesianOf(const Geodetic& g, Real semiMinorAxis = kSemiMinorAxis);

/// Where a line of sight of given length meets an ellipsoid: |X - r| = range, normal.(X - r) = along, X on the
/// ellipsoid. Newton's iteration in X, from a point nearby, to convergence.
Vec lineOfSightPoint(const Vec& r, Real range, const Vec& normal, Real along, Real a, Real b, const Vec& nearby);

}  // namespace accuracy

#endif
