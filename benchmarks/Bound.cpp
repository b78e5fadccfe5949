#include "PlainForceModel.h"
#include "Reports.h"
#include "Sampling.h"

#include <benchmark/benchmark.h>

#include <cstdio>

// What an Adams step cannot go below, however it is coded: an addition has to wait for the sum before it, since the
// order of the additions is part of the result.
//
// The corrected position takes its newest term from the predicted velocity, not from the acceleration at the predicted
// state. So two chains of the same length run side by side, and only the rotation of the frame links them, in their
// last operations:
//   acceleration at the corrected state -> predicted velocity -> corrected position -> acceleration there
//   corrected velocity -> predicted position -> acceleration there -> corrected velocity
// A processor that looks far enough ahead works on both at once; the chain below is the first.

namespace {

using namespace bench;

constexpr int kSamples = 2000;

struct Triple {
    double x;
    double y;
    double z;
};

/// What a step has at hand before the newest derivative is known, for one of the three components.
struct Ready {
    double newestWeight;
    double products[7];  // older derivatives times their weights
    double step;
    double velocity;
    double weight;    // of the predicted velocity in the corrected position
    double position;  // corrected but for that term

    double correctedPosition(double acceleration) const {
        double sum = 0.0 + acceleration * newestWeight;
        for (const double product : products) {
            sum = sum + product;
        }
        return weight * (sum * step + velocity) + position;
    }
};

struct Chain {
    Ready x;
    Ready y;
    Ready z;
    Triple acceleration{0.0, 0.0, 0.0};

    /// The weight is not that of the method, so that the loop settles also without the force model in it.
    explicit Chain(double newestWeight) {
        const fVector s = startState();
        const auto ready = [&](double position, double velocity) {
            return Ready{newestWeight, {1e-9, 2e-9, 3e-9, 4e-9, 5e-9, 6e-9, 7e-9}, kStep, velocity, 3.04, position};
        };
        x = ready(s.x, s.vx);
        y = ready(s.y, s.vy);
        z = ready(s.z, s.vz);
        benchmark::DoNotOptimize(x);
        benchmark::DoNotOptimize(y);
        benchmark::DoNotOptimize(z);
    }

    Triple correctedPosition() const {
        return {x.correctedPosition(acceleration.x), y.correctedPosition(acceleration.y),
                z.correctedPosition(acceleration.z)};
    }
};

Operation sumsAlone() {
    return {"", [](std::int64_t count) {
                Chain chain(1e-6);
                for (std::int64_t i = 0; i < count; ++i) {
                    chain.acceleration = chain.correctedPosition();
                }
                benchmark::DoNotOptimize(chain.acceleration);
            }};
}

Operation sumsAndForceModel() {
    return {"", [](std::int64_t count) {
                Chain chain(3.59);
                for (std::int64_t i = 0; i < count; ++i) {
                    const Triple r = chain.correctedPosition();
                    PlainState rate;
                    plainForceModel({r.x, r.y, r.z, chain.x.velocity, chain.y.velocity, chain.z.velocity}, rate, 0.0);
                    chain.acceleration = {rate[3], rate[4], rate[5]};
                }
                benchmark::DoNotOptimize(chain.acceleration);
            }};
}

/// The sines, cosines and arcs that stand one after the other in a GeoLocation of four passes. Those of the attitude
/// and of the longitude stand beside the chain and are left out.
Operation sinesAndArcs() {
    return {"", [](std::int64_t count) {
                constexpr double kSmall = 1e-12;
                double latitude = 0.9;
                benchmark::DoNotOptimize(latitude);
                for (std::int64_t i = 0; i < count; ++i) {
                    double theta = std::acos(0.85 + kSmall * latitude);
                    for (int pass = 0; pass < 4; ++pass) {
                        theta = theta + kSmall * (std::sin(theta) + std::cos(theta));
                    }
                    const double geocentric = std::asin(0.22 + theta);
                    latitude = geocentric + kSmall * (std::sin(geocentric) + std::cos(geocentric));
                }
                benchmark::DoNotOptimize(latitude);
            }};
}

/// Each call for a time that the result of the call before enters, with no weight.
Operation geoLocationInChain() {
    return {"", [scene = sceneOrbit()](std::int64_t count) {
                CVorbel orbit(scene);
                const double time = scenePixels()[0].time;
                double latitude = 0.0;
                for (std::int64_t i = 0; i < count; ++i) {
                    latitude = orbit.GeoLocation(time + 0.0 * latitude, kNearRange, kRight, kPitch, kYaw, kRoll).lat;
                }
                benchmark::DoNotOptimize(latitude);
            }};
}

/// Additions of which each waits for the one before: a clock cycle each.
Operation clockCycles() {
    return {"", [](std::int64_t count) {
                std::int64_t sum = count;
                const std::int64_t increment = count | 1;
                for (std::int64_t i = 0; i < count; i += 8) {
                    for (int k = 0; k < 8; ++k) {
                        sum += increment;
                        asm volatile("" : "+r"(sum));  // kept in its register, and not taken together
                    }
                }
            }};
}

}  // namespace

void bench::printBound(const std::vector<Operation>& operations) {
    const double sums = leastNanoseconds(sumsAlone(), kSamples);
    const double chain = leastNanoseconds(sumsAndForceModel(), kSamples);
    const double cycle = leastNanoseconds(clockCycles(), kSamples);

    const auto print = [cycle](const char* name, double ns) {
        std::printf("| %-63s | %5.1f | %6.0f |\n", name, ns, ns / cycle);
    };
    const auto printOperation = [&](const char* name) {
        for (const Operation& operation : operations) {
            if (operation.name == name) {
                print(name, leastNanoseconds(operation, kSamples));
            }
        }
    };
    std::printf("| %-63s |    ns | cycles |\n|:--|--:|--:|\n", "One step");
    print("Ordered sum of the predicted velocity, then corrected position", sums);
    print("Force model, from position to acceleration", chain - sums);
    print("Both: the chain that no step goes below", chain);
    printOperation("Adams step");
    printOperation("odeint adams_bashforth_moulton<8> step");

    std::printf("\n| %-63s |    ns | cycles |\n|:--|--:|--:|\n", "One pixel");
    printOperation("Lagrange of order 7");
    print("Sines, cosines and arcs in the chain of a GeoLocation", leastNanoseconds(sinesAndArcs(), kSamples));
    printOperation("Geodetic conversion");
    print("GeoLocation, each call waiting for the one before", leastNanoseconds(geoLocationInChain(), kSamples));
    printOperation("GeoLocation");
    printOperation("GeographicLib Geocentric::Reverse");
}
