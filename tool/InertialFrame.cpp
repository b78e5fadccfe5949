#include "InertialFrame.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace vorbel::tool {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kArcsecond = kPi / 180.0 / 3600.0;  // rad
constexpr double kDay = 86400.0;                     // s
constexpr double kDaysPerCentury = 36525.0;
const scene::Instant kJ2000 = scene::Instant::of(2000, 1, 1, 12);

// UT1 - TAI + 37 s, which has no leaps, at 0h of the first of each month from January 2014; 0.1 ms.
// From the series IERS EOP 20 C04 of the Paris Observatory.
constexpr int kFirstYear = 2014;
constexpr std::array<std::int16_t, 153> kUt1{
    19029, 18703, 18383, 17950, 17521, 17174, 16981, 16851, 16729, 16487, 16129, 15770, 15401, 15075, 14723, 14250,
    13829, 13438, 13234, 13018, 12720, 12294, 11785, 11326, 10815, 10263, 9796,  9175,  8652,  8136,  7876,  7746,
    7536,  7210,  6762,  6303,  5913,  5542,  5169,  4705,  4217,  3807,  3595,  3467,  3363,  3151,  2834,  2485,
    2164,  1965,  1664,  1341,  1016,  770,   706,   698,   633,   484,   195,   -124,  -362,  -612,  -893,  -1192,
    -1486, -1701, -1742, -1602, -1536, -1537, -1592, -1700, -1772, -1911, -2050, -2252, -2425, -2546, -2401, -2081,
    -1854, -1734, -1753, -1790, -1754, -1670, -1698, -1742, -1833, -1839, -1674, -1433, -1193, -1053, -1041, -1068,
    -1105, -1074, -1021, -995,  -976,  -959,  -687,  -374,  -134,  -50,   -102,  -196,  -198,  -146,  -153,  -243,
    -342,  -461,  -361,  -148,  26,    117,   113,   116,   88,    43,    -33,   -143,  -178,  -204,  -39,   253,
    518,   590,   536,   496,   463,   475,   456,   369,   298,   290,   434,   621,   846,   930,   931,   798,
    741,   707,   672,   510,   329,   178,   145,   127,   25,
};

/// TAI - UTC in s, since 2012.
double taiMinusUtc(const scene::Instant& time) {
    static const scene::Instant kThirtySix = scene::Instant::of(2015, 7, 1);
    static const scene::Instant kThirtySeven = scene::Instant::of(2017, 1, 1);
    return time < kThirtySix ? 35.0 : time < kThirtySeven ? 36.0 : 37.0;
}

scene::Instant monthOf(std::size_t i) {
    return scene::Instant::of(kFirstYear + static_cast<int>(i / 12), static_cast<int>(i % 12) + 1, 1);
}

/// The months before and after a time that the table holds.
std::size_t monthBefore(const scene::Instant& time) {
    std::size_t i = kUt1.size() - 2;
    while (i > 0 && time < monthOf(i)) {
        --i;
    }
    return i;
}

struct NutationTerm {
    std::array<std::int8_t, 5> multiples;  // of l, l', F, D and the node
    double longitude, longitudeRate;       // 0.1 mas, and per century
    double obliquity, obliquityRate;
};
// The largest terms of the theory of nutation IAU 1980 (P. K. Seidelmann, Celestial Mechanics 27, 79, 1982).
constexpr std::array<NutationTerm, 21> kNutation{{
    {{0, 0, 0, 0, 1}, -171996.0, -174.2, 92025.0, 8.9},
    {{0, 0, 2, -2, 2}, -13187.0, -1.6, 5736.0, -3.1},
    {{0, 0, 2, 0, 2}, -2274.0, -0.2, 977.0, -0.5},
    {{0, 0, 0, 0, 2}, 2062.0, 0.2, -895.0, 0.5},
    {{0, 1, 0, 0, 0}, 1426.0, -3.4, 54.0, -0.1},
    {{1, 0, 0, 0, 0}, 712.0, 0.1, -7.0, 0.0},
    {{0, 1, 2, -2, 2}, -517.0, 1.2, 224.0, -0.6},
    {{0, 0, 2, 0, 1}, -386.0, -0.4, 200.0, 0.0},
    {{1, 0, 2, 0, 2}, -301.0, 0.0, 129.0, -0.1},
    {{0, -1, 2, -2, 2}, 217.0, -0.5, -95.0, 0.3},
    {{1, 0, 0, -2, 0}, -158.0, 0.0, -1.0, 0.0},
    {{0, 0, 2, -2, 1}, 129.0, 0.1, -70.0, 0.0},
    {{-1, 0, 2, 0, 2}, 123.0, 0.0, -53.0, 0.0},
    {{1, 0, 0, 0, 1}, 63.0, 0.1, -33.0, 0.0},
    {{0, 0, 0, 2, 0}, 63.0, 0.0, -2.0, 0.0},
    {{-1, 0, 2, 2, 2}, -59.0, 0.0, 26.0, 0.0},
    {{-1, 0, 0, 0, 1}, -58.0, -0.1, 32.0, 0.0},
    {{1, 0, 2, 0, 1}, -51.0, 0.0, 27.0, 0.0},
    {{2, 0, 0, -2, 0}, 48.0, 0.0, 1.0, 0.0},
    {{-2, 0, 2, 0, 1}, 46.0, 0.0, -24.0, 0.0},
    {{0, 0, 2, 2, 2}, -38.0, 0.0, 16.0, 0.0},
}};

double polynomial(double t, double c0, double c1, double c2, double c3) {
    return c0 + t * (c1 + t * (c2 + t * c3));
}

Matrix product(const Matrix& a, const Matrix& b) {
    Matrix c{};
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
            c[i][j] = a[i][0] * b[0][j] + a[i][1] * b[1][j] + a[i][2] * b[2][j];
        }
    }
    return c;
}

/// Turns the axes about axis 0, 1 or 2.
Matrix turned(std::size_t axis, double angle) {
    const std::size_t a = (axis + 1) % 3;
    const std::size_t b = (axis + 2) % 3;
    Matrix m{};
    m[axis][axis] = 1.0;
    m[a][a] = std::cos(angle);
    m[b][b] = std::cos(angle);
    m[a][b] = std::sin(angle);
    m[b][a] = -std::sin(angle);
    return m;
}

}  // namespace

bool hasUt1(const scene::Instant& time) {
    return !(time < monthOf(0)) && !(monthOf(kUt1.size() - 1) < time);
}

double ut1MinusUtc(const scene::Instant& time) {
    const std::size_t i = monthBefore(time);
    const scene::Instant from = monthOf(i);
    const double share = std::clamp(time.since(from) / monthOf(i + 1).since(from), 0.0, 1.0);
    constexpr double kUnit = 1e-4;  // s
    return (kUt1[i] + share * (kUt1[i + 1] - kUt1[i])) * kUnit + taiMinusUtc(time) - 37.0;
}

Matrix earthFixedFromJ2000(const scene::Instant& time, double ut1) {
    constexpr double kTerrestrialMinusTai = 32.184;  // s
    const double utc = time.since(kJ2000);
    const double t = (utc + taiMinusUtc(time) + kTerrestrialMinusTai) / kDay / kDaysPerCentury;

    const Matrix precession =
        product(turned(2, -polynomial(t, 0.0, 2306.2181, 1.09468, 0.018203) * kArcsecond),
                product(turned(1, polynomial(t, 0.0, 2004.3109, -0.42665, -0.041833) * kArcsecond),
                        turned(2, -polynomial(t, 0.0, 2306.2181, 0.30188, 0.017998) * kArcsecond)));

    // mean anomalies of Moon and Sun, Moon's distance from its node, from the Sun, and the node; ", turns apart
    constexpr double kTurn = 1296000.0;
    const std::array<double, 5> arguments{
        polynomial(t, 485866.733, 715922.633, 31.310, 0.064) + std::fmod(1325.0 * t, 1.0) * kTurn,
        polynomial(t, 1287099.804, 1292581.224, -0.577, -0.012) + std::fmod(99.0 * t, 1.0) * kTurn,
        polynomial(t, 335778.877, 295263.137, -13.257, 0.011) + std::fmod(1342.0 * t, 1.0) * kTurn,
        polynomial(t, 1072261.307, 1105601.328, -6.891, 0.019) + std::fmod(1236.0 * t, 1.0) * kTurn,
        polynomial(t, 450160.280, -482890.539, 7.455, 0.008) + std::fmod(-5.0 * t, 1.0) * kTurn,
    };
    double longitude = 0.0;
    double obliquity = 0.0;
    for (const NutationTerm& term : kNutation) {
        double angle = 0.0;
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            angle += term.multiples[i] * arguments[i];
        }
        angle *= kArcsecond;
        longitude += (term.longitude + term.longitudeRate * t) * std::sin(angle);
        obliquity += (term.obliquity + term.obliquityRate * t) * std::cos(angle);
    }
    constexpr double kTenthOfMilliarcsecond = kArcsecond * 1e-4;
    longitude *= kTenthOfMilliarcsecond;
    obliquity *= kTenthOfMilliarcsecond;
    const double meanObliquity = polynomial(t, 84381.448, -46.8150, -0.00059, 0.001813) * kArcsecond;
    const Matrix nutation =
        product(turned(0, -(meanObliquity + obliquity)), product(turned(2, -longitude), turned(0, meanObliquity)));

    // Greenwich mean sidereal time, s of time, from days of UT1
    const double days = (utc + ut1) / kDay;
    const double centuries = days / kDaysPerCentury;
    const double seconds =
        polynomial(centuries, 67310.54841, 8640184.812866, 0.093104, -6.2e-6) + std::fmod(days, 1.0) * kDay;
    const double sidereal =
        seconds / kDay * 2.0 * kPi + longitude * std::cos(meanObliquity) +
        (0.00264 * std::sin(arguments[4] * kArcsecond) + 0.000063 * std::sin(2.0 * arguments[4] * kArcsecond)) *
            kArcsecond;
    return product(turned(2, sidereal), product(nutation, precession));
}

}  // namespace vorbel::tool
