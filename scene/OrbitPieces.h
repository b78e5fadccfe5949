#ifndef VORBEL_SCENE_ORBIT_PIECES_H
#define VORBEL_SCENE_ORBIT_PIECES_H

#include <vorbel/scene/Orbit.h>

#include <array>
#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

namespace vorbel::scene {

/// The orbit between two break points: polynomials of degree 8 in u = time - centre (s), lowest power first.
///
/// The velocity has polynomials of its own, because vectors bring velocities that are not quite the derivatives of
/// their positions, and these decide where the zero-Doppler plane is.
struct OrbitPiece {
    static constexpr int kCoefficients = 9;
    using Polynomial = std::array<double, kCoefficients>;

    double first;                        // s since the epoch: from here
    double last;                         // up to here, where the next piece begins
    double centre;                       // u counts from here
    std::array<Polynomial, 3> position;  // m
    std::array<Polynomial, 3> velocity;  // m/s
};

class SightArcs;

/// An orbit as pieces that follow each other without a gap.
class OrbitPieces {
public:
    Instant epoch;
    Span span;
    Span covered;
    double drag = 0.0;               // km^2/kg as in fVector, of a propagation beyond the span
    std::vector<OrbitPiece> pieces;  // in order of time, at least one

    /// The piece of a time within the span: the last one that begins at or before it.
    std::size_t index(double time) const noexcept;

    /// The same orbit for the way from the ground to the pixel, made when it is first asked for.
    const SightArcs& sightArcs() const;

private:
    /// A copy makes its own.
    struct Made {
        Made() = default;
        Made(const Made& /*other*/) noexcept {}
        Made& operator=(const Made&) = delete;

        std::once_flag once;
        std::shared_ptr<const SightArcs> arcs;
    };

    mutable Made m_made;
};

/// State of a piece at a time; the same operations, in the same order, as the kernels'.
State evaluate(const OrbitPiece& piece, double time) noexcept;

}  // namespace vorbel::scene

#endif
