#ifndef VORBEL_SCENE_KERNELS_GROUND_TO_PIXEL_H
#define VORBEL_SCENE_KERNELS_GROUND_TO_PIXEL_H

#include "../Ellipsoid.h"

namespace vorbel::scene {

/// Greatest range rate over the satellite's speed for which a point is looked for.
constexpr double kMostRate = 0.15;

/// Of a solution's last step, s: with a slope that is right to 1e-6 it leaves 1e-10 s.
constexpr double kMostStep = 1e-4;

/// A stretch of orbit so short that polynomials of degree 5 in u = time - centre (s) are as good as its piece's own.
/// Lowest power first, Earth-fixed.
struct SightArc {
    static constexpr int kCoefficients = 6;

    double centre;                      // s since the epoch
    double first;                       // s since the epoch: times from here
    double last;                        // to here are taken from this arc
    double velocity[3][kCoefficients];  // m/s
    double advance[kCoefficients];      // m^2/s, position times velocity
    double position[3][kCoefficients];  // m
    double right[3][2];                 // m^2/s, velocity cross position: horizontal, to the right of the flight
    double nearTrack;                   // m^3/s, points less to the right or left than this are looked at closely
    double mostRate;                    // m/s
    double mostStep;                    // s, over which a range may be carried on at its rate
};

/// For finding the arc: polynomials of degree 3, good to some milliseconds over some minutes.
struct CoarseStretch {
    static constexpr int kCoefficients = 4;

    double centre;
    double velocity[3][kCoefficients];
    double advance[kCoefficients];
};

/// Equal parts of an orbit's span.
struct SpanParts {
    double first;      // s since the epoch
    double perSecond;  // parts
    double last;       // number of the last part
};

/// Points and when the satellite is abreast of them, roughly.
struct CoarseTile {
    int count;
    const double* x;
    const double* y;
    const double* z;
    double* time;  // s since the epoch
    int* part;     // of the span; of a time outside it the nearest
};

/// Where stretches meet.
struct StretchEnd {
    double velocity[3];
    double advance;
};

/// What an arc says of a point.
struct Sight {
    static constexpr double kRight = 0.0;      // seen here, to the right of the flight
    static constexpr double kLeft = 1.0;       // seen here, to the left
    static constexpr double kBelow = 2.0;      // here, but below the point's horizon
    static constexpr double kDoubtful = 3.0;   // here, but not exact or not clear enough
    static constexpr double kElsewhere = 4.0;  // at the time given, roughly, or nowhere if that is not-a-number
};

// The squares of x/a, y/a and z/b add up to 1 on the ellipsoid, and to this more or less 12.7 km above and below it.
constexpr double kMostLevel = 0.004;

// A point counts as seen down to this below its horizon, rad.
constexpr double kBelowHorizon = 1e-6;

static inline double levelOf(double x, double y, double z) {
    constexpr double kInverseA2 = 1.0 / (kSemiMajorAxis * kSemiMajorAxis);
    constexpr double kInverseB2 = kInverseA2 / (1.0 - kEccentricitySquared);
    return (x * x + y * y) * kInverseA2 + z * z * kInverseB2;
}

/// z of the vector (x, y, z) that stands upright on the ellipsoid below a point of this level, to 1e-7 rad.
static inline double uprightZ(double z, double level) {
    return z * (1.0 + kSecondEccentricitySquared * (1.5 - 0.5 * level));
}

/// Points and what becomes of them, an element each.
struct TargetTile {
    static constexpr int kMost = 256;

    int count;
    const double* x;  // m, Earth-fixed
    const double* y;
    const double* z;
    double* time;   // s since the epoch
    double* range;  // m
    double* sight;  // one of Sight's
    double* rate;   // m/s; given, or found from a polynomial
};

/// Points to be copied from all over an array.
struct GatheringTile {
    int count;
    const int* slots;
    const double* x;  // by slot
    const double* y;
    const double* z;
    double* gatheredX;
    double* gatheredY;
    double* gatheredZ;
};

/// m/s over powers of (slant range - reference) in m, lowest first.
struct RatePolynomial {
    const double* coefficients;
    int count;  // 0: the tile brings a rate for each point
    double reference;
};

/// Two of Sight's and what lies between them.
struct WantedSights {
    double least;
    double most;
};

/// Points in geodetic coordinates.
struct GeodeticTile {
    static constexpr double kMostLongitude = 36000.0;  // degrees, a hundred turns

    int count;
    const double* latitude;   // degrees
    const double* longitude;  // degrees
    const double* height;     // m
    double* x;                // m, not-a-number for what is outside the domain
    double* y;
    double* z;
};

/// The stretch in which a point's zero-Doppler function falls through zero first, from a stretch on.
struct CrossingTile {
    const StretchEnd* ends;  // stretches + 1
    int stretches;
    int count;
    const double* x;
    const double* y;
    const double* z;
    const double* from;  // number of a stretch
    double* stretch;     // number of a stretch, or `stretches` if there is none
};

}  // namespace vorbel::scene

#endif
