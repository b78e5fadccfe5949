#ifndef VORBEL_SCENE_ORBIT_H
#define VORBEL_SCENE_ORBIT_H

/// \file
/// The orbit of a satellite over a span of time.

#include <vorbel/CVorbel.h>
#include <vorbel/scene/Export.h>
#include <vorbel/scene/Instant.h>
#include <vorbel/scene/Status.h>

#include <memory>
#include <span>

namespace vorbel::scene {

/// Position (m) and velocity relative to the Earth (m/s), Earth-fixed.
struct State {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double vx = 0.0;
    double vy = 0.0;
    double vz = 0.0;
};

/// A state at an instant of UTC.
struct StateVector {
    Instant time;
    State state;
};

/// Seconds since an orbit's epoch, both ends included.
struct Span {
    double first = 0.0;
    double last = 0.0;
};

class OrbitPieces;

/// Position and velocity at any time of a span, Earth-fixed. Immutable; copies share their content, and any number of
/// threads may use one.
class VORBEL_SCENE_API Orbit {
public:
    /// Interpolates state vectors: any number from two, at any spacing, in any order. Equal vectors count once.
    /// \param[in] vectors  m, m/s, Earth-fixed
    /// \param[in] epoch    the instant from which the orbit's times count
    /// \throws std::invalid_argument  fewer than two instants, a value that is not finite, two vectors that contradict
    ///                                each other at one instant; one sentence that names the vector
    static Orbit fromVectors(std::span<const StateVector> vectors, const Instant& epoch);

    /// The same, counting from the first vector's instant.
    static Orbit fromVectors(std::span<const StateVector> vectors);

    /// Propagates one state vector to both sides.
    /// \param[in] vector  m, m/s, Earth-fixed; its instant becomes the epoch
    /// \param[in] before  s, how far the span reaches back, not negative
    /// \param[in] after   s, how far it reaches forward, not negative
    /// \param[in] drag    km^2/kg as in fVector
    static Orbit propagated(const StateVector& vector, double before, double after, double drag = 0.0);

    /// Reads a propagated trajectory out, over what its history really covers; its end state is the epoch.
    /// \throws std::invalid_argument  a trajectory that was not propagated, or in the absolute frame
    static Orbit fromTrajectory(const CVorbel& trajectory);

    /// The same orbit, continued by propagation from its outermost vectors.
    /// \param[in] before  s, not negative
    /// \param[in] after   s, not negative
    Orbit extended(double before, double after) const;

    /// The instant from which all times count.
    const Instant& epoch() const noexcept;

    /// The times that can be asked for.
    Span span() const noexcept;

    /// The part of span() between the vectors or, of a propagated orbit, all of it: outside it the orbit was extended.
    Span covered() const noexcept;

    /// The state at a time (s since the epoch), not-a-number outside the span.
    State at(double time) const noexcept;

    /// States at many times. Outputs that are empty are left out; the others have the length of `times`.
    struct States {
        std::span<double> x{}, y{}, z{}, vx{}, vy{}, vz{};
        std::span<Status> status{};
    };
    /// \throws std::invalid_argument  an output of another length
    void at(std::span<const double> times, const States& states) const;

    /// The polynomials behind it, for the layer itself.
    const OrbitPieces& pieces() const noexcept;

private:
    explicit Orbit(std::shared_ptr<const OrbitPieces> pieces);

    std::shared_ptr<const OrbitPieces> m_pieces;
};

}  // namespace vorbel::scene

#endif
