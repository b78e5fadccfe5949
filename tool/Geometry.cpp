#include "Geometry.h"

#include <vorbel/scene/GroundToPixel.h>
#include <vorbel/scene/PixelToGround.h>
#include <vorbel/scene/Status.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace vorbel::tool {
namespace {

using scene::Status;

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kDegree = 3.14159265358979323846 / 180.0;  // rad
constexpr double kHalfSpeedOfLight = 299792458.0 / 2.0;     // m/s
constexpr scene::Execution kAllProcessors{0};

/// Metres between two points of equal height, up to some kilometres apart.
double distance(double latitude, double longitude, double height, double otherLatitude, double otherLongitude) {
    constexpr double kSemiMajorAxis = 6378137.0;
    constexpr double kEccentricitySquared = 6.69437999014e-3;
    const double sine = std::sin(latitude * kDegree);
    const double w = 1.0 - kEccentricitySquared * sine * sine;
    const double north = kSemiMajorAxis * (1.0 - kEccentricitySquared) / (w * std::sqrt(w)) + height;
    const double east = (kSemiMajorAxis / std::sqrt(w) + height) * std::cos(latitude * kDegree);
    return std::hypot((otherLatitude - latitude) * kDegree * north,
                      std::remainder(otherLongitude - longitude, 360.0) * kDegree * east);
}

}  // namespace

const char* nameOf(RowStatus status) noexcept {
    return status == kOutsideImage ? "outside_image" : scene::name(static_cast<Status>(status));
}

bool hasNumbers(RowStatus status) noexcept {
    return status != kOutsideImage && scene::located(static_cast<Status>(status));
}

void locateRadar(const products::Product& product, const Surface& surface, std::span<const double> height,
                 GroundColumns& points) {
    const std::size_t n = points.time.size();
    for (auto* column :
         {&points.latitude, &points.longitude, &points.height, &points.incidence, &points.lookAngle, &points.azimuth}) {
        column->resize(n);
    }
    std::vector<Status> status(n);
    const scene::Extent extent{1, n};
    scene::Pixels pixels{points.time, points.slantRange};
    if (height.empty() && surface.terrain) {
        scene::TerrainPoints out;
        out.latitude = points.latitude;
        out.longitude = points.longitude;
        out.height = points.height;
        out.incidence = points.incidence;
        out.lookAngle = points.lookAngle;
        out.status = status;
        scene::pixelToTerrain(product.orbit, product.side, extent, pixels, *surface.terrain, out,
                              scene::AmongSeveral::smallestLookAngle, kAllProcessors);
        std::fill(points.azimuth.begin(), points.azimuth.end(), kNone);
        // the direction follows from the point's height
        scene::GroundPoints direction;
        direction.azimuth = points.azimuth;
        pixels.height = points.height;
        scene::pixelToGround(product.orbit, product.side, extent, pixels, direction, kAllProcessors);
    } else {
        pixels.height = height.empty() ? std::span<const double>(&surface.height, 1) : height;
        scene::GroundPoints out;
        out.latitude = points.latitude;
        out.longitude = points.longitude;
        out.height = points.height;
        out.incidence = points.incidence;
        out.lookAngle = points.lookAngle;
        out.azimuth = points.azimuth;
        out.status = status;
        scene::pixelToGround(product.orbit, product.side, extent, pixels, out, kAllProcessors);
    }
    points.status.resize(n);
    std::transform(status.begin(), status.end(), points.status.begin(),
                   [](Status s) { return static_cast<RowStatus>(s); });
}

void locatePixels(const products::Product& product, const Surface& surface, std::span<const double> line,
                  std::span<const double> pixel, std::span<const double> height, GroundColumns& points) {
    points.time.resize(line.size());
    points.slantRange.resize(line.size());
    product.mapping.toRadar(line, pixel, points.time, points.slantRange);
    locateRadar(product, surface, height, points);
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (std::isnan(points.time[i]) && std::isfinite(line[i]) && std::isfinite(pixel[i])) {
            points.status[i] = kOutsideImage;
        }
    }
}

void projectPoints(const products::Product& product, const Surface& surface, std::span<const double> latitude,
                   std::span<const double> longitude, std::span<const double> height, ImageColumns& positions) {
    const std::size_t n = latitude.size();
    for (auto* column : {&positions.time, &positions.slantRange, &positions.line, &positions.pixel,
                         &positions.otherLine, &positions.height}) {
        column->resize(n);
    }
    std::vector<Status> ground(n, Status::ok);
    if (!height.empty()) {
        std::copy(height.begin(), height.end(), positions.height.begin());
    } else if (surface.terrain) {
        surface.terrain->heights(latitude, longitude, positions.height, ground);
    } else {
        std::fill(positions.height.begin(), positions.height.end(), surface.height);
    }
    std::vector<Status> status(n);
    scene::PixelPositions out;
    out.time = positions.time;
    out.slantRange = positions.slantRange;
    out.status = status;
    scene::groundToPixel(product.orbit, product.side, {latitude, longitude, positions.height}, {}, out, kAllProcessors);
    product.mapping.toImage(positions.time, positions.slantRange, positions.line, positions.pixel, positions.otherLine);
    positions.status.resize(n);
    for (std::size_t i = 0; i < n; ++i) {
        const Status s = ground[i] == Status::ok ? status[i] : ground[i];
        positions.status[i] = static_cast<RowStatus>(s);
        if (s == Status::ok && std::isnan(positions.line[i])) {
            positions.status[i] = kOutsideImage;
            positions.time[i] = kNone;
            positions.slantRange[i] = kNone;
        }
    }
}

GridComparison compareGrid(const products::Product& product) {
    const auto& grid = product.annotation.grid;
    GridComparison result;
    result.points = grid.size();
    std::vector<double> line;
    std::vector<double> pixel;
    std::vector<double> latitude;
    std::vector<double> longitude;
    std::vector<double> height;
    GroundColumns fromTimes;
    for (const products::GridPoint& g : grid) {
        line.push_back(g.line);
        pixel.push_back(g.pixel);
        latitude.push_back(g.latitude);
        longitude.push_back(g.longitude);
        height.push_back(g.height);
        fromTimes.time.push_back(g.time.since(product.mapping.epoch()));
        fromTimes.slantRange.push_back(g.slantRangeTime * kHalfSpeedOfLight);
    }
    const Surface ellipsoid;
    GroundColumns fromPixels;
    ImageColumns back;
    locateRadar(product, ellipsoid, height, fromTimes);
    locatePixels(product, ellipsoid, line, pixel, height, fromPixels);
    projectPoints(product, ellipsoid, latitude, longitude, height, back);
    for (std::size_t i = 0; i < grid.size(); ++i) {
        const auto off = [&](const GroundColumns& points) {
            return distance(latitude[i], longitude[i], height[i], points.latitude[i], points.longitude[i]);
        };
        if (hasNumbers(fromTimes.status[i])) {
            result.fromTimes = std::max(result.fromTimes, off(fromTimes));
        }
        if (!hasNumbers(fromPixels.status[i]) || !hasNumbers(back.status[i])) {
            continue;
        }
        ++result.compared;
        result.fromPixels = std::max(result.fromPixels, off(fromPixels));
        // the point may lie in the overlap of two bursts
        const double lines = std::fmin(std::abs(back.line[i] - line[i]), std::abs(back.otherLine[i] - line[i]));
        result.lines = std::max(result.lines, lines);
        result.pixels = std::max(result.pixels, std::abs(back.pixel[i] - pixel[i]));
        result.seconds = std::max(result.seconds, std::abs(back.time[i] - fromTimes.time[i]));
        result.range = std::max(result.range, std::abs(back.slantRange[i] - fromTimes.slantRange[i]));
    }
    return result;
}

}  // namespace vorbel::tool
