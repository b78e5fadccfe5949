// A point P is abreast of the satellite when g = (P - S) V = P V - S V is 0, S the position and V the velocity. On an
// arc V and S V are polynomials of time, so g is one polynomial whose coefficients are linear in P. With a range rate r
// the equation is g + r |P - S| = 0.

#include "../Ellipsoid.h"
#include "GroundToPixel.h"

#include <cmath>

namespace vorbel::scene::VORBEL_KERNELS {

namespace {

constexpr double kMostChange = 1e-2;  // of the slope, relative, which is then right to the cube of this
constexpr double kMostSecondStep = 1e-6;
constexpr double kMostLeft = 1e-10;  // s, of a step times what is left out of its slope

constexpr double kNaN = __builtin_nan("");

constexpr double kRounding = 6755399441055744.0;  // 1.5 * 2^52

// The polynomials are from fits.py.

// What the length of the normal adds to the semi-major axis, over it, in powers of sin(latitude)^2: off by 1.2e-17
constexpr double kNormal1 = 0.0033471899950711842;
constexpr double kNormal2 = 1.6805521287298138e-5;
constexpr double kNormal3 = 9.3752154809296632e-8;
constexpr double kNormal4 = 5.490937603682719e-10;
constexpr double kNormal5 = 3.369355869719199e-12;

// Of degrees, up to 45: off by 3.1e-18 of it
constexpr double kSine0 = 0.017453292519943296;
constexpr double kSine1 = -8.8609615570129536e-7;
constexpr double kSine2 = 1.349601623161155e-11;
constexpr double kSine3 = -9.7883848553934154e-17;
constexpr double kSine4 = 4.1412665386200034e-22;
constexpr double kSine5 = -1.1467564879744888e-27;
constexpr double kSine6 = 2.2164569307647283e-33;

inline double sine(double d) {
    const double s = d * d;
    return d * (kSine0 + s * (kSine1 + s * (kSine2 + s * (kSine3 + s * (kSine4 + s * (kSine5 + s * kSine6))))));
}

// Less 1, of degrees up to 45: off by 5.4e-17
constexpr double kCosine1 = -0.00015230870989335267;
constexpr double kCosine2 = 3.8663238515475391e-9;
constexpr double kCosine3 = -3.9258319808351113e-14;
constexpr double kCosine4 = 2.1354935850699837e-19;
constexpr double kCosine5 = -7.2273424374367024e-25;
constexpr double kCosine6 = 1.6485198367495846e-30;

inline double cosine(double d) {
    const double s = d * d;
    return 1.0 + s * (kCosine1 + s * (kCosine2 + s * (kCosine3 + s * (kCosine4 + s * (kCosine5 + s * kCosine6)))));
}

inline double valueAt(const double* __restrict c, double u) {
    return c[0] + u * (c[1] + u * (c[2] + u * (c[3] + u * (c[4] + u * c[5]))));
}

// Coefficient k of a point's zero-Doppler function.
inline double functionOf(const SightArc& arc, int k, double px, double py, double pz) {
    return px * arc.velocity[0][k] + py * arc.velocity[1][k] + pz * arc.velocity[2][k] - arc.advance[k];
}

struct Line {
    double x, y, z;  // m, from the satellite to the point
};

// What an arc says of a point that is abreast of the satellite at u, seen from there along `line`.
// `good` is kRight if the solution is exact, else kDoubtful. One comparison at a time: SSE2 cannot combine them.
inline double sightOf(const SightArc& arc, double px, double py, double pz, double u, const Line& line, double range,
                      double good) {
    const double toRight = px * (arc.right[0][0] + u * arc.right[0][1]) + py * (arc.right[1][0] + u * arc.right[1][1]) +
                           pz * (arc.right[2][0] + u * arc.right[2][1]);
    const double level = levelOf(px, py, pz);
    const double up = -(line.x * px + line.y * py + line.z * uprightZ(pz, level));

    const double side = toRight > 0.0 ? Sight::kRight : Sight::kLeft;
    const double seen = up > -kBelowHorizon * kSemiMajorAxis * range ? side : Sight::kBelow;
    const double clear = toRight * toRight > arc.nearTrack * arc.nearTrack ? seen : Sight::kDoubtful;
    const double near = (level - 1.0) * (level - 1.0) < kMostLevel * kMostLevel ? clear : Sight::kDoubtful;
    const double sure = good == Sight::kRight ? near : Sight::kDoubtful;
    const double time = arc.centre + u;
    const double after = time >= arc.first ? sure : Sight::kElsewhere;
    return time <= arc.last ? after : Sight::kElsewhere;
}

}  // namespace

static int countOf(const WantedSights& wanted, int count, const double* __restrict sight) {
    const double least = wanted.least;
    const double most = wanted.most;
    long long found = 0;
    for (int i = 0; i < count; ++i) {
        const long long notLess = sight[i] >= least ? 1 : 0;
        found += sight[i] <= most ? notLess : 0;
    }
    return static_cast<int>(found);
}

static void zeroDopplerOf(const SightArc& __restrict arc, int count, const double* __restrict x,
                          const double* __restrict y, const double* __restrict z, double* __restrict time,
                          double* __restrict range, double* __restrict sight) {
    for (int i = 0; i < count; ++i) {
        const double px = x[i];
        const double py = y[i];
        const double pz = z[i];
        const double c0 = functionOf(arc, 0, px, py, pz);
        const double c1 = functionOf(arc, 1, px, py, pz);
        const double c2 = functionOf(arc, 2, px, py, pz);
        const double c3 = functionOf(arc, 3, px, py, pz);
        const double c4 = functionOf(arc, 4, px, py, pz);
        const double c5 = functionOf(arc, 5, px, py, pz);

        // Divided by the slope at the middle: u - u0 + b2 u^2 + ... = 0, by reversing the series and a step.
        const double inverse = 1.0 / c1;
        const double u0 = -c0 * inverse;
        const double b2 = c2 * inverse;
        const double b3 = c3 * inverse;
        const double b4 = c4 * inverse;
        const double b5 = c5 * inverse;
        const double u1 = u0 - u0 * u0 * (b2 + u0 * b3);
        const double rest = (u1 - u0) + u1 * u1 * (b2 + u1 * (b3 + u1 * (b4 + u1 * b5)));
        const double change = u1 * (2.0 * b2 + u1 * (3.0 * b3));
        const double u = u1 - rest * (1.0 - change + change * change);

        const double lx = px - valueAt(arc.position[0], u);
        const double ly = py - valueAt(arc.position[1], u);
        const double lz = pz - valueAt(arc.position[2], u);
        const double r = std::sqrt(lx * lx + ly * ly + lz * lz);
        const double small = rest * rest < kMostStep * kMostStep ? Sight::kRight : Sight::kDoubtful;
        const double good = change * change < kMostChange * kMostChange ? small : Sight::kDoubtful;
        const double what = sightOf(arc, px, py, pz, u, {lx, ly, lz}, r, good);
        time[i] = arc.centre + u;
        range[i] = r;
        sight[i] = what;
    }
}

static int zeroDoppler(const SightArc& arc, const WantedSights& wanted, const TargetTile& tile) {
    zeroDopplerOf(arc, tile.count, tile.x, tile.y, tile.z, tile.time, tile.range, tile.sight);
    return countOf(wanted, tile.count, tile.sight);
}

// Rate, its derivative by the range (1/s), of a polynomial.
static void ratesOf(const RatePolynomial& polynomial, int count, const double* __restrict range,
                    double* __restrict rate, double* __restrict slope) {
    const double reference = polynomial.reference;
    for (int i = 0; i < count; ++i) {
        rate[i] = 0.0;
        slope[i] = 0.0;
    }
    for (int k = polynomial.count - 1; k >= 0; --k) {
        const double coefficient = polynomial.coefficients[k];
        for (int i = 0; i < count; ++i) {
            const double distance = range[i] - reference;
            slope[i] = slope[i] * distance + rate[i];
            rate[i] = rate[i] * distance + coefficient;
        }
    }
}

// The zero-Doppler function of each point, and the range at the arc's middle.
static void zeroDopplerFunctions(const SightArc& __restrict arc, int count, const double* __restrict x,
                                 const double* __restrict y, const double* __restrict z, double* __restrict c0,
                                 double* __restrict c1, double* __restrict c2, double* __restrict c3,
                                 double* __restrict c4, double* __restrict c5, double* __restrict range) {
    for (int i = 0; i < count; ++i) {
        const double px = x[i];
        const double py = y[i];
        const double pz = z[i];
        c0[i] = functionOf(arc, 0, px, py, pz);
        c1[i] = functionOf(arc, 1, px, py, pz);
        c2[i] = functionOf(arc, 2, px, py, pz);
        c3[i] = functionOf(arc, 3, px, py, pz);
        c4[i] = functionOf(arc, 4, px, py, pz);
        c5[i] = functionOf(arc, 5, px, py, pz);
        const double lx = px - arc.position[0][0];
        const double ly = py - arc.position[1][0];
        const double lz = pz - arc.position[2][0];
        range[i] = std::sqrt(lx * lx + ly * ly + lz * lz);
    }
}

// A start: the range near the middle as a polynomial of degree 3, whose square has the derivative -2 g, and with it the
// whole equation as one of degree 4.
static void squintedStart(int count, const double* __restrict c0, const double* __restrict c1,
                          const double* __restrict c2, const double* __restrict c3, const double* __restrict c4,
                          const double* __restrict range, const double* __restrict rate, const double* __restrict slope,
                          double* __restrict start, double* __restrict inverse, double* __restrict bend,
                          double* __restrict twist) {
    for (int i = 0; i < count; ++i) {
        const double inverseRange = 1.0 / range[i];
        const double r1 = -c0[i] * inverseRange;
        const double r2 = -0.5 * (c1[i] + r1 * r1) * inverseRange;
        const double r3 = -(c2[i] * (1.0 / 3.0) + r1 * r2) * inverseRange;
        const double growth = rate[i] + slope[i] * range[i];
        const double a0 = c0[i] + rate[i] * range[i];
        const double a1 = c1[i] + growth * r1;
        const double inverseSlope = 1.0 / a1;
        const double b2 = (c2[i] + growth * r2 + slope[i] * r1 * r1) * inverseSlope;
        const double b3 = (c3[i] + growth * r3 + 2.0 * slope[i] * r1 * r2) * inverseSlope;
        const double b4 = c4[i] * inverseSlope;
        const double u0 = -a0 * inverseSlope;
        const double u1 = u0 - u0 * u0 * (b2 + u0 * (b3 - 2.0 * b2 * b2));
        const double rest = (u1 - u0) + u1 * u1 * (b2 + u1 * (b3 + u1 * b4));
        const double change = u1 * (2.0 * b2 + u1 * (3.0 * b3));
        start[i] = u1 - rest * (1.0 - change + change * change);
        inverse[i] = a1 < 0.0 ? inverseSlope : kNaN;
        bend[i] = b2;
        twist[i] = b3;
    }
}

static void rangesAt(const SightArc& __restrict arc, int count, const double* __restrict x, const double* __restrict y,
                     const double* __restrict z, const double* __restrict u, double* __restrict lx,
                     double* __restrict ly, double* __restrict lz, double* __restrict range) {
    for (int i = 0; i < count; ++i) {
        const double at = u[i];
        const double dx = x[i] - valueAt(arc.position[0], at);
        const double dy = y[i] - valueAt(arc.position[1], at);
        const double dz = z[i] - valueAt(arc.position[2], at);
        lx[i] = dx;
        ly[i] = dy;
        lz[i] = dz;
        range[i] = std::sqrt(dx * dx + dy * dy + dz * dz);
    }
}

// One Newton step of time, range and rate.
static void squintedStep(int count, const double* __restrict c0, const double* __restrict c1,
                         const double* __restrict c2, const double* __restrict c3, const double* __restrict c4,
                         const double* __restrict c5, const double* __restrict inverse, const double* __restrict bend,
                         const double* __restrict twist, const double* __restrict slope, double* __restrict u,
                         double* __restrict range, double* __restrict rate, double* __restrict step) {
    for (int i = 0; i < count; ++i) {
        const double at = u[i];
        const double g = c0[i] + at * (c1[i] + at * (c2[i] + at * (c3[i] + at * (c4[i] + at * c5[i]))));
        const double change = at * (2.0 * bend[i] + at * (3.0 * twist[i]));
        const double by = -(g + rate[i] * range[i]) * inverse[i] * (1.0 - change + change * change);
        const double growth = rate[i] * by;
        u[i] = at + by;
        range[i] += growth;
        rate[i] += slope[i] * growth;
        step[i] = change * change < kMostChange * kMostChange ? by : 1.0;
    }
}

static void sightsOf(const SightArc& __restrict arc, double mostStep, int count, const double* __restrict x,
                     const double* __restrict y, const double* __restrict z, const double* __restrict u,
                     const double* __restrict lx, const double* __restrict ly, const double* __restrict lz,
                     const double* __restrict range, const double* __restrict rate, const double* __restrict step,
                     double* __restrict time, double* __restrict sight) {
    const double speed = arc.mostRate / kMostRate;
    for (int i = 0; i < count; ++i) {
        const double small = step[i] * step[i] < mostStep * mostStep ? Sight::kRight : Sight::kDoubtful;
        // What the start's polynomial of the range leaves out of the slope, relative, grows with the cube of the angle
        // (V u / range) and with rate / V.
        const double way = speed * u[i];
        const double left = step[i] * rate[i] * (way * way * way);
        const double most = kMostLeft * speed * (range[i] * range[i] * range[i]);
        const double steep = left * left < most * most ? small : Sight::kDoubtful;
        const double good = rate[i] * rate[i] <= arc.mostRate * arc.mostRate ? steep : Sight::kDoubtful;
        const double what = sightOf(arc, x[i], y[i], z[i], u[i], {lx[i], ly[i], lz[i]}, range[i], good);
        time[i] = arc.centre + u[i];
        sight[i] = what;
    }
}

static int squinted(const SightArc& arc, const RatePolynomial& polynomial, const WantedSights& wanted,
                    const TargetTile& tile) {
    const int n = tile.count;
    double c0[TargetTile::kMost], c1[TargetTile::kMost], c2[TargetTile::kMost], c3[TargetTile::kMost];
    double c4[TargetTile::kMost], c5[TargetTile::kMost], slope[TargetTile::kMost], u[TargetTile::kMost],
        inverse[TargetTile::kMost];
    double bend[TargetTile::kMost], twist[TargetTile::kMost], step[TargetTile::kMost];
    double lx[TargetTile::kMost], ly[TargetTile::kMost], lz[TargetTile::kMost];
    const bool given = polynomial.count == 0;

    zeroDopplerFunctions(arc, n, tile.x, tile.y, tile.z, c0, c1, c2, c3, c4, c5, tile.range);
    if (given) {
        for (int i = 0; i < n; ++i) {
            slope[i] = 0.0;
        }
    } else {
        ratesOf(polynomial, n, tile.range, tile.rate, slope);
    }
    squintedStart(n, c0, c1, c2, c3, c4, tile.range, tile.rate, slope, u, inverse, bend, twist);
    // What a polynomial adds to the curvature of the equation has no part in the start.
    for (int pass = given ? 1 : 0; pass < 2; ++pass) {
        rangesAt(arc, n, tile.x, tile.y, tile.z, u, lx, ly, lz, tile.range);
        if (!given) {
            ratesOf(polynomial, n, tile.range, tile.rate, slope);
        }
        squintedStep(n, c0, c1, c2, c3, c4, c5, inverse, bend, twist, slope, u, tile.range, tile.rate, step);
    }
    const double mostStep = given || arc.mostStep < kMostSecondStep ? arc.mostStep : kMostSecondStep;
    sightsOf(arc, mostStep, n, tile.x, tile.y, tile.z, u, lx, ly, lz, tile.range, tile.rate, step, tile.time,
             tile.sight);
    return countOf(wanted, n, tile.sight);
}

static void cartesianOf(int count, const double* __restrict latitude, const double* __restrict longitude,
                        const double* __restrict height, double* __restrict x, double* __restrict y,
                        double* __restrict z) {
    for (int i = 0; i < count; ++i) {
        const double b = latitude[i];
        const double l = longitude[i];
        const double h = height[i];
        // Quarter turns, by the rounding of a sum that has no bits for less: 0, 1, 2, 3 of them and what is left.
        const double latitudeTurns = (b * (1.0 / 90.0) + kRounding) - kRounding;
        const double longitudeTurns = (l * (1.0 / 90.0) + kRounding) - kRounding;
        const double fullTurns = (longitudeTurns * 0.25 + kRounding) - kRounding;
        const double quarter = longitudeTurns - 4.0 * fullTurns;  // -2, -1, 0, 1, 2
        const double br = b - 90.0 * latitudeTurns;
        const double lr = l - 90.0 * longitudeTurns;

        const double sb = sine(br);
        const double cb = cosine(br);
        const double sl = sine(lr);
        const double cl = cosine(lr);
        const double sinLatitude = latitudeTurns == 0.0 ? sb : latitudeTurns * cb;
        const double cosLatitude = latitudeTurns == 0.0 ? cb : -latitudeTurns * sb;
        const double evenSine = quarter == 0.0 ? sl : -sl;
        const double evenCosine = quarter == 0.0 ? cl : -cl;
        const double sinLongitude = quarter * quarter == 1.0 ? quarter * cl : evenSine;
        const double cosLongitude = quarter * quarter == 1.0 ? -quarter * sl : evenCosine;

        const double s2 = sinLatitude * sinLatitude;
        const double normal =
            kSemiMajorAxis *
            (1.0 + s2 * (kNormal1 + s2 * (kNormal2 + s2 * (kNormal3 + s2 * (kNormal4 + s2 * kNormal5)))));
        const double p = (normal + h) * cosLatitude;
        const double inLatitude = b * b <= 90.0 * 90.0 ? p * cosLongitude : kNaN;
        const double inLongitude =
            l * l <= GeodeticTile::kMostLongitude * GeodeticTile::kMostLongitude ? inLatitude : kNaN;
        x[i] = h * h <= kHighest * kHighest ? inLongitude : kNaN;
        y[i] = p * sinLongitude;
        z[i] = (normal * (1.0 - kEccentricitySquared) + h) * sinLatitude;
    }
}

static void cartesian(const GeodeticTile& tile) {
    cartesianOf(tile.count, tile.latitude, tile.longitude, tile.height, tile.x, tile.y, tile.z);
}

static void gatherOf(int count, const int* __restrict slots, const double* __restrict x, const double* __restrict y,
                     const double* __restrict z, double* __restrict gatheredX, double* __restrict gatheredY,
                     double* __restrict gatheredZ) {
    for (int i = 0; i < count; ++i) {
        gatheredX[i] = x[slots[i]];
        gatheredY[i] = y[slots[i]];
        gatheredZ[i] = z[slots[i]];
    }
}

static void gather(const GatheringTile& tile) {
    gatherOf(tile.count, tile.slots, tile.x, tile.y, tile.z, tile.gatheredX, tile.gatheredY, tile.gatheredZ);
}

// The beginning of the first segment.
static void firstEnd(const StretchEnd& __restrict end, double none, int count, const double* __restrict x,
                     const double* __restrict y, const double* __restrict z, double* __restrict function,
                     double* __restrict stretch) {
    for (int i = 0; i < count; ++i) {
        function[i] = x[i] * end.velocity[0] + y[i] * end.velocity[1] + z[i] * end.velocity[2] - end.advance;
        stretch[i] = none;
    }
}

// One segment: `function` is that at its beginning, and then at its end.
static void crossing(const StretchEnd& __restrict end, double here, double none, int count, const double* __restrict x,
                     const double* __restrict y, const double* __restrict z, const double* __restrict from,
                     double* __restrict function, double* __restrict stretch) {
    for (int i = 0; i < count; ++i) {
        const double next = x[i] * end.velocity[0] + y[i] * end.velocity[1] + z[i] * end.velocity[2] - end.advance;
        const double falling = function[i] >= 0.0 ? here : none;
        const double through = next < 0.0 ? falling : none;
        const double candidate = from[i] <= here ? through : none;
        stretch[i] = stretch[i] < candidate ? stretch[i] : candidate;
        function[i] = next;
    }
}

static int countLike(double value, int count, const double* __restrict values) {
    long long found = 0;
    for (int i = 0; i < count; ++i) {
        found += values[i] == value ? 1 : 0;
    }
    return static_cast<int>(found);
}

// How many points cross in the same stretch as the first.
static int crossings(const CrossingTile& tile) {
    double function[TargetTile::kMost];
    firstEnd(tile.ends[0], tile.stretches, tile.count, tile.x, tile.y, tile.z, function, tile.stretch);
    for (int k = 0; k < tile.stretches; ++k) {
        crossing(tile.ends[k + 1], k, tile.stretches, tile.count, tile.x, tile.y, tile.z, tile.from, function,
                 tile.stretch);
    }
    return countLike(tile.stretch[0], tile.count, tile.stretch);
}

static void coarseTimesOf(const CoarseStretch& __restrict stretch, const SpanParts& __restrict parts, int count,
                          const double* __restrict x, const double* __restrict y, const double* __restrict z,
                          double* __restrict time, int* __restrict part) {
    for (int i = 0; i < count; ++i) {
        const double px = x[i];
        const double py = y[i];
        const double pz = z[i];
        const auto coefficient = [&](int k) {
            return px * stretch.velocity[0][k] + py * stretch.velocity[1][k] + pz * stretch.velocity[2][k] -
                   stretch.advance[k];
        };
        const double c0 = coefficient(0);
        const double inverse = 1.0 / coefficient(1);
        const double b2 = coefficient(2) * inverse;
        const double b3 = coefficient(3) * inverse;
        const double u0 = -c0 * inverse;
        const double u1 = u0 - u0 * u0 * (b2 + u0 * (b3 - 2.0 * b2 * b2));
        const double rest = (u1 - u0) + u1 * u1 * (b2 + u1 * b3);
        const double change = u1 * (2.0 * b2 + u1 * (3.0 * b3));
        const double t = stretch.centre + (u1 - rest * (1.0 - change));
        const double number = (t - parts.first) * parts.perSecond;
        const double inside = number > 0.0 ? number : 0.0;
        time[i] = t;
        part[i] = static_cast<int>(inside < parts.last ? inside : parts.last);
    }
}

static void coarseTimes(const CoarseStretch& stretch, const SpanParts& parts, const CoarseTile& tile) {
    coarseTimesOf(stretch, parts, tile.count, tile.x, tile.y, tile.z, tile.time, tile.part);
}

}  // namespace vorbel::scene::VORBEL_KERNELS
