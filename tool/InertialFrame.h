#ifndef VORBEL_TOOL_INERTIAL_FRAME_H
#define VORBEL_TOOL_INERTIAL_FRAME_H

#include <vorbel/scene/Instant.h>

#include <array>

namespace vorbel::tool {

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>;  ///< rows

/// UT1 - UTC in s: monthly values of the IERS between 2014 and 2026, interpolated to 6 ms, and the outermost ones
/// outside.
double ut1MinusUtc(const scene::Instant& time);

/// Whether the table behind ut1MinusUtc() holds a time.
bool hasUt1(const scene::Instant& time);

/// Turns the mean equator and equinox of J2000 into the Earth-fixed frame: precession (IAU 1976), nutation (the terms
/// above 4 milliarcseconds of IAU 1980), apparent sidereal time (1982, with the equation of the equinoxes); no motion
/// of the pole.
Matrix earthFixedFromJ2000(const scene::Instant& time, double ut1MinusUtc);

}  // namespace vorbel::tool

#endif
