#include "Arrays.h"
#include "Bindings.h"

#include <vorbel/products/Product.h>

#include <nanobind/stl/optional.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/string_view.h>
#include <nanobind/stl/tuple.h>
#include <nanobind/stl/vector.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace nb = nanobind;
using namespace nb::literals;

namespace vorbel::python {

namespace {

using products::Annotation;
using products::AttitudeSample;
using products::Burst;
using products::DopplerCentroid;
using products::FrequencyRate;
using products::GridPoint;
using products::ImageKind;
using products::OrbitFile;
using products::Product;
using scene::StateVector;

template <class T>
using Array = nb::ndarray<nb::numpy, T, nb::ndim<1>>;
template <std::size_t Columns>
using Rows = nb::ndarray<nb::numpy, double, nb::shape<-1, static_cast<nb::ssize_t>(Columns)>>;
using Vectors = std::tuple<Array<std::int64_t>, Array<double>, Rows<6>>;
using Seconds = nb::ndarray<const std::int64_t, nb::ndim<1>, nb::c_contig, nb::device::cpu>;
using States = nb::ndarray<const double, nb::shape<-1, 6>, nb::c_contig, nb::device::cpu>;

/// The memory of an array, which frees itself with it.
template <class T>
std::pair<T*, nb::capsule> memory(std::size_t size) {
    T* const values = new T[size];
    return {values, nb::capsule(values, [](void* p) noexcept { delete[] static_cast<T*>(p); })};
}

/// One field of records, as an array.
template <class Records, class Function>
auto each(const Records& records, const Function& field) {
    using T = decltype(field(records.front()));
    const auto [values, owner] = memory<T>(records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        values[i] = field(records[i]);
    }
    return Array<T>(values, {records.size()}, owner);
}

/// Rows of so many numbers of each record.
template <std::size_t Columns, class Records, class Function>
Rows<Columns> rows(const Records& records, const Function& fields) {
    const auto [values, owner] = memory<double>(Columns * records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        const std::array<double, Columns> row = fields(records[i]);
        std::copy(row.begin(), row.end(), values + Columns * i);
    }
    return {values, {records.size(), Columns}, owner};
}

Vectors arrays(const std::vector<StateVector>& vectors) {
    return {each(vectors, [](const StateVector& v) { return v.time.seconds; }),
            each(vectors, [](const StateVector& v) { return v.time.fraction; }),
            rows<6>(vectors, [](const StateVector& v) {
                const scene::State& s = v.state;
                return std::array{s.x, s.y, s.z, s.vx, s.vy, s.vz};
            })};
}

std::vector<StateVector> vectorsOf(const Seconds& seconds, const Numbers& fractions, const States& states) {
    std::vector<StateVector> vectors;
    for (std::size_t i = 0; i < seconds.size(); ++i) {
        const double* const s = states.data() + 6 * i;
        vectors.push_back({{seconds.data()[i], fractions.data()[i]}, {s[0], s[1], s[2], s[3], s[4], s[5]}});
    }
    return vectors;
}

const char* name(ImageKind kind) {
    switch (kind) {
    case ImageKind::bursts:
        return "bursts";
    case ImageKind::groundRange:
        return "ground range";
    default:
        return "stripmap";
    }
}

nb::typed<nb::dict, nb::str, Array<double>> grid(const Product& product) {
    const auto& points = product.annotation.grid;
    nb::typed<nb::dict, nb::str, Array<double>> result;
    const auto add = [&](const char* name, double GridPoint::*field) {
        result[name] = each(points, [&](const GridPoint& point) { return point.*field; });
    };
    result["time"] = each(points, [&](const GridPoint& point) { return point.time.since(product.mapping.epoch()); });
    result["slant_range"] =
        each(points, [](const GridPoint& point) { return 0.5 * 299792458.0 * point.slantRangeTime; });
    add("line", &GridPoint::line);
    add("pixel", &GridPoint::pixel);
    add("latitude", &GridPoint::latitude);
    add("longitude", &GridPoint::longitude);
    add("height", &GridPoint::height);
    add("incidence", &GridPoint::incidenceAngle);
    return result;
}

nb::typed<nb::dict, nb::str, nb::ndarray<nb::numpy, double>> attitude(const Product& product) {
    const auto& samples = product.annotation.attitude;
    nb::typed<nb::dict, nb::str, nb::ndarray<nb::numpy, double>> result;
    result["time"] = each(samples, [&](const AttitudeSample& a) { return a.time.since(product.mapping.epoch()); });
    result["quaternion"] = rows<4>(samples, [](const AttitudeSample& a) { return std::array{a.q0, a.q1, a.q2, a.q3}; });
    result["rate"] = rows<3>(samples, [](const AttitudeSample& a) { return std::array{a.wx, a.wy, a.wz}; });
    result["roll"] = each(samples, [](const AttitudeSample& a) { return a.roll; });
    result["pitch"] = each(samples, [](const AttitudeSample& a) { return a.pitch; });
    result["yaw"] = each(samples, [](const AttitudeSample& a) { return a.yaw; });
    return result;
}

/// Time (s since the epoch), reference time (s) and polynomials of each record.
template <class Record, class... Polynomials>
auto polynomials(const Product& product, const std::vector<Record>& records, Polynomials... fields) {
    std::vector<std::tuple<double, double, decltype(std::vector(records.front().*fields))...>> result;
    result.reserve(records.size());
    for (const Record& record : records) {
        result.emplace_back(record.time.since(product.mapping.epoch()), record.referenceTime, record.*fields...);
    }
    return result;
}

std::string_view view(const nb::bytes& text) {
    return {text.c_str(), text.size()};
}

Product make(const nb::bytes& text, std::string_view source, const OrbitFile* orbit, bool bistatic) {
    const auto correction = bistatic ? products::Bistatic::corrected : products::Bistatic::uncorrected;
    const std::string_view characters = view(text);
    const nb::gil_scoped_release released;
    Annotation annotation = products::parseAnnotation(characters, source);
    return orbit != nullptr ? products::makeProduct(std::move(annotation), *orbit, correction)
                            : products::makeProduct(std::move(annotation), correction);
}

OrbitFile parse(const nb::bytes& text, std::string_view source) {
    const std::string_view characters = view(text);
    const nb::gil_scoped_release released;
    return products::parseOrbitFile(characters, source);
}

/// A read-only attribute that is a field of the annotation.
template <class T>
void attribute(nb::class_<Product>& product, const char* name, T Annotation::*field) {
    product.def_prop_ro(name, [field](const Product& p) { return p.annotation.*field; });
}

}  // namespace

void bindProducts(nb::module_& module) {
    nb::class_<OrbitFile>(module, "OrbitFile", "State vectors of a file; vorbel.OrbitFile is what a caller uses.")
        .def(
            "__init__",
            [](OrbitFile* self, std::string source, std::string mission, std::string type, const Seconds& seconds,
               const Numbers& fractions, const States& states) {
                new (self) OrbitFile{std::move(source), std::move(mission), std::move(type),
                                     vectorsOf(seconds, fractions, states)};
            },
            "source"_a, "mission"_a, "type"_a, "seconds"_a.noconvert(), "fractions"_a.noconvert(),
            "states"_a.noconvert())
        .def_static("parse", &parse, "text"_a, "source"_a)
        .def_static(
            "merged", [](const std::vector<OrbitFile>& files) { return products::merged(files); }, "files"_a)
        .def_ro("source", &OrbitFile::source)
        .def_ro("mission", &OrbitFile::mission)
        .def_ro("type", &OrbitFile::type)
        .def_prop_ro(
            "vectors", [](const OrbitFile& file) { return arrays(file.vectors); }, nb::rv_policy::move);

    nb::class_<Product> product(module, "Product", "A product; vorbel.Product is what a caller uses.");
    product.def_static("make", &make, "text"_a, "source"_a, "orbit"_a.none(), "bistatic"_a);
    attribute(product, "source", &Annotation::source);
    attribute(product, "mission", &Annotation::mission);
    attribute(product, "product_type", &Annotation::productType);
    attribute(product, "mode", &Annotation::mode);
    attribute(product, "swath", &Annotation::swath);
    attribute(product, "polarisation", &Annotation::polarisation);
    attribute(product, "flight", &Annotation::pass);
    attribute(product, "absolute_orbit", &Annotation::absoluteOrbit);
    attribute(product, "start_time", &Annotation::startTime);
    attribute(product, "stop_time", &Annotation::stopTime);
    attribute(product, "line_interval", &Annotation::lineInterval);
    attribute(product, "lines", &Annotation::lines);
    attribute(product, "samples", &Annotation::samples);
    attribute(product, "lines_per_burst", &Annotation::linesPerBurst);
    attribute(product, "slant_range_time", &Annotation::slantRangeTime);
    attribute(product, "range_sampling_rate", &Annotation::rangeSamplingRate);
    attribute(product, "range_pixel_spacing", &Annotation::rangePixelSpacing);
    attribute(product, "radar_frequency", &Annotation::radarFrequency);
    product.def_prop_ro("kind", [](const Product& p) { return name(p.annotation.kind); })
        .def_prop_ro("wavelength", [](const Product& p) { return products::wavelength(p.annotation); })
        .def_prop_ro(
            "burst_times",
            [](const Product& p) {
                return each(p.annotation.bursts, [&](const Burst& b) { return b.time.since(p.mapping.epoch()); });
            },
            nb::rv_policy::move)
        .def_prop_ro(
            "vectors", [](const Product& p) { return arrays(p.annotation.vectors); }, nb::rv_policy::move)
        .def_prop_ro("grid", &grid)
        .def_prop_ro("attitude", &attitude)
        .def_prop_ro("attitude_frame",
                     [](const Product& p) {
                         const auto& samples = p.annotation.attitude;
                         return samples.empty() ? std::string() : samples.front().frame;
                     })
        .def_prop_ro("doppler_centroids",
                     [](const Product& p) {
                         return polynomials(p, p.annotation.dopplerCentroids, &DopplerCentroid::geometry,
                                            &DopplerCentroid::data);
                     })
        .def_prop_ro(
            "frequency_rates",
            [](const Product& p) { return polynomials(p, p.annotation.frequencyRates, &FrequencyRate::coefficients); })
        .def_prop_ro("epoch", [](const Product& p) { return p.mapping.epoch(); })
        .def_ro("orbit", &Product::orbit)
        .def_ro("side", &Product::side)
        .def(
            "to_radar",
            [](const Product& p, const Numbers& line, const Numbers& pixel, const Room& time, const Room& slantRange) {
                const nb::gil_scoped_release released;
                p.mapping.toRadar(span(line), span(pixel), span(time), span(slantRange));
            },
            "line"_a.noconvert(), "pixel"_a.noconvert(), "time"_a.noconvert(), "slant_range"_a.noconvert())
        .def(
            "to_image",
            [](const Product& p, const Numbers& time, const Numbers& slantRange, const Room& line, const Room& pixel,
               const Room& otherLine) {
                const nb::gil_scoped_release released;
                p.mapping.toImage(span(time), span(slantRange), span(line), span(pixel), span(otherLine));
            },
            "time"_a.noconvert(), "slant_range"_a.noconvert(), "line"_a.noconvert(), "pixel"_a.noconvert(),
            "other_line"_a.noconvert());
}

}  // namespace vorbel::python
