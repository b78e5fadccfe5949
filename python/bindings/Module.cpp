#include "Bindings.h"

NB_MODULE(_core, module) {
    module.doc() = "The compiled part of vorbel. Use it through the package: import vorbel.";
    vorbel::python::bindRecords(module);
    vorbel::python::bindClass(module);
    vorbel::python::bindTime(module);
    vorbel::python::bindOrbits(module);
    vorbel::python::bindGround(module);
    vorbel::python::bindPixels(module);
    vorbel::python::bindTerrains(module);
#ifdef VORBEL_PYTHON_PRODUCTS
    vorbel::python::bindProducts(module);
#endif
}
