#include <vorbel/scene/Orbit.h>

#include <algorithm>
#include <cmath>

namespace vorbel::scene {

std::vector<StateVector> withEvenTimes(std::span<const StateVector> vectors, double resolution) {
    std::vector<StateVector> even(vectors.begin(), vectors.end());
    if (even.size() < 3) {
        return even;
    }
    const Instant first = even.front().time;
    const auto intervals = static_cast<double>(even.size() - 1);
    const double spacing = std::round(even.back().time.since(first) / intervals / resolution) * resolution;
    double sum = 0.0;
    double earliest = 0.0;
    double latest = 0.0;
    for (std::size_t i = 0; i < even.size(); ++i) {
        const double deviation = even[i].time.since(first) - static_cast<double>(i) * spacing;
        sum += deviation;
        earliest = std::min(earliest, deviation);
        latest = std::max(latest, deviation);
    }
    if (!(latest - earliest <= 1.01 * resolution) || latest == earliest) {
        return even;
    }
    const Instant start = first.later(sum / static_cast<double>(even.size()));
    for (std::size_t i = 0; i < even.size(); ++i) {
        even[i].time = start.later(static_cast<double>(i) * spacing);
    }
    return even;
}

}  // namespace vorbel::scene
