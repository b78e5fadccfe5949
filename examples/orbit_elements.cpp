// Prints the osculating elements of a satellite's orbit, propagates it over one revolution and prints them again.

#include "sentinel1_scene.h"

#include <vorbel/CVorbel.h>

#include <cmath>
#include <cstdio>

const double kMu = 398600.398;  // km^3/s^2, the value behind the library's elements
const double kTurn = 6.283185307179586;
const double kDegree = kTurn / 360.0;

// Sentinel-1 flies 175 revolutions in the 12 days of its repeat cycle.
const double kPublishedRevolution = 12.0 * 86400.0 / 175.0;  // s
const double kLargestDifference = 0.5;                       // s; more than that says that something is wrong

double secondsOfDay(const fVector& state) {
    return state.time - (state.date - 1.0) * 86400.0;
}

/// Elements of an Earth-fixed state. A record with its epoch counts seconds from 0h of its own day.
Elements_Struct elementsOf(const CVorbel& orbit, const fVector& state) {
    Ephemeris_Struct ephemeris;
    ephemeris.date = static_cast<int>(state.date);
    ephemeris.time = secondsOfDay(state);
    ephemeris.system = 0;
    ephemeris.state = state;
    Elements_Struct elements;
    orbit.Ephemeris_to_Elements(&ephemeris, &elements);
    return elements;
}

double periodOf(const Elements_Struct& elements) {
    return kTurn * std::sqrt(elements.a * elements.a * elements.a / kMu);
}

double perigeeOf(const Elements_Struct& elements) {
    const double argument = elements.u - elements.nu;
    return argument < 0.0 ? argument + kTurn : argument;
}

void print(const char* name, double start, double end) {
    std::printf("%-28s %15.6f  %15.6f  %+11.6f\n", name, start, end, end - start);
}

void printAngle(const char* name, double start, double end) {
    const double change = std::remainder(end - start, kTurn);
    std::printf("%-28s %15.6f  %15.6f  %+11.6f\n", name, start / kDegree, end / kDegree, change / kDegree);
}

int main() {
    std::printf("Osculating elements of Sentinel-1A's orbit in the inertial frame, from one Earth-fixed state vector,\n"
                "and again after one revolution under central gravity and J2.\n\n");

    const fVector start = kStateBeforeScene;
    CVorbel orbit;
    const Elements_Struct first = elementsOf(orbit, start);

    // A step of 20 s leaves 140 s of trajectory to read out, here from 80 s before to 60 s after the period of the
    // first ellipse.
    const double step = 20.0;
    orbit.SetProgParam(&start, step, 0);
    orbit.prog(periodOf(first) + 60.0);

    // The revolution is over when the satellite is as far from the ascending node as at the start.
    double time = start.time + periodOf(first);
    Elements_Struct last;
    for (int i = 0; i < 3; ++i) {
        last = elementsOf(orbit, orbit.Lagrange(&time, 7));
        time -= std::remainder(last.u - first.u, kTurn) / kTurn * periodOf(last);
    }
    const double revolution = time - start.time;

    std::printf("UTC, 2022-04-14              %s  %s       change\n", clockTime(secondsOfDay(start)).c_str(),
                clockTime(secondsOfDay(start) + revolution).c_str());
    print("semi-major axis, km", first.a, last.a);
    print("eccentricity", first.e, last.e);
    printAngle("inclination, deg", first.incl, last.incl);
    printAngle("ascending node, deg", first.raan, last.raan);
    printAngle("argument of perigee, deg", perigeeOf(first), perigeeOf(last));
    printAngle("argument of latitude, deg", first.u, last.u);
    printAngle("true anomaly, deg", first.nu, last.nu);
    print("period of the ellipse, s", periodOf(first), periodOf(last));

    const double difference = revolution - kPublishedRevolution;
    std::printf("\nrevolution, back at the same argument of latitude: %.3f s\n"
                "from the repeat cycle, 175 revolutions in 12 days: %.3f s\n"
                "difference: %.3f s (allowed: %.1f s)\n",
                revolution, kPublishedRevolution, difference, kLargestDifference);
    return std::abs(difference) <= kLargestDifference ? 0 : 1;  // 1 for not-a-number too
}
