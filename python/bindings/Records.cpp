#include "Bindings.h"

#include <vorbel/Records.h>

#include <cstddef>
#include <string>

namespace nb = nanobind;

namespace vorbel::python {
namespace {

/// A field of a record: its name, its place and what is said of it.
template <class Record, class Value>
struct Field {
    const char* name;
    Value Record::*member;
    const char* doc;
};

template <class Record, class Value>
Field(const char*, Value Record::*, const char*) -> Field<Record, Value>;

/// A record with a keyword for each field, comparison by value, a text that makes it again, copying and pickling.
template <class Record, class... Value>
void bindRecord(nb::module_& module, const char* name, const char* doc, Field<Record, Value>... fields) {
    nb::class_<Record> record(module, name, doc);
    record.def(
        "__init__",
        [fields...](Record* self, Value... values) {
            new (self) Record();
            ((self->*(fields.member) = values), ...);
        },
        nb::arg(fields.name) = Record().*(fields.member)...);
    (record.def_rw(fields.name, fields.member, fields.doc), ...);

    record.def(
        "__eq__",
        [fields...](const Record& self, const Record& other) {
            return (nb::cast(self.*(fields.member)).equal(nb::cast(other.*(fields.member))) && ...);
        },
        nb::is_operator(), nb::sig("def __eq__(self, other: object, /) -> bool"));
    record.attr("__hash__") = nb::none();
    record.def("__repr__", [name, fields...](const Record& self) {
        std::string text;
        ((text += std::string(text.empty() ? "" : ", ") + fields.name + '=' +
                  nb::repr(nb::cast(self.*(fields.member))).c_str()),
         ...);
        return nb::str((std::string(name) + '(' + text + ')').c_str());
    });
    record.def(
        "__reduce__",
        [fields...](nb::handle_t<Record> self) {
            const auto& value = nb::cast<const Record&>(self);
            return nb::make_tuple(self.type(), nb::make_tuple(value.*(fields.member)...));
        },
        nb::sig("def __reduce__(self) -> tuple[type, tuple[object, ...]]"));
}

}  // namespace

void bindRecords(nb::module_& module) {
    bindRecord(module, "fVector",
               "State of a satellite, or the time derivative of one: km, km/s, s, Earth-centred with Z along the "
               "rotation axis.\n\nWhether the axes turn with the Earth (Greenwich frame) or stand still (absolute "
               "frame) is known to the owner of the record.",
               Field{"x", &fVector::x, "position X, km; in a derivative: velocity X, km/s"},
               Field{"y", &fVector::y, "position Y, km; in a derivative: velocity Y, km/s"},
               Field{"z", &fVector::z, "position Z, km; in a derivative: velocity Z, km/s"},
               Field{"vx", &fVector::vx, "velocity X, km/s; in a derivative: acceleration X, km/s^2"},
               Field{"vy", &fVector::vy, "velocity Y, km/s; in a derivative: acceleration Y, km/s^2"},
               Field{"vz", &fVector::vz, "velocity Z, km/s; in a derivative: acceleration Z, km/s^2"},
               Field{"date", &fVector::date, "whole day number, day 1 = 1900 January 1"},
               Field{"time", &fVector::time, "s from 0h of day 1, so that day `date` begins at (date - 1) * 86400"},
               Field{"drag", &fVector::drag,
                     "km^2/kg, half the drag coefficient times cross section over mass; 0 switches drag off"});

    bindRecord(module, "fVectorSimple", "Position (km) and velocity (km/s) alone.",
               Field{"user1", &fVectorSimple::user1, "the caller's own"},
               Field{"user2", &fVectorSimple::user2, "the caller's own"},
               Field{"user3", &fVectorSimple::user3, "the caller's own"},
               Field{"x", &fVectorSimple::x, "position X, km"}, Field{"y", &fVectorSimple::y, "position Y, km"},
               Field{"z", &fVectorSimple::z, "position Z, km"}, Field{"vx", &fVectorSimple::vx, "velocity X, km/s"},
               Field{"vy", &fVectorSimple::vy, "velocity Y, km/s"},
               Field{"vz", &fVectorSimple::vz, "velocity Z, km/s"});

    bindRecord(module, "Ephemeris_Struct",
               "State with its epoch as a day number and time of day, and with the frame it is given in.\n\n"
               "`year` to `second` are a calendar stamp that is copied and never read.",
               Field{"year", &Ephemeris_Struct::year, "calendar year of the epoch"},
               Field{"month", &Ephemeris_Struct::month, "calendar month"},
               Field{"day", &Ephemeris_Struct::day, "day of the month"}, Field{"hour", &Ephemeris_Struct::hour, "hour"},
               Field{"minute", &Ephemeris_Struct::minute, "minute"},
               Field{"second", &Ephemeris_Struct::second, "second"},
               Field{"date", &Ephemeris_Struct::date, "day number of the epoch day; day 1 is 1900 January 1"},
               Field{"time", &Ephemeris_Struct::time, "s from 0h of day `date` itself (not of day 1 as in fVector)"},
               Field{"system", &Ephemeris_Struct::system,
                     "frame of `state`: 0 = Greenwich (Earth-fixed), any other value = absolute (inertial)"},
               Field{"state", &Ephemeris_Struct::state, "position and velocity in the frame that `system` names"},
               Field{"extra", &Ephemeris_Struct::extra, "the caller's own"});

    bindRecord(module, "Elements_Struct",
               "Osculating Keplerian elements, always of the absolute (inertial) frame.\n\n"
               "The argument of perigee is `u` - `nu`.",
               Field{"year", &Elements_Struct::year, "calendar year of the epoch"},
               Field{"month", &Elements_Struct::month, "calendar month"},
               Field{"day", &Elements_Struct::day, "day of the month"}, Field{"hour", &Elements_Struct::hour, "hour"},
               Field{"minute", &Elements_Struct::minute, "minute"}, Field{"second", &Elements_Struct::second, "second"},
               Field{"date", &Elements_Struct::date, "day number of the epoch day; day 1 is 1900 January 1"},
               Field{"time", &Elements_Struct::time, "s from 0h of day `date`"},
               Field{"a", &Elements_Struct::a, "semi-major axis, km; negative for a hyperbola"},
               Field{"e", &Elements_Struct::e, "eccentricity"},
               Field{"incl", &Elements_Struct::incl, "inclination, rad, [0, pi]"},
               Field{"raan", &Elements_Struct::raan, "right ascension of the ascending node, rad, [0, 2 pi)"},
               Field{"u", &Elements_Struct::u, "argument of latitude, rad, [0, 2 pi)"},
               Field{"nu", &Elements_Struct::nu, "true anomaly, rad, [0, 2 pi)"});

    bindRecord(module, "Geopoint",
               "Ground point with the ellipsoid (WGS 84) in which its latitude, longitude and height are reckoned.",
               Field{"a", &Geopoint::a, "semi-major axis of the ellipsoid, km"},
               Field{"f", &Geopoint::f, "its flattening"}, Field{"x", &Geopoint::x, "Cartesian X, km"},
               Field{"y", &Geopoint::y, "Cartesian Y, km"}, Field{"z", &Geopoint::z, "Cartesian Z, km"},
               Field{"lat", &Geopoint::lat, "geodetic latitude, degrees, north positive"},
               Field{"lon", &Geopoint::lon, "longitude, degrees, east positive, never negative"},
               Field{"h", &Geopoint::h, "height above the ellipsoid, km"},
               Field{"kind", &Geopoint::kind, "kind of latitude: 0 = geodetic, the only one the library writes"});
}

}  // namespace vorbel::python
