// The orbit over a span: between vectors that were kept, along the class's model, and beyond the vectors.

#include "SceneMeasures.h"

#include "Measures.h"
#include "Reference.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <span>

namespace accuracy {

namespace {

using namespace vorbel;
using scene::Orbit;
using scene::State;
using scene::StateVector;
using Vectors = std::vector<StateVector>;

double apart(const State& a, const State& b) {
    return std::hypot(a.x - b.x, a.y - b.y, a.z - b.z);
}

double speedApart(const State& a, const State& b) {
    return std::hypot(a.vx - b.vx, a.vy - b.vy, a.vz - b.vz);
}

double fromOrbit(const StateVector& vector, const Orbit& orbit) {
    return apart(vector.state, orbit.at(vector.time.since(orbit.epoch())));
}

State inMetres(const Motion& m) {
    return {metres(m.r.x), metres(m.r.y), metres(m.r.z), metres(m.v.x), metres(m.v.y), metres(m.v.z)};
}

/// At an instant of its own, which is second 0 of what follows from it.
StateVector sampleVector() {
    return {scene::Instant::of(2022, 4, 14), inMetres(motionOf(sampleState(0)))};
}

/// The exact motion of the class's model through the sample vector, as it is after rounding to metres.
Motion exactMotion() {
    return (1 / Real(kMetres)) * motionOf(sampleVector().state);
}

/// The largest distances of what a list leaves out when every so many vectors are kept.
Spread leftOut(const Vectors& vectors, std::size_t every) {
    Vectors kept;
    for (std::size_t i = 0; i < vectors.size(); i += every) {
        kept.push_back(vectors[i]);
    }
    const Orbit orbit = Orbit::fromVectors(kept);
    Spread spread;
    for (std::size_t i = 0; i < vectors.size() && vectors[i].time <= kept.back().time; ++i) {
        if (i % every != 0) {
            spread.add(fromOrbit(vectors[i], orbit));
        }
    }
    return spread;
}

/// With derivatives of the positions for velocities.
Vectors withDerivatives(const Vectors& vectors) {
    constexpr double kArm = 0.05;  // s
    const Orbit orbit = Orbit::fromVectors(vectors).extended(1, 1);
    Vectors result = vectors;
    for (StateVector& vector : result) {
        const double time = vector.time.since(orbit.epoch());
        const State before = orbit.at(time - kArm);
        const State after = orbit.at(time + kArm);
        vector.state.vx = (after.x - before.x) / (2 * kArm);
        vector.state.vy = (after.y - before.y) / (2 * kArm);
        vector.state.vz = (after.z - before.z) / (2 * kArm);
    }
    return result;
}

/// Whether the second file begins within the first one's span and ends after it.
bool goesOn(const products::OrbitFile& first, const products::OrbitFile& second) {
    const scene::Instant end = first.vectors.back().time;
    return first.mission == second.mission && first.vectors.front().time < second.vectors.front().time &&
           second.vectors.front().time < end && end < second.vectors.back().time;
}

Overlap overlapOf(const products::OrbitFile& first, const products::OrbitFile& second) {
    constexpr double kMinute = 60;
    const scene::Instant epoch = first.vectors.front().time;
    const Orbit alone = Orbit::fromVectors(first.vectors, epoch);
    const Orbit other = Orbit::fromVectors(second.vectors, epoch);
    Vectors all = first.vectors;
    all.insert(all.end(), second.vectors.begin(), second.vectors.end());
    const Orbit joint = Orbit::fromVectors(all, epoch);

    Overlap result;
    result.names = first.type + " and " + second.type + " of " + epoch.text(0).substr(0, 10);
    const auto next = std::find_if(first.vectors.begin(), first.vectors.end(),
                                   [&](const StateVector& v) { return v.time > second.vectors.front().time; });
    result.offset = second.vectors.front().time.since(std::prev(next)->time);
    const double end = alone.span().last;
    for (const StateVector& vector : second.vectors) {
        if (vector.time.since(epoch) <= end) {
            result.vectors.add(fromOrbit(vector, alone));
        }
    }
    const auto compare = [&](double from, double to, const Orbit& with) {
        Spread spread;
        for (double time = from; time <= to; time += 1) {
            spread.add(apart(joint.at(time), with.at(time)));
        }
        return spread;
    };
    result.first = compare(0, end - kMinute, alone);
    result.lastMinute = compare(end - kMinute, end, alone);
    result.between = compare(end, end + kMinute, other);
    result.second = compare(end + kMinute, joint.span().last, other);
    return result;
}

}  // namespace

Thinned thinned(const Folder& folder, int spacing) {
    constexpr int kSpacing = 10;  // s, of the vectors in orbit files
    const auto every = static_cast<std::size_t>(spacing / kSpacing);
    Thinned result;
    for (const products::OrbitFile& file : folder.orbitFiles) {
        if (file.vectors.size() <= every) {
            continue;
        }
        result.fromAll.add(leftOut(file.vectors, every));
        for (std::size_t i = 0; i + every < file.vectors.size(); i += every) {
            const Vectors some(&file.vectors[i], &file.vectors[i + every] + 1);
            result.fromTwo.add(leftOut(some, every));
        }
    }
    return result;
}

ProductOrbit productOrbit(const NamedProduct& product) {
    const Vectors& written = product.product.annotation.vectors;
    const Vectors even = scene::withEvenTimes(written);
    NamedProduct derived = product;
    derived.product.orbit = Orbit::fromVectors(withDerivatives(even), product.product.orbit.epoch());
    return {leftOut(written, 2), leftOut(even, 2), gridError(derived).point, gridError(product).point};
}

MotionSpread modelOrbit(int spacing) {
    constexpr int kMost = 40;
    constexpr int kParts = 8;  // of a spacing
    const J2Model model = libraryModel(0);
    const Real part = static_cast<Real>(spacing) / kParts;
    std::vector<Motion> exact{exactMotion()};
    while (exact.size() <= kMost * kParts) {
        exact.push_back(propagated(exact.back(), part, model));
    }
    MotionSpread spread;
    Vectors vectors;
    for (int count = 1; count <= kMost; ++count) {
        const double seconds = spacing * (count - 1.0);
        const auto node = static_cast<std::size_t>(count - 1) * kParts;
        vectors.push_back({sampleVector().time.later(seconds), inMetres(exact[node])});
        if (count > 1) {
            const Orbit orbit = Orbit::fromVectors(vectors);
            for (std::size_t i = 0; i <= node; ++i) {
                const State truth = inMetres(exact[i]);
                const State found = orbit.at(static_cast<double>(static_cast<Real>(i) * part));
                spread.position.add(apart(found, truth));
                spread.velocity.add(speedApart(found, truth));
            }
        }
    }
    return spread;
}

Spread propagatedError(double reach) {
    constexpr int kParts = 240;
    const J2Model model = libraryModel(0);
    const Orbit orbit = Orbit::propagated(sampleVector(), 0, reach);
    const Real part = static_cast<Real>(reach) / kParts;
    Motion exact = exactMotion();
    Spread spread;
    for (int i = 1; i <= kParts; ++i) {
        exact = propagated(exact, part, model);
        spread.add(apart(orbit.at(static_cast<double>(i * part)), inMetres(exact)));
    }
    return spread;
}

Spread readOutDifference(int newestSteps) {
    constexpr double kStep = 60;
    constexpr int kParts = 64;  // of a step
    fVector start = sampleState(0);
    start.time = 0;
    CVorbel trajectory;
    trajectory.InitLagrange(&start, 2 * kStep, 0);
    const Orbit orbit = Orbit::fromTrajectory(trajectory);
    Spread spread;
    for (int i = 0; i <= newestSteps * kParts; ++i) {
        const double back = i * kStep / kParts;
        const double time = 2 * kStep - back;
        const fVector read = trajectory.Lagrange(&time, 7);
        spread.add(apart(orbit.at(-back), inMetres(motionOf(read))));
    }
    return spread;
}

Spread beyondVectors(const Folder& folder, double seconds) {
    constexpr std::size_t kKept = 8;
    Spread spread;
    for (const products::OrbitFile& file : folder.orbitFiles) {
        for (std::size_t end = kKept; end < file.vectors.size(); ++end) {
            const std::span<const StateVector> kept(&file.vectors[end - kKept], kKept);
            const StateVector* later =
                std::find_if(&file.vectors[end], &file.vectors.back() + 1, [&](const StateVector& v) {
                    return std::abs(v.time.since(kept.back().time) - seconds) < 0.5;
                });
            if (later != &file.vectors.back() + 1) {
                spread.add(fromOrbit(*later, Orbit::fromVectors(kept).extended(0, seconds + 1)));
            }
        }
    }
    return spread;
}

std::optional<Overlap> overlap(const Folder& folder) {
    for (const products::OrbitFile& first : folder.orbitFiles) {
        for (const products::OrbitFile& second : folder.orbitFiles) {
            if (goesOn(first, second)) {
                return overlapOf(first, second);
            }
        }
    }
    return {};
}

}  // namespace accuracy
