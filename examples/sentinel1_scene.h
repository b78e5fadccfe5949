#ifndef VORBEL_EXAMPLES_SENTINEL1_SCENE_H
#define VORBEL_EXAMPLES_SENTINEL1_SCENE_H

// What the examples share of one Sentinel-1 scene: Interferometric Wide swath IW1, HH, of the north shore of the Gulf
// of Saint Lawrence on 2022-04-14. The satellite flies south and looks to the right.
//
// Source: Copernicus Sentinel data 2022, annotation of the product
// S1A_IW_SLC__1SDH_20220414T102209_20220414T102236_042768_051AA4_E677.

#include <vorbel/CVorbel.h>

#include <cstdio>
#include <string>

const int kLooksRight = -1;             // iSide of every operation
const double kWavelength = 0.05546576;  // m
const int kDay = 44664;                 // 2022 April 14 in days, day 1 = 1900 January 1

/// A time of that day on the library's scale, seconds from 0h of day 1.
inline double timeOfDay(double seconds) {
    return (kDay - 1) * 86400.0 + seconds;
}

/// A state vector in the Earth-fixed frame, km and km/s. The drag factor stays 0: no drag.
inline fVector stateVector(double seconds, double x, double y, double z, double vx, double vy, double vz) {
    fVector state;
    state.x = x;
    state.y = y;
    state.z = z;
    state.vx = vx;
    state.vy = vy;
    state.vz = vz;
    state.date = kDay;
    state.time = timeOfDay(seconds);
    return state;
}

const fVector kStateBeforeScene =
    stateVector(37327.036420, 2557.460552509, -3657.848009796, 5481.070859608, 1.600023313, -5.810531656, -4.613139702);
const fVector kStateMidScene =
    stateVector(37347.036419, 2588.716886139, -3773.276262926, 5387.577775718, 1.525530964, -5.731825532, -4.735818105);

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
