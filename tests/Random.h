#ifndef VORBEL_TESTS_RANDOM_H
#define VORBEL_TESTS_RANDOM_H

#include <cstddef>
#include <cstdint>

/// Random numbers that are the same on every platform: splitmix64, and nothing of the C library's mathematics.
class Random {
public:
    explicit Random(std::uint64_t seed) : m_state(seed) {}

    std::uint64_t bits() {
        m_state += 0x9e3779b97f4a7c15U;
        std::uint64_t z = m_state;
        z = (z ^ (z >> 30U)) * 0xbf58476d1ce4e5b9U;
        z = (z ^ (z >> 27U)) * 0x94d049bb133111ebU;
        return z ^ (z >> 31U);
    }

    /// In [low, high).
    double uniform(double low, double high) {
        return low + (high - low) * (static_cast<double>(bits() >> 11U) * 0x1p-53);
    }

    /// One time in `n`.
    bool oneIn(unsigned n) {
        return bits() % n == 0;
    }

    double sign() {
        return oneIn(2) ? 1.0 : -1.0;
    }

    template <std::size_t N>
    double oneOf(const double (&values)[N]) {
        return values[bits() % N];
    }

private:
    std::uint64_t m_state;
};

#endif
