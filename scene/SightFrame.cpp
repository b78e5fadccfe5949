#include "SightFrame.h"

#include "Ellipsoid.h"
#include "kernels/Surface.h"

#include <cmath>
#include <limits>

namespace vorbel::scene {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// The class turns the Earth at this rate when it builds the radius-aligned frame.
constexpr double kEarthRate = 7.29211515e-5;  // rad/s

// Off these distances from the Earth's centre there is no radar satellite, and double precision no micrometre.
constexpr double kNearest = kSemiMajorAxis + 2.0 * kHighest;  // m
constexpr double kFarthest = 1e8;                             // m

// Largest angle between the normal of a surface of constant height and the radius.
constexpr double kLargestDeflection = 0.0034;  // rad

double dot(const Direction& a, const Direction& b) noexcept {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Direction cross(const Direction& a, const Direction& b) noexcept {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Direction combined(double s, const Direction& a, double t, const Direction& b) noexcept {
    return {s * a.x + t * b.x, s * a.y + t * b.y, s * a.z + t * b.z};
}

Direction unit(const Direction& a) noexcept {
    const double length = std::sqrt(dot(a, a));
    return {a.x / length, a.y / length, a.z / length};
}

/// z² g / 2w of the surface at height 0, where its points stand at this angle from the nadir, seen from the centre.
double bulgeAt(double sine, const Direction& U, const Direction& W, double halfInverseSW) noexcept {
    const double z = kSemiMajorAxis * (W.z * std::sqrt(1.0 - sine * sine) + U.z * sine);
    return z * z * kSecondEccentricitySquared * halfInverseSW;
}

/// R² - along² of a point there, on a sphere.
double squaredDistanceAt(double sine, double w) noexcept {
    return w * w + kSemiMajorAxis * kSemiMajorAxis - 2.0 * w * kSemiMajorAxis * std::sqrt(1.0 - sine * sine);
}

void setFrame(SightFrames& f, int i, const State& state, const Direction& F, LookSide side,
              double alongPerRate) noexcept {
    const Direction S{state.x, state.y, state.z};
    const double distance = std::sqrt(dot(S, S));
    const double SF = dot(S, F);
    const Direction W = unit(combined(1.0, S, -SF, F));
    const Direction left = cross(W, F);
    const double sign = side == LookSide::left ? 1.0 : -1.0;
    const Direction U{sign * left.x, sign * left.y, sign * left.z};
    const double w = dot(S, W);
    f.Sx[i] = S.x;
    f.Sy[i] = S.y;
    f.Sz[i] = S.z;
    f.Vx[i] = state.vx;
    f.Vy[i] = state.vy;
    f.Vz[i] = state.vz;
    f.Fx[i] = F.x;
    f.Fy[i] = F.y;
    f.Fz[i] = F.z;
    f.Ux[i] = U.x;
    f.Uy[i] = U.y;
    f.Uz[i] = U.z;
    f.Wx[i] = W.x;
    f.Wy[i] = W.y;
    f.Wz[i] = W.z;
    f.SF[i] = SF;
    f.SW[i] = w;
    f.halfInverseSW[i] = 0.5 / w;
    f.excess[i] = (distance - kSemiMajorAxis) * (distance + kSemiMajorAxis);
    f.alongPerRate[i] = alongPerRate;

    // The start is exact where the radar commonly looks: 19 and 45 degrees off the nadir, over a flat ground.
    const double altitude = (w - kSemiMajorAxis) / kSemiMajorAxis;
    const double near = std::fmin(0.35 * altitude, 0.35);
    const double far = std::fmin(altitude, 0.7);
    const double bulgeNear = bulgeAt(near, U, W, f.halfInverseSW[i]);
    const double squareNear = squaredDistanceAt(near, w);
    f.startSlope[i] = (bulgeAt(far, U, W, f.halfInverseSW[i]) - bulgeNear) / (squaredDistanceAt(far, w) - squareNear);
    f.start[i] = bulgeNear - f.startSlope[i] * squareNear;

    // Up to here (R)² the line of sight meets the highest ground well above the horizon.
    constexpr double top = kSemiMajorAxis + kHighest;
    const bool sensible = distance > kNearest && distance < kFarthest;
    f.longest[i] = sensible ? distance * distance - top * top - 2.0 * distance * top * kLargestDeflection : kNaN;
}

}  // namespace

void setDopplerFrame(SightFrames& frames, int entry, const State& state, LookSide side) noexcept {
    const Direction V{state.vx, state.vy, state.vz};
    setFrame(frames, entry, state, unit(V), side, -1.0 / std::sqrt(dot(V, V)));
}

void setBeamFrame(SightFrames& frames, int entry, const State& state, const Direction& axis, LookSide side) noexcept {
    setFrame(frames, entry, state, axis, side, 0.0);
}

Direction beamAxis(const State& state, double pitch, double yaw, double roll) noexcept {
    const Direction S{state.x, state.y, state.z};
    const Direction nonRotating{state.vx - kEarthRate * state.y, state.vy + kEarthRate * state.x, state.vz};
    const Direction up = unit(S);
    const Direction left = unit(cross(S, nonRotating));
    const Direction forward = cross(left, up);
    // first column of the rotation
    const double p = pitch / kDegreesPerRadian;
    const double y = yaw / kDegreesPerRadian;
    const double r = roll / kDegreesPerRadian;
    const double sineOfRoll = std::sin(r);
    const double a = std::cos(y) * std::cos(p) - std::sin(y) * sineOfRoll * std::sin(p);
    const double b = std::sin(y) * std::cos(p) + std::cos(y) * sineOfRoll * std::sin(p);
    const double c = -std::cos(r) * std::sin(p);
    return {a * forward.x + b * left.x + c * up.x, a * forward.y + b * left.y + c * up.y,
            a * forward.z + b * left.z + c * up.z};
}

Status solveCarefully(const SightFrames& f, int i, double range, double rangeRate, double height, double& X,
                      double& Y) noexcept {
    X = kNaN;
    Y = kNaN;
    const double along = range * rangeRate * f.alongPerRate[i];
    const double rho2 = range * range - along * along;
    if (!(range > 0.0 && rho2 > 0.0 && rho2 < 4.0 * kFarthest * kFarthest && std::fabs(height) <= kHighest &&
          std::isfinite(f.longest[i]) && std::isfinite(f.halfInverseSW[i]))) {
        return Status::bad_input;
    }
    const double S2 = f.excess[i] + kSemiMajorAxis * kSemiMajorAxis;
    constexpr double lowest = kSemiMajorAxis * (1.0 - kFlattening) - kHighest;
    if (range * range > S2 - lowest * lowest + 2.0 * std::sqrt(S2) * kSemiMajorAxis * kLargestDeflection) {
        return Status::beyond_horizon;
    }

    // X beyond which the point is deeper than the surface, as a function of X and Y
    const double C = (range * range + f.excess[i] + 2.0 * f.SF[i] * along - height * (height + 2.0 * kSemiMajorAxis)) *
                     f.halfInverseSW[i];
    const double z0 = f.Sz[i] + along * f.Fz[i];
    const auto depth = [&](double x, double y) {
        const double z = z0 + y * f.Uz[i] - x * f.Wz[i];
        const double z2 = z * z;
        return x - C - z2 * bulge(z2, height) * f.halfInverseSW[i];
    };
    const double rho = std::sqrt(rho2);
    if (depth(rho, 0.0) < 0.0) {
        return Status::range_too_short;
    }
    double inside = 0.0;   // Y of a point below the surface
    double outside = rho;  // Y of a point above it, or of none
    double middle = 0.5 * rho;
    while (middle > inside && middle < outside) {
        const double x = std::sqrt(rho2 - middle * middle);
        (depth(x, middle) < 0.0 ? outside : inside) = middle;
        middle = 0.5 * (inside + outside);
    }
    const double y = inside;
    const double x = std::sqrt((rho - y) * (rho + y));
    // The circle ends at X = 0, as high as the satellite: no point there is below the horizon.
    if (!(std::fabs(depth(x, y)) < 1e-7)) {
        return Status::beyond_horizon;
    }

    const double px = f.Sx[i] + along * f.Fx[i] + y * f.Ux[i] - x * f.Wx[i];
    const double py = f.Sy[i] + along * f.Fy[i] + y * f.Uy[i] - x * f.Wy[i];
    const double pz = f.Sz[i] + along * f.Fz[i] + y * f.Uz[i] - x * f.Wz[i];
    const double nz = normalZ(pz, height);
    if (!(px * (f.Sx[i] - px) + py * (f.Sy[i] - py) + nz * (f.Sz[i] - pz) > 0.0)) {
        return Status::beyond_horizon;
    }
    X = x;
    Y = y;
    return Status::ok;
}

}  // namespace vorbel::scene
