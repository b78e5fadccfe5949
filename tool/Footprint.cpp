// Outlines of products and bursts as GeoJSON.

#include "Commands.h"
#include "Geometry.h"
#include "Outline.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <stdexcept>

namespace vorbel::tool {
namespace {

using Json = nlohmann::ordered_json;

/// A part of an image: its outermost lines and pixels.
struct Part {
    double firstLine, lastLine, firstPixel, lastPixel;
};

constexpr int kStepsOfSide = 16;

/// Times and ranges around a part of an image. They change evenly along a side; the lines of an image of bursts go back
/// in time where a burst begins.
GroundColumns around(const products::PixelMapping& mapping, const Part& part) {
    const std::array<products::ImagePosition, 4> corners{{{part.firstLine, part.firstPixel},
                                                          {part.firstLine, part.lastPixel},
                                                          {part.lastLine, part.lastPixel},
                                                          {part.lastLine, part.firstPixel}}};
    GroundColumns points;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const products::RadarPosition a = mapping.toRadar(corners[i]);
        const products::RadarPosition b = mapping.toRadar(corners[(i + 1) % corners.size()]);
        for (int step = 0; step < kStepsOfSide; ++step) {
            const double share = static_cast<double>(step) / kStepsOfSide;
            points.time.push_back(a.time + share * (b.time - a.time));
            points.slantRange.push_back(a.slantRange + share * (b.slantRange - a.slantRange));
        }
    }
    return points;
}

/// The height of the point of the product's own grid that the radar sees nearest to each.
std::vector<double> gridHeights(const products::Product& product, const GroundColumns& points) {
    constexpr double kSpeed = 7000.0;  // m/s, of the beam over the ground, so that seconds compare with metres
    constexpr double kHalfSpeedOfLight = 299792458.0 / 2.0;
    std::vector<double> heights;
    for (std::size_t i = 0; i < points.time.size(); ++i) {
        double nearest = std::numeric_limits<double>::infinity();
        double height = 0.0;
        for (const products::GridPoint& g : product.annotation.grid) {
            const double away = std::hypot((g.time.since(product.mapping.epoch()) - points.time[i]) * kSpeed,
                                           g.slantRangeTime * kHalfSpeedOfLight - points.slantRange[i]);
            if (away < nearest) {
                nearest = away;
                height = g.height;
            }
        }
        heights.push_back(height);
    }
    return heights;
}

Json geometry(const products::Product& product, const Part& part, std::optional<double> height) {
    GroundColumns points = around(product.mapping, part);
    const std::vector<double> heights =
        height ? std::vector<double>(points.time.size(), *height) : gridHeights(product, points);
    locateRadar(product, Surface{}, heights, points);
    std::vector<Corner> corners;
    for (std::size_t i = 0; i < points.status.size(); ++i) {
        if (!hasNumbers(points.status[i])) {
            throw std::runtime_error(product.annotation.source +
                                     ": a point of the outline has no answer: " + nameOf(points.status[i]));
        }
        corners.push_back({points.longitude[i], points.latitude[i]});
    }
    Json polygons = Json::array();
    for (const Ring& ring : outline(corners)) {
        Json list = Json::array();
        for (const Corner& corner : ring) {
            // 1e-7 degrees are a centimetre
            list.push_back({std::round(corner.longitude * 1e7) / 1e7, std::round(corner.latitude * 1e7) / 1e7});
        }
        polygons.push_back(Json::array({list}));
    }
    if (polygons.size() == 1) {
        return {{"type", "Polygon"}, {"coordinates", polygons[0]}};
    }
    return {{"type", "MultiPolygon"}, {"coordinates", polygons}};
}

Json feature(Json geometry, Json properties) {
    return {{"type", "Feature"}, {"geometry", std::move(geometry)}, {"properties", std::move(properties)}};
}

}  // namespace

void footprint(const ProductChoice& choice, bool bursts, std::optional<double> height) {
    Json features = Json::array();
    for (const auto& file : choice.files) {
        const products::Product product = open(choice, file);
        const products::Annotation& a = product.annotation;
        Json properties{{"file", a.source},
                        {"mission", a.mission},
                        {"mode", a.mode},
                        {"type", a.productType},
                        {"swath", a.swath},
                        {"polarisation", a.polarisation},
                        {"pass", a.pass},
                        {"absolute_orbit", a.absoluteOrbit},
                        {"first_time", a.startTime.text()},
                        {"last_time", a.stopTime.text()}};
        if (!bursts) {
            features.push_back(
                feature(geometry(product, {0.0, a.lines - 1.0, 0.0, a.samples - 1.0}, height), properties));
            continue;
        }
        if (a.bursts.empty()) {
            throw std::runtime_error(a.source + " has no bursts");
        }
        for (std::size_t i = 0; i < a.bursts.size(); ++i) {
            const products::Burst& burst = a.bursts[i];
            const double first = static_cast<double>(i) * a.linesPerBurst;
            const bool known = burst.firstValidLine >= 0 && burst.firstValidSample >= 0;
            const Part valid{first + burst.firstValidLine, first + burst.lastValidLine,
                             static_cast<double>(burst.firstValidSample), static_cast<double>(burst.lastValidSample)};
            const Part whole{first, first + a.linesPerBurst - 1.0, 0.0, a.samples - 1.0};
            properties["burst"] = i + 1;
            properties["burst_time"] = burst.time.text();
            features.push_back(feature(geometry(product, known ? valid : whole, height), properties));
        }
    }
    const Json collection{{"type", "FeatureCollection"}, {"features", features}};
    std::printf("%s\n", collection.dump(1).c_str());
}

}  // namespace vorbel::tool
