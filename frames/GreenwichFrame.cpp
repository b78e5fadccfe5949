#include "Angles.h"
#include "EarthRotation.h"
#include "Epoch.h"
#include "SiderealTime.h"

#include <vorbel/CVorbel.h>

#include <cmath>

// Turns between the absolute (inertial) and the Greenwich (Earth-fixed) frame about their common z axis.

namespace {

using vorbel::kEarthRate;
using vorbel::kRadiansPerDegree;

/// Writes position and velocity of `v` into `out`, which may be v, in axes that are turned by an angle about z and keep
/// turning at a rate. The other way is the same with angle and rate negated.
void turn(const fVector& v, double angle, double rate, fVector& out) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const double x = c * v.x + s * v.y;
    const double y = c * v.y - s * v.x;
    const double vx = c * v.vx + s * v.vy + rate * y;
    const double vy = c * v.vy - s * v.vx - rate * x;
    out.x = x;
    out.y = y;
    out.z = v.z;
    out.vx = vx;
    out.vy = vy;
    out.vz = v.vz;
}

void turnToGreenwich(const fVector& v, double angle, fVector& out) {
    turn(v, angle, kEarthRate, out);
}

void turnToAbsolute(const fVector& v, double angle, fVector& out) {
    turn(v, -angle, -kEarthRate, out);
}

double secondsOfDay(const fVector& v) {
    return v.time - (v.date - 1.0) * vorbel::kSecondsPerDay;
}

double angleAt(const fVector& v) {
    return vorbel::siderealAngle(v.date) + kEarthRate * secondsOfDay(v);
}

double angleAt(const Ephemeris_Struct& record) {
    return vorbel::siderealAngle(static_cast<double>(record.date)) + kEarthRate * record.time;
}

}  // namespace

fVector CVorbel::ABS_Grnv(const fVector& v) const {
    fVector out = v;
    turnToGreenwich(v, angleAt(v), out);
    return out;
}

fVector CVorbel::ABS_Grnv(const fVector& v, double dAngle) const {
    fVector out = v;
    turnToGreenwich(v, kEarthRate * secondsOfDay(v) + dAngle * kRadiansPerDegree, out);
    return out;
}

fVector CVorbel::ABS_GrnvR_t(const fVector& v, double dAngle, double dTime0) const {
    fVector out = v;
    turnToGreenwich(v, kEarthRate * (v.time - dTime0) + dAngle * kRadiansPerDegree, out);
    return out;
}

fVector CVorbel::Grnv_ABS(const fVector& v) const {
    fVector out = v;
    turnToAbsolute(v, angleAt(v), out);
    return out;
}

void CVorbel::ABS_to_Grinvich(const Ephemeris_Struct* in, Ephemeris_Struct* out) const {
    turnToGreenwich(in->state, angleAt(*in), out->state);
    vorbel::copyEpoch(*in, *out);
    out->state.date = in->state.date;
    out->state.time = in->state.time;
    out->system = 0;
}

void CVorbel::Grinvich_to_ABS(const Ephemeris_Struct* in, Ephemeris_Struct* out) const {
    turnToAbsolute(in->state, angleAt(*in), out->state);
    vorbel::copyEpoch(*in, *out);
    out->state.date = in->state.date;
    out->state.time = in->state.time;
    out->system = 1;
}
