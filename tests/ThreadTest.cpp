#include "AllOperations.h"
#include "bits/Values.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <thread>
#include <vector>

// What threads do at the same time gives what one thread gives, bit for bit. Run it under a thread sanitizer too: it
// sees shared working storage even when the results happen to agree.

namespace {

constexpr std::size_t kThreads = 4;
constexpr std::uint64_t kCases = 250;  // of each thread

bool agree(const Values& a, const Values& b) {
    const auto digestsOf = [](const Values& values) {
        std::vector<std::uint64_t> digests;
        for (const Operation& operation : values.operations()) {
            digests.push_back(digestOf(operation).value());
        }
        return digests;
    };
    return digestsOf(a) == digestsOf(b);
}

/// Does the work of each thread alone, then of all of them together.
template <class Work>
void expectTheResultsOfOneThread(const Work& work) {
    std::vector<Values> alone(kThreads);
    for (std::size_t k = 0; k < kThreads; ++k) {
        work(k, alone[k]);
    }
    ASSERT_FALSE(agree(alone[0], alone[1]));  // the cases differ, so mixed-up records cannot go unseen

    std::vector<Values> together(kThreads);
    std::atomic<std::size_t> ready{0};
    std::vector<std::thread> threads;
    for (std::size_t k = 0; k < kThreads; ++k) {
        threads.emplace_back([&, k] {
            ++ready;
            while (ready < kThreads) {
                std::this_thread::yield();
            }
            work(k, together[k]);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (std::size_t k = 0; k < kThreads; ++k) {
        EXPECT_TRUE(agree(together[k], alone[k])) << "thread " << k;
    }
}

}  // namespace

TEST(Threads, MayUseDistinctObjects) {
    expectTheResultsOfOneThread([](std::size_t thread, Values& values) {
        for (std::uint64_t i = 0; i < kCases; ++i) {
            CVorbel object;
            AllOperations(object, regularCase(thread * kCases + i), values).run();
        }
    });
}

TEST(Threads, MayShareAnObjectForConstReadOuts) {
    CVorbel shared;
    const Case loaded = regularCase(1);
    shared.InitLagrange(&loaded.state, 100.0, loaded.system);
    expectTheResultsOfOneThread([&](std::size_t thread, Values& values) {
        for (std::uint64_t i = 0; i < kCases; ++i) {
            const Case inputs = regularCase(thread * kCases + i);
            AllOperations all(shared, inputs, values);
            all.framesAndElements();
            all.fourNodes();
            fVectorSimple simple;
            CVorbel::s_Lagrange_m_Fv_t(shared, simple, inputs.back, 7);
            values.add(simple);
            fVector full;
            shared.GetFunLagrangeOpt(7)(shared, full, inputs.back);
            values.add(full);
        }
    });
}
