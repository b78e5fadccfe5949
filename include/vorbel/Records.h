#ifndef VORBEL_RECORDS_H
#define VORBEL_RECORDS_H

/// \file
/// The plain records that callers and the library exchange.
///
/// Lengths are in kilometres, speeds in kilometres per second, times in seconds. Every record has a fixed layout in
/// memory, asserted below, so that applications built apart from the library can share it.

/// State of a satellite, or the time derivative of one.
///
/// The axes are Earth-centred with Z along the rotation axis. Whether they turn with the Earth (Greenwich frame) or
/// stand still (absolute frame) is known to the owner of the record, not to the record.
struct fVector {
    double x = 0.0;     ///< position X, km; in a derivative: velocity X, km/s
    double y = 0.0;     ///< position Y, km; in a derivative: velocity Y, km/s
    double z = 0.0;     ///< position Z, km; in a derivative: velocity Z, km/s
    double vx = 0.0;    ///< velocity X, km/s; in a derivative: acceleration X, km/s^2
    double vy = 0.0;    ///< velocity Y, km/s; in a derivative: acceleration Y, km/s^2
    double vz = 0.0;    ///< velocity Z, km/s; in a derivative: acceleration Z, km/s^2
    double date = 0.0;  ///< whole day number of the epoch day, day 1 = 1900 January 1: modified Julian date - 15019
    double time = 0.0;  ///< s from 0h of day 1, so that day `date` begins at (date - 1) * 86400; in a derivative: 1
    double drag = 0.0;  ///< km^2/kg, half the drag coefficient times cross section over mass; 0 switches drag off
};

/// Position and velocity alone.
///
/// The first three fields belong to the caller: no operation of the library reads or writes them.
struct fVectorSimple {
    double user1 = 0.0;  ///< the caller's own
    double user2 = 0.0;  ///< the caller's own
    double user3 = 0.0;  ///< the caller's own
    double x = 0.0;      ///< position X, km
    double y = 0.0;      ///< position Y, km
    double z = 0.0;      ///< position Z, km
    double vx = 0.0;     ///< velocity X, km/s
    double vy = 0.0;     ///< velocity Y, km/s
    double vz = 0.0;     ///< velocity Z, km/s
};

/// State with its epoch as a day number and time of day, and with the frame it is given in.
///
/// `year` to `second` are a calendar stamp that the library copies and never reads.
struct Ephemeris_Struct {
    int year = 1900;      ///< calendar year of the epoch
    int month = 1;        ///< calendar month
    int day = 1;          ///< day of the month
    int hour = 0;         ///< hour
    int minute = 0;       ///< minute
    double second = 0.0;  ///< second
    int date = 0;         ///< day number of the epoch day; day 1 is 1900 January 1
    double time = 0.0;    ///< s from 0h of day `date` itself (not of day 1 as in fVector)
    int system = 0;       ///< frame of `state`: 0 = Greenwich (Earth-fixed), any other value = absolute (inertial)
    fVector state;        ///< position and velocity in the frame that `system` names
    double extra = 0.0;   ///< the caller's own; the library copies it with whole records and does not interpret it
};

/// Osculating Keplerian elements, always of the absolute (inertial) frame.
///
/// The argument of perigee is `u` - `nu`.
struct Elements_Struct {
    int year = 1900;      ///< calendar year of the epoch
    int month = 1;        ///< calendar month
    int day = 1;          ///< day of the month
    int hour = 0;         ///< hour
    int minute = 0;       ///< minute
    double second = 0.0;  ///< second
    int date = 0;         ///< day number of the epoch day; day 1 is 1900 January 1
    double time = 0.0;    ///< s from 0h of day `date`
    double a = 0.0;       ///< semi-major axis, km; negative for a hyperbola
    double e = 0.0;       ///< eccentricity
    double incl = 0.0;    ///< inclination, rad, [0, pi]
    double raan = 0.0;    ///< right ascension of the ascending node, rad, [0, 2 pi)
    double u = 0.0;       ///< argument of latitude, rad, [0, 2 pi)
    double nu = 0.0;      ///< true anomaly, rad, [0, 2 pi)
};

/// Ground point with the ellipsoid in which its latitude, longitude and height are reckoned.
///
/// A new record is the point on the equator at longitude 0 and height 0 of the WGS 84 ellipsoid. The ellipsoid stays
/// WGS 84 in every point that the library returns, also after CVorbel::SetEllipsoid.
struct Geopoint {
    double a = 6378.137;              ///< semi-major axis of the ellipsoid, km
    double f = 0.003352810664775582;  ///< its flattening, (6378.137 - 6356.752314245) / 6378.137
    double x = 6378.137;              ///< Cartesian X, km
    double y = 0.0;                   ///< Cartesian Y, km
    double z = 0.0;                   ///< Cartesian Z, km
    double lat = 0.0;                 ///< geodetic latitude, degrees, north positive
    double lon = 0.0;                 ///< longitude, degrees, east positive, never negative
    double h = 0.0;                   ///< height above the ellipsoid, km
    int kind = 0;                     ///< kind of latitude: 0 = geodetic, the only one the library writes
};

class CVorbel;

/// A dense-output function: writes the state of the object's trajectory at a time (s, scale of fVector::time).
using FunLagrangeOpt = void (*)(CVorbel& obj, fVector& out, double t);

static_assert(sizeof(fVector) == 72, "fVector is nine doubles");
static_assert(sizeof(fVectorSimple) == 72, "fVectorSimple is nine doubles");
static_assert(sizeof(void*) != 8 || sizeof(Geopoint) == 72, "layout of Geopoint on 64-bit platforms");
static_assert(sizeof(void*) != 8 || sizeof(Ephemeris_Struct) == 136, "layout of Ephemeris_Struct on 64-bit platforms");
static_assert(sizeof(void*) != 8 || sizeof(Elements_Struct) == 96, "layout of Elements_Struct on 64-bit platforms");

#endif
