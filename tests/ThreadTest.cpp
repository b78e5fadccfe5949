#include <vorbel/CVorbel.h>

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <thread>
#include <vector>

// Distinct objects on distinct threads at the same time give what one thread gives, bit for bit. Run it under a thread
// sanitizer too: it sees shared working storage even when the results happen to agree.

namespace {

constexpr std::size_t kThreads = 4;
constexpr int kRounds = 200;

std::array<unsigned char, sizeof(double)> bits(double value) {
    std::array<unsigned char, sizeof(double)> bytes;
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

class Results {
public:
    void add(double value) {
        m_values.push_back(bits(value));
    }

    void add(const fVector& v) {
        for (double value : {v.x, v.y, v.z, v.vx, v.vy, v.vz, v.date, v.time, v.drag}) {
            add(value);
        }
    }

    void add(const Geopoint& p) {
        for (double value : {p.x, p.y, p.z, p.lat, p.lon, p.h}) {
            add(value);
        }
    }

    bool operator==(const Results& other) const {
        return m_values == other.m_values;
    }

private:
    std::vector<std::array<unsigned char, sizeof(double)>> m_values;
};

/// One satellite's work: each thread has another orbit and frame, so that a record shared between threads shows.
Results work(int satellite) {
    fVector start;
    start.x = 7071.0 + 20.0 * satellite;
    start.vy = 1.0;
    start.vz = 7.4;
    start.date = 44664.0;
    start.time = 44663.0 * 86400.0 + 37337.0;
    start.drag = 1e-8;

    Results results;
    CVorbel object;
    for (int round = 0; round < kRounds; ++round) {
        const double dt = (satellite % 2 == 0 ? 1.0 : -1.0) * (60.0 + round);
        object.InitLagrange(&start, dt, satellite % 2);
        const double end = object.getVector().time;
        const double time = end - 0.3 * dt;
        for (int order = 1; order <= 7; ++order) {
            results.add(object.Lagrange(&time, order));
        }
        results.add(object.GeoLocation(end, 860.0 + round, -1, 0.001, 0.02, 0.0));
        results.add(object.GeoProssess(time, 860.0 + round, 0.1, 1));
        results.add(object.centroid(time, 860.0, 0.001, 0.02, 0.0, -1));
        double pitch = 0.0;
        double yaw = 0.0;
        object.PitchYaw(time, 860.0, 0.0, 900.0, 0.0, &pitch, &yaw, -1);
        results.add(pitch);
        results.add(yaw);
        fVector state = object.getVector();
        results.add(object.runceK(state, 10.0));
        results.add(object.adams(state, object.getStep()));
        Ephemeris_Struct ephemeris;
        ephemeris.state = state;
        Elements_Struct elements;
        object.Ephemeris_to_Elements(&ephemeris, &elements);
        results.add(elements.a);
        results.add(object.ABS_Grnv(state));
    }
    return results;
}

}  // namespace

TEST(Threads, DistinctObjectsGiveTheResultsOfOneThread) {
    std::vector<Results> alone(kThreads);
    for (std::size_t k = 0; k < kThreads; ++k) {
        alone[k] = work(static_cast<int>(k));
    }
    ASSERT_FALSE(alone[0] == alone[2]);  // the satellites differ, so mixed-up records cannot go unseen

    std::vector<Results> together(kThreads);
    std::atomic<std::size_t> ready{0};
    std::vector<std::thread> threads;
    for (std::size_t k = 0; k < kThreads; ++k) {
        threads.emplace_back([&, k] {
            ++ready;
            while (ready < kThreads) {
                std::this_thread::yield();
            }
            together[k] = work(static_cast<int>(k));
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (std::size_t k = 0; k < kThreads; ++k) {
        EXPECT_TRUE(together[k] == alone[k]) << "satellite " << k;
    }
}

TEST(Threads, ConstReadOutsOfOneObjectMayOverlap) {
    CVorbel object;
    fVector start;
    start.x = 7071.0;
    start.vy = 1.0;
    start.vz = 7.4;
    object.InitLagrange(&start, 100.0, 0);
    const CVorbel& shared = object;

    const auto readAll = [&shared] {
        Results results;
        for (int k = 0; k < 2000; ++k) {
            fVectorSimple out;
            shared.Lagrange4(out, 0.05 * k);
            results.add(out.x);
            results.add(out.vz);
            CVorbel::s_Lagrange_m_Fv_t(shared, out, 0.05 * k, 7);
            results.add(out.y);
            results.add(shared.dLagrange4_rFv_t(Geopoint(), 0.05 * k));
        }
        return results;
    };
    const Results alone = readAll();
    std::vector<Results> together(kThreads);
    std::vector<std::thread> threads;
    threads.reserve(together.size());
    for (Results& results : together) {
        threads.emplace_back([&] { results = readAll(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const Results& results : together) {
        EXPECT_TRUE(results == alone);
    }
}
