#include "Arrays.h"
#include "Bindings.h"

#include <vorbel/scene/Orbit.h>

#include <nanobind/stl/array.h>
#include <nanobind/stl/optional.h>
#include <nanobind/stl/pair.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace nb = nanobind;
using namespace nb::literals;
using vorbel::scene::Instant;
using vorbel::scene::Orbit;
using vorbel::scene::StateVector;

namespace vorbel::python {

namespace {

using Seconds = nb::ndarray<const std::int64_t, nb::ndim<1>, nb::c_contig, nb::device::cpu>;
using States = nb::ndarray<const double, nb::shape<-1, 6>, nb::c_contig, nb::device::cpu>;

std::pair<double, double> pair(const scene::Span& span) {
    return {span.first, span.last};
}

Orbit fromVectors(const Seconds& seconds, const Numbers& fractions, const States& states, const Instant& epoch,
                  std::optional<double> resolution) {
    if (seconds.size() != fractions.size() || seconds.size() != states.shape(0)) {
        throw nb::value_error("an orbit needs as many times as states");
    }
    std::vector<StateVector> vectors;
    vectors.reserve(seconds.size());
    for (std::size_t i = 0; i < seconds.size(); ++i) {
        const double* const s = states.data() + 6 * i;
        vectors.push_back({{seconds.data()[i], fractions.data()[i]}, {s[0], s[1], s[2], s[3], s[4], s[5]}});
    }
    if (resolution) {
        std::sort(vectors.begin(), vectors.end(),
                  [](const StateVector& a, const StateVector& b) { return a.time.since(b.time) < 0.0; });
        vectors = scene::withEvenTimes(vectors, *resolution);
    }
    return Orbit::fromVectors(vectors, epoch);
}

void at(const Orbit& orbit, const Numbers& times, const Room& x, const Room& y, const Room& z, const Room& vx,
        const Room& vy, const Room& vz, const StatusRoom& status) {
    const Orbit::States states{span(x), span(y), span(z), span(vx), span(vy), span(vz), span(status)};
    const nb::gil_scoped_release released;
    orbit.at(span(times), states);
}

}  // namespace

void bindOrbits(nb::module_& module) {
    nb::class_<Orbit>(module, "Orbit", "The orbit of a satellite; vorbel.Orbit is what a caller uses.")
        .def_static("from_vectors", &fromVectors, "seconds"_a.noconvert(), "fractions"_a.noconvert(),
                    "states"_a.noconvert(), "epoch"_a, "resolution"_a.none() = nb::none())
        .def_static(
            "propagated",
            [](const Instant& time, const std::array<double, 6>& s, double before, double after, double drag) {
                return Orbit::propagated({time, {s[0], s[1], s[2], s[3], s[4], s[5]}}, before, after, drag);
            },
            "time"_a, "state"_a, "before"_a, "after"_a, "drag"_a)
        .def_static("from_trajectory", &Orbit::fromTrajectory, "trajectory"_a)
        .def("extended", &Orbit::extended, "before"_a, "after"_a)
        .def_prop_ro("epoch", &Orbit::epoch, nb::rv_policy::copy)
        .def_prop_ro("span", [](const Orbit& orbit) { return pair(orbit.span()); })
        .def_prop_ro("covered", [](const Orbit& orbit) { return pair(orbit.covered()); })
        .def("at", &at, "times"_a.noconvert(), "x"_a.noconvert(), "y"_a.noconvert(), "z"_a.noconvert(),
             "vx"_a.noconvert(), "vy"_a.noconvert(), "vz"_a.noconvert(), "status"_a.noconvert());
}

}  // namespace vorbel::python
