#include "LookAngle.h"

#include <cmath>

namespace {

constexpr double kStartSphereSquared = 40589641.0;  // 6371² km²
constexpr double kTolerance = 1e-10;                // rad
constexpr int kMostPasses = 101;

}  // namespace

vorbel::Vector3 vorbel::solveLookAngle(const Vector3& r, double radius, double range, const LookPlane& plane, int side,
                                       const Ellipsoid& ellipsoid) {
    const double a = ellipsoid.a;
    const double b = ellipsoid.b;
    const double k = side;

    // The angle at the satellite in the triangle with the Earth's centre and a point on the starting sphere.
    double theta = std::acos(((radius * radius + range * range) - kStartSphereSquared) * 0.5 / range / radius);

    // Coordinates over the semi-axes, in which the ellipsoid is the unit sphere.
    const Vector3 Q = quotient(sum(r, plane.offset), a, a, b);
    const Vector3 U = product(range, quotient(plane.U, a, a, b));
    const Vector3 W = product(range, quotient(plane.W, a, a, b));

    Vector3 P;
    double step = 0.0;
    int pass = 0;
    do {
        theta = theta + step;
        pass = pass + 1;
        const double s = std::sin(theta);
        const double c = std::cos(theta);
        P = {Q.x + k * s * U.x - c * W.x, Q.y + k * s * U.y - c * W.y, Q.z + k * s * U.z - c * W.z};
        const Vector3 D{k * c * U.x + s * W.x, k * c * U.y + s * W.y, k * c * U.z + s * W.z};
        step = (1.0 - dot(P, P)) / (2.0 * dot(P, D));
    } while (pass < kMostPasses && std::abs(step) > kTolerance);
    return {a * P.x, a * P.y, b * P.z};
}

vorbel::Vector3 vorbel::pointInBeam(const Vector3& r, const OrbitFrame& frame, const BeamPlane& beam, double range,
                                    int side, const Ellipsoid& ellipsoid) {
    const LookPlane plane{fromOrbitFrame(frame, beam.u), fromOrbitFrame(frame, beam.w), Vector3()};
    return solveLookAngle(r, frame.radius, range, plane, side, ellipsoid);
}

vorbel::BeamPlane vorbel::beamPlane(double pitch, double yaw, double roll) {
    const double cosP = std::cos(pitch);
    const double sinP = std::sin(pitch);
    const double cosY = std::cos(yaw);
    const double sinY = std::sin(yaw);
    const double cosR = std::cos(roll);
    const double sinR = std::sin(roll);
    return {
        {-sinY * cosR, cosY * cosR, sinR},
        {cosY * sinP + sinY * sinR * cosP, sinY * sinP - cosY * sinR * cosP, cosP * cosR},
    };
}

vorbel::BeamPlane vorbel::beamPlaneWithoutRoll(double pitch, double yaw) {
    const double cosP = std::cos(pitch);
    const double sinP = std::sin(pitch);
    const double cosY = std::cos(yaw);
    const double sinY = std::sin(yaw);
    return {
        {sinY * cosP, cosY, -sinY * sinP},
        {sinP, 0.0, cosP},
    };
}
