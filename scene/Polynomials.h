#ifndef VORBEL_SCENE_POLYNOMIALS_H
#define VORBEL_SCENE_POLYNOMIALS_H

#include "OrbitPieces.h"

#include <span>

namespace vorbel::scene {

using Polynomial = OrbitPiece::Polynomial;

/// What a polynomial has to meet: a value at an abscissa, or in a second condition next to it the derivative there.
struct Condition {
    double u;
    double value;
    bool derivative = false;
};

/// The polynomial of the lowest degree that meets all conditions, at most nine (Newton's divided differences). It comes
/// out most exact if they stand in the order of their distance from u = 0.
Polynomial interpolate(std::span<const Condition> conditions);

Polynomial derivative(const Polynomial& polynomial);

inline double valueAt(const Polynomial& polynomial, double u) {
    double value = polynomial[OrbitPiece::kCoefficients - 1];
    for (int k = OrbitPiece::kCoefficients - 2; k >= 0; --k) {
        value = value * u + polynomial[static_cast<std::size_t>(k)];
    }
    return value;
}

}  // namespace vorbel::scene

#endif
