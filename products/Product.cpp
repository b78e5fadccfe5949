#include <vorbel/products/Product.h>

#include "Constants.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace vorbel::products {
namespace {

Product onVectors(Annotation annotation, std::span<const scene::StateVector> vectors, const std::string& source,
                  Bistatic bistatic) {
    PixelMapping mapping(annotation, bistatic);
    try {
        scene::Orbit orbit = scene::Orbit::fromVectors(vectors, mapping.epoch());
        return {std::move(annotation), std::move(orbit), std::move(mapping)};
    } catch (const std::invalid_argument& error) {
        throw std::runtime_error(source + ": " + error.what());
    }
}

}  // namespace

Product makeProduct(Annotation annotation, Bistatic bistatic) {
    const std::vector<scene::StateVector> vectors = scene::withEvenTimes(annotation.vectors);
    const std::string source = annotation.source;
    return onVectors(std::move(annotation), vectors, source, bistatic);
}

Product makeProduct(Annotation annotation, const OrbitFile& orbit, Bistatic bistatic) {
    if (!orbit.mission.empty() && orbit.mission != annotation.mission) {
        throw std::runtime_error(orbit.source + " is of the satellite " + orbit.mission + ", not " +
                                 annotation.mission + " as " + annotation.source);
    }
    const auto vectors = vectorsAround(orbit, annotation.startTime, annotation.stopTime);
    return onVectors(std::move(annotation), vectors, orbit.source, bistatic);
}

GridAgreement compareWithGrid(const PixelMapping& mapping, const Annotation& annotation) {
    GridAgreement agreement;
    double squares = 0.0;
    for (const GridPoint& g : annotation.grid) {
        const RadarPosition radar = mapping.toRadar({g.line, g.pixel});
        if (std::isnan(radar.time)) {
            continue;
        }
        const double time = std::abs(radar.time - g.time.since(mapping.epoch()));
        const double range = std::abs(radar.slantRange - g.slantRangeTime * (kSpeedOfLight / 2));
        ++agreement.points;
        squares += time * time;
        agreement.worstTime = std::max(agreement.worstTime, time);
        agreement.worstRange = std::max(agreement.worstRange, range);
    }
    agreement.rmsTime = agreement.points > 0 ? std::sqrt(squares / static_cast<double>(agreement.points)) : 0.0;
    return agreement;
}

}  // namespace vorbel::products
