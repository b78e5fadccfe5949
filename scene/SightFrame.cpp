#include "SightFrame.h"

#include "Ellipsoid.h"
#include "NotANumber.h"
#include "kernels/Kernels.h"
#include "kernels/Surface.h"

#include <cmath>

namespace vorbel::scene {

namespace {

// The class turns the Earth at this rate when it builds the radius-aligned frame.
constexpr double kEarthRate = 7.29211515e-5;  // rad/s

struct Direction {
    double x;
    double y;
    double z;
};

double dot(const Direction& a, const Direction& b) noexcept {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Direction cross(const Direction& a, const Direction& b) noexcept {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Direction unit(const Direction& a) noexcept {
    const double length = std::sqrt(dot(a, a));
    return {a.x / length, a.y / length, a.z / length};
}

}  // namespace

void setDopplerFrame(SightFrames& frames, int entry, const State& state, LookSide side) noexcept {
    const FrameSteps& steps = baseline::kKernels.frames;
    frames.Sx[entry] = state.x;
    frames.Sy[entry] = state.y;
    frames.Sz[entry] = state.z;
    frames.Vx[entry] = state.vx;
    frames.Vy[entry] = state.vy;
    frames.Vz[entry] = state.vz;
    steps.setDopplerAxes(frames, entry, entry + 1);
    steps.complete(frames, entry, entry + 1, signOf(side));
}

void setBeamAxis(SightFrames& f, int i, double pitch, double yaw, double roll) noexcept {
    const Direction S{f.Sx[i], f.Sy[i], f.Sz[i]};
    const Direction nonRotating{f.Vx[i] - kEarthRate * S.y, f.Vy[i] + kEarthRate * S.x, f.Vz[i]};
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
    f.Fx[i] = a * forward.x + b * left.x + c * up.x;
    f.Fy[i] = a * forward.y + b * left.y + c * up.y;
    f.Fz[i] = a * forward.z + b * left.z + c * up.z;
    f.alongPerRate[i] = 0.0;
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
