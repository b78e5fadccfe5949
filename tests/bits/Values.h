#ifndef VORBEL_TESTS_BITS_VALUES_H
#define VORBEL_TESTS_BITS_VALUES_H

#include <vorbel/Records.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

/// The values that operations returned, in the order of the calls.
///
/// A call's values are described by one letter each: L length (km), V speed (km/s), A angle, and a point for the rest.
struct Operation {
    std::string name;
    std::string letters;
    std::vector<double> values;
};

/// Bits of a double, with one pattern for all that is not a number: which one a processor makes is not the library's.
inline std::uint64_t canonicalBits(double value) {
    std::uint64_t bits = 0x7ff8000000000000U;
    if (value == value) {
        std::memcpy(&bits, &value, sizeof bits);
    }
    return bits;
}

/// Hexadecimal form of a double, one for each bit pattern, and the same with every C library.
inline std::string hexadecimal(double value) {
    const std::uint64_t bits = canonicalBits(value);
    const char* const sign = (bits >> 63U) != 0 ? "-" : "";
    const int exponent = static_cast<int>((bits >> 52U) & 0x7ffU);
    const std::uint64_t fraction = bits & 0xfffffffffffffU;
    if (exponent == 0x7ff) {
        return fraction != 0 ? "nan" : std::string(sign) + "inf";
    }
    char text[40];
    std::snprintf(text, sizeof text, "%s0x%d.%05lx%08lxp%+d", sign, exponent == 0 ? 0 : 1,
                  static_cast<unsigned long>(fraction >> 32U), static_cast<unsigned long>(fraction & 0xffffffffU),
                  exponent == 0 ? (fraction == 0 ? 0 : -1022) : exponent - 1023);
    return text;
}

/// FNV-1a.
class Digest {
public:
    void add(double value) {
        const std::uint64_t bits = canonicalBits(value);
        for (unsigned shift = 0; shift < 64; shift += 8) {
            m_hash = (m_hash ^ ((bits >> shift) & 0xffU)) * 0x100000001b3U;
        }
    }

    std::uint64_t value() const {
        return m_hash;
    }

private:
    std::uint64_t m_hash = 0xcbf29ce484222325U;
};

inline Digest digestOf(const Operation& operation) {
    Digest digest;
    for (double value : operation.values) {
        digest.add(value);
    }
    return digest;
}

/// Collects the values of one call after another.
class Values {
public:
    /// Appended to the names of the operations called from now on.
    void setSuffix(const std::string& suffix) {
        m_suffix = suffix;
    }

    /// Begins a call of an operation; what is added until the next belongs to it.
    void call(const char* name, int order = -1) {
        m_name = name + (order < 0 ? "" : '(' + std::to_string(order) + ')') + m_suffix;
        m_current = nullptr;
    }

    void add(char letter, double value) {
        if (m_current == nullptr) {
            const auto [entry, isNew] = m_index.try_emplace(m_name, m_operations.size());
            if (isNew) {
                m_operations.push_back({m_name, "", {}});
            }
            m_current = &m_operations[entry->second];
            m_describe = isNew;
        }
        if (m_describe) {
            m_current->letters += letter;
        }
        m_current->values.push_back(value);
    }

    void add(const fVector& v) {
        addAll("LLLVVV...", {v.x, v.y, v.z, v.vx, v.vy, v.vz, v.date, v.time, v.drag});
    }

    void add(const fVectorSimple& v) {
        addAll("...LLLVVV", {v.user1, v.user2, v.user3, v.x, v.y, v.z, v.vx, v.vy, v.vz});
    }

    void add(const Geopoint& p) {
        addAll("L.LLLAAL.", {p.a, p.f, p.x, p.y, p.z, p.lat, p.lon, p.h, static_cast<double>(p.kind)});
    }

    void add(const Ephemeris_Struct& e) {
        addAll("........", {static_cast<double>(e.year), static_cast<double>(e.month), static_cast<double>(e.day),
                            static_cast<double>(e.hour), static_cast<double>(e.minute), e.second,
                            static_cast<double>(e.date), e.time});
        addAll("..", {static_cast<double>(e.system), e.extra});
        add(e.state);
    }

    void add(const Elements_Struct& e) {
        addAll("..L.AAAA", {static_cast<double>(e.date), e.time, e.a, e.e, e.incl, e.raan, e.u, e.nu});
    }

    void add(const double (&matrix)[3][3]) {
        for (const auto& row : matrix) {
            addAll("...", {row[0], row[1], row[2]});
        }
    }

    void addAll(const char* letters, std::initializer_list<double> values) {
        for (double value : values) {
            add(*letters++, value);
        }
    }

    const std::vector<Operation>& operations() const {
        return m_operations;
    }

private:
    std::string m_suffix;
    std::string m_name;
    std::map<std::string, std::size_t> m_index;
    std::vector<Operation> m_operations;
    Operation* m_current = nullptr;
    bool m_describe = false;
};

#endif
