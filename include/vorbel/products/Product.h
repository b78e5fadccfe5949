#ifndef VORBEL_PRODUCTS_PRODUCT_H
#define VORBEL_PRODUCTS_PRODUCT_H

/// \file
/// A product, ready to be located.

#include <vorbel/products/Annotation.h>
#include <vorbel/products/Export.h>
#include <vorbel/products/OrbitFile.h>
#include <vorbel/products/PixelMapping.h>
#include <vorbel/scene/Orbit.h>
#include <vorbel/scene/PixelToGround.h>

namespace vorbel::products {

/// A product's annotation, with the orbit and the mapping that follow from it. All times count from
/// `mapping.epoch()`, which is the orbit's epoch too.
struct Product {
    Annotation annotation;                          ///< what the file says
    scene::Orbit orbit;                             ///< where the satellite was
    PixelMapping mapping;                           ///< when and at which range each pixel was seen
    scene::LookSide side = scene::LookSide::right;  ///< of all Sentinel-1
};

/// How far a product's mapping and its own geolocation grid disagree.
struct GridAgreement {
    std::size_t points = 0;   ///< compared
    double worstTime = 0.0;   ///< s
    double rmsTime = 0.0;     ///< s
    double worstRange = 0.0;  ///< m
};

/// A product on its own state vectors, whose times it has rounded to 1 us and which count as evenly spaced.
/// \throws std::runtime_error  vectors or timing that contradict themselves; one sentence says which
VORBEL_PRODUCTS_API Product makeProduct(Annotation annotation, Bistatic bistatic = Bistatic::corrected);

/// A product on the vectors of an orbit file, chosen around it with 60 s on both sides.
/// \throws std::runtime_error  as above; the file is of another satellite, or does not cover the product
VORBEL_PRODUCTS_API Product makeProduct(Annotation annotation, const OrbitFile& orbit,
                                        Bistatic bistatic = Bistatic::corrected);

/// Compares the mapping, by line and pixel, with the times and ranges of the product's own grid. Points of the grid
/// outside the image are left out.
VORBEL_PRODUCTS_API GridAgreement compareWithGrid(const PixelMapping& mapping, const Annotation& annotation);

}  // namespace vorbel::products

#endif
