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
#include <vector>

namespace vorbel::scene {

/// Position (m) and velocity relative to the Earth (m/s), Earth-fixed.
struct State {
    double x = 0.0;   ///< m
    double y = 0.0;   ///< m
    double z = 0.0;   ///< m
    double vx = 0.0;  ///< m/s
    double vy = 0.0;  ///< m/s
    double vz = 0.0;  ///< m/s
};

/// A state at an instant of UTC.
struct StateVector {
    Instant time;  ///< when
    State state;   ///< where and how fast
};

/// Seconds since an orbit's epoch, both ends included.
struct Span {
    double first = 0.0;  ///< s
    double last = 0.0;   ///< s
};

/// A list of vectors with its times evenly spaced, if that is what they are but for their rounding.
///
/// Annotations of products write times to a microsecond, 7.6 mm of flight, while the positions belong to the times
/// before rounding. Interpolated as they stand they waver by millimetres; on an even grid, smooth to 0.05 mm, they
/// share one shift of at most half of the resolution. For lists whose times are known to be rounded; others are to be
/// interpolated as they are.
/// \param[in] vectors     in order of time
/// \param[in] resolution  s, of the times as they were written
/// \return the same states at the even times closest to all; the list as it is if that moves a time by more than the
///         resolution, or for fewer than three vectors
VORBEL_SCENE_API std::vector<StateVector> withEvenTimes(std::span<const StateVector> vectors, double resolution = 1e-6);

class OrbitPieces;

/// Position and velocity at any time of a span, Earth-fixed. Immutable; copies share their content, and any number of
/// threads may use one.
///
/// **Accuracy.** Between vectors of a low orbit 10 s apart less than 0.1 mm is lost, 1 mm at 60 s; a minute beyond them
/// the class's force model loses decimetres. The page on orbits has the figures.
///
/// **Errors.** What is asked for outside the span comes back as not-a-number. An orbit that cannot be made is an
/// exception, std::invalid_argument, with one sentence that says why.
class VORBEL_SCENE_API Orbit {
public:
    /// Interpolates state vectors: any number from two, in any order, at any spacing up to 600 s.
    ///
    /// Where the vectors stand, the orbit has their positions and their velocities, which in real products are not
    /// quite the derivatives of the positions.
    ///
    /// Vectors at one instant, which 1.5 microseconds do not part, count once. Lists that overlap may be given one
    /// after the other; the vectors of the earlier one count where both have some. That is, unless all vectors stand in
    /// order of time, one that is nearer than 0.6 of the usual spacing to another given before it is left out: between
    /// vectors of two estimates their difference would be taken for movement.
    /// \param[in] vectors  m, m/s, Earth-fixed
    /// \param[in] epoch    the instant from which the orbit's times count
    /// \throws std::invalid_argument  fewer than two instants; a vector that is not finite or inside the Earth, that
    ///                                contradicts its neighbour in time (by more than 1 m or 0.1 m/s beyond what
    ///                                gravity allows in between), or that stands more than 600 s after it. It is named
    ///                                by its instant and its number from 1
    static Orbit fromVectors(std::span<const StateVector> vectors, const Instant& epoch);

    /// The same, counting from the first vector's instant.
    static Orbit fromVectors(std::span<const StateVector> vectors);

    /// Propagates one state vector to both sides by the class.
    ///
    /// Each side is InitLagrange() over it with its own choice of step up to 120 s, and in the least number of equal
    /// steps that are not longer than 20 s beyond. The positions are those of CVorbel::Lagrange() of order 7.
    /// \param[in] vector  m, m/s, Earth-fixed; its instant becomes the epoch
    /// \param[in] before  s, how far the span reaches back, from 0 to 10^6
    /// \param[in] after   s, how far it reaches forward, from 0 to 10^6
    /// \param[in] drag    km^2/kg as in fVector
    /// \throws std::invalid_argument  a vector that is not finite or inside the Earth, a reach or drag outside its
    ///                                domain, no reach at all, a path that does not stay finite
    static Orbit propagated(const StateVector& vector, double before, double after, double drag = 0.0);

    /// Reads a propagated trajectory out, as CVorbel::Lagrange() of order 7 does, over the seven steps of its history.
    /// The instant of its end state is the epoch.
    /// \throws std::invalid_argument  a trajectory that is absolute, was not propagated, had its state set since, or
    ///                                was propagated against the sign of its step
    static Orbit fromTrajectory(const CVorbel& trajectory);

    /// The same orbit, continued by propagation from the ends of its span, with the drag of the orbit that was
    /// propagated and none for vectors. covered() stays.
    /// \param[in] before  s, from 0 to 10^6
    /// \param[in] after   s, from 0 to 10^6
    /// \throws std::invalid_argument  a reach outside that, a path that does not stay finite
    Orbit extended(double before, double after) const;

    /// The instant from which all times count.
    const Instant& epoch() const noexcept;

    /// The times that can be asked for.
    Span span() const noexcept;

    /// The part of span() between the vectors or, of a propagated orbit, all of it: outside it the orbit was extended.
    Span covered() const noexcept;

    /// The state at a time (s since the epoch), not-a-number outside the span.
    State at(double time) const noexcept;

    /// Where states at many times go. An output that is not wanted is empty; the others have a value for each time.
    struct States {
        std::span<double> x{};       ///< m
        std::span<double> y{};       ///< m
        std::span<double> z{};       ///< m
        std::span<double> vx{};      ///< m/s
        std::span<double> vy{};      ///< m/s
        std::span<double> vz{};      ///< m/s
        std::span<Status> status{};  ///< `ok`, `outside_orbit`, or `bad_input` for a time that is not finite
    };

    /// The states at many times (s since the epoch), in any order.
    /// \throws std::invalid_argument  an output of another length; nothing has been written then
    void at(std::span<const double> times, const States& states) const;

    /// The polynomials behind it, for the layer itself.
    const OrbitPieces& pieces() const noexcept;

private:
    explicit Orbit(std::shared_ptr<const OrbitPieces> pieces);

    std::shared_ptr<const OrbitPieces> m_pieces;
};

}  // namespace vorbel::scene

#endif
