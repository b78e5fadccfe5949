#ifndef VORBEL_GEOMETRY_GEODETIC_H
#define VORBEL_GEOMETRY_GEODETIC_H

#include "../arithmetic/Vector3.h"

#include <vorbel/Records.h>

namespace vorbel {

/// Cartesian to geodetic in the ellipsoid that the point carries: writes `lat` and `lon` in radians, `h` and `kind`.
///
/// A first-order correction from geocentric to geodetic latitude, in one pass. On the ellipsoid it stays within a
/// micro-degree of the exact latitude; the difference grows with height. Latitude and height of the Earth's centre are
/// not-a-number.
void toGeodetic(Geopoint& g);

/// Geodetic (degrees, km) to Cartesian (km) on WGS 84.
Vector3 toCartesian(double latitude, double longitude, double height);

/// The point as operations return it: Cartesian coordinates with latitude and longitude in degrees on WGS 84.
Geopoint groundPoint(const Vector3& point);

}  // namespace vorbel

#endif
