// Pixel to ground, for tiles of points. kStep is 1 where each point has a frame of its own and 0 where all share one.

#include "ArcTangent.h"
#include "PixelToGround.h"
#include "Surface.h"

#include <cmath>

namespace vorbel::scene::VORBEL_KERNELS {

// Where the point is closer than this to the plane of satellite and flight, as seen from there, the slow path takes it.
constexpr double kSmallestSine = 0.15 * 0.15;
constexpr double kLargestLastStep = 0.05;  // m

/// X and Y of each point: the zero of X - C(R) - z² g / 2w, from a start that the frame knows, by two Newton steps.
template <int kStep>
static void solve(const SightFrames& __restrict f, PixelTile& __restrict t) {
    for (int i = 0; i < t.count; ++i) {
        const int j = i * kStep;
        const double R = t.range[i];
        const double h = t.height[i];
        const double along = R * t.rate[i] * f.alongPerRate[j];
        const double rho2 = R * R - along * along;
        const double eta = h * (1.0 / kSemiMajorAxis);
        const double C =
            (R * R + f.excess[j] + 2.0 * f.SF[j] * along - h * (h + 2.0 * kSemiMajorAxis)) * f.halfInverseSW[j];
        const double z0 = f.Sz[j] + along * f.Fz[j];

        const double X0 = C + f.start[j] + f.startSlope[j] * rho2;
        const double Y0squared = rho2 - X0 * X0;
        const double Y0 = std::sqrt(Y0squared);
        const double i0 = 1.0 / Y0;
        const double za = z0 + Y0 * f.Uz[j] - X0 * f.Wz[j];
        const double za2 = za * za;
        const double ga = bulge(za2 * (1.0 / kSemiMajorAxis / kSemiMajorAxis), eta);
        const double ka = 2.0 * ga * za * f.halfInverseSW[j] * (f.Uz[j] * (X0 * i0) + f.Wz[j]);
        const double stepA = (C + za2 * ga * f.halfInverseSW[j] - X0) * (1.0 - ka + ka * ka - ka * ka * ka);

        const double X1 = X0 + stepA;
        const double Y1 = std::sqrt(rho2 - X1 * X1);
        const double i1 = i0 * (2.0 - Y1 * i0);
        const double q1 = X1 * i1;
        const double zb = z0 + Y1 * f.Uz[j] - X1 * f.Wz[j];
        const double zb2 = zb * zb;
        const double gb = bulge(zb2 * (1.0 / kSemiMajorAxis / kSemiMajorAxis), eta);
        const double kb = 2.0 * gb * zb * f.halfInverseSW[j] * (f.Uz[j] * q1 + f.Wz[j]);
        const double stepB = (C + zb2 * gb * f.halfInverseSW[j] - X1) * (1.0 - kb + kb * kb - kb * kb * kb);

        // Y follows X along the circle to second order: the step is short.
        t.X[i] = X1 + stepB;
        t.Y[i] = Y1 - q1 * stepB - 0.5 * i1 * (1.0 + q1 * q1) * (stepB * stepB);
        t.along[i] = along;
        const bool settled = (Y0squared > kSmallestSine * rho2) & (std::fabs(stepB) < kLargestLastStep) &
                             (R * R < f.longest[j]) & (R > 0.0) & (std::fabs(h) <= kHighest);
        t.settled[i] = settled ? 1.0 : 0.0;
    }
}

template <int kStep>
static void place(const SightFrames& __restrict f, PixelTile& __restrict t) {
    for (int i = 0; i < t.count; ++i) {
        const int j = i * kStep;
        t.x[i] = f.Sx[j] + t.along[i] * f.Fx[j] + t.Y[i] * f.Ux[j] - t.X[i] * f.Wx[j];
        t.y[i] = f.Sy[j] + t.along[i] * f.Fy[j] + t.Y[i] * f.Uy[j] - t.X[i] * f.Wy[j];
        t.z[i] = f.Sz[j] + t.along[i] * f.Fz[j] + t.Y[i] * f.Uz[j] - t.X[i] * f.Wz[j];
    }
}

/// z t of latitudeRatio(): the normal of the surface of constant height is (x, y, normalZ).
static inline double normalZ(double z, double h) {
    return z * latitudeRatio(z * z * (1.0 / kSemiMajorAxis / kSemiMajorAxis), h * (1.0 / kSemiMajorAxis));
}

static void latitudes(const PixelTile& __restrict t, double* __restrict out) {
    for (int i = 0; i < t.count; ++i) {
        const double n = normalZ(t.z[i], t.height[i]);
        const double latitude = quadrantAngle(std::fabs(n), std::sqrt(t.x[i] * t.x[i] + t.y[i] * t.y[i]));
        out[i] = n < 0.0 ? -latitude : latitude;
    }
}

static void longitudes(const PixelTile& __restrict t, double* __restrict out) {
    for (int i = 0; i < t.count; ++i) {
        out[i] = planeAngle(t.y[i], t.x[i]);
    }
}

/// From the components of the line of sight along and across the normal.
template <int kStep>
static void incidences(const SightFrames& __restrict f, const PixelTile& __restrict t, double* __restrict out) {
    for (int i = 0; i < t.count; ++i) {
        const int j = i * kStep;
        const double n = normalZ(t.z[i], t.height[i]);
        const double dx = f.Sx[j] - t.x[i];
        const double dy = f.Sy[j] - t.y[i];
        const double dz = f.Sz[j] - t.z[i];
        const double up = t.x[i] * dx + t.y[i] * dy + n * dz;
        const double a = t.y[i] * dz - n * dy;
        const double b = n * dx - t.x[i] * dz;
        const double c = t.x[i] * dy - t.y[i] * dx;
        out[i] = quadrantAngle(std::sqrt(a * a + b * b + c * c), up);
    }
}

/// In the frame's own axes: the line of sight is (along, Y, -X), the satellite stands at (S·F, 0, S·W).
template <int kStep>
static void lookAngles(const SightFrames& __restrict f, const PixelTile& __restrict t, double* __restrict out) {
    for (int i = 0; i < t.count; ++i) {
        const int j = i * kStep;
        const double down = t.X[i] * f.SW[j] - t.along[i] * f.SF[j];
        const double forward = t.along[i] * f.SW[j] + t.X[i] * f.SF[j];
        const double across = t.Y[i] * t.Y[i] * (f.SF[j] * f.SF[j] + f.SW[j] * f.SW[j]);
        out[i] = quadrantAngle(std::sqrt(forward * forward + across), down);
    }
}

/// From the components of the line of sight to the east and to the north, both times p |(x, y, normalZ)|.
template <int kStep>
static void azimuths(const SightFrames& __restrict f, const PixelTile& __restrict t, double* __restrict out) {
    for (int i = 0; i < t.count; ++i) {
        const int j = i * kStep;
        const double n = normalZ(t.z[i], t.height[i]);
        const double dx = t.x[i] - f.Sx[j];
        const double dy = t.y[i] - f.Sy[j];
        const double dz = t.z[i] - f.Sz[j];
        const double p2 = t.x[i] * t.x[i] + t.y[i] * t.y[i];
        const double east = (t.x[i] * dy - t.y[i] * dx) * std::sqrt(p2 + n * n);
        const double north = p2 * dz - n * (t.x[i] * dx + t.y[i] * dy);
        const double angle = planeAngle(east, north);
        out[i] = angle < 0.0 ? angle + 360.0 : angle;
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

template <int kStep>
static void finish(const SightFrames& f, PixelTile& t, const GroundTile& out) {
    place<kStep>(f, t);
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
        lookAngles<kStep>(f, t, out.lookAngle);
    }
    if (out.azimuth != nullptr) {
        azimuths<kStep>(f, t, out.azimuth);
    }
    if (out.rangeRate != nullptr) {
        rangeRates<kStep>(f, t, out.rangeRate);
    }
}

}  // namespace vorbel::scene::VORBEL_KERNELS
