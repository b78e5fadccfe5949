// Predicts the Doppler centroid of a radar scene from the satellite's orbit and attitude, compares it with the
// product's own prediction, and shows the attitude that would steer the beam to zero Doppler.

#include "sentinel1_scene.h"

#include <vorbel/CVorbel.h>

#include <cmath>
#include <cstdio>

const double kLargestDifference = 0.05;  // Hz; more than that says that something is wrong
const double kZeroDoppler = 1e-6;        // Hz; what rounding leaves is a thousandth of it

int main() {
    std::printf("Doppler centroid of a Sentinel-1 scene from orbit and attitude, beside the one that the product\n"
                "computed, and the pitch and yaw that would steer the beam to zero Doppler.\n\n");

    // The state vector nearest to the middle of the scene, since a propagated orbit leaves the true one with time. The
    // interval of 20 s is made in two steps of 10 s, and seven steps back from its end can be read out: the whole
    // scene.
    CVorbel orbit;
    orbit.InitLagrange(&kStateMidScene, 20.0, 0);

    std::printf("time             slant range  predicted    product  difference  difference\n"
                "UTC                       km         Hz         Hz          Hz        mm/s\n");
    double worst = 0.0;
    bool good = true;
    for (const DopplerEstimate& e : kEstimates) {
        const Attitude a = between(e.before, e.after, e.seconds);
        for (int i = 0; i < 3; ++i) {
            const double rangeRate =
                orbit.centroid(timeOfDay(e.seconds), kSlantRange[i], a.pitch, a.yaw, a.roll, kLooksRight);
            const double difference = dopplerOf(rangeRate) - e.productDoppler[i];
            std::printf("%s %12.6f  %9.4f  %9.4f  %+10.4f  %+10.3f\n", clockTime(e.seconds).c_str(), kSlantRange[i],
                        dopplerOf(rangeRate), e.productDoppler[i], difference, difference * kWavelength / 2.0 * 1000.0);
            worst = std::abs(difference) > worst ? std::abs(difference) : worst;
            good = good && std::abs(difference) <= kLargestDifference;  // false for not-a-number too
        }
    }
    std::printf("worst difference: %.4f Hz, %.3f mm/s (allowed: %.2f Hz)\n\n", worst,
                worst * kWavelength / 2.0 * 1000.0, kLargestDifference);

    std::printf("time                 measured  measured  zero Doppler  zero Doppler  Doppler right  Doppler left\n"
                "UTC                pitch, rad  yaw, rad    pitch, rad      yaw, rad             Hz            Hz\n");
    for (const DopplerEstimate& e : kEstimates) {
        const double time = timeOfDay(e.seconds);
        const Attitude a = between(e.before, e.after, e.seconds);
        double pitch, yaw, roll;
        orbit.attitude(time, &pitch, &yaw, &roll);
        // attitude() gives the direction of the velocity relative to the Earth, its yaw without a sign. Turning the
        // beam square to that direction takes the opposite pitch, and the yaw with a minus on the way south.
        pitch = -pitch;
        if (orbit.Lagrange(&time, 7).vz < 0.0) {
            yaw = -yaw;
        }
        const double right = dopplerOf(orbit.centroid(time, kSlantRange[1], pitch, yaw, roll, kLooksRight));
        const double left = dopplerOf(orbit.centroid(time, kSlantRange[1], pitch, yaw, roll, -kLooksRight));
        std::printf("%s  %12.6f  %8.6f  %12.6f  %12.6f  %+13.1e  %+12.1e\n", clockTime(e.seconds).c_str(), a.pitch,
                    a.yaw, pitch, yaw, right, left);
        good = good && std::abs(right) <= kZeroDoppler && std::abs(left) <= kZeroDoppler;
    }
    return good ? 0 : 1;
}
