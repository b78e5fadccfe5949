#include "Arrays.h"
#include "Bindings.h"

#include <vorbel/scene/PixelToGround.h>

#include <cstddef>

namespace nb = nanobind;
using namespace nb::literals;

namespace vorbel::python {

namespace {

using scene::Execution;
using scene::Extent;
using scene::GroundPoints;
using scene::LookSide;
using scene::Orbit;
using scene::Pixels;

// A block of a scene. The package cuts scenes into such blocks, so that signals are heard between them.
void pixelToGround(const Orbit& orbit, LookSide side, std::size_t lines, std::size_t samples, unsigned threads,
                   const Given& time, const Given& slantRange, const Given& rangeRate, const Given& height,
                   const Wanted& latitude, const Wanted& longitude, const Wanted& heightOut, const Wanted& x,
                   const Wanted& y, const Wanted& z, const Wanted& incidence, const Wanted& lookAngle,
                   const Wanted& azimuth, const Wanted& rangeRateOut, const StatusWanted& status) {
    const GroundPoints points{span(latitude), span(longitude), span(heightOut), span(x),       span(y),
                              span(z),        span(incidence), span(lookAngle), span(azimuth), span(rangeRateOut),
                              span(status)};
    const Pixels pixels{span(time), span(slantRange), span(rangeRate), span(height)};
    const nb::gil_scoped_release released;
    scene::pixelToGround(orbit, side, Extent{lines, samples}, pixels, points, Execution{threads});
}

void beamToGround(const Orbit& orbit, LookSide side, std::size_t lines, std::size_t samples, unsigned threads,
                  const Given& time, const Given& slantRange, const Given& pitch, const Given& yaw, const Given& roll,
                  const Given& height, const Wanted& latitude, const Wanted& longitude, const Wanted& heightOut,
                  const Wanted& x, const Wanted& y, const Wanted& z, const Wanted& incidence, const Wanted& lookAngle,
                  const Wanted& azimuth, const Wanted& rangeRateOut, const StatusWanted& status) {
    const GroundPoints points{span(latitude), span(longitude), span(heightOut), span(x),       span(y),
                              span(z),        span(incidence), span(lookAngle), span(azimuth), span(rangeRateOut),
                              span(status)};
    const Pixels pixels{span(time), span(slantRange), {}, span(height)};
    const scene::Attitude attitude{span(pitch), span(yaw), span(roll)};
    const nb::gil_scoped_release released;
    scene::beamToGround(orbit, side, Extent{lines, samples}, pixels, attitude, points, Execution{threads});
}

}  // namespace

void bindGround(nb::module_& module) {
    nb::enum_<scene::Status>(module, "Status", nb::is_arithmetic(),
                             "Whether a point can be trusted, and if not, why. Every output of a point is not-a-number "
                             "unless its status is `ok` or `layover`.")
        .value("ok", scene::Status::ok, "all outputs hold")
        .value("layover", scene::Status::layover,
               "all outputs hold; the terrain has more points that the radar sees at this range")
        .value("bad_input", scene::Status::bad_input, "an input is not finite or outside its domain")
        .value("outside_orbit", scene::Status::outside_orbit, "the time is outside the orbit's span")
        .value("range_too_short", scene::Status::range_too_short, "the range does not reach down to the surface")
        .value("beyond_horizon", scene::Status::beyond_horizon, "the point would lie behind the Earth's limb")
        .value("not_converged", scene::Status::not_converged, "the iteration did not reach its accuracy")
        .value("outside_terrain", scene::Status::outside_terrain,
               "the line of sight leaves the raster before it meets the ground")
        .value("hole_in_terrain", scene::Status::hole_in_terrain, "the raster has no height where it is needed")
        .value("wrong_side", scene::Status::wrong_side, "the point is seen on the other side of the flight direction")
        .value("hidden", scene::Status::hidden, "the terrain lies between the satellite and the point");
    nb::enum_<LookSide>(module, "LookSide", nb::is_arithmetic(),
                        "To which side of its flight direction the radar looks.")
        .value("left", LookSide::left)
        .value("right", LookSide::right);

    module.def("pixel_to_ground", &pixelToGround, "orbit"_a, "side"_a, "lines"_a, "samples"_a, "threads"_a,
               array("time"), array("slant_range"), array("range_rate"), array("height"), array("latitude"),
               array("longitude"), array("height_out"), array("x"), array("y"), array("z"), array("incidence"),
               array("look_angle"), array("azimuth"), array("range_rate_out"), array("status"));
    module.def("beam_to_ground", &beamToGround, "orbit"_a, "side"_a, "lines"_a, "samples"_a, "threads"_a, array("time"),
               array("slant_range"), array("pitch"), array("yaw"), array("roll"), array("height"), array("latitude"),
               array("longitude"), array("height_out"), array("x"), array("y"), array("z"), array("incidence"),
               array("look_angle"), array("azimuth"), array("range_rate_out"), array("status"));
}

}  // namespace vorbel::python
