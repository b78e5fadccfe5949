#include "Operation.h"
#include "Scene.h"

#include <benchmark/benchmark.h>

#include <GeographicLib/Geocentric.hpp>

std::vector<bench::Operation> bench::geographicLibOperations() {
    return {{"GeographicLib Geocentric::Reverse", [points = sceneGroundPoints()](std::int64_t count) {
                 const GeographicLib::Geocentric& earth = GeographicLib::Geocentric::WGS84();
                 double latitude = 0.0;
                 double longitude = 0.0;
                 double height = 0.0;
                 for (std::int64_t i = 0; i < count; ++i) {
                     const Geopoint& p = points[static_cast<std::size_t>(i) % kPixels];
                     earth.Reverse(p.x * 1000.0, p.y * 1000.0, p.z * 1000.0, latitude, longitude, height);
                     benchmark::DoNotOptimize(latitude);
                     benchmark::DoNotOptimize(longitude);
                     benchmark::DoNotOptimize(height);
                 }
             }}};
}
