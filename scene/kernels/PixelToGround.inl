// Pixel to ground, for tiles of points. kStep is 1 where each point has a frame of its own and 0 where all share one.
// kSquint is false where no point lies off the plane across the flight; what it leaves out then would add 0.

#include "ArcTangent.h"
#include "PixelToGround.h"
#include "Surface.h"

#include <cmath>

namespace vorbel::scene::VORBEL_KERNELS {

// A point closer than this to the plane of satellite and flight, as seen from there, is left open.
constexpr double kSmallestSine = 0.2;
constexpr double kLargestLastStep = 0.2;  // m
constexpr double kLargestMiss = 0.02;     // of the first step's 1/Y, relative

/// value + factor along
template <bool kSquint>
static inline double withAlong(double value, double factor, double along) {
    return kSquint ? value + factor * along : value;
}

// X and Y of each point are the zero of X - C - z² g / 2w on the circle, by two Newton steps from a start that the
// frame knows. Each step has a loop of its own: shorter chains of dependent operations keep more points in flight.

/// The first step may take g to first order in h: what that leaves is centimetres.
template <int kStep, bool kSquint>
static void stepFromStart(const SightFrames& __restrict f, PixelTile& __restrict t) {
    for (int i = 0; i < t.count; ++i) {
        const int j = i * kStep;
        const double R = t.range[i];
        const double h = t.height[i];
        const double along = kSquint ? R * t.rate[i] * f.alongPerRate[j] : 0.0;
        const double R2 = R * R;
        const double rho2 = withAlong<kSquint>(R2, -along, along);
        const double C = (withAlong<kSquint>(R2 + f.excess[j], 2.0 * f.SF[j], along) - h * (h + 2.0 * kSemiMajorAxis)) *
                         f.halfInverseSW[j];
        const double X = C + f.start[j] + f.startSlope[j] * rho2;
        const double Y2 = rho2 - X * X;
        const double Y = std::sqrt(Y2);
        const double inverseY = 1.0 / Y;
        const double z = withAlong<kSquint>(f.Sz[j], f.Fz[j], along) + Y * f.Uz[j] - X * f.Wz[j];
        const double zg = (kSecondEccentricitySquared - kBulge00 * h) * z * f.halfInverseSW[j];
        const double kappa = 2.0 * zg * (f.Uz[j] * (X * inverseY) + f.Wz[j]);
        t.along[i] = along;
        t.rho2[i] = rho2;
        t.C[i] = C;
        t.inverseY[i] = inverseY;
        t.X[i] = X + (C + z * zg - X) * (1.0 - kappa + kappa * kappa);
        const bool settled =
            (Y2 > kSmallestSine * kSmallestSine * rho2) & (R2 < f.longest[j]) & (R > 0.0) & (std::fabs(h) <= kHighest);
        t.settled[i] = settled ? 1.0 : 0.0;
    }
}

/// \return the number of points left open
template <int kStep, bool kSquint>
static int lastStep(const SightFrames& __restrict f, PixelTile& __restrict t) {
    long long open = 0;
    for (int i = 0; i < t.count; ++i) {
        const int j = i * kStep;
        const double X = t.X[i];
        const double Y = std::sqrt(t.rho2[i] - X * X);
        const double miss = 1.0 - Y * t.inverseY[i];
        const double inverseY = t.inverseY[i] * (1.0 + miss * (1.0 + miss * (1.0 + miss)));
        const double slope = X * inverseY;
        const double z = withAlong<kSquint>(f.Sz[j], f.Fz[j], t.along[i]) + Y * f.Uz[j] - X * f.Wz[j];
        const double zg = bulge(z * z, t.height[i]) * z * f.halfInverseSW[j];
        const double kappa = 2.0 * zg * (f.Uz[j] * slope + f.Wz[j]);
        const double step = (t.C[i] + z * zg - X) * (1.0 - kappa + kappa * kappa);
        // Y follows X along the circle to second order: the step is short.
        t.X[i] = X + step;
        t.Y[i] = Y - (slope + 0.5 * inverseY * (1.0 + slope * slope) * step) * step;
        const bool settled =
            (t.settled[i] > 0.0) & (std::fabs(step) < kLargestLastStep) & (std::fabs(miss) < kLargestMiss);
        t.settled[i] = settled ? 1.0 : 0.0;
        open += settled ? 0 : 1;
    }
    return static_cast<int>(open);
}

template <int kStep, bool kSquint>
static int solve(const SightFrames& f, PixelTile& t) {
    stepFromStart<kStep, kSquint>(f, t);
    return lastStep<kStep, kSquint>(f, t);
}

template <int kStep, bool kSquint>
static void place(const SightFrames& __restrict f, PixelTile& __restrict t) {
    for (int i = 0; i < t.count; ++i) {
        const int j = i * kStep;
        t.x[i] = withAlong<kSquint>(f.Sx[j], f.Fx[j], t.along[i]) + t.Y[i] * f.Ux[j] - t.X[i] * f.Wx[j];
        t.y[i] = withAlong<kSquint>(f.Sy[j], f.Fy[j], t.along[i]) + t.Y[i] * f.Uy[j] - t.X[i] * f.Wy[j];
        t.z[i] = withAlong<kSquint>(f.Sz[j], f.Fz[j], t.along[i]) + t.Y[i] * f.Uz[j] - t.X[i] * f.Wz[j];
        t.p2[i] = t.x[i] * t.x[i] + t.y[i] * t.y[i];
        t.n[i] = normalZ(t.z[i], t.height[i]);
    }
}

static void latitudes(const PixelTile& __restrict t, double* __restrict out) {
    for (int i = 0; i < t.count; ++i) {
        const double latitude = quadrantAngle(std::fabs(t.n[i]), std::sqrt(t.p2[i]));
        out[i] = std::copysign(latitude, t.n[i]);
    }
}

static void longitudes(const PixelTile& __restrict t, double* __restrict out) {
    for (int i = 0; i < t.count; ++i) {
        out[i] = planeAngle(t.y[i], t.x[i]);
    }
}

/// From the component of the line of sight along the normal, and what it leaves of both lengths.
template <int kStep>
static void incidences(const SightFrames& __restrict f, const PixelTile& __restrict t, double* __restrict out) {
    for (int i = 0; i < t.count; ++i) {
        const int j = i * kStep;
        const double up = t.x[i] * f.Sx[j] + t.y[i] * f.Sy[j] + t.n[i] * f.Sz[j] - (t.p2[i] + t.n[i] * t.z[i]);
        const double across2 = (t.p2[i] + t.n[i] * t.n[i]) * (t.range[i] * t.range[i]) - up * up;
        out[i] = quadrantAngle(std::sqrt(across2 > 0.0 ? across2 : 0.0), up);
    }
}

/// Between the line of sight and the terrain's normal: that of the level land, (x, y, n), as long as the radius of
/// curvature across the meridian reaches to the point, turned against the slope.
template <int kStep>
static void localIncidences(const SightFrames& __restrict f, const PixelTile& __restrict t,
                            const double* __restrict eastward, const double* __restrict southward,
                            double* __restrict out) {
    for (int i = 0; i < t.count; ++i) {
        const int j = i * kStep;
        const double x = t.x[i], y = t.y[i], n = t.n[i], p2 = t.p2[i];
        const double across2 = p2 + n * n;
        const double across = std::sqrt(across2);
        const double w2 = 1.0 - kEccentricitySquared * (n * n / across2);
        const double along = (across - t.height[i]) * ((1.0 - kEccentricitySquared) / w2) + t.height[i];
        const double toEast = eastward[i] * across / p2;
        const double toSouth = southward[i] / (along * std::sqrt(p2));
        const double ux = x + toEast * y - toSouth * n * x;
        const double uy = y - toEast * x - toSouth * n * y;
        const double uz = n + toSouth * p2;
        const double dx = f.Sx[j] - x, dy = f.Sy[j] - y, dz = f.Sz[j] - t.z[i];
        const double cx = dy * uz - dz * uy, cy = dz * ux - dx * uz, cz = dx * uy - dy * ux;
        out[i] = planeAngle(std::sqrt(cx * cx + cy * cy + cz * cz), dx * ux + dy * uy + dz * uz);
    }
}

/// In the frame's own axes: the line of sight is (along, Y, -X), the satellite stands at (S·F, 0, S·W).
template <int kStep, bool kSquint>
static void lookAngles(const SightFrames& __restrict f, const PixelTile& __restrict t, double* __restrict out) {
    for (int i = 0; i < t.count; ++i) {
        const int j = i * kStep;
        const double down = withAlong<kSquint>(t.X[i] * f.SW[j], -f.SF[j], t.along[i]);
        const double forward = withAlong<kSquint>(t.X[i] * f.SF[j], f.SW[j], t.along[i]);
        const double across = t.Y[i] * t.Y[i] * (f.SF[j] * f.SF[j] + f.SW[j] * f.SW[j]);
        out[i] = quadrantAngle(std::sqrt(forward * forward + across), down);
    }
}

/// From the components of the line of sight to the east and to the north, both times p |(x, y, n)|.
template <int kStep>
static void azimuths(const SightFrames& __restrict f, const PixelTile& __restrict t, double* __restrict out) {
    for (int i = 0; i < t.count; ++i) {
        const int j = i * kStep;
        const double dx = t.x[i] - f.Sx[j];
        const double dy = t.y[i] - f.Sy[j];
        const double dz = t.z[i] - f.Sz[j];
        const double east = (t.x[i] * dy - t.y[i] * dx) * std::sqrt(t.p2[i] + t.n[i] * t.n[i]);
        const double north = t.p2[i] * dz - t.n[i] * (t.x[i] * dx + t.y[i] * dy);
        out[i] = fullAngle(east, north);
    }
}

/// The rate at which the range of a point that turns with the Earth grows.
template <int kStep>
static void rangeRates(const SightFrames& __restrict f, const PixelTile& __restrict t, double* __restrict out) {
    for (int i = 0; i < t.count; ++i) {
        const int j = i * kStep;
        const double dx = t.x[i] - f.Sx[j];
        const double dy = t.y[i] - f.Sy[j];
        const double dz = t.z[i] - f.Sz[j];
        out[i] = -(f.Vx[j] * dx + f.Vy[j] * dy + f.Vz[j] * dz) / t.range[i];
    }
}

template <int kStep, bool kSquint>
static void finish(const SightFrames& f, PixelTile& t, const GroundTile& out) {
    place<kStep, kSquint>(f, t);
    if (out.latitude != nullptr) {
        latitudes(t, out.latitude);
    }
    if (out.longitude != nullptr) {
        longitudes(t, out.longitude);
    }
    if (out.incidence != nullptr) {
        incidences<kStep>(f, t, out.incidence);
    }
    if (out.lookAngle != nullptr) {
        lookAngles<kStep, kSquint>(f, t, out.lookAngle);
    }
    if (out.azimuth != nullptr) {
        azimuths<kStep>(f, t, out.azimuth);
    }
    if (out.rangeRate != nullptr) {
        rangeRates<kStep>(f, t, out.rangeRate);
    }
}

}  // namespace vorbel::scene::VORBEL_KERNELS
