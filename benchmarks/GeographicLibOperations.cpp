#include "Operation.h"
#include "Scene.h"

#include <benchmark/benchmark.h>

#include <GeographicLib/Geocentric.hpp>

#include <algorithm>
#include <cmath>

namespace {

using namespace bench;

struct Geodetic {
    double latitude;
    double longitude;
    double height;
};

Geodetic reverse(const GeographicLib::Geocentric& earth, const Geopoint& p) {
    Geodetic g;
    earth.Reverse(p.x * 1000.0, p.y * 1000.0, p.z * 1000.0, g.latitude, g.longitude, g.height);
    return g;
}

}  // namespace

std::vector<bench::Operation> bench::geographicLibOperations() {
    return {{"GeographicLib Geocentric::Reverse", [points = sceneGroundPoints()](std::int64_t count) {
                 const GeographicLib::Geocentric& earth = GeographicLib::Geocentric::WGS84();
                 for (std::int64_t i = 0; i < count; ++i) {
                     benchmark::DoNotOptimize(reverse(earth, points[static_cast<std::size_t>(i) % kPixels]));
                 }
             }}};
}

std::vector<bench::Agreement> bench::geographicLibAgreement() {
    constexpr double kMetresPerDegree = 111320.0;
    double most = 0.0;
    for (const Geopoint& p : sceneGroundPoints()) {
        const Geodetic g = reverse(GeographicLib::Geocentric::WGS84(), p);
        const double east = std::remainder(p.lon - g.longitude, 360.0) * std::cos(p.lat / 57.3);
        most = std::max({most, std::abs(p.lat - g.latitude) * kMetresPerDegree, std::abs(east) * kMetresPerDegree,
                         std::abs(p.h * 1000.0 - g.height)});
    }
    return {{"Geocentric::Reverse, GeographicLib " GEOGRAPHICLIB_VERSION_STRING, most}};
}
