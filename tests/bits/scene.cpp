// The operations on arrays, with every instruction set of this machine and several threads, over pixels and points of a
// real orbit, some of them beyond all domains. With --portable: those that take no function of the C library.

#include "Report.h"

#include "../../examples/sentinel1_scene.h"
#include "../Random.h"

#include <vorbel/scene/GroundToPixel.h>
#include <vorbel/scene/Terrain.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <vector>

using namespace vorbel::scene;

namespace {

constexpr Extent kExtent{.lines = 60, .samples = 67};
constexpr std::size_t kCount = kExtent.lines * kExtent.samples;
using Array = std::vector<double>;

/// So many values from low to high; one in `rarity` is from beyond all reason.
Array randomValues(Random& random, std::size_t count, double low, double high, unsigned rarity) {
    using Limits = std::numeric_limits<double>;
    constexpr double kUnreasonable[] = {-Limits::infinity(), -1e300, -1.0, -0.0, 1e-300, 1e300, Limits::infinity(),
                                        Limits::quiet_NaN()};
    Array values(count);
    for (double& value : values) {
        value = random.oneIn(rarity) ? random.oneOf(kUnreasonable) : random.uniform(low, high);
    }
    return values;
}

Orbit realOrbit() {
    const Instant midnight = Instant::of(2022, 4, 14);
    std::vector<StateVector> vectors;
    for (const OrbitVector& v : kOrbit) {
        vectors.push_back(
            {midnight.later(v.seconds), {v.x * 1e3, v.y * 1e3, v.z * 1e3, v.vx * 1e3, v.vy * 1e3, v.vz * 1e3}});
    }
    return Orbit::fromVectors(vectors, midnight.later(kOrbit[0].seconds));
}

/// What the operations are called with, and what they returned.
class Scene {
public:
    std::vector<Operation> evaluate(const Execution& execution, bool portable) {
        m_execution = execution;
        const Array none;
        ground("pixelToGround", [&] {
            pixelToGround(m_orbit, LookSide::right, kExtent, {m_time, m_range, none, m_height}, points(), m_execution);
        });
        ground("pixelToGround/squinted", [&] {
            pixelToGround(m_orbit, LookSide::left, kExtent, {m_time, m_range, m_rangeRate, m_height}, points(),
                          m_execution);
        });
        const GroundTargets found{.x = m_found[3], .y = m_found[4], .z = m_found[5]};
        pixels("groundToPixel", {}, found, {});
        pixels("groundToPixel/squinted", LookSide::left, found, {.rangeRate = m_rangeRate});
        pixels("groundToPixel/geodetic", {},
               {.latitude = m_latitude, .longitude = m_longitude, .height = m_height, .notBefore = m_notBefore},
               {.coefficients = m_polynomial, .referenceRange = 8.5e5});
        if (!portable) {
            ground("beamToGround", [&] {
                beamToGround(m_orbit, LookSide::right, kExtent, {m_time, m_range, none, m_height},
                             {m_pitch, m_yaw, m_roll}, points(), m_execution);
            });
            terrain();
        }
        return m_values.operations();
    }

private:
    GroundPoints points() {
        auto& f = m_found;
        return {f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7], f[8], f[9], m_status};
    }

    template <class Operate>
    void ground(const char* operation, const Operate& operate) {
        operate();
        add(operation, "AAllllAAAv", m_found);
    }

    void pixels(const char* operation, std::optional<LookSide> side, const GroundTargets& targets,
                const Doppler& doppler) {
        std::vector<Array> found(3, Array(kCount));
        std::vector<LookSide> sides(kCount);
        groundToPixel(m_orbit, side, targets, doppler, {found[0], found[1], found[2], sides, m_status}, m_execution);
        found.emplace_back();
        for (const LookSide one : sides) {
            found.back().push_back(one == LookSide::left ? 1.0 : 0.0);
        }
        add(operation, ".lv.", found);
    }

    void terrain() {
        auto& f = m_found;
        std::vector<std::uint8_t> mask(kCount);
        const Terrain terrain(m_heights, {54.0, -70.0, 0.02, 0.02, kRows, kColumns});
        pixelToTerrain(m_orbit, LookSide::right, kExtent, {m_sceneTime, m_range}, terrain,
                       {f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7], f[8], mask, m_status},
                       AmongSeveral::smallestLookAngle, m_execution);
        f[9].assign(mask.begin(), mask.end());
        add("pixelToTerrain", "AAllllAAA.", f);
    }

    void add(const char* operation, const char* letters, const std::vector<Array>& found) {
        for (std::size_t i = 0; i < kCount; ++i) {
            m_values.call(operation);
            for (std::size_t k = 0; k < found.size(); ++k) {
                m_values.add(letters[k], found[k][i]);
            }
            m_values.add('.', static_cast<double>(m_status[i]));
        }
    }

    static constexpr std::size_t kRows = 400;
    static constexpr std::size_t kColumns = 800;

    Random m_random{1};
    Orbit m_orbit = realOrbit();
    Array m_time = values(kExtent.lines, -2.0, 152.0, 20);
    Array m_sceneTime = values(kExtent.lines, 40.0, 110.0, 20);
    Array m_range = values(kCount, 6.9e5, 1.2e6, 50);
    Array m_rangeRate = values(kCount, -900.0, 900.0, 50);
    Array m_height = values(kCount, -500.0, 9000.0, 50);
    Array m_pitch = values(kExtent.lines, -2.0, 2.0, 20);
    Array m_yaw = values(kExtent.lines, -4.0, 4.0, 20);
    Array m_roll = values(kExtent.lines, -35.0, -25.0, 20);
    Array m_latitude = values(kCount, 45.0, 60.0, 50);
    Array m_longitude = values(kCount, -70.0, -50.0, 50);
    Array m_notBefore = values(kCount, -20.0, 60.0, 50);
    Array m_polynomial{10.0, 1e-4, -2e-10};  // m/s over powers of m
    Array m_heights = values(kRows * kColumns, 0.0, 2500.0, 1000);

    Execution m_execution;
    std::vector<Array> m_found{10, Array(kCount)};
    std::vector<Status> m_status{kCount, Status::ok};
    Values m_values;

    Array values(std::size_t count, double low, double high, unsigned rarity) {
        return randomValues(m_random, count, low, high, rarity);
    }
};

std::vector<Operation> evaluateAll(bool portable) {
    std::vector<Operation> first;
    unsigned threads = 1;
    for (const InstructionSet set : instructionSets()) {
        const std::vector<Operation> operations = Scene().evaluate({threads++, set}, portable);
        for (std::size_t i = 0; i < first.size(); ++i) {
            const Array& values = operations[i].values;
            if (std::memcmp(values.data(), first[i].values.data(), values.size() * sizeof(double)) != 0) {
                std::fprintf(stderr, "vorbel_scene_bits: %s returns other values with %s than with %s\n",
                             first[i].name.c_str(), name(set), name(InstructionSet::baseline));
                std::exit(1);
            }
        }
        first = operations;
    }
    return first;
}

}  // namespace

int main(int argc, char** argv) {
    return reportBits(argc, argv, "vorbel_scene_bits", evaluateAll);
}
