#ifndef VORBEL_TESTS_FUZZ_FUZZED_INPUT_H
#define VORBEL_TESTS_FUZZ_FUZZED_INPUT_H

#include "../OperationInputs.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>

/// Turns the fuzzer's bytes into cases: plausible scenes, without which nothing deep would be reached, with some of the
/// numbers replaced by the doubles at the limits and any bit patterns. After the last byte come zeros.
class FuzzedInput {
public:
    FuzzedInput(const std::uint8_t* data, std::size_t size) : m_next(data), m_end(data + size) {}

    bool empty() const {
        return m_next == m_end;
    }

    std::uint8_t byte() {
        return empty() ? std::uint8_t{0} : *m_next++;
    }

    Case scene() {
        const std::uint64_t seed = byte() * 256U + byte();
        Case c = byte() % 4 == 0 ? edgeCase(seed) : regularCase(seed);
        const auto numbers = numbersOf(c);
        for (int replaced = byte() % 4; replaced > 0; --replaced) {
            double& number = *numbers[byte() % numbers.size()];
            switch (byte() % 3) {
            case 0:
                number = special();
                break;
            case 1:
                number *= byte() / 64.0 - 2.0;
                break;
            default:
                number = anyDouble();
                break;
            }
        }
        if (byte() % 4 == 0) {
            c.system = c.ephemeris.system = anyInt();
            c.ephemeris.date = c.elements.date = anyInt();
            c.side = anyInt();
        }
        return c;
    }

    /// An order: one near those that there are, or any int.
    int order() {
        if (byte() % 2 == 0) {
            return byte() % 12 - 2;
        }
        int value = 0;
        for (int i = 0; i < 4; ++i) {
            value = value * 256 + byte() - (i == 0 ? 128 : 0);
        }
        return value;
    }

private:
    int anyInt() {
        constexpr int kInts[] = {
            0, 1, 2, -1, 9, 44664, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};
        return kInts[byte() % std::size(kInts)];
    }

    double special() {
        using Limits = std::numeric_limits<double>;
        constexpr double kSpecial[] = {
            0.0,   1.0,   1e-13,         Limits::denorm_min(), Limits::min(),       1e-310,  1e-160, 1e17,
            1e155, 1e300, Limits::max(), Limits::infinity(),   Limits::quiet_NaN(), 86400.0, 6371.0, 20000.0,
            0x1p52};
        const unsigned which = byte();
        const double value = kSpecial[which % std::size(kSpecial)];
        return which >= 128 ? -value : value;
    }

    double anyDouble() {
        std::uint8_t bytes[sizeof(double)];
        for (std::uint8_t& b : bytes) {
            b = byte();
        }
        double value = 0.0;
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }

    const std::uint8_t* m_next;
    const std::uint8_t* m_end;
};

#endif
