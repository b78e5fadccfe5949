#ifndef VORBEL_INTERPOLATION_LAGRANGE_WEIGHTS_H
#define VORBEL_INTERPOLATION_LAGRANGE_WEIGHTS_H

#include <array>
#include <cstddef>

namespace vorbel {

// The weights C(n, j)(s) of dense output: the integral from 0 to s of the Lagrange basis polynomial of node j over the
// nodes 0, 1, ..., n - 1, where s counts steps back from the end state. A state s steps back is the end state less
// h * sum over j of C(n, j)(s) * derivative at node j. Those of n nodes sum to s; at s = 1 they are the Adams-Moulton
// weights of order n.

template <std::size_t N>
using Weights = std::array<double, N>;  // one for each node, newest first

inline constexpr double kOver12 = 0.08333333333333333;
inline constexpr double kOver24 = 0.041666666666666664;
inline constexpr double kOver120960 = 8.267195767195768e-06;

inline Weights<1> oneNodeWeights(double s) {
    return {s};
}

inline Weights<2> twoNodeWeights(double s) {
    const double half = s * s / 2.0;
    return {s - half, half};
}

inline Weights<3> threeNodeWeights(double s) {
    const double s2 = s * s;
    const double s3 = s2 * s;
    return {
        s + (2.0 * s3 - 9.0 * s2) * kOver12,
        (12.0 * s2 - 4.0 * s3) * kOver12,
        (2.0 * s3 - 3.0 * s2) * kOver12,
    };
}

/// The three-node weights with s²/12 taken out, as the short record's read-out of order 3 rounds them.
inline Weights<3> threeNodeWeightsNested(double s) {
    const double q = s * s * kOver12;
    return {
        (2.0 * s - 9.0) * q + s,
        (12.0 - 4.0 * s) * q,
        (2.0 * s - 3.0) * q,
    };
}

inline Weights<4> fourNodeWeights(double s) {
    const double q = s * s * kOver24;
    return {
        s + q * ((8.0 - s) * s - 22.0),
        q * ((3.0 * s - 20.0) * s + 36.0),
        q * ((16.0 - 3.0 * s) * s - 18.0),
        q * ((s - 4.0) * s + 4.0),
    };
}

/// 24 times the four-node weights, for a sum that is scaled by h / 24 at the end.
inline Weights<4> fourNodeWeightsTimes24(double s) {
    const double s2 = s * s;
    return {
        ((8.0 - s) * s - 22.0) * s2 + 24.0 * s,
        ((3.0 * s - 20.0) * s + 36.0) * s2,
        ((16.0 - 3.0 * s) * s - 18.0) * s2,
        ((s - 4.0) * s + 4.0) * s2,
    };
}

// The eight-node weights over s²/120960 (without the s that node 0 adds), as polynomials of degree 6 in s. A row is a
// node, newest first; a column a power, from s⁶ down.
inline constexpr double kEightNodePolynomials[8][7] = {
    {-3, 96, -1288, 9408, -40614, 105056, -156816},  // node 0
    {21, -648, 8260, -55944, 214368, -449568, 423360},
    {-63, 1872, -22680, 143136, -495054, 886032, -635040},
    {105, -3000, 34580, -204792, 653520, -1062880, 705600},
    {-105, 2880, -31640, 177408, -534450, 826560, -529200},
    {63, -1656, 17388, -93240, 270144, -405216, 254016},
    {-21, 528, -5320, 27552, -77658, 114128, -70560},
    {3, -72, 700, -3528, 9744, -14112, 8640},
};

/// By Horner's rule, as the table of read-outs and the short record use them.
inline Weights<8> eightNodeWeights(double s) {
    const double q = s * s * kOver120960;
    Weights<8> c;
    for (int j = 0; j < 8; ++j) {
        double p = kEightNodePolynomials[j][0];
        for (int k = 1; k < 7; ++k) {
            p = p * s + kEightNodePolynomials[j][k];
        }
        c[j] = q * p;
    }
    c[0] = s + c[0];
    return c;
}

/// As sums of powers, from the second up, as CVorbel::Lagrange rounds them.
inline Weights<8> eightNodeWeightsFromPowers(double s) {
    double power[7];  // s² to s⁸
    power[0] = s * s;
    for (int k = 1; k < 7; ++k) {
        power[k] = power[k - 1] * s;
    }
    Weights<8> c;
    for (int j = 0; j < 8; ++j) {
        double p = power[0] * kEightNodePolynomials[j][6];
        for (int k = 1; k < 7; ++k) {
            p = p + power[k] * kEightNodePolynomials[j][6 - k];
        }
        c[j] = p * kOver120960;
    }
    c[0] = c[0] + s;
    return c;
}

}  // namespace vorbel

#endif
