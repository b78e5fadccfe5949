#ifndef VORBEL_TESTS_VECTORS_H
#define VORBEL_TESTS_VECTORS_H

#include <vorbel/CVorbel.h>

#include <cmath>

// Vectors, rotations and orbit frames of the tests' own, so that they do not repeat a fault of the library's.

inline constexpr double kPi = 3.14159265358979323846;
inline constexpr double kLibraryDegree = 0.0174532925156;  // rad
inline constexpr double kEarthRate = 7.29211515e-5;        // rad/s
inline constexpr double kWgs84A = 6378.137;                // km
inline constexpr double kWgs84B = 6356.752314245;          // km

struct Vec3 {
    double x, y, z;
};

inline Vec3 operator+(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline Vec3 operator*(double k, const Vec3& a) {
    return {k * a.x, k * a.y, k * a.z};
}

inline Vec3 operator-(const Vec3& a, const Vec3& b) {
    return a + -1.0 * b;
}

inline double dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

inline double length(const Vec3& a) {
    return std::sqrt(dot(a, a));
}

inline Vec3 unit(const Vec3& a) {
    return 1.0 / length(a) * a;
}

/// Three axes, or the columns of a rotation.
struct Axes {
    Vec3 e1, e2, e3;
};

inline Vec3 operator*(const Axes& m, const Vec3& a) {
    return a.x * m.e1 + a.y * m.e2 + a.z * m.e3;
}

inline Axes operator*(const Axes& m, const Axes& n) {
    return {m * n.e1, m * n.e2, m * n.e3};
}

// Right-handed rotations by an angle in rad
inline Axes rotationX(double t) {
    return {{1.0, 0.0, 0.0}, {0.0, std::cos(t), std::sin(t)}, {0.0, -std::sin(t), std::cos(t)}};
}

inline Axes rotationY(double t) {
    return {{std::cos(t), 0.0, -std::sin(t)}, {0.0, 1.0, 0.0}, {std::sin(t), 0.0, std::cos(t)}};
}

inline Axes rotationZ(double t) {
    return {{std::cos(t), std::sin(t), 0.0}, {-std::sin(t), std::cos(t), 0.0}, {0.0, 0.0, 1.0}};
}

template <class Record>
inline Vec3 positionOf(const Record& p) {
    return {p.x, p.y, p.z};
}

inline Vec3 velocityOf(const fVector& v) {
    return {v.vx, v.vy, v.vz};
}

/// omega × r: the velocity of a point that turns with the Earth.
inline Vec3 carried(const Vec3& r) {
    return cross({0.0, 0.0, kEarthRate}, r);
}

inline Axes radiusAligned(const Vec3& r, const Vec3& v) {
    const Vec3 n = unit(cross(r, v));
    return {cross(n, unit(r)), n, unit(r)};
}

inline Axes velocityAligned(const Vec3& r, const Vec3& v) {
    const Vec3 n = unit(cross(r, v));
    return {unit(v), n, cross(unit(v), n)};
}

/// A point given by geodetic latitude and longitude (degrees) and height (km) on WGS 84, in closed form.
inline Vec3 geodetic(double latitude, double longitude, double height) {
    const double phi = latitude * kPi / 180.0;
    const double lambda = longitude * kPi / 180.0;
    const double ratio = kWgs84B * kWgs84B / (kWgs84A * kWgs84A);
    const double N = kWgs84A / std::sqrt(std::cos(phi) * std::cos(phi) + ratio * std::sin(phi) * std::sin(phi));
    return {(N + height) * std::cos(phi) * std::cos(lambda), (N + height) * std::cos(phi) * std::sin(lambda),
            (ratio * N + height) * std::sin(phi)};
}

/// An object whose trajectory is at `state` at the time of that state.
inline CVorbel holding(const fVector& state, int system) {
    CVorbel orbit;
    orbit.SetProgParam(&state, 1.0, system);
    return orbit;
}

#endif
