#include "SiderealTime.h"

#include "Angles.h"

#include <vorbel/CVorbel.h>

#include <cmath>

namespace {

// Newcomb's mean sidereal time at 0h UT, as a polynomial in Julian centuries from 1900 January 0.5.
constexpr double kEpochDay = 0.5;
constexpr double kDaysPerCentury = 36525.0;
constexpr double kAngleAtEpoch = 99.6909833;  // degrees
constexpr double kRate = 36000.7689;          // degrees per century, whole turns of each day left out
constexpr double kAcceleration = 0.00038708;  // degrees per century squared
constexpr double kDegreesPerTurn = 360.0;

}  // namespace

double vorbel::siderealAngle(double day) {
    const double T = (day - kEpochDay) / kDaysPerCentury;
    const double turns = ((kAcceleration * T + kRate) * T + kAngleAtEpoch) / kDegreesPerTurn;
    double whole;
    return std::modf(turns, &whole) * kTwoPi;
}

double CVorbel::StarTime(double dDay) const {
    return vorbel::siderealAngle(dDay);
}
