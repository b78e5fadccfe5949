#include "Vectors.h"

#include <vorbel/CVorbel.h>

#include <GeographicLib/Geocentric.hpp>
#include <erfa.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

// Against other software: sidereal time from ERFA, geodetic coordinates from GeographicLib.

namespace {

/// What is known to part Newcomb's sidereal time from the IAU 1982 one, in seconds of time: the motion of the FK5
/// equinox against that of the FK4 (Fricke 1982); Newcomb's rate of 8640184.542 s a century, here cut to a ten
/// thousandth of a degree; and through the day the rate of the Earth's rotation, here cut to nine digits.
double knownDifference(double day, double secondsOfDay) {
    const double centuries = (day - 0.5) / 36525.0;  // from 1900
    const double iau1982Rate = 2.0 * kPi * 1.00273790935 / 86400.0;
    return -(0.0775 + 0.0850 * (centuries - 1.0)) - (8640184.542 - 36000.7689 * 240.0) * centuries +
           (kEarthRate - iau1982Rate) * secondsOfDay * 43200.0 / kPi;
}

TEST(Erfa, SiderealTimeDiffersByWhatIsKnown) {
    const CVorbel orbit;
    for (int year = 1960; year <= 2040; year += 5) {
        for (const double seconds : {0.0, 43200.0, 80000.5}) {
            double epoch, mjd;
            ASSERT_EQ(eraCal2jd(year, 1, 1, &epoch, &mjd), 0);
            const double day = mjd - 15019.0;  // day 1 is the modified Julian date 15020
            // the X axis of the absolute frame moves backwards through the sidereal angle
            const fVector g = orbit.ABS_Grnv({7000.0, 0.0, 0.0, 0.0, 0.0, 0.0, day, (day - 1.0) * 86400.0 + seconds});
            const double angle = std::atan2(-g.y, g.x);
            const double iau1982 = eraGmst82(epoch + mjd, seconds / 86400.0);
            const double difference = std::remainder(angle - iau1982, 2.0 * kPi) * 43200.0 / kPi;
            EXPECT_NEAR(difference, knownDifference(day, seconds), 2e-4) << year;  // s
        }
    }
}

const GeographicLib::Geocentric& wgs84() {
    static const GeographicLib::Geocentric ellipsoid(kWgs84A, (kWgs84A - kWgs84B) / kWgs84A);  // in km
    return ellipsoid;
}

/// The library's degrees in true ones.
double trueDegrees(double libraryDegrees) {
    return libraryDegrees * kLibraryDegree * 180.0 / kPi;
}

TEST(GeographicLib, GeodeticCoordinatesAreOfFirstOrder) {
    const struct {
        double height;               // km
        double tooFarOut, tooFarIn;  // worst latitude, away from and towards the equator, degrees
        double heightError;          // km
    } expected[] = {{0.0, 7.23e-7, 0.0, 0.0}, {9.0, 1.26e-6, 7.2e-7, 4.9e-10}, {100.0, 1.01e-5, 9.6e-6, 2.44e-8}};
    for (const auto& e : expected) {
        double out = 0.0;
        double in = 0.0;
        double worstHeight = 0.0;
        for (int halfDegrees = -179; halfDegrees < 180; halfDegrees += 2) {
            for (int octant = 0; octant < 8; ++octant) {
                const Axes local =
                    rotationZ(octant * kPi / 4.0) * rotationY(-halfDegrees * kPi / 360.0);  // up, east, north
                const Vec3 r = 7000.0 * local.e1;
                const Vec3 v = 7.5 * local.e3;
                CVorbel orbit = holding({r.x, r.y, r.z, v.x, v.y, v.z, 0.0, 0.0, 0.0}, 0);
                orbit.SetEllipsoid(kWgs84A + e.height, kWgs84B + e.height);
                const Geopoint g = orbit.GeoLocation(0.0, 800.0, 1, 0.0, 0.0, 0.0);
                double latitude, longitude, height;
                wgs84().Reverse(g.x, g.y, g.z, latitude, longitude, height);
                const double excess = std::copysign(1.0, latitude) * (trueDegrees(g.lat) - latitude);
                out = std::max(out, excess);
                in = std::max(in, -excess);
                worstHeight = std::max(worstHeight, std::abs(g.h - height));
                ASSERT_NEAR(trueDegrees(g.lon), longitude < 0.0 ? longitude + 360.0 : longitude, 1e-12);
            }
        }
        // to the sampling of the latitudes, and to rounding
        EXPECT_NEAR(out, e.tooFarOut, 0.02 * e.tooFarOut);
        EXPECT_NEAR(in, e.tooFarIn, 0.02 * e.tooFarIn + 1e-12);
        EXPECT_NEAR(worstHeight, e.heightError, 0.02 * e.heightError + 1e-11);
    }
}

TEST(GeographicLib, RadialSpeedPlacesItsPointExactly) {
    const fVector state{7000.0, 0.0, 0.0, 0.0, 1.0, 7.4, 0.0, 0.0, 0.0};
    CVorbel orbit = holding(state, 0);
    for (int latitude = -90; latitude <= 90; latitude += 9) {
        for (int longitude = -180; longitude <= 360; longitude += 30) {
            for (const double height : {-1.0, 0.0, 500.0}) {
                Vec3 point;
                wgs84().Forward(trueDegrees(latitude), trueDegrees(longitude), height, point.x, point.y, point.z);
                const Vec3 d = positionOf(state) - point;
                double range;
                const double rate = orbit.radial_speed(0.0, latitude, longitude, height, &range);
                ASSERT_NEAR(range, length(d), 2e-11) << latitude << ", " << longitude;
                ASSERT_NEAR(rate, dot(velocityOf(state), unit(d)), 1e-13) << latitude << ", " << longitude;
            }
        }
    }
}

}  // namespace
