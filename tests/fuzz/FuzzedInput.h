#ifndef VORBEL_TESTS_FUZZ_FUZZED_INPUT_H
#define VORBEL_TESTS_FUZZ_FUZZED_INPUT_H

#include <vorbel/Records.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>

/// Turns the fuzzer's bytes into arguments: any bit pattern, the doubles at the limits, and plausible values, without
/// which nothing deep would be reached. After the last byte come zeros.
class FuzzedInput {
public:
    FuzzedInput(const std::uint8_t* data, std::size_t size) : m_next(data), m_end(data + size) {}

    bool empty() const {
        return m_next == m_end;
    }

    std::uint8_t byte() {
        return empty() ? std::uint8_t{0} : *m_next++;
    }

    int anyInt() {
        constexpr int kInts[] = {
            0, 1, 2, 3, 4, 5, 6, 7, 8, -1, 9, 100, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};
        return kInts[byte() % std::size(kInts)];
    }

    /// Mostly in [low, high], and anything else.
    double number(double low, double high) {
        const unsigned kind = byte();
        if (kind < 200) {
            return plausible(low, high);
        }
        if (kind < 230) {
            return special();
        }
        return anyDouble();
    }

    double plausible(double low, double high) {
        const unsigned steps = byte() * 256U + byte();
        return low + (high - low) * (steps / 65535.0);
    }

    double special() {
        using Limits = std::numeric_limits<double>;
        constexpr double kSpecial[] = {0.0,
                                       1.0,
                                       1e-13,
                                       Limits::denorm_min(),
                                       Limits::min(),
                                       1e-310,
                                       1e-160,
                                       1e17,
                                       1e155,
                                       1e300,
                                       Limits::max(),
                                       Limits::infinity(),
                                       Limits::quiet_NaN(),
                                       86400.0,
                                       6371.0,
                                       20000.0,
                                       4503599627370496.0};
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

    /// A satellite in orbit, often with one field of any value.
    fVector state() {
        const double r = 6378.0 + plausible(80.0, 40000.0);
        const double node = plausible(0.0, 6.3);
        const double inclination = plausible(0.0, 3.2);
        const double latitude = plausible(0.0, 6.3);
        const double v = std::sqrt(398600.4 / r) * plausible(0.5, 1.5);
        fVector s;
        s.x = r * (std::cos(node) * std::cos(latitude) - std::sin(node) * std::sin(latitude) * std::cos(inclination));
        s.y = r * (std::sin(node) * std::cos(latitude) + std::cos(node) * std::sin(latitude) * std::cos(inclination));
        s.z = r * std::sin(latitude) * std::sin(inclination);
        s.vx = v * (-std::cos(node) * std::sin(latitude) - std::sin(node) * std::cos(latitude) * std::cos(inclination));
        s.vy = v * (-std::sin(node) * std::sin(latitude) + std::cos(node) * std::cos(latitude) * std::cos(inclination));
        s.vz = v * std::cos(latitude) * std::sin(inclination);
        s.date = std::floor(plausible(1.0, 50000.0));
        s.time = (s.date - 1.0) * 86400.0 + plausible(0.0, 86400.0);
        s.drag = plausible(-1e-8, 1e-7);
        double* const fields[] = {&s.x, &s.y, &s.z, &s.vx, &s.vy, &s.vz, &s.date, &s.time, &s.drag};
        const unsigned which = byte();
        if (which < std::size(fields)) {
            *fields[which] = byte() % 2 == 0 ? special() : anyDouble();
        }
        return s;
    }

private:
    const std::uint8_t* m_next;
    const std::uint8_t* m_end;
};

#endif
