// The orbit over a span: against fine integration, real vectors and the class's own read-out.

#include "../TestOrbits.h"

#include <vorbel/scene/Orbit.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace orbit_test {

using namespace vorbel::scene;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kNanometre = 1e-9;

using Vectors = std::vector<StateVector>;

State inMetres(const fVector& v) {
    return {v.x / kMetre, v.y / kMetre, v.z / kMetre, v.vx / kMetre, v.vy / kMetre, v.vz / kMetre};
}

double between(const State& a, const State& b) {
    return std::hypot(a.x - b.x, a.y - b.y, a.z - b.z);
}

double speedBetween(const State& a, const State& b) {
    return std::hypot(a.vx - b.vx, a.vy - b.vy, a.vz - b.vz);
}

/// The product's sixteen vectors, as its annotation writes them.
Vectors product() {
    Vectors vectors;
    for (const OrbitVector& v : kOrbit) {
        const double microseconds = std::round((v.seconds - std::floor(v.seconds)) * 1e6);
        const Instant second = Instant::of(2022, 4, 14).later(std::floor(v.seconds));
        vectors.push_back({{second.seconds, microseconds / 1e6}, inMetres(stateOf(v))});
    }
    return vectors;
}

const Instant kStart = product().front().time;

/// The class's model every half second, by steps of Runge-Kutta.
const std::vector<State>& model() {
    static const std::vector<State> states = [] {
        fVector state = stateOf(kOrbit[0]);
        std::vector<State> result{inMetres(state)};
        const CVorbel greenwich;
        for (int i = 0; i < 1200; ++i) {
            state = greenwich.runceK(state, 0.5);
            result.push_back(inMetres(state));
        }
        return result;
    }();
    return states;
}

StateVector modelAt(int seconds) {
    return {kStart.later(seconds), model()[2 * static_cast<std::size_t>(seconds)]};
}

void expectModel(const Orbit& orbit, double position, double velocity, const std::string& what) {
    double worst = 0.0;
    double worstSpeed = 0.0;
    for (double t = orbit.span().first; t <= orbit.span().last; t += 0.5) {
        const State& truth = model()[static_cast<std::size_t>(2.0 * t)];
        worst = std::max(worst, between(orbit.at(t), truth));
        worstSpeed = std::max(worstSpeed, speedBetween(orbit.at(t), truth));
    }
    EXPECT_LT(worst, position) << what << ", m";
    EXPECT_LT(worstSpeed, velocity) << what << ", m/s";
}

TEST(OrbitFromVectors, FollowsTheModel) {
    for (const int spacing : {1, 10, 30, 60}) {
        for (const int count : {2, 3, 4, 5, 7, 8, 10}) {
            Vectors vectors;
            for (int i = 0; i < count; ++i) {
                vectors.push_back(modelAt(i * spacing));
            }
            expectModel(Orbit::fromVectors(vectors), 20 * kNanometre, 2 * kNanometre,
                        std::to_string(count) + " vectors " + std::to_string(spacing) + " s apart");
        }
    }
    Vectors uneven;
    for (const int t : {0, 10, 20, 30, 150, 152, 160, 163, 175, 400, 600}) {
        uneven.push_back(modelAt(t));
    }
    expectModel(Orbit::fromVectors(uneven), 1e-3, 1e-5, "uneven vectors");

    Vectors rounded;  // a gap, over which a polynomial through vectors of both sides would multiply their rounding
    for (const int t : {0, 1, 2, 3, 4, 5, 6, 26, 27, 28, 29, 30, 31, 32}) {
        rounded.push_back(modelAt(t));
        for (double State::*field : {&State::x, &State::y, &State::z}) {
            rounded.back().state.*field = std::round(rounded.back().state.*field / 1e-3) * 1e-3;
        }
    }
    expectModel(Orbit::fromVectors(rounded), 1.5e-3, 1e-3, "rounded vectors with a gap");
}

/// The largest distance of every second vector from the orbit through the others.
double leftOut(const Vectors& vectors) {
    Vectors others;
    for (std::size_t i = 0; i < vectors.size(); i += 2) {
        others.push_back(vectors[i]);
    }
    const Orbit orbit = Orbit::fromVectors(others);
    double worst = 0.0;
    for (std::size_t i = 1; i + 1 < vectors.size(); i += 2) {
        worst = std::max(worst, between(orbit.at(vectors[i].time.since(orbit.epoch())), vectors[i].state));
    }
    return worst;
}

TEST(OrbitFromVectors, FollowsRealVectorsOnceTheirTimesAreEven) {
    EXPECT_LT(leftOut(withEvenTimes(product())), 0.1e-3);
    // 1 microsecond is 7.5 mm; with one side alone a little more
    EXPECT_GT(leftOut(product()), 3e-3);
    EXPECT_LT(leftOut(product()), 15e-3);

    double sum = 0.0;
    for (std::size_t i = 0; i < product().size(); ++i) {
        sum += withEvenTimes(product())[i].time.since(product()[i].time);
    }
    EXPECT_NEAR(sum, 0.0, 1e-12);

    Vectors uneven = product();
    uneven[3].time = uneven[3].time.later(2e-6);
    const Vectors same = withEvenTimes(uneven);
    for (std::size_t i = 0; i < same.size(); ++i) {
        EXPECT_EQ(same[i].time, uneven[i].time);
    }
}

TEST(OrbitFromVectors, HasTheVelocitiesAsGiven) {
    Vectors vectors = product();
    for (StateVector& vector : vectors) {
        vector.state.vz += 0.012;  // as vectors sent down by the satellite have it
    }
    const Orbit orbit = Orbit::fromVectors(vectors, kStart.later(-86400.0));
    for (const auto& [time, state] : vectors) {
        const State found = orbit.at(time.since(orbit.epoch()));
        EXPECT_LT(between(found, state), 1e-7);  // a day from the epoch a time resolves 1.5e-11 s
        EXPECT_LT(speedBetween(found, state), kNanometre);
    }
    const double middle = 0.5 * (orbit.span().first + orbit.span().last);
    const Orbit clean = Orbit::fromVectors(product(), orbit.epoch());
    EXPECT_LT(between(orbit.at(middle), clean.at(middle)), 1e-6);
    EXPECT_NEAR(orbit.at(middle).vz - clean.at(middle).vz, 0.012, 1e-9);
}

TEST(OrbitFromVectors, MergesListsInAnyOrder) {
    const Orbit plain = Orbit::fromVectors(product());
    Vectors doubled = product();
    for (StateVector vector : product()) {
        vector.time = vector.time.later(1e-6);
        vector.state.x += 0.01;
        doubled.push_back(vector);
    }
    Vectors inOrder = doubled;
    std::sort(inOrder.begin(), inOrder.end(), [](const auto& a, const auto& b) { return a.time < b.time; });
    const Orbit once = Orbit::fromVectors(inOrder);
    std::rotate(doubled.begin() + 3, doubled.begin() + 9, doubled.begin() + 16);
    const Orbit mixed = Orbit::fromVectors(doubled);
    Vectors second;  // another estimate, ahead by half of the list and of its spacing
    for (const StateVector& vector : product()) {
        const double t = vector.time.since(kStart) + 74.6;
        State state = Orbit::fromVectors(product()).extended(0.0, 80.0).at(t);
        state.y += 0.3;
        second.push_back({kStart.later(t), state});
    }
    Vectors both = product();
    both.insert(both.end(), second.begin(), second.end());
    const Orbit merged = Orbit::fromVectors(both);
    const Orbit alone = Orbit::fromVectors(second, kStart);
    for (double t = 0.0; t <= 150.0; t += 1.7) {
        EXPECT_EQ(between(mixed.at(t), plain.at(t)), 0.0);
        EXPECT_EQ(between(once.at(t), plain.at(t)), 0.0);
        EXPECT_LT(between(merged.at(t), plain.at(t)), t < 120.0 ? kNanometre : 0.3);
    }
    EXPECT_EQ(merged.span().last, alone.span().last);
    EXPECT_LT(between(merged.at(200.0), alone.at(200.0)), kNanometre);
}

TEST(OrbitFromVectors, NamesTheVectorThatItRefuses) {
    const auto refusal = [](const std::function<void(Vectors&)>& spoil) -> std::string {
        Vectors vectors = product();
        spoil(vectors);
        try {
            Orbit::fromVectors(vectors);
        } catch (const std::invalid_argument& error) {
            return error.what();
        }
        return "taken";
    };
    const std::string sixth = "2022-04-14T10:21:57.036420 (number 6)";
    const std::function<void(Vectors&)> faults[] = {
        [](Vectors& v) { v[5].state.vy = kNaN; },
        [](Vectors& v) { v[5].state.x = std::numeric_limits<double>::infinity(); },
        [](Vectors& v) { v[5].state = State(); },
        [](Vectors& v) { v[5].state.z += 10.0; },
        [](Vectors& v) { v[5].state.vx = -v[5].state.vx; },
        [](Vectors& v) {
            v.push_back({v[5].time, v[4].state});
        },
        [](Vectors& v) {
            v.erase(v.begin() + 6, v.end()), v.push_back({v[5].time.later(700.0), v[5].state});
        },
    };
    for (const auto& fault : faults) {
        EXPECT_NE(refusal(fault).find(sixth), std::string::npos) << refusal(fault);
    }
    EXPECT_NE(refusal([](Vectors& v) { v.resize(1); }).find("(number 1)"), std::string::npos);
    EXPECT_NE(refusal([](Vectors& v) { v.assign(3, v[0]); }).find("two instants"), std::string::npos);
    EXPECT_NE(refusal([](Vectors& v) { v.clear(); }), "taken");
}

TEST(OrbitPropagated, ReadsOutAsTheClassDoes) {
    const StateVector start = product().front();
    const fVector record = [] {
        fVector state = stateOf(kOrbit[0]);
        state.time = 0.0;  // where the class resolves times best
        return state;
    }();
    for (const double reach : {40.0, -40.0, 120.0, -120.0}) {
        CVorbel trajectory;
        trajectory.InitLagrange(&record, reach, 0);
        const Orbit orbit = Orbit::propagated(start, std::max(-reach, 0.0), std::max(reach, 0.0));
        const Orbit same = Orbit::fromTrajectory(trajectory);
        EXPECT_EQ(same.span().last - same.span().first, 3.5 * std::abs(reach));
        EXPECT_EQ(same.epoch().since(Instant::of(1900, 1, 1)), reach);
        for (double back = 0.0; std::abs(back) <= std::abs(reach); back += reach / 64.0) {
            double time = reach - back;
            const State read = inMetres(trajectory.Lagrange(&time, 7));
            // the class's own rounding grows from step to step
            const double tolerance = std::abs(back) <= 0.5 * std::abs(reach) ? 3 * kNanometre : 20 * kNanometre;
            EXPECT_LT(between(orbit.at(time), read), tolerance) << time;
            EXPECT_LT(between(same.at(-back), read), tolerance) << time;
            EXPECT_LT(speedBetween(orbit.at(time), read), 0.1 * kNanometre) << time;
        }
    }
    expectModel(Orbit::propagated(start, 0.0, 600.0), 20 * kNanometre, kNanometre, "ten minutes");

    const Orbit turned = Orbit::propagated({start.time.later(600.0), model().back()}, 600.0, 10.0);
    for (double t = 0.0; t <= 600.0; t += 0.5) {
        EXPECT_LT(between(turned.at(t - 600.0), model()[static_cast<std::size_t>(2.0 * t)]), 20 * kNanometre);
    }
    const State low = model().front();
    EXPECT_LT(between(Orbit::propagated(start, 0.0, 60.0, 1e-8).at(60.0), model()[120]), 1e-2);
    EXPECT_GT(between(Orbit::propagated(start, 0.0, 60.0, 1e-8).at(60.0), model()[120]), 1e-6);
    EXPECT_THROW(Orbit::propagated({kStart, {low.x, kNaN, low.z, 0.0, 0.0, 0.0}}, 1.0, 1.0), std::invalid_argument);
    EXPECT_THROW(Orbit::propagated(start, -1.0, 1.0), std::invalid_argument);
    EXPECT_THROW(Orbit::propagated(start, 0.0, kNaN), std::invalid_argument);
    EXPECT_THROW(Orbit::propagated(start, 0.0, 0.0), std::invalid_argument);
}

TEST(OrbitPropagated, RefusesAnObjectWithoutATrajectory) {
    CVorbel trajectory;
    EXPECT_THROW(Orbit::fromTrajectory(trajectory), std::invalid_argument);
    const fVector state = stateOf(kOrbit[0]);
    trajectory.InitLagrange(&state, 60.0, 1);
    EXPECT_THROW(Orbit::fromTrajectory(trajectory), std::invalid_argument);
    trajectory.InitLagrange(&state, -60.0, 10.0, 0);
    EXPECT_THROW(Orbit::fromTrajectory(trajectory), std::invalid_argument);
    trajectory.InitLagrange(&state, 60.0, 0);
    EXPECT_NO_THROW(Orbit::fromTrajectory(trajectory));
    trajectory.setVector(state);
    EXPECT_THROW(Orbit::fromTrajectory(trajectory), std::invalid_argument);
}

TEST(Orbit, EndsWhereItMayBeAsked) {
    Vectors vectors;
    for (int t = 100; t <= 200; t += 10) {
        vectors.push_back(modelAt(t));
    }
    const Orbit orbit = Orbit::fromVectors(vectors, kStart);
    const Orbit longer = orbit.extended(100.0, 250.0).extended(0.0, 150.0);
    EXPECT_EQ(longer.span().first, 0.0);
    EXPECT_EQ(longer.span().last, 600.0);
    EXPECT_EQ(longer.covered().first, 100.0);
    EXPECT_EQ(longer.covered().last, 200.0);
    expectModel(longer, 1e-4, 1e-6, "extended");  // InitLagrange's two steps lose 15 micrometres over 120 s

    const double times[] = {200.0, 99.9, 150.0, kNaN, 200.00001, 100.0};
    const Status expected[] = {Status::ok,        Status::outside_orbit, Status::ok,
                               Status::bad_input, Status::outside_orbit, Status::ok};
    double y[6] = {};
    double vz[6] = {};
    Status status[6] = {};
    Orbit::States states;
    states.y = y;
    states.vz = vz;
    states.status = status;
    orbit.at(times, states);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(status[i], expected[i]) << i;
        EXPECT_EQ(std::isnan(y[i]), expected[i] != Status::ok) << i;
        if (expected[i] == Status::ok) {
            EXPECT_EQ(y[i], orbit.at(times[i]).y);
            EXPECT_EQ(vz[i], orbit.at(times[i]).vz);
        }
    }
    states.x = std::span(y).first(5);
    EXPECT_THROW(orbit.at(times, states), std::invalid_argument);
}

}  // namespace orbit_test
