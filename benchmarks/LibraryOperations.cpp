#include "Operation.h"
#include "Scene.h"

#include "../geometry/Geodetic.h"

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

void rungeKuttaSteps(std::int64_t count) {
    const CVorbel orbit;
    fVector state = startState();
    for (std::int64_t i = 0; i < count; ++i) {
        state = orbit.runceK(state, kStep);
    }
    benchmark::DoNotOptimize(state);
}

std::vector<Operation> propagation() {
    return {
        {"Force model, a quarter of a Runge-Kutta step", [](std::int64_t count) { rungeKuttaSteps((count + 3) / 4); }},
        {"Runge-Kutta step", rungeKuttaSteps},
        adamsStep("Adams step", kGreenwich, 0.0),
        adamsStep("Adams step, drag on", kGreenwich, kDragFactor),
        adamsStep("Adams step, absolute frame", kAbsolute, 0.0),
        {"prog over a revolution",
         [](std::int64_t count) {
             const fVector start = startState();
             CVorbel orbit;
             for (std::int64_t i = 0; i < count; ++i) {
                 orbit.SetProgParam(&start, kStep, kGreenwich);
                 benchmark::DoNotOptimize(orbit.prog(kStep * kRevolutionSteps));
             }
         }},
        {"InitLagrange over 120 s",
         [](std::int64_t count) {
             const fVector start = startState();
             CVorbel orbit;
             for (std::int64_t i = 0; i < count; ++i) {
                 orbit.InitLagrange(&start, kInitInterval, kGreenwich);
                 benchmark::DoNotOptimize(orbit);
             }
         }},
    };
}

/// call(orbit, sample) for the samples in turn.
template <class Sample, class Call>
Operation overSamples(std::string name, const std::array<Sample, kPixels>& samples, Call call,
                      const CVorbel& scene = sceneOrbit()) {
    return {std::move(name), [scene, samples, call](std::int64_t count) {
                CVorbel orbit(scene);
                for (std::int64_t i = 0; i < count; ++i) {
                    benchmark::DoNotOptimize(call(orbit, samples[static_cast<std::size_t>(i) % kPixels]));
                }
            }};
}

template <class Call>
Operation perPixel(const char* name, Call call) {
    return overSamples(name, scenePixels(), call);
}

Operation readOutOfOrder(const char* name, int order) {
    return {name, [scene = sceneOrbit(), pixels = scenePixels(), order](std::int64_t count) {
                CVorbel orbit(scene);
                const FunLagrangeOpt readOut = orbit.GetFunLagrangeOpt(order);
                fVector state;
                for (std::int64_t i = 0; i < count; ++i) {
                    readOut(orbit, state, pixels[static_cast<std::size_t>(i) % kPixels].time);
                    benchmark::DoNotOptimize(state);
                }
            }};
}

std::vector<Operation> denseOutput() {
    return {
        readOutOfOrder("Read-out of order 0", 0),
        readOutOfOrder("Read-out of order 1", 1),
        readOutOfOrder("Read-out of order 2", 2),
        readOutOfOrder("Read-out of order 3", 3),
        readOutOfOrder("Read-out of order 4", 4),
        readOutOfOrder("Read-out of order 5, 6, 7", 7),
        perPixel("Lagrange of order 4",
                 [](CVorbel& orbit, const Pixel& pixel) { return orbit.Lagrange(&pixel.time, 4); }),
        perPixel("Lagrange of order 7",
                 [](CVorbel& orbit, const Pixel& pixel) { return orbit.Lagrange(&pixel.time, 7); }),
        perPixel("Lagrange4",
                 [](CVorbel& orbit, const Pixel& pixel) {
                     fVectorSimple state;
                     orbit.Lagrange4(state, pixel.time);
                     return state;
                 }),
    };
}

std::array<fVector, kPixels> sceneStates(int system) {
    CVorbel orbit = sceneOrbit();
    const std::array<Pixel, kPixels> pixels = scenePixels();
    std::array<fVector, kPixels> states;
    for (std::size_t i = 0; i < states.size(); ++i) {
        states[i] = orbit.Lagrange(&pixels[i].time, 7);
        if (system != kGreenwich) {
            states[i] = orbit.Grnv_ABS(states[i]);
        }
    }
    return states;
}

std::array<Ephemeris_Struct, kPixels> sceneEphemerides() {
    const std::array<fVector, kPixels> states = sceneStates(kAbsolute);
    std::array<Ephemeris_Struct, kPixels> records;
    for (std::size_t i = 0; i < records.size(); ++i) {
        records[i].state = states[i];
        records[i].system = kAbsolute;
        records[i].date = static_cast<int>(states[i].date);
        records[i].time = states[i].time - (states[i].date - 1.0) * 86400.0;
    }
    return records;
}

std::array<Elements_Struct, kPixels> sceneElements() {
    const CVorbel converter;
    const std::array<Ephemeris_Struct, kPixels> records = sceneEphemerides();
    std::array<Elements_Struct, kPixels> elements;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        elements[i].date = records[i].date;
        elements[i].time = records[i].time;
        converter.Ephemeris_to_Elements(&records[i], &elements[i]);
    }
    return elements;
}

std::vector<Operation> frames() {
    const std::array<fVector, kPixels> greenwich = sceneStates(kGreenwich);
    const std::array<fVector, kPixels> absolute = sceneStates(kAbsolute);
    return {
        overSamples("Sidereal angle", greenwich,
                    [](CVorbel& orbit, const fVector& v) { return orbit.StarTime(v.date); }),
        overSamples("Absolute to Greenwich state", absolute,
                    [](CVorbel& orbit, const fVector& v) { return orbit.ABS_Grnv(v); }),
        overSamples("Greenwich to absolute state", greenwich,
                    [](CVorbel& orbit, const fVector& v) { return orbit.Grnv_ABS(v); }),
        overSamples("State to elements", sceneEphemerides(),
                    [](CVorbel& orbit, const Ephemeris_Struct& record) {
                        Elements_Struct elements;
                        orbit.Ephemeris_to_Elements(&record, &elements);
                        return elements;
                    }),
        overSamples("Elements to state", sceneElements(),
                    [](CVorbel& orbit, const Elements_Struct& elements) {
                        Ephemeris_Struct record;
                        record.system = kAbsolute;
                        orbit.Elements_to_Ephemeris(&record, &elements);
                        return record;
                    }),
        overSamples("Velocity-aligned frame", absolute,
                    [](CVorbel& orbit, const fVector& v) {
                        std::array<double[3], 3> m;
                        orbit.matr_bariz(v, m.data());
                        return m;
                    }),
        overSamples("Radius-aligned frame", absolute,
                    [](CVorbel& orbit, const fVector& v) {
                        std::array<double[3], 3> m;
                        orbit.matr_barizRECT(v, m.data());
                        return m;
                    }),
    };
}

struct Target {
    Pixel pixel;
    Geopoint point;
};

std::array<Target, kPixels> sceneTargets() {
    const std::array<Pixel, kPixels> pixels = scenePixels();
    const std::array<Geopoint, kPixels> points = sceneGroundPoints();
    std::array<Target, kPixels> targets;
    for (std::size_t i = 0; i < targets.size(); ++i) {
        targets[i] = {pixels[i], points[i]};
    }
    return targets;
}

std::vector<Operation> geometry() {
    return {
        // not a public operation; a part of those that return a point
        overSamples("Geodetic conversion", sceneGroundPoints(),
                    [](CVorbel&, const Geopoint& p) {
                        return vorbel::groundPoint({p.x, p.y, p.z});
                    }),
        perPixel("GeoLocation",
                 [](CVorbel& orbit, const Pixel& pixel) {
                     return orbit.GeoLocation(pixel.time, pixel.range, kRight, kPitch, kYaw, kRoll);
                 }),
        overSamples(
            "GeoLocation, middle latitude", scenePixels(kMidLatitude),
            [](CVorbel& orbit, const Pixel& pixel) {
                return orbit.GeoLocation(pixel.time, pixel.range, kRight, kPitch, kYaw, kRoll);
            },
            sceneOrbit(kMidLatitude)),
        perPixel("GeoLocation, antenna rolled",
                 [](CVorbel& orbit, const Pixel& pixel) {
                     return orbit.GeoLocation(pixel.time, pixel.range, kRight, kPitch, kYaw, kAntennaRoll);
                 }),
        perPixel("GeoProssess",
                 [](CVorbel& orbit, const Pixel& pixel) {
                     return orbit.GeoProssess(pixel.time, pixel.range, kRangeRate, kRight);
                 }),
        perPixel("centroid",
                 [](CVorbel& orbit, const Pixel& pixel) {
                     return orbit.centroid(pixel.time, pixel.range, kPitch, kYaw, kRoll, kRight);
                 }),
        perPixel("centroid_NEW",
                 [](CVorbel& orbit, const Pixel& pixel) {
                     return orbit.centroid_NEW(pixel.time, pixel.range, kPitch, kYaw, kRoll, kRight);
                 }),
        overSamples("radial_speed", sceneTargets(),
                    [](CVorbel& orbit, const Target& target) {
                        double range = 0.0;
                        const double rate = orbit.radial_speed(target.pixel.time, target.point.lat, target.point.lon,
                                                               target.point.h, &range);
                        return rate + range;
                    }),
        perPixel("attitude",
                 [](CVorbel& orbit, const Pixel& pixel) {
                     double pitch = 0.0;
                     double yaw = 0.0;
                     double roll = 0.0;
                     return orbit.attitude(pixel.time, &pitch, &yaw, &roll);
                 }),
        perPixel("PitchYaw",
                 [](CVorbel& orbit, const Pixel& pixel) {
                     double pitch = 0.0;
                     double yaw = 0.0;
                     orbit.PitchYaw(pixel.time, kNearRange, kRangeRate, kFarRange, kRangeRate, &pitch, &yaw, kRight);
                     return pitch + yaw;
                 }),
    };
}

}  // namespace

std::vector<bench::Operation> bench::libraryOperations() {
    std::vector<Operation> all;
    for (const std::vector<Operation>& family :
         {propagation(), denseOutput(), frames(), geometry(), arrayOperations()}) {
        all.insert(all.end(), family.begin(), family.end());
    }
    return all;
}
