#include "Arrays.h"
#include "Bindings.h"

#include <vorbel/scene/Terrain.h>

#include <cstddef>
#include <cstdint>

namespace nb = nanobind;
using namespace nb::literals;

namespace vorbel::python {

namespace {

using scene::AmongSeveral;
using scene::Execution;
using scene::Extent;
using scene::LookSide;
using scene::Orbit;
using scene::Pixels;
using scene::RasterGrid;
using scene::Terrain;
using scene::TerrainPoints;

template <class Height>
using Raster = nb::ndarray<const Height, nb::ndim<2>, nb::c_contig, nb::device::cpu>;

template <class Height>
void defineRaster(nb::class_<Terrain>& terrain) {
    terrain.def(
        "__init__",
        [](Terrain* self, const Raster<Height>& heights, double north, double west, double latitudeStep,
           double longitudeStep, double voidValue) {
            const RasterGrid grid{north, west, latitudeStep, longitudeStep, heights.shape(0), heights.shape(1)};
            const nb::gil_scoped_release released;
            new (self) Terrain(std::span<const Height>(heights.data(), heights.size()), grid, voidValue);
        },
        "heights"_a.noconvert(), "north"_a, "west"_a, "latitude_step"_a, "longitude_step"_a, "void"_a,
        nb::keep_alive<1, 2>());
}

std::span<std::uint8_t> bytes(const StatusWanted& array) {
    return array ? std::span(array->data(), array->size()) : std::span<std::uint8_t>();
}

// A block of a scene, see pixel_to_ground.
void pixelToTerrain(const Orbit& orbit, LookSide side, const Terrain& terrain, bool greatest, std::size_t lines,
                    std::size_t samples, unsigned threads, const Given& time, const Given& slantRange,
                    const Given& rangeRate, const Wanted& latitude, const Wanted& longitude, const Wanted& height,
                    const Wanted& x, const Wanted& y, const Wanted& z, const Wanted& incidence,
                    const Wanted& localIncidence, const Wanted& lookAngle, const StatusWanted& mask,
                    const StatusWanted& status) {
    const TerrainPoints points{span(latitude),  span(longitude), span(height),    span(x),
                               span(y),         span(z),         span(incidence), span(localIncidence),
                               span(lookAngle), bytes(mask),     span(status)};
    const Pixels pixels{span(time), span(slantRange), span(rangeRate)};
    const nb::gil_scoped_release released;
    scene::pixelToTerrain(orbit, side, Extent{lines, samples}, pixels, terrain, points,
                          greatest ? AmongSeveral::greatestLookAngle : AmongSeveral::smallestLookAngle,
                          Execution{threads});
}

void heights(const Terrain& terrain, const Numbers& latitude, const Numbers& longitude, const Room& height,
             const StatusRoom& status) {
    const std::span<double> heightRoom = span(height);
    const std::span<scene::Status> statusRoom = span(status);
    const nb::gil_scoped_release released;
    terrain.heights(span(latitude), span(longitude), heightRoom, statusRoom);
}

}  // namespace

void bindTerrains(nb::module_& module) {
    nb::class_<Terrain> terrain(module, "Terrain", "A raster of heights; vorbel.Terrain is what a caller uses.");
    defineRaster<float>(terrain);
    defineRaster<double>(terrain);
    defineRaster<std::int16_t>(terrain);
    terrain.def("heights", &heights, "latitude"_a.noconvert(), "longitude"_a.noconvert(), "height"_a.noconvert(),
                "status"_a.noconvert());
    module.def("pixel_to_terrain", &pixelToTerrain, "orbit"_a, "side"_a, "terrain"_a, "greatest"_a, "lines"_a,
               "samples"_a, "threads"_a, array("time"), array("slant_range"), array("range_rate"), array("latitude"),
               array("longitude"), array("height"), array("x"), array("y"), array("z"), array("incidence"),
               array("local_incidence"), array("look_angle"), array("mask"), array("status"));
}

}  // namespace vorbel::python
