// Calls the operations of one object in any order with any arguments. A sanitizer or one of the checks below stops at:
// a read or write outside the caller's records, a change of what an operation must leave alone, undefined behaviour, a
// call that does not end.

#include "FuzzedInput.h"

#include "../AllOperations.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace {

constexpr int kMostCalls = 16;  // of groups of operations, for one input

/// Looks at what each operation changes in the object, and in records whose owner's fields it must leave alone.
class Check {
public:
    explicit Check(const CVorbel& object) : m_object(object) {}

    void call(const char* name, int /*order*/ = -1) {
        for (const Region& region : kRegions) {
            const bool same =
                std::memcmp(m_before + region.begin, bytes() + region.begin, region.end - region.begin) == 0;
            require(same || mayChange(region), region.name);
        }
        m_name = name;
        std::memcpy(m_before, bytes(), sizeof m_before);
    }

    void add(const fVectorSimple& v) const {
        require(v.user1 == 0.0 && v.user2 == 0.0 && v.user3 == 0.0, "the caller's own fields");
    }

    void add(const Ephemeris_Struct& e) const {
        require(e.extra == 0.0, "the caller's own field");
    }

    void add(const Elements_Struct& e) const {
        require(e.time == 0.0 || std::strcmp(m_name, "(inputs)") == 0, "the epoch");
    }

    void add(const Geopoint& p) const {
        require(p.kind == 0 && p.a == Geopoint().a && p.f == Geopoint().f, "the ellipsoid of the point");
    }

    template <class... Values>
    void add(const Values&... /*values*/) const {}

    void addAll(const char* /*letters*/, std::initializer_list<double> /*values*/) const {}

private:
    /// A part of the object and the operations that may change it.
    struct Region {
        const char* name;
        std::size_t begin, end;
        std::initializer_list<const char*> operations;
    };
    static inline const Region kRegions[] = {
        {"the current state",
         0,
         sizeof(fVector),
         {"SetProgParam", "InitLagrange", "InitLagrange(step)", "prog", "setVector"}},
        {"the last interpolated state",
         sizeof(fVector),
         2 * sizeof(fVector),
         {"Lagrange", "Lagrange(out)", "GeoProssess", "GeoLocation", "centroid", "centroid_NEW", "radial_speed",
          "attitude", "PitchYaw"}},
        {"the history",
         2 * sizeof(fVector),
         10 * sizeof(fVector),
         {"InitLagrange", "InitLagrange(step)", "prog", "adams"}},
        {"the settings",
         10 * sizeof(fVector),
         sizeof(CVorbel),
         {"SetSystem", "SetEllipsoid", "SetProgParam", "InitLagrange", "InitLagrange(step)"}},
    };

    const unsigned char* bytes() const {
        return static_cast<const unsigned char*>(static_cast<const void*>(&m_object));
    }

    bool mayChange(const Region& region) const {
        return m_name == nullptr || std::any_of(region.operations.begin(), region.operations.end(),
                                                [&](const char* name) { return std::strcmp(m_name, name) == 0; });
    }

    void require(bool condition, const char* what) const {
        if (!condition) {
            std::fprintf(stderr, "%s changes %s\n", m_name, what);
            std::abort();
        }
    }

    const CVorbel& m_object;
    const char* m_name = nullptr;
    unsigned char m_before[sizeof(CVorbel)] = {};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedInput in(data, size);
    CVorbel object;
    for (int calls = 0; calls < kMostCalls && !in.empty(); ++calls) {
        const Case inputs = in.scene();
        Check check(object);
        AllOperations all(object, inputs, check);
        switch (in.byte() % 9) {
        case 0:
            all.steps();
            break;
        case 1:
            all.framesAndElements();
            break;
        case 2:
            all.propagate();
            break;
        case 3:
            all.readOut();
            break;
        case 4:
            all.fourNodes();
            break;
        case 5:
            all.geometry();
            break;
        case 6:
            all.copies();
            break;
        case 7:
            all.readOut(inputs.dt, in.order());
            break;
        default:
            object.SetSystem(inputs.system);
            object.setStep(inputs.step);
            object.GetfVector(1)[calls % 8] = inputs.state;
            break;
        }
        check.call("end");
    }
    return 0;
}
