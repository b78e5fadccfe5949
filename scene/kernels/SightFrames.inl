// The frames in which a tile's points are looked for, from the satellite's times: as many entries as there are times,
// since one read-out and one frame serve a line, but where each point has a time of its own, they are most of its cost.

#include "../Ellipsoid.h"
#include "PixelToGround.h"

#include <cmath>

namespace vorbel::scene::VORBEL_KERNELS {

static void readOut(const double* __restrict polynomial, double centre, const double* __restrict time,
                    double* __restrict out, int first, int last) {
    for (int i = first; i < last; ++i) {
        const double u = time[i] - centre;
        double value = polynomial[StatePolynomials::kCoefficients - 1];
        for (int k = StatePolynomials::kCoefficients - 2; k >= 0; --k) {
            value = value * u + polynomial[k];
        }
        out[i] = value;
    }
}

/// Position and velocity of the entries [first, last), at one time each; to the bit what the orbit gives by itself.
static void readStates(const StatePolynomials& orbit, const double* time, SightFrames& f, int first, int last) {
    double* const out[] = {f.Sx, f.Sy, f.Sz, f.Vx, f.Vy, f.Vz};
    for (int k = 0; k < 6; ++k) {
        readOut(orbit.of[k], orbit.centre, time, out[k], first, last);
    }
}

/// The axis of the Doppler cone along the velocity.
static void setDopplerAxes(SightFrames& __restrict f, int first, int last) {
    for (int i = first; i < last; ++i) {
        const double speed = std::sqrt(f.Vx[i] * f.Vx[i] + f.Vy[i] * f.Vy[i] + f.Vz[i] * f.Vz[i]);
        const double inverse = 1.0 / speed;
        f.Fx[i] = f.Vx[i] * inverse;
        f.Fy[i] = f.Vy[i] * inverse;
        f.Fz[i] = f.Vz[i] * inverse;
        f.alongPerRate[i] = -inverse;
    }
}

/// z² g / 2w of the surface at height 0, where its points stand at this angle from the nadir, seen from the centre.
static inline double bulgeAt(double sine, double cosine, double Uz, double Wz, double halfInverseSW) {
    const double z = kSemiMajorAxis * (Wz * cosine + Uz * sine);
    return z * z * kSecondEccentricitySquared * halfInverseSW;
}

/// What follows from position and axis. `left` is 1 where the radar looks to the left and -1 where to the right.
static void completeFrames(SightFrames& __restrict f, int first, int last, double left) {
    for (int i = first; i < last; ++i) {
        const double Sx = f.Sx[i];
        const double Sy = f.Sy[i];
        const double Sz = f.Sz[i];
        const double Fx = f.Fx[i];
        const double Fy = f.Fy[i];
        const double Fz = f.Fz[i];
        const double SF = Sx * Fx + Sy * Fy + Sz * Fz;
        const double upX = Sx - SF * Fx;
        const double upY = Sy - SF * Fy;
        const double upZ = Sz - SF * Fz;
        const double inverse = 1.0 / std::sqrt(upX * upX + upY * upY + upZ * upZ);
        const double Wx = upX * inverse;
        const double Wy = upY * inverse;
        const double Wz = upZ * inverse;
        const double Uz = left * (Wx * Fy - Wy * Fx);
        const double w = Sx * Wx + Sy * Wy + Sz * Wz;
        const double halfInverseSW = 0.5 / w;
        const double distance = std::sqrt(Sx * Sx + Sy * Sy + Sz * Sz);
        f.Ux[i] = left * (Wy * Fz - Wz * Fy);
        f.Uy[i] = left * (Wz * Fx - Wx * Fz);
        f.Uz[i] = Uz;
        f.Wx[i] = Wx;
        f.Wy[i] = Wy;
        f.Wz[i] = Wz;
        f.SF[i] = SF;
        f.SW[i] = w;
        f.halfInverseSW[i] = halfInverseSW;
        f.excess[i] = (distance - kSemiMajorAxis) * (distance + kSemiMajorAxis);

        // The start is exact where the radar commonly looks: 19 and 45 degrees off the nadir, over a flat ground.
        const double altitude = w * (1.0 / kSemiMajorAxis) - 1.0;
        const double near = 0.35 * altitude < 0.35 ? 0.35 * altitude : 0.35;
        const double far = altitude < 0.7 ? altitude : 0.7;
        const double cosineNear = std::sqrt(1.0 - near * near);
        const double cosineFar = std::sqrt(1.0 - far * far);
        const double bulgeNear = bulgeAt(near, cosineNear, Uz, Wz, halfInverseSW);
        const double bulgeFar = bulgeAt(far, cosineFar, Uz, Wz, halfInverseSW);
        // R² - along² of the points there, on a sphere
        const double square = w * w + kSemiMajorAxis * kSemiMajorAxis;
        const double squareNear = square - 2.0 * w * kSemiMajorAxis * cosineNear;
        const double squareFar = square - 2.0 * w * kSemiMajorAxis * cosineFar;
        const double slope = (bulgeFar - bulgeNear) / (squareFar - squareNear);
        f.startSlope[i] = slope;
        f.start[i] = bulgeNear - slope * squareNear;

        // Up to here (R)² the line of sight meets the highest ground well above the horizon.
        constexpr double top = kSemiMajorAxis + kHighest;
        const double longest = distance * distance - top * top - 2.0 * distance * top * kLargestDeflection;
        const double unlessFar = distance < kFarthest ? longest : __builtin_nan("");
        f.longest[i] = distance > kNearest ? unlessFar : __builtin_nan("");
    }
}

}  // namespace vorbel::scene::VORBEL_KERNELS
