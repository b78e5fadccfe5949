#ifndef VORBEL_INTERPOLATION_LAGRANGE_WEIGHTS_H
#define VORBEL_INTERPOLATION_LAGRANGE_WEIGHTS_H

#include "../arithmetic/Pair.h"

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

/// The four-node weights over s²/24, without the s that node 0 adds.
inline Weights<4> fourNodePolynomials(double s) {
    return {
        (8.0 - s) * s - 22.0,
        (3.0 * s - 20.0) * s + 36.0,
        (16.0 - 3.0 * s) * s - 18.0,
        (s - 4.0) * s + 4.0,
    };
}

inline Weights<4> fourNodeWeights(double s) {
    const Weights<4> P = fourNodePolynomials(s);
    const double q = s * s * kOver24;
    return {s + q * P[0], q * P[1], q * P[2], q * P[3]};
}

/// 24 times the four-node weights, for a sum that is scaled by h/24 at the end.
inline Weights<4> fourNodeWeightsTimes24(double s) {
    const Weights<4> P = fourNodePolynomials(s);
    const double s2 = s * s;
    return {P[0] * s2 + 24.0 * s, P[1] * s2, P[2] * s2, P[3] * s2};
}

/// The eight-node weights over s²/120960, without the s that node 0 adds, as polynomials of degree 6 in s. A row is a
/// power, from s⁶ down; a column a node, newest first.
inline constexpr double kEightNodePolynomials[7][8] = {
    {-3, 21, -63, 105, -105, 63, -21, 3},
    {96, -648, 1872, -3000, 2880, -1656, 528, -72},
    {-1288, 8260, -22680, 34580, -31640, 17388, -5320, 700},
    {9408, -55944, 143136, -204792, 177408, -93240, 27552, -3528},
    {-40614, 214368, -495054, 653520, -534450, 270144, -77658, 9744},
    {105056, -449568, 886032, -1062880, 826560, -405216, 114128, -14112},
    {-156816, 423360, -635040, 705600, -529200, 254016, -70560, 8640},
};

/// Calls f(j) for each two neighbouring nodes j and j + 1, and stores the pair it returns as their weights.
template <class F>
inline Weights<8> forNodePairs(F f) {
    Weights<8> c;
    storePair(c.data(), f(0));
    storePair(c.data() + 2, f(2));
    storePair(c.data() + 4, f(4));
    storePair(c.data() + 6, f(6));
    return c;
}

/// The polynomials of the nodes j and j + 1 by Horner's rule.
inline Pair eightNodePolynomialPair(double s, int j) {
    Pair p = pairAt(&kEightNodePolynomials[0][j]);
    for (int k = 1; k < 7; ++k) {
        p = p * pairOf(s) + pairAt(&kEightNodePolynomials[k][j]);
    }
    return p;
}

inline Weights<8> eightNodeWeights(double s) {
    const double q = s * s * kOver120960;
    Weights<8> c = forNodePairs([&](int j) { return pairOf(q) * eightNodePolynomialPair(s, j); });
    c[0] = s + c[0];
    return c;
}

/// The same as sums of powers, lowest first, as CVorbel::Lagrange rounds them.
inline Weights<8> eightNodeWeightsFromPowers(double s) {
    double power[7];  // s² to s⁸
    power[0] = s * s;
    for (int k = 1; k < 7; ++k) {
        power[k] = power[k - 1] * s;
    }
    Weights<8> c = forNodePairs([&](int j) {
        Pair p = pairOf(power[0]) * pairAt(&kEightNodePolynomials[6][j]);
        for (int k = 1; k < 7; ++k) {
            p = p + pairOf(power[k]) * pairAt(&kEightNodePolynomials[6 - k][j]);
        }
        return p * pairOf(kOver120960);
    });
    c[0] = c[0] + s;
    return c;
}

// The short record's read-out of a chosen order multiplies the polynomials by s² first and by the constant last.

inline Weights<3> threeNodeWeightsScaledLast(double s) {
    const double s2 = s * s;
    return {
        (2.0 * s - 9.0) * s2 * kOver12 + s,
        (12.0 - 4.0 * s) * s2 * kOver12,
        (2.0 * s - 3.0) * s2 * kOver12,
    };
}

inline Weights<4> fourNodeWeightsScaledLast(double s) {
    const Weights<4> P = fourNodePolynomials(s);
    const double s2 = s * s;
    return {P[0] * s2 * kOver24 + s, P[1] * s2 * kOver24, P[2] * s2 * kOver24, P[3] * s2 * kOver24};
}

inline Weights<8> eightNodeWeightsScaledLast(double s) {
    const double s2 = s * s;
    Weights<8> c =
        forNodePairs([&](int j) { return eightNodePolynomialPair(s, j) * pairOf(s2) * pairOf(kOver120960); });
    c[0] = c[0] + s;
    return c;
}

}  // namespace vorbel

#endif
