#ifndef VORBEL_PYTHON_BINDINGS_H
#define VORBEL_PYTHON_BINDINGS_H

#include <nanobind/nanobind.h>

namespace vorbel::python {

// Each adds its part of the extension module.
void bindProducts(nanobind::module_& module);
void bindRecords(nanobind::module_& module);
void bindClass(nanobind::module_& module);
void bindTime(nanobind::module_& module);
void bindOrbits(nanobind::module_& module);
void bindGround(nanobind::module_& module);
void bindPixels(nanobind::module_& module);
void bindTerrains(nanobind::module_& module);

}  // namespace vorbel::python

#endif
