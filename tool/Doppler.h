#ifndef VORBEL_TOOL_DOPPLER_H
#define VORBEL_TOOL_DOPPLER_H

#include <vorbel/products/Product.h>

#include <vector>

namespace vorbel::tool {

/// A Doppler centroid beside the product's own.
struct CentroidComparison {
    scene::Instant time;
    double slantRange;  ///< m
    double computed;    ///< Hz, from orbit and attitude
    double geometry;    ///< Hz, the product's from orbit and attitude
    double data;        ///< Hz, the product's from the echoes
};

/// Centroids at the times and the first, middle and last range of the product's own; those at times outside its list of
/// attitudes are left out.
/// \param[in] height       m above the WGS 84 ellipsoid, of the ground
/// \param[in] ut1MinusUtc  s
/// \throws std::runtime_error  a product without attitudes or centroids, or with attitudes in another frame than GM2000
std::vector<CentroidComparison> compareCentroids(const products::Product& product, double height, double ut1MinusUtc);

}  // namespace vorbel::tool

#endif
