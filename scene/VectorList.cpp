#include "VectorList.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <string>

namespace vorbel::scene {

namespace {

constexpr double kEarthRadius = 6.3e6;       // m, just below the poles
constexpr double kSameInstant = 1.5e-6;      // s: times rounded to the microsecond in two ways
constexpr double kCrowded = 0.6;             // of the usual spacing: any vector of a second list is nearer to the first
constexpr double kGap = 2.5;                 // of the usual spacing
constexpr double kLongestGap = 600.0;        // s
constexpr double kPositionTolerance = 1.0;   // m
constexpr double kVelocityTolerance = 0.1;   // m/s
constexpr double kLargestAcceleration = 12;  // m/s^2, of an orbit in the Earth-fixed frame
constexpr double kLargestJerk = 0.024;       // m/s^3, twice that of the lowest orbit

struct Entry {
    StateVector vector;
    std::size_t number;  // in the order given, from 0
    bool kept;
};

[[noreturn]] void refuse(const std::string& sentence) {
    throw std::invalid_argument(sentence);
}

std::string number(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.6g", value);
    return text.data();
}

std::string nameOf(const Entry& entry) {
    return "the state vector of " + entry.vector.time.text() + " (number " + std::to_string(entry.number + 1) + ")";
}

double length(double x, double y, double z) {
    return std::sqrt(x * x + y * y + z * z);
}

/// Refuses two successive vectors of which one cannot follow the other: a position that the mean of the velocities does
/// not lead to, or a velocity that changes faster than gravity can.
void requireContinuity(const Entry& before, const Entry& after) {
    const State& a = before.vector.state;
    const State& b = after.vector.state;
    const double t = after.vector.time.since(before.vector.time);
    const double position = length(b.x - a.x - 0.5 * t * (a.vx + b.vx), b.y - a.y - 0.5 * t * (a.vy + b.vy),
                                   b.z - a.z - 0.5 * t * (a.vz + b.vz));
    const double velocity = length(b.vx - a.vx, b.vy - a.vy, b.vz - a.vz);
    const std::string names = nameOf(after) + " contradicts " + nameOf(before);
    if (position > kPositionTolerance + kLargestJerk / 12.0 * t * t * t) {
        refuse(names + ": its position is " + number(position) + " m from where the velocities lead");
    }
    if (velocity > kVelocityTolerance + kLargestAcceleration * t) {
        refuse(names + ": its velocity differs by " + number(velocity) + " m/s");
    }
}

bool inOrder(std::span<const StateVector> vectors) {
    return std::is_sorted(vectors.begin(), vectors.end(),
                          [](const StateVector& a, const StateVector& b) { return a.time < b.time; });
}

/// The spacing that three quarters of the vectors do not exceed. Two interleaved lists count as one of them.
double usualSpacing(const std::vector<Entry>& entries) {
    std::vector<double> spacings;
    for (std::size_t i = 1; i < entries.size(); ++i) {
        const double spacing = entries[i].vector.time.since(entries[i - 1].vector.time);
        if (spacing > kSameInstant) {
            spacings.push_back(spacing);
        }
    }
    if (spacings.empty()) {
        return 0.0;
    }
    const auto quantile = spacings.begin() + static_cast<std::ptrdiff_t>(spacings.size() * 3 / 4);
    std::nth_element(spacings.begin(), quantile, spacings.end());
    return *quantile;
}

/// Keeps vectors in the order given, unless one that is kept stands nearer than `distance`.
void thinOut(std::vector<Entry>& entries, double distance) {
    std::vector<std::size_t> order(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        order[entries[i].number] = i;
    }
    const auto keptNear = [&](std::size_t i, std::ptrdiff_t way) {
        const auto count = static_cast<std::ptrdiff_t>(entries.size());
        for (std::ptrdiff_t j = static_cast<std::ptrdiff_t>(i) + way; j >= 0 && j < count; j += way) {
            const Entry& other = entries[static_cast<std::size_t>(j)];
            if (std::abs(other.vector.time.since(entries[i].vector.time)) > distance) {
                return false;
            }
            if (other.kept) {
                return true;
            }
        }
        return false;
    };
    for (const std::size_t i : order) {
        entries[i].kept = !keptNear(i, -1) && !keptNear(i, 1);
    }
}

}  // namespace

void requireState(const StateVector& vector, const std::string& name) {
    const State& s = vector.state;
    for (const double value : {s.x, s.y, s.z, s.vx, s.vy, s.vz, vector.time.fraction}) {
        if (!std::isfinite(value)) {
            refuse(name + " has a value that is not finite");
        }
    }
    const double radius = length(s.x, s.y, s.z);
    if (radius < kEarthRadius) {
        refuse(name + " is " + number(radius) + " m from the Earth's centre, it must be above the ground, in metres");
    }
}

VectorList listOf(std::span<const StateVector> vectors) {
    std::vector<Entry> entries;
    entries.reserve(vectors.size());
    for (const StateVector& vector : vectors) {
        entries.push_back({vector, entries.size(), false});
        requireState(vector, nameOf(entries.back()));
    }
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        return a.vector.time < b.vector.time || (a.vector.time == b.vector.time && a.number < b.number);
    });
    for (std::size_t i = 1; i < entries.size(); ++i) {
        requireContinuity(entries[i - 1], entries[i]);
    }
    const double spacing = usualSpacing(entries);
    if (spacing == 0.0) {
        refuse("an orbit needs state vectors at two instants or more, there " +
               (entries.empty() ? "is none" : "is only " + nameOf(entries.front())));
    }
    thinOut(entries, inOrder(vectors) ? kSameInstant : std::max(kSameInstant, kCrowded * spacing));

    VectorList list;
    for (const Entry& entry : entries) {
        if (!entry.kept) {
            continue;
        }
        if (list.vectors.empty()) {
            list.stretches.push_back(0);
        } else {
            const double gap = entry.vector.time.since(list.vectors.back().time);
            if (gap > kLongestGap) {
                refuse(nameOf(entry) + " stands " + number(gap) + " s after the one before it, more than the " +
                       number(kLongestGap) + " s that can be interpolated");
            }
            if (gap > kGap * spacing) {
                list.stretches.push_back(list.vectors.size());
            }
        }
        list.vectors.push_back(entry.vector);
    }
    list.stretches.push_back(list.vectors.size());
    return list;
}

}  // namespace vorbel::scene
