#include "SightArcs.h"

#include "Ellipsoid.h"
#include "Polynomials.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace vorbel::scene {

namespace {

constexpr double kLongestArc = 0.0125;   // rad, 12 s of a low orbit
constexpr double kLongestStretch = 0.3;  // rad, 4 to 5 minutes
constexpr double kLongestWindow = 2.8;   // rad; a revolution brings one pass, and this is less than half of one
constexpr int kMostSplits = 6;
constexpr double kArcTolerance = 1e-10;                  // s, of an arc's polynomials against its piece's
constexpr double kStepTolerance = 4e-10;                 // s, left by the last step
constexpr double kRangeTolerance = 2e-7;                 // m
constexpr double kCarriedTolerance = 3e-7;               // m, of a range over the last step, for each of two reasons
constexpr double kNearTrack = 1e-5;                      // rad
constexpr double kHighestPoint = kSemiMajorAxis + 13e3;  // m from the Earth's centre
constexpr double kLeastRange = 1e3;                      // m
constexpr double kReserve = 1.3;
constexpr std::size_t kPartsPerArc = 64;  // so that most parts lie in one arc

// Chebyshev's nodes of degrees 6 and 4, in the order of their distance from the middle, and where a polynomial through
// the former is furthest off
constexpr std::array<double, 6> kNodes6{0.25881904510252074,  -0.25881904510252074, 0.70710678118654752,
                                        -0.70710678118654752, 0.96592582628906829,  -0.96592582628906829};
constexpr std::array<double, 4> kNodes4{0.38268343236508977, -0.38268343236508977, 0.92387953251128676,
                                        -0.92387953251128676};
constexpr std::array<double, 7> kExtremes6{1.0, 0.86602540378443865, 0.5, 0.0, -0.5, -0.86602540378443865, -1.0};

struct Cartesian {
    double x, y, z;
};

double dot(const Cartesian& a, const Cartesian& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Cartesian cross(const Cartesian& a, const Cartesian& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double length(const Cartesian& a) {
    return std::sqrt(dot(a, a));
}

struct Motion {
    Cartesian position;
    Cartesian velocity;
};

Motion motionAt(const OrbitPiece& piece, double u) {
    return {{valueAt(piece.position[0], u), valueAt(piece.position[1], u), valueAt(piece.position[2], u)},
            {valueAt(piece.velocity[0], u), valueAt(piece.velocity[1], u), valueAt(piece.velocity[2], u)}};
}

double turnRate(const Motion& motion) {
    return length(motion.velocity) / length(motion.position);
}

/// Through the values at nodes * halfWidth.
template <std::size_t kCount>
void fit(const std::array<double, kCount>& nodes, double halfWidth, const std::array<double, kCount>& values,
         double (&coefficients)[kCount]) {
    std::array<Condition, kCount> conditions{};
    for (std::size_t i = 0; i < kCount; ++i) {
        conditions[i] = {nodes[i] * halfWidth, values[i]};
    }
    const Polynomial polynomial = interpolate(conditions);
    std::copy_n(polynomial.begin(), kCount, coefficients);
}

/// Fits one quantity of the motions at the nodes.
template <std::size_t kCount, class Quantity>
void fit(const std::array<double, kCount>& nodes, double halfWidth, const std::array<Motion, kCount>& motions,
         const Quantity& quantity, double (&coefficients)[kCount]) {
    std::array<double, kCount> values{};
    std::transform(motions.begin(), motions.end(), values.begin(), quantity);
    fit(nodes, halfWidth, values, coefficients);
}

template <std::size_t kCount>
double valueAt(const double (&coefficients)[kCount], double u) {
    double value = coefficients[kCount - 1];
    for (std::size_t k = kCount - 1; k-- > 0;) {
        value = value * u + coefficients[k];
    }
    return value;
}

/// Of the polynomial's derivative.
template <std::size_t kCount>
double slopeAt(const double (&coefficients)[kCount], double u) {
    double value = 0.0;
    for (std::size_t k = kCount - 1; k > 0; --k) {
        value = value * u + static_cast<double>(k) * coefficients[k];
    }
    return value;
}

double Cartesian::*const kAxes[] = {&Cartesian::x, &Cartesian::y, &Cartesian::z};

double advanceOf(const Motion& motion) {
    return dot(motion.position, motion.velocity);
}

/// A range that is carried on at its rate r over a step d misses what the rate changes meanwhile, d^2 (V^2 - r^2) / 2
/// over the range, and d times what the velocity differs from the derivative of the position.
double mostStepOf(const SightArc& arc, double halfWidth, const Motion& begin) {
    double apart = 0.0;
    for (const double node : kExtremes6) {
        Cartesian difference{};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            difference.*kAxes[axis] =
                valueAt(arc.velocity[axis], node * halfWidth) - slopeAt(arc.position[axis], node * halfWidth);
        }
        apart = std::max(apart, length(difference));
    }
    const double nearest = std::max(length(begin.position) - kHighestPoint, kLeastRange);
    return std::min(
        {kMostStep, kCarriedTolerance / apart, std::sqrt(2.0 * kCarriedTolerance * nearest) / length(begin.velocity)});
}

SightArc arcOver(const OrbitPiece& piece, double first, double last) {
    SightArc arc{};
    arc.centre = 0.5 * (first + last);
    arc.first = first - kOverlap;
    arc.last = last - kOverlap;
    const double halfWidth = 0.5 * (last - first);
    const double middle = arc.centre - piece.centre;
    std::array<Motion, 6> motions{};
    std::transform(kNodes6.begin(), kNodes6.end(), motions.begin(),
                   [&](double node) { return motionAt(piece, middle + node * halfWidth); });
    for (std::size_t axis = 0; axis < 3; ++axis) {
        double Cartesian::*const part = kAxes[axis];
        fit(
            kNodes6, halfWidth, motions, [&](const Motion& m) { return m.position.*part; }, arc.position[axis]);
        fit(
            kNodes6, halfWidth, motions, [&](const Motion& m) { return m.velocity.*part; }, arc.velocity[axis]);
    }
    fit(kNodes6, halfWidth, motions, advanceOf, arc.advance);

    const Motion begin = motionAt(piece, middle - halfWidth);
    const Motion end = motionAt(piece, middle + halfWidth);
    const Cartesian rightBefore = cross(begin.velocity, begin.position);
    const Cartesian rightAfter = cross(end.velocity, end.position);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        double Cartesian::*const part = kAxes[axis];
        arc.right[axis][0] = 0.5 * (rightBefore.*part + rightAfter.*part);
        arc.right[axis][1] = (rightAfter.*part - rightBefore.*part) / (last - first);
    }
    const bool slow = std::min(turnRate(begin), turnRate(end)) < 2.0 * kLeastTurn;
    arc.nearTrack = slow ? HUGE_VAL : kNearTrack * kSemiMajorAxis * length(rightBefore);
    arc.mostRate = kMostRate * length(begin.velocity);
    arc.mostStep = mostStepOf(arc, halfWidth, begin);
    return arc;
}

/// How far a satellite sees, m.
double distanceToHorizon(const Cartesian& position) {
    constexpr double kBelow = 0.99;  // for the flattening and points below the ellipsoid
    return std::sqrt(std::max(dot(position, position) - kBelow * kSemiMajorAxis * kSemiMajorAxis, 0.0));
}

/// Whether the kernels' last step, with a slope of the terms up to the third power, comes close enough for all points
/// that the satellite sees. On noisy vectors the higher terms are large.
bool isSmooth(const SightArc& arc, double halfWidth) {
    const Cartesian position{arc.position[0][0], arc.position[1][0], arc.position[2][0]};
    const Cartesian velocity{arc.velocity[0][0], arc.velocity[1][0], arc.velocity[2][0]};
    // A circular orbit's for points on the horizon, where it is least
    const double slope = dot(velocity, velocity) * (kSemiMajorAxis * kSemiMajorAxis / dot(position, position));
    // What term k of P V - S V, with P from S to the horizon, adds to the slope at the arc's end, relative, over k
    const double h = halfWidth;
    const auto share = [&](std::size_t k, double power) {
        const Cartesian change{arc.velocity[0][k], arc.velocity[1][k], arc.velocity[2][k]};
        const double most =
            distanceToHorizon(position) * length(change) + std::abs(arc.advance[k] - dot(position, change));
        return most * power / slope;
    };
    const double second = share(2, h);
    const double fourth = share(4, h * h * h);
    const double fifth = share(5, h * h * h * h);
    const double leftOut = 4.0 * fourth + 5.0 * fifth;
    const double step = h * (2.0 * second * second + fourth + fifth);
    return leftOut * std::min(step, kMostStep) < kStepTolerance;
}

/// Whether the arc's polynomials are as good as the piece's, for all points that the satellite sees.
bool holds(const SightArc& arc, const OrbitPiece& piece, double halfWidth) {
    return std::all_of(kExtremes6.begin(), kExtremes6.end(), [&](double node) {
        const double u = node * halfWidth;
        const Motion motion = motionAt(piece, arc.centre - piece.centre + u);
        Cartesian offPosition{};
        Cartesian offVelocity{};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            double Cartesian::*const part = kAxes[axis];
            offPosition.*part = valueAt(arc.position[axis], u) - motion.position.*part;
            offVelocity.*part = valueAt(arc.velocity[axis], u) - motion.velocity.*part;
        }
        // Of P V - S V, with P from S to the horizon
        const double offAdvance = valueAt(arc.advance, u) - advanceOf(motion) - dot(motion.position, offVelocity);
        const double offFunction = std::abs(offAdvance) + distanceToHorizon(motion.position) * length(offVelocity);
        return length(offPosition) < kRangeTolerance &&
               offFunction < kArcTolerance * dot(motion.velocity, motion.velocity);
    });
}

}  // namespace

SightArcs::SightArcs(const OrbitPieces& orbit) : span(orbit.span) {
    for (const OrbitPiece& piece : orbit.pieces) {
        const double width = piece.last - piece.first;
        const double turned = turnRate(motionAt(piece, 0.5 * (piece.first + piece.last) - piece.centre)) * width;
        const double parts = std::clamp(std::ceil(turned / kLongestArc), 1.0, 1e6);
        for (double part = 0.0; part < parts; part += 1.0) {
            const double first = piece.first + width * (part / parts);
            const double last = part + 1.0 < parts ? piece.first + width * ((part + 1.0) / parts) : piece.last;
            addArcs(piece, first, last, kMostSplits);
        }
    }
    arcs.front().first = span.first + kOverlap;  // closer to the ends than this it takes a search
    addStretches(orbit);

    m_arcNear.resize(kPartsPerArc * arcs.size());
    const auto count = static_cast<double>(m_arcNear.size());
    spanParts = {span.first, count / (span.last - span.first), count - 1.0};
    std::uint32_t arc = 0;
    for (std::size_t part = 0; part < m_arcNear.size(); ++part) {
        const double time = span.first + static_cast<double>(part) / spanParts.perSecond;
        while (arc + 1 < arcs.size() && begins[arc + 1] <= time) {
            ++arc;
        }
        m_arcNear[part] = arc;
    }
}

void SightArcs::addArcs(const OrbitPiece& piece, double first, double last, int splits) {
    SightArc arc = arcOver(piece, first, last);
    const double halfWidth = 0.5 * (last - first);
    if (isSmooth(arc, halfWidth) && holds(arc, piece, halfWidth)) {
        arcs.push_back(arc);
        begins.push_back(first);
    } else if (splits > 0) {
        const double middle = 0.5 * (first + last);
        addArcs(piece, first, middle, splits - 1);
        addArcs(piece, middle, last, splits - 1);
    } else {
        arc.nearTrack = HUGE_VAL;  // nothing is clear enough on it
        arcs.push_back(arc);
        begins.push_back(first);
    }
}

void SightArcs::addStretches(const OrbitPieces& orbit) {
    const auto motion = [&](double time) {
        const OrbitPiece& piece = orbit.pieces[orbit.index(time)];
        return motionAt(piece, time - piece.centre);
    };
    m_turned.push_back(0.0);
    bounds.push_back(span.first);
    for (std::size_t arc = 0; arc < arcs.size();) {
        const double first = begins[arc];
        double last = first;
        double turned = 0.0;
        do {
            const double next = arc + 1 < arcs.size() ? begins[arc + 1] : span.last;
            turned += turnRate(motion(last)) * (next - last);
            last = next;
            ++arc;
        } while (arc < arcs.size() && turned + kLongestArc < kLongestStretch);

        CoarseStretch stretch{};
        stretch.centre = 0.5 * (first + last);
        const double halfWidth = 0.5 * (last - first);
        std::array<Motion, 4> motions{};
        std::transform(kNodes4.begin(), kNodes4.end(), motions.begin(),
                       [&](double node) { return motion(stretch.centre + node * halfWidth); });
        for (std::size_t axis = 0; axis < 3; ++axis) {
            double Cartesian::*const part = kAxes[axis];
            fit(
                kNodes4, halfWidth, motions, [&](const Motion& m) { return m.velocity.*part; }, stretch.velocity[axis]);
        }
        fit(kNodes4, halfWidth, motions, advanceOf, stretch.advance);
        stretches.push_back(stretch);
        bounds.push_back(last);
        m_turned.push_back(m_turned.back() + turned);
    }

    const Motion begin = motion(span.first);
    reach = kReserve * kMostRate * distanceToHorizon(begin.position) / length(begin.velocity);
    bounds.insert(bounds.begin(), span.first - reach);
    bounds.push_back(span.last + reach);
    m_turned.insert(m_turned.begin(), 0.0);
    m_turned.push_back(m_turned.back());
    for (std::size_t i = 0; i < bounds.size(); ++i) {
        const bool inside = i > 0 && i + 1 < bounds.size();
        const CoarseStretch& stretch = stretchOf(i);
        StretchEnd end{};
        if (inside) {
            const Motion at = motion(bounds[i]);
            for (std::size_t axis = 0; axis < 3; ++axis) {
                end.velocity[axis] = at.velocity.*kAxes[axis];
            }
            end.advance = advanceOf(at);
        } else {
            const double u = bounds[i] - stretch.centre;
            for (std::size_t axis = 0; axis < 3; ++axis) {
                end.velocity[axis] = valueAt(stretch.velocity[axis], u);
            }
            end.advance = valueAt(stretch.advance, u);
        }
        ends.push_back(end);
    }
}

const CoarseStretch& SightArcs::stretchOf(std::size_t segment) const noexcept {
    return stretches[std::min(std::max<std::size_t>(segment, 1), stretches.size()) - 1];
}

std::size_t SightArcs::segmentOf(double time) const noexcept {
    const auto end = std::upper_bound(bounds.begin() + 1, bounds.end() - 1, time);
    return static_cast<std::size_t>(end - bounds.begin()) - 1;
}

std::size_t SightArcs::firstSegment(double notBefore) const noexcept {
    constexpr double kReserveTime = 1.0;  // s
    return segmentOf(notBefore - reach - kReserveTime);
}

double SightArcs::onePassUntil(double time) const noexcept {
    std::size_t bound = segmentOf(std::max(time, span.first));
    const double turned = m_turned[bound];
    while (bound + 1 < bounds.size() && m_turned[bound + 1] - turned < kLongestWindow) {
        ++bound;
    }
    return bounds[bound];
}

const SightArcs& OrbitPieces::sightArcs() const {
    std::call_once(m_made.once, [this] { m_made.arcs = std::make_shared<const SightArcs>(*this); });
    return *m_made.arcs;
}

}  // namespace vorbel::scene
