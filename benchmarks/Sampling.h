#ifndef VORBEL_BENCHMARKS_SAMPLING_H
#define VORBEL_BENCHMARKS_SAMPLING_H

#include "Operation.h"

#include <algorithm>
#include <chrono>

namespace bench {

/// Wall-clock time of so many repetitions.
inline double nanoseconds(const Operation& operation, std::int64_t count) {
    const auto begin = std::chrono::steady_clock::now();
    operation.repeat(count);
    const std::chrono::duration<double, std::nano> elapsed = std::chrono::steady_clock::now() - begin;
    return elapsed.count();
}

/// Repetitions that fill one short sample.
inline std::int64_t sampleCount(const Operation& operation) {
    constexpr double kSample = 50000.0;  // ns, well within a time slice of the operating system
    operation.repeat(1);                 // what is set up once is not timed
    std::int64_t count = operation.atOnce;
    while (nanoseconds(operation, count) < kSample) {
        count *= 2;
    }
    return count;
}

/// Nanoseconds per repetition, of the fastest of many short samples.
inline double leastNanoseconds(const Operation& operation, int samples) {
    const std::int64_t count = sampleCount(operation);
    double least = nanoseconds(operation, count);
    for (int i = 1; i < samples; ++i) {
        least = std::min(least, nanoseconds(operation, count));
    }
    return least / static_cast<double>(count);
}

}  // namespace bench

#endif
