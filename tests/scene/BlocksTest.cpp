// How work is spread over threads.

#include "../../scene/Blocks.h"

#include <gtest/gtest.h>

using namespace vorbel::scene;

namespace {

TEST(Blocks, WhatAnotherThreadThrowsReachesTheCaller) {
    const std::thread::id caller = std::this_thread::get_id();
    std::atomic_flag thrown;
    std::atomic<int> done = 0;
    const auto work = [&](std::size_t /*begin*/, std::size_t /*end*/) {
        if (std::this_thread::get_id() == caller) {
            thrown.wait(false);
            ++done;
        } else {
            thrown.test_and_set();
            thrown.notify_all();
            throw std::bad_alloc();
        }
    };
    EXPECT_THROW(forEachBlock(1000000, 2, work, 1), std::bad_alloc);
    EXPECT_LT(done, 999999);
}

}  // namespace
