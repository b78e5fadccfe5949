#ifndef VORBEL_PYTHON_ARRAYS_H
#define VORBEL_PYTHON_ARRAYS_H

#include <vorbel/scene/Status.h>

#include <nanobind/ndarray.h>
#include <nanobind/stl/optional.h>

#include <cstdint>
#include <optional>
#include <span>

namespace vorbel::python {

// Arrays as the package hands them in: one dimension, contiguous, of the right type. None stands for an empty one.
using Numbers = nanobind::ndarray<const double, nanobind::ndim<1>, nanobind::c_contig, nanobind::device::cpu>;
using Room = nanobind::ndarray<double, nanobind::ndim<1>, nanobind::c_contig, nanobind::device::cpu>;
using StatusRoom = nanobind::ndarray<std::uint8_t, nanobind::ndim<1>, nanobind::c_contig, nanobind::device::cpu>;

using Given = std::optional<Numbers>;
using Wanted = std::optional<Room>;
using StatusWanted = std::optional<StatusRoom>;

inline std::span<const double> span(const Given& array) {
    return array ? std::span<const double>(array->data(), array->size()) : std::span<const double>();
}

inline std::span<double> span(const Wanted& array) {
    return array ? std::span<double>(array->data(), array->size()) : std::span<double>();
}

inline std::span<scene::Status> span(const StatusWanted& array) {
    static_assert(sizeof(scene::Status) == 1);
    return array ? std::span(reinterpret_cast<scene::Status*>(array->data()), array->size())
                 : std::span<scene::Status>();
}

/// A keyword argument that is an array or None, and never converted.
inline auto array(const char* name) {
    return nanobind::arg(name).noconvert().none() = nanobind::none();
}

}  // namespace vorbel::python

#endif
