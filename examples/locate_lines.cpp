// Finds the ground points of a whole scene from all state vectors of its product, an array of pixels in one call: the
// points of the product's own grid first, then every pixel of a thousand lines, timed.

#include "sentinel1_scene.h"

#include <vorbel/scene/PixelToGround.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <vector>

using namespace vorbel::scene;

const double kLargestDistance = 0.02;  // m; more than that says that something is wrong

/// The product's vectors, in metres. Their times were rounded to a microsecond, worth 4 mm of flight.
Orbit orbitOfScene(const Instant& epoch) {
    std::vector<StateVector> vectors;
    for (const OrbitVector& v : kOrbit) {
        vectors.push_back(
            {epoch.later(v.seconds), {v.x * 1e3, v.y * 1e3, v.z * 1e3, v.vx * 1e3, v.vy * 1e3, v.vz * 1e3}});
    }
    return Orbit::fromVectors(withEvenTimes(vectors), epoch);
}

int main() {
    const Orbit orbit = orbitOfScene(Instant::of(2022, 4, 14));  // so that times are seconds of the day
    std::printf("Ground points of a Sentinel-1 scene from its product's sixteen state vectors, in arrays, beside the\n"
                "points of the product's own grid.\n\n");

    const std::size_t count = std::size(kGrid);
    std::vector<double> time, range, height, latitude(count), longitude(count), incidence(count), x(count), y(count),
        z(count);
    std::vector<Status> status(count);
    for (const GridPoint& p : kGrid) {
        time.push_back(p.seconds);
        range.push_back(p.slantRange * 1e3);
        height.push_back(p.height);
    }
    pixelToGround(orbit, LookSide::right, {1, count}, {.time = time, .slantRange = range, .height = height},
                  {.latitude = latitude,
                   .longitude = longitude,
                   .x = x,
                   .y = y,
                   .z = z,
                   .incidence = incidence,
                   .status = status});

    std::printf("azimuth time     slant range       found       found   incidence  status  distance\n"
                "UTC                       km    lat, deg    lon, deg         deg                 m\n");
    double worst = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        Geopoint found;
        found.x = x[i] / 1e3;
        found.y = y[i] / 1e3;
        found.z = z[i] / 1e3;
        const double metres = distance(found, kGrid[i]);
        std::printf("%s %12.6f  %10.6f  %10.6f  %10.6f  %6s  %8.4f\n", clockTime(time[i]).c_str(), range[i] / 1e3,
                    latitude[i], longitude[i], incidence[i], name(status[i]), metres);
        worst = metres <= worst ? worst : metres;  // takes not-a-number too
    }
    std::printf("worst distance: %.4f m (allowed: %.2f m)\n", worst, kLargestDistance);

    const Extent scene{1000, 20000};
    std::vector<double> lines(scene.lines), samples(scene.samples);
    for (std::size_t i = 0; i < scene.lines; ++i) {
        lines[i] = kGrid[0].seconds + 25.0 * static_cast<double>(i) / static_cast<double>(scene.lines);
    }
    for (std::size_t i = 0; i < scene.samples; ++i) {
        samples[i] = 801.72e3 + 2.5 * static_cast<double>(i);
    }
    std::vector<double> latitudes(scene.lines * scene.samples), longitudes(latitudes.size());
    std::vector<Status> statuses(latitudes.size());
    const auto begin = std::chrono::steady_clock::now();
    pixelToGround(orbit, LookSide::right, scene, {.time = lines, .slantRange = samples},
                  {.latitude = latitudes, .longitude = longitudes, .status = statuses}, {.threads = 0});
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    const auto located = std::count(statuses.begin(), statuses.end(), Status::ok);
    std::fprintf(stderr, "%zu lines of %zu pixels took %.2f s\n", scene.lines, scene.samples, took.count());
    std::printf("located: %td of %zu pixels of a thousand lines\n", located, statuses.size());
    return worst <= kLargestDistance && static_cast<std::size_t>(located) == statuses.size() ? 0 : 1;
}
