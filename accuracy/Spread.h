#ifndef VORBEL_ACCURACY_SPREAD_H
#define VORBEL_ACCURACY_SPREAD_H

#include <cmath>

namespace accuracy {

/// Largest and root-mean-square size of what was added. Not-a-number stays.
class Spread {
public:
    void add(double value) {
        m_squares += value * value;
        m_count += 1;
        m_largest = std::isnan(m_largest) || std::abs(value) <= m_largest ? m_largest : std::abs(value);
    }
    /// All that was added to another one.
    void add(const Spread& other) {
        m_squares += other.m_squares;
        m_count += other.m_count;
        m_largest = std::isnan(m_largest) || other.m_largest <= m_largest ? m_largest : other.m_largest;
    }
    double largest() const {
        return m_largest;
    }
    double rms() const {
        return std::sqrt(m_squares / m_count);
    }
    int count() const {
        return m_count;
    }

private:
    double m_largest = 0;
    double m_squares = 0;
    int m_count = 0;
};

}  // namespace accuracy

#endif
