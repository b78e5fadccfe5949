#ifndef VORBEL_SCENE_BLOCKS_H
#define VORBEL_SCENE_BLOCKS_H

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

namespace vorbel::scene {

constexpr std::size_t kBlock = 16384;  // points

/// Calls work(begin, end) for blocks that together are [0, count), on so many threads (0: one for each processor), this
/// one among them. Which thread takes which block is left to chance, so a block's results must not depend on others'.
/// Where the system gives fewer threads, these do all the work.
/// \throws  what a block's work throws, such as std::bad_alloc: the first of them, when all threads have ended. Blocks
///          that had not begun are left out
template <class Work>
void forEachBlock(std::size_t count, unsigned threads, const Work& work, std::size_t block = kBlock) {
    std::atomic<std::size_t> next = 0;
    std::atomic_flag failed;
    std::exception_ptr failure;
    const auto run = [&]() noexcept {
        try {
            for (std::size_t begin = next.fetch_add(block); begin < count && !failed.test();
                 begin = next.fetch_add(block)) {
                work(begin, std::min(begin + block, count));
            }
        } catch (...) {
            if (!failed.test_and_set()) {
                failure = std::current_exception();
            }
        }
    };
    const std::size_t blocks = count / block + (count % block != 0 ? 1 : 0);
    const std::size_t wanted = threads == 0 ? std::max(std::thread::hardware_concurrency(), 1U) : threads;
    {
        std::vector<std::jthread> others;
        try {
            while (others.size() + 1 < std::min(wanted, blocks)) {
                others.emplace_back(run);
            }
        } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): fewer threads serve as well
        } catch (const std::bad_alloc&) {     // NOLINT(bugprone-empty-catch)
        }
        run();
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

}  // namespace vorbel::scene

#endif
