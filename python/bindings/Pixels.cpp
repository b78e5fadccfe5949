#include "Arrays.h"
#include "Bindings.h"

#include <vorbel/scene/GroundToPixel.h>

#include <cstdint>
#include <optional>
#include <span>

namespace nb = nanobind;
using namespace nb::literals;

namespace vorbel::python {

namespace {

using scene::Doppler;
using scene::Execution;
using scene::GroundTargets;
using scene::LookSide;
using scene::Orbit;
using scene::PixelPositions;

using SideRoom = nb::ndarray<std::int32_t, nb::ndim<1>, nb::c_contig, nb::device::cpu>;

std::span<LookSide> sides(const std::optional<SideRoom>& array) {
    static_assert(sizeof(LookSide) == sizeof(std::int32_t));
    return array ? std::span(reinterpret_cast<LookSide*>(array->data()), array->size()) : std::span<LookSide>();
}

void groundToPixel(const Orbit& orbit, std::optional<LookSide> side, unsigned threads, const Given& latitude,
                   const Given& longitude, const Given& height, const Given& x, const Given& y, const Given& z,
                   const Given& notBefore, const Given& rangeRate, const Given& coefficients, double referenceRange,
                   const Wanted& time, const Wanted& slantRange, const Wanted& rangeRateOut,
                   const std::optional<SideRoom>& sideOut, const StatusWanted& status) {
    const GroundTargets targets{span(latitude), span(longitude), span(height),   span(x),
                                span(y),        span(z),         span(notBefore)};
    const Doppler doppler{span(rangeRate), span(coefficients), referenceRange};
    const PixelPositions positions{span(time), span(slantRange), span(rangeRateOut), sides(sideOut), span(status)};
    const nb::gil_scoped_release released;
    scene::groundToPixel(orbit, side, targets, doppler, positions, Execution{threads});
}

}  // namespace

void bindPixels(nb::module_& module) {
    module.def("ground_to_pixel", &groundToPixel, "orbit"_a, "side"_a.none(), "threads"_a, array("latitude"),
               array("longitude"), array("height"), array("x"), array("y"), array("z"), array("not_before"),
               array("range_rate"), array("coefficients"), "reference_range"_a = 0.0, array("time"),
               array("slant_range"), array("range_rate_out"), nb::arg("side_out").noconvert().none() = nb::none(),
               array("status"));
}

}  // namespace vorbel::python
