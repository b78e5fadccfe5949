#include "Operation.h"
#include "Scene.h"

#include <benchmark/benchmark.h>

namespace {

using namespace bench;

/// An object that has just made its first step, ready for adams().
CVorbel startedOrbit(int system, double drag) {
    CVorbel orbit;
    fVector start = startState();
    start.drag = drag;
    if (system != kGreenwich) {
        start = orbit.Grnv_ABS(start);
    }
    orbit.SetProgParam(&start, kStep, system);
    orbit.prog(kStep);
    return orbit;
}

Operation adamsStep(const char* name, int system, double drag) {
    return {name, [started = startedOrbit(system, drag)](std::int64_t count) {
                CVorbel orbit(started);
                fVector& state = *orbit.GetfVector(0);
                for (std::int64_t i = 0; i < count; ++i) {
                    orbit.adams(state, kStep);
                }
                benchmark::DoNotOptimize(state);
            }};
}

Operation rungeKuttaStep() {
    return {"Runge-Kutta step", [](std::int64_t count) {
                const CVorbel orbit;
                fVector state = startState();
                for (std::int64_t i = 0; i < count; ++i) {
                    state = orbit.runceK(state, kStep);
                }
                benchmark::DoNotOptimize(state);
            }};
}

Operation revolution() {
    return {"prog over a revolution", [](std::int64_t count) {
                const fVector start = startState();
                CVorbel orbit;
                for (std::int64_t i = 0; i < count; ++i) {
                    orbit.SetProgParam(&start, kStep, kGreenwich);
                    benchmark::DoNotOptimize(orbit.prog(kStep * kRevolutionSteps));
                }
            }};
}

Operation initLagrange() {
    return {"InitLagrange over 120 s", [](std::int64_t count) {
                const fVector start = startState();
                CVorbel orbit;
                for (std::int64_t i = 0; i < count; ++i) {
                    orbit.InitLagrange(&start, kInitInterval, kGreenwich);
                    benchmark::DoNotOptimize(orbit);
                }
            }};
}

/// call(orbit, pixel) for the pixels of the scene in turn.
template <class Call>
Operation perPixel(const char* name, Call call) {
    return {name, [call](std::int64_t count) {
                static const std::array<Pixel, kPixels> pixels = scenePixels();
                CVorbel orbit = sceneOrbit();
                for (std::int64_t i = 0; i < count; ++i) {
                    benchmark::DoNotOptimize(call(orbit, pixels[static_cast<std::size_t>(i) % kPixels]));
                }
            }};
}

}  // namespace

std::vector<bench::Operation> bench::libraryOperations() {
    return {
        adamsStep("Adams step", kGreenwich, 0.0),
        adamsStep("Adams step, drag on", kGreenwich, kDragFactor),
        adamsStep("Adams step, absolute frame", kAbsolute, 0.0),
        rungeKuttaStep(),
        revolution(),
        initLagrange(),
        perPixel("Lagrange of order 7",
                 [](CVorbel& orbit, const Pixel& pixel) { return orbit.Lagrange(&pixel.time, 7); }),
        perPixel("Lagrange of order 7, by reference",
                 [](CVorbel& orbit, const Pixel& pixel) {
                     fVector state;
                     orbit.Lagrange(state, &pixel.time, 7);
                     return state;
                 }),
        perPixel("GeoLocation",
                 [](CVorbel& orbit, const Pixel& pixel) {
                     return orbit.GeoLocation(pixel.time, pixel.range, kRight, kPitch, kYaw, kRoll);
                 }),
    };
}
