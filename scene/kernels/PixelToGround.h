#ifndef VORBEL_SCENE_KERNELS_PIXEL_TO_GROUND_H
#define VORBEL_SCENE_KERNELS_PIXEL_TO_GROUND_H

#include "../Ellipsoid.h"

namespace vorbel::scene {

/// Points that one pass of the kernels takes: what they keep in between stays in the first cache.
constexpr int kTile = 128;

// Off these distances from the Earth's centre there is no radar satellite, and double precision no micrometre.
constexpr double kNearest = kSemiMajorAxis + 2.0 * kHighest;  // m
constexpr double kFarthest = 1e8;                             // m

// Largest angle between the normal of a surface of constant height and the radius.
constexpr double kLargestDeflection = 0.0034;  // rad

/// Position (m) and velocity (m/s) on a piece of orbit, polynomials of u = time - centre (s), lowest power first.
struct StatePolynomials {
    static constexpr int kCoefficients = 9;

    double centre;        // s since the epoch
    const double* of[6];  // x, y, z, vx, vy, vz
};

/// The satellite and the circle on which a range and a range rate put a point, for each point of a tile or one for all.
///
/// P = S + along F + Y U - X W with X² + Y² = R² - along²: W points up in the plane of the satellite and F, U to the
/// side that the radar looks to, so that the distance from the Earth's centre depends on X alone.
struct SightFrames {
    double Sx[kTile], Sy[kTile], Sz[kTile];  // satellite, m
    double Vx[kTile], Vy[kTile], Vz[kTile];  // its velocity relative to the Earth, m/s
    double Fx[kTile], Fy[kTile], Fz[kTile];  // axis of the Doppler cone, unit
    double Ux[kTile], Uy[kTile], Uz[kTile];  // unit
    double Wx[kTile], Wy[kTile], Wz[kTile];  // unit
    double SF[kTile], SW[kTile];             // S·F and S·W, m
    double halfInverseSW[kTile];             // 1 / (2 S·W)
    double excess[kTile];                    // |S|² - a², m²
    double alongPerRate[kTile];              // -1/|V|: along = R rate alongPerRate, s/m
    double start[kTile], startSlope[kTile];  // of z² g / (2 S·W) as a function of R² - along²: m, 1/m
    double longest[kTile];                   // no point beyond this range is near the limb, m²
};

/// A tile of points: inputs, what the passes hand on, and which points the fast path could not settle.
struct PixelTile {
    int count;
    double range[kTile];                  // m
    double rate[kTile];                   // m/s
    double height[kTile];                 // m
    double along[kTile];                  // m
    double rho2[kTile];                   // R² - along², m²
    double C[kTile];                      // X of the point without the bulge, m
    double inverseY[kTile];               // of the start, 1/m
    double X[kTile];                      // m; not-a-number: no point
    double Y[kTile];                      // m
    double settled[kTile];                // 1 or 0
    double x[kTile], y[kTile], z[kTile];  // m
    double p2[kTile];                     // x² + y², m²
    double n[kTile];                      // z component of the normal (x, y, n), m
};

/// Where the results of a tile go; null for what is not wanted.
struct GroundTile {
    double* latitude;
    double* longitude;
    double* incidence;
    double* lookAngle;
    double* azimuth;
    double* rangeRate;
};

/// The entries [first, last) of frames.
struct FrameSteps {
    void (*readStates)(const StatePolynomials& orbit, const double* time, SightFrames& frames, int first, int last);
    void (*setDopplerAxes)(SightFrames& frames, int first, int last);
    void (*complete)(SightFrames& frames, int first, int last, double left);
};

struct PixelToGround {
    int (*solve)(const SightFrames& frames, PixelTile& tile);  // gives the number of points left open
    void (*finish)(const SightFrames& frames, PixelTile& tile, const GroundTile& out);
    // Of finished points, from what the terrain rises to the east and to the south, m for each radian; degrees
    void (*localIncidence)(const SightFrames& frames, const PixelTile& tile, const double* eastward,
                           const double* southward, double* out);
};

}  // namespace vorbel::scene

#endif
