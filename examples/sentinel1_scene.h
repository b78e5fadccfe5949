#ifndef VORBEL_EXAMPLES_SENTINEL1_SCENE_H
#define VORBEL_EXAMPLES_SENTINEL1_SCENE_H

// What the examples share of one Sentinel-1 scene: Interferometric Wide swath IW1, HH, of the north shore of the Gulf
// of Saint Lawrence on 2022-04-14. The satellite flies south and looks to the right.
//
// Source: Copernicus Sentinel data 2022, annotation of the product
// S1A_IW_SLC__1SDH_20220414T102209_20220414T102236_042768_051AA4_E677.

#include <vorbel/CVorbel.h>

#include <cmath>
#include <cstdio>
#include <string>

const int kLooksRight = -1;             // iSide of every operation
const double kWavelength = 0.05546576;  // m
const int kDay = 44664;                 // 2022 April 14 in days, day 1 = 1900 January 1

/// A time of that day on the library's scale, seconds from 0h of day 1.
inline double timeOfDay(double seconds) {
    return (kDay - 1) * 86400.0 + seconds;
}

/// A state vector in the Earth-fixed frame.
struct OrbitVector {
    double seconds;     // of the day
    double x, y, z;     // km
    double vx, vy, vz;  // km/s
};

// All state vectors of the product. The scene lies between the seventh and the tenth.
const OrbitVector kOrbit[] = {
    {37267.036419, 2454.823841333, -3302.515651407, 5746.540991056, 1.8203649, -6.029571036, -4.232879633},
    {37277.036420, 2472.845782666, -3362.638444779, 5703.88875293, 1.783997983, -5.994866362, -4.29748808},
    {37287.036420, 2490.503302944, -3422.410559402, 5660.592839645, 1.747481542, -5.959435892, -4.361613448},
    {37297.036420, 2507.794932557, -3481.824755787, 5616.658118317, 1.710820706, -5.92328334, -4.425248476},
    {37307.036419, 2524.719253266, -3540.873832036, 5572.089528439, 1.674020619, -5.886412508, -4.488385956},
    {37317.036420, 2541.274898311, -3599.550624727, 5526.892081336, 1.637086434, -5.848827286, -4.551018731},
    {37327.036420, 2557.460552509, -3657.848009796, 5481.070859608, 1.600023313, -5.810531656, -4.613139702},
    {37337.036420, 2573.27495236, -3715.758903424, 5434.631016571, 1.562836429, -5.771529686, -4.674741823},
    {37347.036419, 2588.716886139, -3773.276262926, 5387.577775718, 1.525530964, -5.731825532, -4.735818105},
    {37357.036420, 2603.785193989, -3830.393087618, 5339.916430157, 1.488112109, -5.69142344, -4.796361616},
    {37367.036420, 2618.478767996, -3887.102419706, 5291.652342027, 1.450585062, -5.650327742, -4.856365481},
    {37377.036420, 2632.796552257, -3943.397345165, 5242.790941907, 1.412955027, -5.608542858, -4.915822885},
    {37387.036419, 2646.737542953, -3999.270994612, 5193.337728217, 1.375227216, -5.566073296, -4.974727074},
    {37397.036420, 2660.300788407, -4054.716544166, 5143.298266625, 1.337406847, -5.52292365, -5.033071354},
    {37407.036420, 2673.485389135, -4109.727216297, 5092.678189437, 1.299499143, -5.479098597, -5.090849091},
    {37417.036420, 2686.290497906, -4164.296280697, 5041.48319497, 1.26150933, -5.434602904, -5.148053719},
};

/// The library's record of it. The drag factor stays 0: no drag.
inline fVector stateOf(const OrbitVector& v) {
    fVector state;
    state.x = v.x;
    state.y = v.y;
    state.z = v.z;
    state.vx = v.vx;
    state.vy = v.vy;
    state.vz = v.vz;
    state.date = kDay;
    state.time = timeOfDay(v.seconds);
    return state;
}

const fVector kStateBeforeScene = stateOf(kOrbit[6]);
const fVector kStateMidScene = stateOf(kOrbit[8]);

struct GridPoint {
    double seconds;     // zero-Doppler azimuth time, seconds of the day
    double slantRange;  // km
    double latitude;    // geodetic, WGS 84, degrees
    double longitude;   // degrees, east positive
    double height;      // m above the ellipsoid
};

// Near, middle and far range on five lines of the product's geolocation grid, first to last.
const GridPoint kGrid[] = {
    {37331.755370, 801.7197020, 51.507233096, -60.248268797, 364.981},
    {37331.755452, 826.3897648, 51.588292938, -60.908305147, 493.971},
    {37331.755534, 851.0318728, 51.659211599, -61.514279083, 353.978},
    {37337.272483, 801.7197020, 51.177718103, -60.356314233, 375.980},
    {37337.272565, 826.3897648, 51.258244188, -61.008777682, 377.978},
    {37337.272647, 851.0318728, 51.329326777, -61.612900645, 361.977},
    {37345.544041, 801.7197020, 50.682990738, -60.511871641, 200.989},
    {37345.544124, 826.3897648, 50.763149764, -61.156454134, 142.992},
    {37345.544206, 851.0318728, 50.834528057, -61.758178775, 321.980},
    {37351.059099, 801.7197020, 50.352964862, -60.613740085, 55.997},
    {37351.059181, 826.3897648, 50.433255743, -61.256187697, 98.994},
    {37351.059263, 851.0318728, 50.504211654, -61.851067771, 137.992},
    {37356.888657, 801.7197020, 50.004338563, -60.722691462, 0.000},
    {37356.888739, 826.3897648, 50.084353146, -61.359588694, 0.000},
    {37356.888821, 851.0318728, 50.155123722, -61.949491103, 0.000},
};

const double kSemiMajor = 6378.137;        // WGS 84, km
const double kSemiMinor = 6356.752314245;  // km

/// Distance (m) from a point found to the exact position of a point of the grid.
inline double distance(const Geopoint& found, const GridPoint& p) {
    const double degree = std::acos(-1.0) / 180.0;
    const double e2 = 1.0 - kSemiMinor * kSemiMinor / (kSemiMajor * kSemiMajor);
    const double sinLat = std::sin(p.latitude * degree);
    const double cosLat = std::cos(p.latitude * degree);
    const double normal = kSemiMajor / std::sqrt(1.0 - e2 * sinLat * sinLat);
    const double h = p.height / 1000.0;
    const double dx = found.x - (normal + h) * cosLat * std::cos(p.longitude * degree);
    const double dy = found.y - (normal + h) * cosLat * std::sin(p.longitude * degree);
    const double dz = found.z - (normal * (1.0 - e2) + h) * sinLat;
    return std::sqrt(dx * dx + dy * dy + dz * dz) * 1000.0;
}

/// The library counts longitudes from 0 to 360 degrees.
inline double eastOrWest(double longitude) {
    return longitude > 180.0 ? longitude - 360.0 : longitude;
}

struct Attitude {
    double seconds;  // of the day
    double pitch;    // rad
    double yaw;
    double roll;
};

struct DopplerEstimate {
    double seconds;            // of the day
    double productDoppler[3];  // Hz, at the three slant ranges below
    Attitude before, after;    // attitude measurements around it
};

const double kSlantRange[3] = {801.7197020, 826.3757874, 851.0318728};  // near, middle and far, km

// The product's Doppler centroid from geometry, at the start, in the middle and at the end of the scene.
const DopplerEstimate kEstimates[] = {
    {37334.261478,
     {3.639130, 3.628129, 3.614799},
     {37333.874998, -0.001336034, -0.042832991, -0.521708886},
     {37334.875003, -0.001338518, -0.042889252, -0.521723002}},
    {37345.294585,
     {4.693720, 4.656195, 4.617693},
     {37344.874998, -0.001355803, -0.043451306, -0.521846166},
     {37345.875003, -0.001357871, -0.043507753, -0.521856391}},
    {37356.327693,
     {3.940248, 3.915220, 3.888802},
     {37355.874999, -0.001367884, -0.044061111, -0.521988783},
     {37356.875003, -0.001368049, -0.044115522, -0.522001502}},
};

/// The attitude at a time between two measurements.
inline Attitude between(const Attitude& a, const Attitude& b, double seconds) {
    const double w = (seconds - a.seconds) / (b.seconds - a.seconds);
    return {seconds, a.pitch + w * (b.pitch - a.pitch), a.yaw + w * (b.yaw - a.yaw), a.roll + w * (b.roll - a.roll)};
}

/// Range rate (km/s) as the Doppler frequency that the radar sees (Hz): an approaching point has a positive one.
inline double dopplerOf(double rangeRate) {
    return -2.0 / kWavelength * rangeRate * 1000.0;
}

/// Seconds of the day as hh:mm:ss.ssssss.
inline std::string clockTime(double seconds) {
    const int minutes = static_cast<int>(seconds / 60.0);
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d:%09.6f", minutes / 60, minutes % 60, seconds - 60.0 * minutes);
    return text;
}

#endif
