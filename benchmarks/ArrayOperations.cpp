#include "ArrayScene.h"
#include "Operation.h"

#include <algorithm>
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
                for (std::size_t left = static_cast<std::size_t>(count); left > 0;) {
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

}  // namespace

std::vector<bench::Operation> bench::arrayOperations() {
    std::vector<Operation> operations;
    for (const InstructionSet set : instructionSets()) {
        operations.push_back(pixelLines("Pixel to ground", set, false));
        operations.push_back(pixelLines("Pixel to ground and angles", set, true));
    }
    return operations;
}
