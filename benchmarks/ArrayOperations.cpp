#include "ArrayScene.h"
#include "Operation.h"

#include <vorbel/scene/GroundToPixel.h>
#include <vorbel/scene/Terrain.h>

#include <algorithm>
#include <memory>
#include <string>

namespace {

using namespace bench;
using namespace vorbel::scene;

/// Line after line of 20,000 pixels; a repetition is one pixel.
Operation pixelLines(const char* name, InstructionSet set, bool angles) {
    struct Room {
        std::vector<double> latitude = std::vector<double>(kLine);
        std::vector<double> longitude = latitude;
        std::vector<double> incidence = latitude;
        std::vector<double> lookAngle = latitude;
        std::vector<double> azimuth = latitude;
        std::vector<Status> status = std::vector<Status>(kLine);
    };
    return {std::string(name) + ", " + vorbel::scene::name(set),
            [orbit = arrayOrbit(), ranges = lineRanges(), heights = lineHeights(), room = Room(), set,
             angles](std::int64_t count) mutable {
                for (auto left = static_cast<std::size_t>(count); left > 0;) {
                    const std::size_t pixels = std::min(left, kLine);
                    const auto part = [pixels](std::vector<double>& values) { return std::span(values).first(pixels); };
                    const double time = kFirstLine + 1e-3 * static_cast<double>(left % 10000);
                    GroundPoints points{.latitude = part(room.latitude),
                                        .longitude = part(room.longitude),
                                        .status = std::span(room.status).first(pixels)};
                    if (angles) {
                        points.incidence = part(room.incidence);
                        points.lookAngle = part(room.lookAngle);
                        points.azimuth = part(room.azimuth);
                    }
                    pixelToGround(orbit, LookSide::right, {1, pixels}, {{&time, 1}, part(ranges), {}, part(heights)},
                                  points, {1, set});
                    left -= pixels;
                }
            }};
}

/// Points of the ground, and where they are seen.
struct Targets {
    std::vector<double> latitude = std::vector<double>(kLine);
    std::vector<double> longitude = latitude;
    std::vector<double> height = lineHeights();
    std::vector<double> x = latitude;
    std::vector<double> y = latitude;
    std::vector<double> z = latitude;
    std::vector<double> time = latitude;
    std::vector<double> range = latitude;
    std::vector<Status> status = std::vector<Status>(kLine);
    std::vector<double> rate = std::vector<double>(kLine, 1e3 * kRangeRate);
};

enum class Given { cartesian, geodetic, rangeRate, anyOrder };

/// A row of a raster, which crosses the swath within three seconds of flight, or points of 200 s in any order.
Operation groundPoints(const char* name, InstructionSet set, Given given) {
    const Orbit orbit = arrayOrbit().extended(0.0, 80.0);
    Targets t;
    std::vector<double> times(kLine);
    std::vector<double> ranges = lineRanges();
    for (std::size_t i = 0; i < kLine; ++i) {
        times[i] = kFirstLine + 3.0 * static_cast<double>(i) / static_cast<double>(kLine);
        if (given == Given::anyOrder) {
            times[i] = 200.0 * static_cast<double>(i * 7919 % kLine) / static_cast<double>(kLine);
        }
    }
    pixelToGround(orbit, LookSide::right, {1, kLine}, {times, ranges, t.rate, t.height},
                  {.latitude = t.latitude, .longitude = t.longitude, .x = t.x, .y = t.y, .z = t.z});
    return {std::string(name) + ", " + vorbel::scene::name(set), [orbit, t, set, given](std::int64_t count) mutable {
                for (auto left = static_cast<std::size_t>(count); left > 0;) {
                    const std::size_t points = std::min(left, kLine);
                    const auto part = [points](const std::vector<double>& v) { return std::span(v).first(points); };
                    const GroundTargets targets =
                        given == Given::geodetic ? GroundTargets{part(t.latitude), part(t.longitude), part(t.height)}
                                                 : GroundTargets{.x = part(t.x), .y = part(t.y), .z = part(t.z)};
                    groundToPixel(orbit, LookSide::right, targets,
                                  given == Given::rangeRate ? Doppler{part(t.rate)} : Doppler{},
                                  {.time = std::span(t.time).first(points),
                                   .slantRange = std::span(t.range).first(points),
                                   .status = std::span(t.status).first(points)},
                                  {1, set});
                    left -= points;
                }
            }};
}

constexpr std::size_t kLines = 16;  // in a call, since each is a start for the next

Operation terrainLines(const char* name, InstructionSet set, const std::shared_ptr<const RollingLand>& land) {
    struct Room {
        std::vector<double> latitude = std::vector<double>(kLines * kLine);
        std::vector<double> longitude = latitude;
        std::vector<double> height = latitude;
        std::vector<Status> status = std::vector<Status>(kLines * kLine);
    };
    std::vector<double> times(kLines);
    for (std::size_t i = 0; i < kLines; ++i) {
        times[i] = kFirstLine + 2e-3 * static_cast<double>(i);
    }
    return {std::string(name) + ", " + vorbel::scene::name(set),
            [orbit = arrayOrbit(), terrain = Terrain(land->heights, land->grid), land, ranges = lineRanges(), times,
             room = Room(), set](std::int64_t count) mutable {
                for (auto left = static_cast<std::size_t>(count); left > 0;) {
                    const std::size_t lines = std::clamp<std::size_t>(left / kLine, 1, kLines);
                    const std::size_t pixels = std::min(left, lines * kLine);
                    const auto part = [pixels](auto& values) { return std::span(values).first(pixels); };
                    pixelToTerrain(orbit, LookSide::right, {lines, pixels / lines},
                                   {std::span(times).first(lines), std::span(ranges).first(pixels / lines)}, terrain,
                                   {.latitude = part(room.latitude),
                                    .longitude = part(room.longitude),
                                    .height = part(room.height),
                                    .status = part(room.status)},
                                   AmongSeveral::smallestLookAngle, {1, set});
                    left -= pixels;
                }
            },
            static_cast<std::int64_t>(kLines * kLine)};
}

}  // namespace

std::vector<bench::Operation> bench::arrayOperations() {
    const auto land = std::make_shared<const RollingLand>();
    std::vector<Operation> operations;
    for (const InstructionSet set : instructionSets()) {
        operations.push_back(pixelLines("Pixel to ground", set, false));
        operations.push_back(pixelLines("Pixel to ground and angles", set, true));
        operations.push_back(groundPoints("Ground to pixel", set, Given::cartesian));
        operations.push_back(groundPoints("Ground to pixel from latitude", set, Given::geodetic));
        operations.push_back(groundPoints("Ground to pixel with range rate", set, Given::rangeRate));
        operations.push_back(groundPoints("Ground to pixel in any order", set, Given::anyOrder));
        operations.push_back(terrainLines("Pixel to terrain", set, land));
    }
    return operations;
}
