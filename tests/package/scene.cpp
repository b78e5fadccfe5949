// What an application does with the installed scene layer: locate a pixel, and read the refusal of a call.

#include <vorbel/scene/PixelToGround.h>

#include <cmath>
#include <cstdio>
#include <stdexcept>

using namespace vorbel::scene;

int main() {
    // A polar orbit 700 km up, over the equator at longitude 0 after 5 s, going north.
    const double radius = 7078e3;
    const double rate = 7.5e3 / radius;
    StateVector vectors[2];
    for (int i = 0; i < 2; ++i) {
        const double angle = rate * (10 * i - 5);
        vectors[i].time = Instant::of(2024, 2, 29, 23, 59, 10.0 * i);
        vectors[i].state = {radius * std::cos(angle),         0.0, radius * std::sin(angle),
                            -radius * rate * std::sin(angle), 0.0, radius * rate * std::cos(angle)};
    }
    const Orbit orbit = Orbit::fromVectors(vectors);

    const double time = 5.0;
    const double range = 850e3;
    double x = 0.0, y = 0.0, z = 0.0;
    Status status{};
    GroundPoints points;
    points.x = {&x, 1};
    points.y = {&y, 1};
    points.z = {&z, 1};
    points.status = {&status, 1};
    pixelToGround(orbit, LookSide::right, {1, 1}, {{&time, 1}, {&range, 1}}, points);
    const State satellite = orbit.at(time);
    const double found = std::hypot(x - satellite.x, y - satellite.y, z - satellite.z);
    std::printf("%s, %.7f m away\n", name(status), found);

    try {
        Orbit::fromVectors({vectors, 1});
    } catch (const std::invalid_argument& refusal) {
        std::printf("%s\n", refusal.what());
        return status == Status::ok && std::abs(found - range) < 1e-6 && y > 0.0 ? 0 : 1;
    }
    return 1;
}
