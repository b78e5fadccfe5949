#include "ArrayScene.h"
#include "Reports.h"
#include "Sampling.h"

#include <benchmark/benchmark.h>

#include <cstdio>

namespace {

using namespace bench;

constexpr int kMostSamples = 100;

Operation propagation(double interval) {
    return {"prog", [interval](std::int64_t count) {
                const fVector start = startState();
                CVorbel orbit;
                for (std::int64_t i = 0; i < count; ++i) {
                    orbit.SetProgParam(&start, kStep, kGreenwich);
                    benchmark::DoNotOptimize(orbit.prog(interval));
                }
            }};
}

/// Line after line of the acquisition, each from near to far range.
Operation scene(int lines, int pixels) {
    return {"scene", [lines, pixels, orbit = sceneOrbit()](std::int64_t count) mutable {
                for (std::int64_t i = 0; i < count; ++i) {
                    for (int line = 0; line < lines; ++line) {
                        const double time = startState().time + kFirstLine + (kLastLine - kFirstLine) * line / lines;
                        for (int pixel = 0; pixel < pixels; ++pixel) {
                            const double range = kNearRange + (kFarRange - kNearRange) * pixel / pixels;
                            benchmark::DoNotOptimize(orbit.GeoLocation(time, range, kRight, kPitch, kYaw, kRoll));
                        }
                    }
                }
            }};
}

/// A scene in one call, at height 0: the caller's arrays are 16 bytes a pixel of output and a line of ranges.
Operation arrayScene(std::size_t lines, std::size_t pixels, unsigned threads) {
    using namespace vorbel::scene;
    return {"array scene", [orbit = arrayOrbit(), ranges = lineRanges(pixels), lines, threads,
                            latitude = std::vector<double>(lines * pixels),
                            longitude = std::vector<double>(lines * pixels)](std::int64_t count) mutable {
                std::vector<double> times(lines);
                for (std::size_t i = 0; i < lines; ++i) {
                    times[i] =
                        kFirstLine + (kLastLine - kFirstLine) * static_cast<double>(i) / static_cast<double>(lines);
                }
                for (std::int64_t i = 0; i < count; ++i) {
                    pixelToGround(orbit, LookSide::right, {lines, ranges.size()}, {times, ranges},
                                  {.latitude = latitude, .longitude = longitude}, {.threads = threads});
                }
            }};
}

}  // namespace

void bench::printGrowth() {
    std::puts("| prog over, s | Adams steps |       µs | ns per step |");
    std::puts("|--:|--:|--:|--:|");
    for (const int steps : {1, 10, 100, 1000, 10000, 100000}) {
        const double least =
            leastNanoseconds(propagation(steps * kStep), steps > 1000 ? kMostSamples / 10 : kMostSamples);
        std::printf("| %12.0f | %11d | %8.1f | %11.1f |\n", steps * kStep, steps, least / 1000.0, least / steps);
    }
    std::puts("");
    std::puts("| Lines | Pixels a line | Pixels of the scene |        µs | ns per pixel |");
    std::puts("|--:|--:|--:|--:|--:|");
    for (const int side : {10, 30, 100, 300, 1000}) {
        const double least = leastNanoseconds(scene(side, side), side > 100 ? kMostSamples / 10 : kMostSamples);
        std::printf("| %5d | %13d | %19d | %9.1f | %12.1f |\n", side, side, side * side, least / 1000.0,
                    least / side / side);
    }
    std::puts("");
    std::puts("| Pixels of the scene, in one call | Threads |        µs | ns per pixel |");
    std::puts("|--:|--:|--:|--:|");
    for (const std::size_t lines : {1, 10, 100, 1000, 10000}) {
        const std::size_t pixels = lines == 1 ? 1000 : 10000;
        for (const unsigned threads : {1U, 2U}) {
            const double least = leastNanoseconds(arrayScene(lines, pixels, threads), lines > 100 ? 10 : kMostSamples);
            const auto points = static_cast<double>(lines * pixels);
            std::printf("| %32.0f | %7u | %9.1f | %12.2f |\n", points, threads, least / 1000.0, least / points);
        }
    }
}
