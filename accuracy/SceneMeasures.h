#ifndef VORBEL_ACCURACY_SCENE_MEASURES_H
#define VORBEL_ACCURACY_SCENE_MEASURES_H

#include "Folder.h"
#include "Spread.h"

#include "../tool/Geometry.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

// The operations on arrays beside the reference and beside real products. Lengths are in metres, speeds in metres per
// second, times in seconds, angles in degrees.

namespace accuracy {

// --- pixels and the ground ---

/// What pixelToGround() gives, against the same quantity reckoned from its x, y and z in extended precision: circular
/// orbits 150 to 700 km high, both sides, all latitudes with the poles, ranges from 5 % beyond the nadir to the limb,
/// heights from -500 to 9000 m, range rates of up to a tenth of the speed in every second scene.
struct GroundError {
    Spread range;
    Spread rangeRate;
    Spread height;
    Spread horizontal;  // of latitude and longitude
    Spread incidence;
    Spread lookAngle;
    Spread azimuth;
};
inline constexpr int kRandomScenes = 400;
GroundError groundError();

/// How far beamToGround() and the class are apart on the same states: ranges of 720 to 1200 km, attitudes of some
/// degrees, heights to 4 km.
struct BeamDifference {
    Spread pointAtHeight0;
    Spread pointAbove;
    Spread latitude;  // m
    Spread centroid;  // m/s
};
BeamDifference beamDifference();

/// Pixels to the ground and back.
struct RoundTrip {
    Spread time;
    Spread range;
};
/// Of the pixels of groundError(), through latitude, longitude and height.
RoundTrip roundTrip(bool squinted);
/// Of 20,000 pixels between the corners of a product's grid.
RoundTrip roundTrip(const NamedProduct& product);

/// A product's geolocation grid.
struct GridError {
    Spread point;  // of pixelToGround() at the grid's times, ranges and heights, from the grid's points
    Spread time;   // of groundToPixel() at the grid's points, from the grid's times
    Spread range;  // and ranges
};
GridError gridError(const NamedProduct& product);

// --- terrain ---

/// Points of a terrain forward to the radar and back.
struct TerrainReturn {
    std::size_t points = 0;
    std::size_t rim = 0;  // on the raster's rim, where rounding decides whether there is terrain; not among the rest
    std::size_t layover = 0;  // masked
    std::size_t shadow = 0;   // masked
    std::size_t outside = 0;  // unmasked, but `outside_terrain`
    std::size_t other = 0;    // not seen on the way there, or unmasked with any other status
    Spread distance;          // of the rest from where they were
};
/// All values of a raster.
TerrainReturn valuesReturn(const NamedProduct& product);
/// Points elsewhere on its surface, half of them on the sides of its cells.
TerrainReturn surfaceReturn(const NamedProduct& product, std::size_t points);

/// Rough rasters of 601 by 601 values, 12 seconds of arc apart: hills of 500 m and 30 to 1000 m of noise at each value.
inline constexpr int kRoughRasters = 18;
TerrainReturn roughValuesReturn();
TerrainReturn roughSurfaceReturn();

/// Pixels in lines over these.
struct TerrainPixels {
    std::size_t pixels = 0;
    std::size_t located = 0;
    std::size_t layover = 0;  // of those
    std::size_t hidden = 0;
    Spread vertical;  // of the points' heights from the bilinear surface
    Spread range;     // of the points, from the pixel's
    Spread rangeRate;
};
TerrainPixels terrainPixels();

// --- the orbit ---

/// Vectors of an orbit file that were left out, from the orbit through the others.
struct Thinned {
    Spread fromAll;  // through all that were kept
    Spread fromTwo;  // through the one before and the one behind alone
};
Thinned thinned(const Folder& folder, int spacing);

/// The orbit through the vectors of one product.
struct ProductOrbit {
    Spread asWritten;      // every second vector left out, times rounded to 1e-6 s
    Spread evenTimes;      // the same with even times
    Spread derivatives;    // the grid's points, if derivatives of the positions took the place of the velocities
    Spread ownVelocities;  // the grid's points, with the velocities as given
};
ProductOrbit productOrbit(const NamedProduct& product);

/// Vectors of the class's force model, 2 to 40 of them, against its exact motion between the first and the last.
struct MotionSpread {
    Spread position;
    Spread velocity;
};
MotionSpread modelOrbit(int spacing);

/// Orbit::propagated() over one side, against the exact motion.
Spread propagatedError(double reach);

/// Orbit::fromTrajectory() against CVorbel::Lagrange() of order 7, steps of 60 s, over the newest steps.
Spread readOutDifference(int newestSteps);

/// An orbit that ends at a vector of an orbit file and is continued, against the vectors that follow.
Spread beyondVectors(const Folder& folder, double seconds);

/// Two orbit files whose spans overlap, made into one orbit.
struct Overlap {
    std::string names;
    double offset = 0;  // s from a vector of the second file back to the nearest of the first
    Spread vectors;     // of the second, from the orbit of the first
    Spread first;       // the joint orbit from that of the first file, to a minute before its end
    Spread lastMinute;  // in that minute
    Spread between;     // from that of the second file, in the minute after
    Spread second;      // and from then on
};
std::optional<Overlap> overlap(const Folder& folder);

// --- products ---

/// What a product says of its pixels and Doppler centroids, against the library.
struct ProductError {
    vorbel::products::GridAgreement corrected;
    vorbel::products::GridAgreement uncorrected;  // without the bistatic correction
    vorbel::tool::GridComparison grid;
};
ProductError productError(const NamedProduct& product);

/// Differences of Doppler centroids from orbit and attitude to the product's, Hz.
Spread centroidError(const NamedProduct& product);

}  // namespace accuracy

#endif
