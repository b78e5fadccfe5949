#ifndef VORBEL_ARITHMETIC_VECTOR3_H
#define VORBEL_ARITHMETIC_VECTOR3_H

#include "Pair.h"

#include <vorbel/Records.h>

#include <cmath>

namespace vorbel {

struct Vector3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

inline Vector3 position(const fVector& state) {
    return {state.x, state.y, state.z};
}

inline Vector3 velocity(const fVector& state) {
    return {state.vx, state.vy, state.vz};
}

inline Vector3 difference(const Vector3& a, const Vector3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline Vector3 sum(const Vector3& a, const Vector3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline Vector3 product(double factor, const Vector3& a) {
    return {factor * a.x, factor * a.y, factor * a.z};
}

inline double dot(const Vector3& a, const Vector3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Vector3 cross(const Vector3& a, const Vector3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// Each component over its own divisor, two for one in the divider.
inline Vector3 quotient(const Vector3& a, double overX, double overY, double overZ) {
    const Pair xy = pairOf(a.x, a.y) / pairOf(overX, overY);
    return {lower(xy), upper(xy), a.z / overZ};
}

inline Vector3 quotient(const Vector3& a, double divisor) {
    return quotient(a, divisor, divisor, divisor);
}

inline double length(const Vector3& a) {
    return std::sqrt(dot(a, a));
}

}  // namespace vorbel

#endif
