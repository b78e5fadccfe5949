#ifndef VORBEL_SCENE_ELLIPSOID_H
#define VORBEL_SCENE_ELLIPSOID_H

namespace vorbel::scene {

// WGS 84 by its defining constants. The class's semi-minor axis is the one below, rounded to a micrometre.
constexpr double kSemiMajorAxis = 6378137.0;                                                        // a, m
constexpr double kFlattening = 1.0 / 298.257223563;                                                 // f
constexpr double kEccentricitySquared = kFlattening * (2.0 - kFlattening);                          // e²
constexpr double kSecondEccentricitySquared = kEccentricitySquared / (1.0 - kEccentricitySquared);  // e'²

// The heights for which the kernels' surface holds, either way from the ellipsoid.
constexpr double kHighest = 12000.0;  // m

constexpr double kDegreesPerRadian = 57.295779513082320877;

}  // namespace vorbel::scene

#endif
