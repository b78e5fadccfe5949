#ifndef VORBEL_TOOL_GEOMETRY_H
#define VORBEL_TOOL_GEOMETRY_H

#include "Surface.h"

#include <vorbel/products/Product.h>

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vorbel::tool {

/// The status of a row: that of the scene layer, or that the image does not hold the place.
using RowStatus = std::uint8_t;
inline constexpr RowStatus kOutsideImage = 32;
inline constexpr std::size_t kRowStatuses = 33;

/// The name of a status as tables have it.
const char* nameOf(RowStatus status) noexcept;

/// True if a row with this status has numbers.
bool hasNumbers(RowStatus status) noexcept;

/// Where pixels lie; not-a-number without numbers.
struct GroundColumns {
    std::vector<double> time, slantRange;  ///< s since the mapping's epoch, m
    std::vector<double> latitude, longitude, height, incidence, lookAngle, azimuth;
    std::vector<RowStatus> status;
};

/// Ground points of times and ranges.
/// \param[in] height  one for each, or empty: the surface says
void locateRadar(const products::Product& product, const Surface& surface, std::span<const double> height,
                 GroundColumns& points);

/// Ground points of pixels.
void locatePixels(const products::Product& product, const Surface& surface, std::span<const double> line,
                  std::span<const double> pixel, std::span<const double> height, GroundColumns& points);

/// Where ground points appear; not-a-number without numbers.
struct ImageColumns {
    std::vector<double> time, slantRange;
    std::vector<double> line, pixel;
    std::vector<double> otherLine;  ///< where bursts overlap, the line in the other one
    std::vector<double> height;     ///< that was taken
    std::vector<RowStatus> status;
};

/// Lines and pixels of ground points.
/// \param[in] height  one for each, or empty: the surface says
void projectPoints(const products::Product& product, const Surface& surface, std::span<const double> latitude,
                   std::span<const double> longitude, std::span<const double> height, ImageColumns& positions);

/// How far a product's own geolocation grid and this library disagree, at the most.
struct GridComparison {
    std::size_t points = 0;    ///< of the grid
    std::size_t compared = 0;  ///< that lie inside the image and have an answer
    double fromTimes = 0.0;    ///< m on the ground, from the grid's times and ranges
    double fromPixels = 0.0;   ///< m on the ground, from its lines and pixels
    double lines = 0.0;        ///< of the way back
    double pixels = 0.0;
    double seconds = 0.0, range = 0.0;  ///< of the way back to time and slant range (m)
};

GridComparison compareGrid(const products::Product& product);

}  // namespace vorbel::tool

#endif
