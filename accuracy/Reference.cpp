#include "Reference.h"

namespace accuracy {

namespace {

constexpr int kDegree4 = 4;
constexpr Real kEgmMu = 398600.4415L;    // km³/s²
constexpr Real kEgmRadius = 6378.1363L;  // km

// EGM96, fully normalised (Lemoine et al., NASA/TP-1998-206861): degrees 2 to 4, each from order 0 up
constexpr Real kC[3][5] = {
    {-0.484165371736e-3L, -0.186987635955e-9L, 0.243914352398e-5L, 0, 0},
    {0.957254173792e-6L, 0.202998882184e-5L, 0.904627768605e-6L, 0.721072657057e-6L, 0},
    {0.539873863789e-6L, -0.536321616971e-6L, 0.350694105785e-6L, 0.990771803829e-6L, -0.188560802735e-6L},
};
constexpr Real kS[3][5] = {
    {0, 0.119528012031e-8L, -0.140016683654e-5L, 0, 0},
    {0, 0.248513158716e-6L, -0.619025944205e-6L, 0.141435626958e-5L, 0},
    {0, -0.473440265853e-6L, 0.662671572540e-6L, -0.200928369177e-6L, 0.308853169333e-6L},
};

/// (n + m)!/(n - m)!
Real factorialRatio(int n, int m) {
    Real product = 1;
    for (int i = n - m + 1; i <= n + m; ++i) {
        product *= static_cast<Real>(i);
    }
    return product;
}

}  // namespace

Vec Turn::operator()(const Motion& m) const {
    return (-2 * rate) * cross(axis, m.v) - rateSquared * cross(axis, cross(axis, m.r));
}

/// The gradient of mu/r + mu j2R2 (1/r³ - 3z²/r⁵)/2.
Vec J2Model::operator()(const Motion& m) const {
    const Real r = norm(m.r);
    const Real r3 = r * r * r;
    const Real r5 = r3 * r * r;
    const Real z = m.r.z;
    const Vec central = (-mu / r3) * m.r;
    const Vec oblate = (mu * j2R2 / 2) * (((15 * z * z / (r * r) - 3) / r5) * m.r - Vec{0, 0, 6 * z / r5});
    return central + oblate + turn(m);
}

J2Model libraryModel(int system) {
    const Real split = 62.5647465;  // the gravitational parameter over 6371 km
    J2Model model{split * 6371, Real(4133214.32438489) / (Real(1.5) * split), Turn()};
    if (system == 0) {
        model.turn.rate = Real(0.000145842316) / 2;
        model.turn.rateSquared = 5.31749528e-9;
    }
    return model;
}

/// Cunningham's recursion over the solid harmonics V and W, one degree and order beyond the field's.
Vec DegreeFourModel::operator()(const Motion& at) const {
    const Real r2 = dot(at.r, at.r);
    const Vec q = (kEgmRadius / r2) * at.r;
    const Real rho = kEgmRadius * kEgmRadius / r2;
    Real V[kDegree4 + 2][kDegree4 + 2] = {};
    Real W[kDegree4 + 2][kDegree4 + 2] = {};
    V[0][0] = kEgmRadius / std::sqrt(r2);
    for (int m = 0; m <= kDegree4 + 1; ++m) {
        if (m > 0) {
            const Real k = static_cast<Real>(2 * m - 1);
            V[m][m] = k * (q.x * V[m - 1][m - 1] - q.y * W[m - 1][m - 1]);
            W[m][m] = k * (q.x * W[m - 1][m - 1] + q.y * V[m - 1][m - 1]);
        }
        for (int n = m + 1; n <= kDegree4 + 1; ++n) {
            const Real near = static_cast<Real>(2 * n - 1) / static_cast<Real>(n - m);
            V[n][m] = near * q.z * V[n - 1][m];
            W[n][m] = near * q.z * W[n - 1][m];
            if (n > m + 1) {
                const Real far = static_cast<Real>(n + m - 1) / static_cast<Real>(n - m);
                V[n][m] -= far * rho * V[n - 2][m];
                W[n][m] -= far * rho * W[n - 2][m];
            }
        }
    }

    Vec a{-V[1][1], -W[1][1], -V[1][0]};  // central attraction
    for (int n = 2; n <= kDegree4; ++n) {
        for (int m = 0; m <= n; ++m) {
            const Real scale = std::sqrt(static_cast<Real>((m == 0 ? 1 : 2) * (2 * n + 1)) / factorialRatio(n, m));
            const Real C = scale * kC[n - 2][m];
            const Real S = scale * kS[n - 2][m];
            const Real k = static_cast<Real>(n - m + 1);
            a.z -= k * (C * V[n + 1][m] + S * W[n + 1][m]);
            if (m == 0) {
                a.x -= C * V[n + 1][1];
                a.y -= C * W[n + 1][1];
            } else {
                const Real kk = k * (k + 1);
                a.x += (-C * V[n + 1][m + 1] - S * W[n + 1][m + 1]) / 2;
                a.y += (-C * W[n + 1][m + 1] + S * V[n + 1][m + 1]) / 2;
                a.x += kk * (C * V[n + 1][m - 1] + S * W[n + 1][m - 1]) / 2;
                a.y += kk * (-C * W[n + 1][m - 1] + S * V[n + 1][m - 1]) / 2;
            }
        }
    }
    return (kEgmMu / (kEgmRadius * kEgmRadius)) * a + turn(at);
}

Geodetic geodeticOf(const Vec& p, Real semiMinorAxis) {
    const Real a = kSemiMajorAxis;
    const Real b = semiMinorAxis;
    const Real axial = std::hypot(p.x, p.y);
    // Bowring's relation between the geodetic latitude and the parametric one, repeated until it stands still
    Real parametric = std::atan2(p.z * a, axial * b);
    Real latitude = 0;
    for (int i = 0; i < 20; ++i) {
        const Real s = std::sin(parametric);
        const Real c = std::cos(parametric);
        latitude = std::atan2(p.z + (a * a - b * b) / b * s * s * s, axial - (a * a - b * b) / a * c * c * c);
        parametric = std::atan2(b * std::sin(latitude), a * std::cos(latitude));
    }
    const Vec foot = cartesianOf({latitude, 0, 0}, b);
    const Real height = (axial - foot.x) * std::cos(latitude) + (p.z - foot.z) * std::sin(latitude);
    return {latitude, std::atan2(p.y, p.x), height};
}

Vec cartesianOf(const Geodetic& g, Real semiMinorAxis) {
    const Real a2 = kSemiMajorAxis * kSemiMajorAxis;
    const Real b2 = semiMinorAxis * semiMinorAxis;
    const Real s = std::sin(g.latitude);
    const Real c = std::cos(g.latitude);
    const Real chord = std::sqrt(a2 * c * c + b2 * s * s);
    const Real axial = (a2 / chord + g.height) * c;
    return {axial * std::cos(g.longitude), axial * std::sin(g.longitude), (b2 / chord + g.height) * s};
}

Vec lineOfSightPoint(const Vec& r, Real range, const Vec& normal, Real along, Real a, Real b, const Vec& nearby) {
    Vec X = nearby;
    for (int i = 0; i < 30; ++i) {
        const Vec d = X - r;
        const Vec scaled{X.x / (a * a), X.y / (a * a), X.z / (b * b)};
        // three equations and their gradients; Cramer's rule
        const Vec g1 = 2 * d;
        const Vec g2 = normal;
        const Vec g3 = 2 * scaled;
        const Real f1 = dot(d, d) - range * range;
        const Real f2 = dot(normal, d) - along;
        const Real f3 = dot(X, scaled) - 1;
        const Real determinant = dot(g1, cross(g2, g3));
        X = X - (1 / determinant) * (f1 * cross(g2, g3) + f2 * cross(g3, g1) + f3 * cross(g1, g2));
    }
    return X;
}

}  // namespace accuracy
