// What products say of their pixels and their Doppler centroids.

#include "SceneMeasures.h"

#include "../tool/Doppler.h"
#include "../tool/InertialFrame.h"

namespace accuracy {

using namespace vorbel;

ProductError productError(const NamedProduct& product) {
    const products::Annotation& a = product.product.annotation;
    return {products::compareWithGrid(product.product.mapping, a),
            products::compareWithGrid(products::PixelMapping(a, products::Bistatic::uncorrected), a),
            tool::compareGrid(product.product)};
}

Spread centroidError(const NamedProduct& product) {
    const double ut1 = tool::ut1MinusUtc(product.product.annotation.startTime);
    Spread spread;
    for (const tool::CentroidComparison& centroid : tool::compareCentroids(product.product, 0, ut1)) {
        spread.add(centroid.computed - centroid.geometry);
    }
    return spread;
}

}  // namespace accuracy
