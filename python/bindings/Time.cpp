#include "Bindings.h"

#include <vorbel/scene/Instant.h>

#include <nanobind/stl/string.h>
#include <nanobind/stl/string_view.h>

#include <cstdint>

namespace nb = nanobind;
using namespace nb::literals;
using vorbel::scene::Instant;

namespace vorbel::python {

void bindTime(nb::module_& module) {
    nb::class_<Instant>(module, "Instant",
                        "An instant of UTC, to better than 1e-15 s; it does not change.\n\n"
                        "Every day counts 86400 seconds: a difference of two instants is one second short for each "
                        "leap second between them.")
        .def(
            "__init__",
            [](Instant* self, std::int64_t seconds, double fraction) {
                if (!(fraction >= 0.0 && fraction < 1.0)) {
                    throw nb::value_error("the fraction of an Instant is at least 0 s and less than 1 s");
                }
                new (self) Instant{seconds, fraction};
            },
            "seconds"_a = 0, "fraction"_a = 0.0)
        .def_ro("seconds", &Instant::seconds, "whole seconds since 1970 January 1, 0h UTC, negative before")
        .def_ro("fraction", &Instant::fraction, "s, [0, 1)")
        .def_static(
            "parse", &Instant::parse, "text"_a,
            "From text such as \"2022-04-14T10:22:07.036420\", with 0 to 15 decimals of the second; a blank may "
            "stand for the T, \"Z\" at the end, \"UTC=\" before it. ValueError for any other text.")
        .def("text", &Instant::text, "decimals"_a = 6,
             "ISO 8601 text, rounded to so many decimals of the second (0 to 15), without a \"Z\".")
        .def("later", &Instant::later, "by_seconds"_a, "The instant so many seconds later.")
        .def("since", &Instant::since, "other"_a, "Seconds from `other` to this instant.")
        .def(
            "__eq__", [](const Instant& a, const Instant& b) { return a == b; }, nb::is_operator(),
            nb::sig("def __eq__(self, other: object, /) -> bool"))
        .def(
            "__lt__", [](const Instant& a, const Instant& b) { return a.since(b) < 0.0; }, nb::is_operator())
        .def(
            "__le__", [](const Instant& a, const Instant& b) { return a.since(b) <= 0.0; }, nb::is_operator())
        .def("__hash__", [](const Instant& self) { return nb::hash(nb::make_tuple(self.seconds, self.fraction)); })
        .def("__str__", [](const Instant& self) { return self.text(); })
        .def("__repr__",
             [](const Instant& self) {
                 return nb::str("Instant({}, {})").format(self.seconds, nb::float_(self.fraction));
             })
        .def(
            "__reduce__",
            [](nb::handle_t<Instant> self) {
                const auto& value = nb::cast<const Instant&>(self);
                return nb::make_tuple(self.type(), nb::make_tuple(value.seconds, value.fraction));
            },
            nb::sig("def __reduce__(self) -> tuple[type, tuple[object, ...]]"));
}

}  // namespace vorbel::python
