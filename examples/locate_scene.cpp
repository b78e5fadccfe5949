// Finds the ground points of radar pixels, each from its azimuth time and slant range alone, and compares them with the
// points that the product itself gives.

#include "sentinel1_scene.h"

#include <vorbel/CVorbel.h>

#include <cstdio>

const double kLargestDistance = 0.4;  // m; more than that says that something is wrong

int main() {
    std::printf("Ground points of a Sentinel-1 scene from one orbit state vector, azimuth time and slant range,\n"
                "beside the points of the product's own geolocation grid (zero Doppler, right-looking).\n\n");

    // One state vector a few seconds before the scene, propagated over 30 s; any time in them can be asked for now.
    CVorbel orbit;
    orbit.InitLagrange(&kStateBeforeScene, 30.0, 0);

    std::printf("azimuth time     slant range       found       found     product     product  distance\n"
                "UTC                       km    lat, deg    lon, deg    lat, deg    lon, deg         m\n");
    double worst = 0.0;
    bool good = true;
    for (const GridPoint& p : kGrid) {
        // The ellipsoid swollen by the point's height is the surface on which the pixel lies.
        orbit.SetEllipsoid(kSemiMajor + p.height / 1000.0, kSemiMinor + p.height / 1000.0);
        const Geopoint found = orbit.GeoProssess(timeOfDay(p.seconds), p.slantRange, 0.0, kLooksRight);
        const double metres = distance(found, p);
        std::printf("%s %12.6f  %10.6f  %10.6f  %10.6f  %10.6f  %8.3f\n", clockTime(p.seconds).c_str(), p.slantRange,
                    found.lat, eastOrWest(found.lon), p.latitude, p.longitude, metres);
        worst = metres > worst ? metres : worst;
        good = good && metres <= kLargestDistance;  // false for not-a-number too
    }
    std::printf("worst distance: %.3f m (allowed: %.1f m)\n", worst, kLargestDistance);

    // The last but one pixel again, where the antenna really points: attitude of 10:22:36.875003 UTC, 14 ms earlier.
    const double pitch = -0.001368049;  // rad
    const double yaw = -0.044115522;
    const double roll = -0.522001502;
    const GridPoint& p = kGrid[13];
    const double time = timeOfDay(p.seconds);
    orbit.SetEllipsoid(kSemiMajor, kSemiMinor);
    const Geopoint beam = orbit.GeoLocation(time, p.slantRange, kLooksRight, pitch, yaw, roll);
    double range;
    const double rangeRate = orbit.radial_speed(time, beam.lat, beam.lon, beam.h, &range);

    std::printf("\nThe pixel of %s UTC, %.6f km, in the beam of the measured attitude:\n"
                "  pitch %.6f, yaw %.6f, roll %.6f rad: latitude %.6f, longitude %.6f deg,\n"
                "  %.1f m along the track from the point at zero Doppler, seen with a Doppler shift of %.2f Hz.\n",
                clockTime(p.seconds).c_str(), p.slantRange, pitch, yaw, roll, beam.lat, eastOrWest(beam.lon),
                distance(beam, p), dopplerOf(rangeRate));
    return good ? 0 : 1;
}
