#include "Geodetic.h"

#include "../frames/Angles.h"

#include <cmath>

namespace {

// WGS 84, as the way from geodetic to Cartesian takes it, whatever ellipsoid a point carries
constexpr double kEquatorialRadius = Geopoint{}.a;           // km
constexpr double kAxisRatioSquared = 0.9933056200098027;     // (b/a)²
constexpr double kPolarSemiLatusRectum = 6335.439327292463;  // b²/a, km

}  // namespace

void vorbel::toGeodetic(Geopoint& g) {
    const double r = std::sqrt(g.x * g.x + g.y * g.y + g.z * g.z);
    const double geocentric = std::asin(g.z / r);
    const double e2 = (g.f + g.f) - g.f * g.f;
    const double c = std::cos(geocentric);
    const double W = 1.0 - c * e2 * c;
    const double R = std::sqrt(1.0 - e2) * g.a / std::sqrt(W);  // of the ellipsoid, towards the point
    const double s = std::sin(geocentric);
    const double k = s * e2 * c / W;
    const double delta = k * R / r;  // geodetic less geocentric latitude, smaller with distance
    g.lat = delta + geocentric;
    g.lon = wrapped(std::atan2(g.y, g.x));
    g.kind = 0;
    g.h = (1.0 - delta * k * 0.5) * (r - R);
}

vorbel::Vector3 vorbel::toCartesian(double latitude, double longitude, double height) {
    const double phi = latitude * kRadiansPerDegree;
    const double lambda = longitude * kRadiansPerDegree;
    const double c = std::cos(phi);
    const double s = std::sin(phi);
    const double W = std::sqrt(s * kAxisRatioSquared * s + c * c);
    const double t = c * (kEquatorialRadius / W + height);
    return {std::cos(lambda) * t, std::sin(lambda) * t, (kPolarSemiLatusRectum / W + height) * s};
}

Geopoint vorbel::groundPoint(const Vector3& point) {
    Geopoint g;
    g.x = point.x;
    g.y = point.y;
    g.z = point.z;
    toGeodetic(g);
    g.lat = g.lat / kRadiansPerDegree;
    g.lon = g.lon / kRadiansPerDegree;
    return g;
}
