// Finds the ground points of radar pixels from all state vectors of the product instead of one: interpolates them to
// the time of each pixel and hands each state over. Nothing is propagated, so nothing of the force model enters.

#include "sentinel1_scene.h"

#include <vorbel/CVorbel.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>

const double kLargestDistance = 0.02;  // m; more than that says that something is wrong

const int kNodes = 8;  // state vectors that an interpolation takes, four on each side where there are as many

/// The product's state at a time between its vectors: the polynomial through the positions of the nearest eight, and
/// that through their velocities.
fVector interpolated(double seconds) {
    const int count = static_cast<int>(std::size(kOrbit));
    int first = 0;
    while (first + kNodes < count && seconds - kOrbit[first].seconds > kOrbit[first + kNodes].seconds - seconds) {
        ++first;
    }
    OrbitVector sum = {};
    for (int i = first; i < first + kNodes; ++i) {
        double weight = 1.0;
        for (int j = first; j < first + kNodes; ++j) {
            if (j != i) {
                weight *= (seconds - kOrbit[j].seconds) / (kOrbit[i].seconds - kOrbit[j].seconds);
            }
        }
        sum.x += weight * kOrbit[i].x;
        sum.y += weight * kOrbit[i].y;
        sum.z += weight * kOrbit[i].z;
        sum.vx += weight * kOrbit[i].vx;
        sum.vy += weight * kOrbit[i].vy;
        sum.vz += weight * kOrbit[i].vz;
    }
    sum.seconds = seconds;
    return stateOf(sum);
}

int main() {
    std::printf("Ground points of a Sentinel-1 scene from its product's sixteen state vectors, interpolated to each\n"
                "pixel, beside the points from one vector before the scene and those of the product's own grid.\n\n");

    CVorbel one;
    one.InitLagrange(&kStateBeforeScene, 30.0, 0);

    // A read-out at the time of the current state gives that state back, whatever the history. It needs a step other
    // than 0, to which it relates the distance in time.
    CVorbel orbit;
    orbit.setStep(1.0);

    std::printf("azimuth time     slant range       found       found    distance, m  distance, m\n"
                "UTC                       km    lat, deg    lon, deg   interpolated   one vector\n");
    double worst = 0.0;
    double worstOfOne = 0.0;
    bool good = true;
    for (const GridPoint& p : kGrid) {
        const fVector state = interpolated(p.seconds);
        orbit.setVector(state);
        orbit.SetEllipsoid(kSemiMajor + p.height / 1000.0, kSemiMinor + p.height / 1000.0);
        const Geopoint found = orbit.GeoProssess(state.time, p.slantRange, 0.0, kLooksRight);
        const double metres = distance(found, p);

        one.SetEllipsoid(kSemiMajor + p.height / 1000.0, kSemiMinor + p.height / 1000.0);
        const double metresOfOne = distance(one.GeoProssess(state.time, p.slantRange, 0.0, kLooksRight), p);
        std::printf("%s %12.6f  %10.6f  %10.6f  %13.4f  %11.4f\n", clockTime(p.seconds).c_str(), p.slantRange,
                    found.lat, eastOrWest(found.lon), metres, metresOfOne);
        worst = std::max(worst, metres);
        worstOfOne = std::max(worstOfOne, metresOfOne);
        good = good && metres <= kLargestDistance;  // false for not-a-number too
    }
    std::printf("worst distance: %.4f m interpolated (allowed: %.2f m), %.4f m from one vector\n", worst,
                kLargestDistance, worstOfOne);
    return good ? 0 : 1;
}
