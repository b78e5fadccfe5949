#ifndef VORBEL_SCENE_BLOCKS_H
#define VORBEL_SCENE_BLOCKS_H

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <system_error>
#include <thread>
#include <vector>

namespace vorbel::scene {

constexpr std::size_t kBlock = 16384;  // points

/// Calls work(begin, end) for blocks that together are [0, count), on so many threads (0: one for each processor), this
/// one among them. Which thread takes which block is left to chance, so a block's results must not depend on others'.
/// Where the system gives fewer threads, these do all the work.
template <class Work>
void forEachBlock(std::size_t count, unsigned threads, const Work& work, std::size_t block = kBlock) {
    std::atomic<std::size_t> next = 0;
    const auto run = [&]() noexcept {
        for (std::size_t begin = next.fetch_add(block); begin < count; begin = next.fetch_add(block)) {
            work(begin, std::min(begin + block, count));
        }
    };
    const std::size_t blocks = count / block + (count % block != 0 ? 1 : 0);
    const std::size_t wanted = threads == 0 ? std::max(std::thread::hardware_concurrency(), 1U) : threads;
    std::vector<std::jthread> others;
    try {
        while (others.size() + 1 < std::min(wanted, blocks)) {
            others.emplace_back(run);
        }
    } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch): fewer threads serve as well
    }
    run();
}

}  // namespace vorbel::scene

#endif
