#ifndef VORBEL_TESTS_BITS_VALUES_H
#define VORBEL_TESTS_BITS_VALUES_H

#include <vorbel/Records.h>

#include <cstddef>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

/// The values that operations returned, in the order of the calls.
///
/// A call's values are described by one letter each: L length (km), V speed (km/s), A angle, l and v the same in m and
/// m/s, and a point for the rest.
struct Operation {
    std::string name;
    std::string letters;
    std::vector<double> values;
};

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
        addAll("L.LLLAAL.", {p.a, p.f, p.x, p.y, p.z, p.lat, p.lon, p.h, 1.0 * p.kind});
    }

    void add(const Ephemeris_Struct& e) {
        addAll(".....", {1.0 * e.year, 1.0 * e.month, 1.0 * e.day, 1.0 * e.hour, 1.0 * e.minute});
        addAll(".....", {e.second, 1.0 * e.date, e.time, 1.0 * e.system, e.extra});
        add(e.state);
    }

    void add(const Elements_Struct& e) {
        addAll("..L.AAAA", {1.0 * e.date, e.time, e.a, e.e, e.incl, e.raan, e.u, e.nu});
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
