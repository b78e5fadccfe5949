#ifndef VORBEL_BENCHMARKS_SCENE_H
#define VORBEL_BENCHMARKS_SCENE_H

#include <vorbel/CVorbel.h>

#include <array>

// The orbit and the image that every operation works on: an Earth-fixed state of Sentinel-1A two minutes around an
// interferometric-wide acquisition, and the times, slant ranges, range rate and attitude of that acquisition.
// Contains Copernicus Sentinel data 2022, product
// S1A_IW_SLC__1SDH_20220414T102209_20220414T102236_042768_051AA4_E677.

namespace bench {

inline constexpr int kGreenwich = 0;
inline constexpr int kAbsolute = 1;
inline constexpr int kRight = -1;

inline constexpr double kStep = 10.0;           // s
inline constexpr int kRevolutionSteps = 593;    // 5930 s, one revolution and 5 s
inline constexpr double kInitInterval = 120.0;  // s
inline constexpr double kDragFactor = 2.2e-8;   // km²/kg: drag coefficient 2.2, 0.01 m² of cross section per kilogram
inline constexpr double kFirstLine = 64.718951;  // s after the start state
inline constexpr double kLastLine = 89.852402;
inline constexpr double kNearRange = 801.7197019847373;  // km
inline constexpr double kFarRange = 851.0318728290314;
inline constexpr double kRangeRate = -0.000100924;  // km/s
inline constexpr double kPitch = -0.001351295;      // rad
inline constexpr double kYaw = -0.043338044;
inline constexpr double kRoll = 0.0;
inline constexpr double kMidLatitude = 240.0;         // s to where the Earth's radius is near 6371 km
inline constexpr double kAntennaRoll = -0.521821354;  // of the antenna itself, half a radian down to the right

inline fVector startState() {
    fVector s;
    s.x = 2454.823841333;
    s.y = -3302.515651407;
    s.z = 5746.540991056;
    s.vx = 1.8203649;
    s.vy = -6.029571036;
    s.vz = -4.232879633;
    s.date = 44664.0;
    s.time = (s.date - 1.0) * 86400.0 + 37267.036419;
    return s;
}

struct Pixel {
    double time;   // s, scale of fVector::time
    double range;  // km
};

inline constexpr int kPixels = 64;

/// Pixels over the whole scene, neighbours far apart.
inline std::array<Pixel, kPixels> scenePixels(double later = 0.0) {
    std::array<Pixel, kPixels> pixels{};
    for (int i = 0; i < kPixels; ++i) {
        const double along = static_cast<double>(i * 29 % kPixels) / (kPixels - 1);
        const double across = static_cast<double>(i * 13 % kPixels) / (kPixels - 1);
        const auto k = static_cast<std::size_t>(i);
        pixels[k].time = startState().time + later + kFirstLine + along * (kLastLine - kFirstLine);
        pixels[k].range = kNearRange + across * (kFarRange - kNearRange);
    }
    return pixels;
}

/// An object whose read-outs cover the scene, or the same scene `later` seconds further along the orbit.
inline CVorbel sceneOrbit(double later = 0.0) {
    CVorbel orbit;
    fVector start = startState();
    if (later > 0.0) {
        orbit.SetProgParam(&start, kStep, kGreenwich);
        start = orbit.prog(later);
    }
    orbit.InitLagrange(&start, kInitInterval, kGreenwich);
    return orbit;
}

/// The ground points of the pixels.
inline std::array<Geopoint, kPixels> sceneGroundPoints() {
    CVorbel orbit = sceneOrbit();
    const std::array<Pixel, kPixels> pixels = scenePixels();
    std::array<Geopoint, kPixels> points;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        points[i] = orbit.GeoLocation(pixels[i].time, pixels[i].range, kRight, kPitch, kYaw, kRoll);
    }
    return points;
}

}  // namespace bench

#endif
