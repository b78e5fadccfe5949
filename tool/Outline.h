#ifndef VORBEL_TOOL_OUTLINE_H
#define VORBEL_TOOL_OUTLINE_H

#include <vector>

namespace vorbel::tool {

/// A corner of an outline, degrees.
struct Corner {
    double longitude = 0.0;
    double latitude = 0.0;

    friend bool operator==(const Corner&, const Corner&) = default;
};

/// Corners in order, the first one again at the end.
using Ring = std::vector<Corner>;

/// The outline of an area as RFC 7946 wants it: rings that go counterclockwise round it, with longitudes from -180 to
/// 180; two or more where the antimeridian cuts it.
/// \param[in] corners  in either order, neighbours less than half a turn apart
/// \throws std::runtime_error  the outline goes around a pole
std::vector<Ring> outline(std::vector<Corner> corners);

}  // namespace vorbel::tool

#endif
