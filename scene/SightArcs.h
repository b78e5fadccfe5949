#ifndef VORBEL_SCENE_SIGHT_ARCS_H
#define VORBEL_SCENE_SIGHT_ARCS_H

#include "OrbitPieces.h"
#include "kernels/GroundToPixel.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vorbel::scene {

/// Least speed over the satellite's distance from the Earth's centre, 1/s. Below it the rounding of positions alone,
/// 2^-52 of the distance, is more than the way of 1e-9 s.
constexpr double kLeastTurn = 4e-7;

/// Arcs take times that are this much too early over, s, so that the last bits do not send a point from one to the next
/// and back.
constexpr double kOverlap = 1e-8;

/// An orbit prepared for finding when it is abreast of points.
class SightArcs {
public:
    explicit SightArcs(const OrbitPieces& orbit);

    Span span{};
    std::vector<SightArc> arcs;            // in order of time, with the times that are accepted on them
    std::vector<double> begins;            // s, where the arcs truly begin
    std::vector<CoarseStretch> stretches;  // in order of time, of some arcs each
    std::vector<StretchEnd> ends;          // of the segments: one before the span, one for each stretch, one after it
    std::vector<double> bounds;            // s, where those stand
    double reach = 0.0;                    // s, length of the segments before and after the span
    SpanParts spanParts{};                 // small beside the arcs

    std::size_t segments() const noexcept {
        return ends.size() - 1;
    }

    /// The stretch whose polynomials serve for a segment.
    const CoarseStretch& stretchOf(std::size_t segment) const noexcept;

    /// The first segment in which a point may be abreast of the satellite that appears at a time or later.
    std::size_t firstSegment(double notBefore) const noexcept;

    /// The arc in which a part of the span begins.
    std::uint32_t arcNear(int part) const noexcept {
        return m_arcNear[static_cast<std::size_t>(part)];
    }

    /// The arc of a time, of one outside the span the nearest.
    std::uint32_t arcOf(double time) const noexcept {
        const double part = (time - spanParts.first) * spanParts.perSecond;
        std::uint32_t arc = arcNear(static_cast<int>(part > 0.0 ? std::min(part, spanParts.last) : 0.0));
        while (arc > 0 && time < begins[arc]) {
            --arc;
        }
        while (arc + 1 < begins.size() && time >= begins[arc + 1]) {
            ++arc;
        }
        return arc;
    }

    /// A time up to which a point that is abreast after `time` has not been so before.
    double onePassUntil(double time) const noexcept;

private:
    void addArcs(const OrbitPiece& piece, double first, double last, int splits);
    void addStretches(const OrbitPieces& orbit);
    std::size_t segmentOf(double time) const noexcept;

    std::vector<double> m_turned;          // rad, at the bounds
    std::vector<std::uint32_t> m_arcNear;  // of the span's parts
};

}  // namespace vorbel::scene

#endif
