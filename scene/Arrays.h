#ifndef VORBEL_SCENE_ARRAYS_H
#define VORBEL_SCENE_ARRAYS_H

#include <vorbel/scene/PixelToGround.h>

#include <algorithm>
#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>

namespace vorbel::scene {

/// An input array of a scene, whichever way it is spread over the points.
class Input {
public:
    enum class Between { lines, samples };

    /// One value for all, one for each point, or one for each line or each sample.
    /// \throws std::invalid_argument  any other length
    Input(std::span<const double> values, const Extent& extent, Between between, const char* name) : m_values(values) {
        const std::size_t points = extent.lines * extent.samples;
        const std::size_t some = between == Between::lines ? extent.lines : extent.samples;
        if (values.size() == 1) {
            m_perLine = 0;
            m_perSample = 0;
        } else if (values.size() == some) {
            m_perLine = between == Between::lines ? 1 : 0;
            m_perSample = between == Between::lines ? 0 : 1;
        } else if (values.size() == points) {
            m_perLine = extent.samples;
            m_perSample = 1;
        } else {
            throw std::invalid_argument(
                std::string(name) + " has " + (values.empty() ? "no" : std::to_string(values.size())) + " values; 1, " +
                std::to_string(some) + " (one for each " + (between == Between::lines ? "line" : "sample") + ") or " +
                std::to_string(points) + " (one for each point) would be right");
        }
    }

    double at(std::size_t line, std::size_t sample) const noexcept {
        return m_values[line * m_perLine + sample * m_perSample];
    }

    /// The values of so many points from one on, which may reach into the next lines.
    void copy(const Extent& extent, std::size_t line, std::size_t sample, std::size_t count,
              double* out) const noexcept {
        while (count > 0) {
            const std::size_t inLine = std::min(count, extent.samples - sample);
            if (m_perSample != 0) {
                std::copy_n(m_values.data() + line * m_perLine + sample, inLine, out);
            } else {
                std::fill_n(out, inLine, at(line, sample));
            }
            ++line;
            sample = 0;
            out += inLine;
            count -= inLine;
        }
    }

    /// True if the points of a line have values of their own.
    bool variesInLine() const noexcept {
        return m_perSample != 0;
    }

    /// True if lines have values of their own.
    bool variesByLine() const noexcept {
        return m_perLine != 0;
    }

private:
    std::span<const double> m_values;
    std::size_t m_perLine = 0;
    std::size_t m_perSample = 0;
};

/// An input that may be left out: then it is 0 for all points.
inline std::span<const double> orZero(std::span<const double> values) noexcept {
    static constexpr double kZero = 0.0;
    return values.empty() ? std::span(&kZero, 1) : values;
}

/// \throws std::invalid_argument  an output that is neither empty nor of so many values
template <class T>
void requireLength(std::span<T> output, std::size_t points, const char* name) {
    if (!output.empty() && output.size() != points) {
        throw std::invalid_argument(std::string(name) + " has room for " + std::to_string(output.size()) +
                                    " values; the scene has " + std::to_string(points) + " points");
    }
}

/// The part of an output that a tile fills; null if the output is not wanted.
template <class T>
T* from(std::span<T> output, std::size_t point) noexcept {
    return output.empty() ? nullptr : output.data() + point;
}

}  // namespace vorbel::scene

#endif
