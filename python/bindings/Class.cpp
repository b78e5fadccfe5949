#include "Bindings.h"

#include <vorbel/CVorbel.h>

#include <nanobind/ndarray.h>
#include <nanobind/stl/array.h>
#include <nanobind/stl/pair.h>
#include <nanobind/stl/tuple.h>

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

namespace nb = nanobind;
using namespace nb::literals;

namespace vorbel::python {
namespace {

using Class = nb::class_<CVorbel>;
using Matrix = nb::ndarray<nb::numpy, double, nb::shape<3, 3>>;

constexpr int kHistory = 8;
using Content = std::tuple<fVector, std::array<fVector, kHistory>, double, int, std::pair<double, double>>;

/// Distance and axes of an orbit frame; the array owns its nine numbers.
std::pair<double, Matrix> orbitFrame(double (CVorbel::*operation)(const fVector&, double[][3]) const,
                                     const CVorbel& object, const fVector& state) {
    auto* rows = new double[3][3];
    const nb::capsule owner(rows, [](void* p) noexcept { delete[] static_cast<double(*)[3]>(p); });
    const double radius = (object.*operation)(state, rows);
    return {radius, Matrix(rows, {3, 3}, owner)};
}

/// A read-out as a function of Python that returns what the C++ one writes.
nb::object readOut(FunLagrangeOpt function) {
    return nb::cpp_function(
        [function](CVorbel& obj, double t) {
            fVector out;
            function(obj, out, t);
            return out;
        },
        "obj"_a, "t"_a);
}

void bindState(Class& c) {
    c.def(nb::init<>(), "An object in the Greenwich frame on the WGS 84 ellipsoid, all states and the step zero.")
        .def(nb::init<const CVorbel&>(), "other"_a,
             "Copies the whole object; the copy can read out the trajectory that its source propagated.")
        .def("__copy__", [](const CVorbel& self) { return CVorbel(self); })
        .def(
            "__deepcopy__",
            [](const CVorbel& self, const nb::typed<nb::dict, nb::object, nb::object>&) { return CVorbel(self); },
            "memo"_a)
        .def(
            "__getstate__",
            [](CVorbel& self) {
                std::array<fVector, kHistory> history;
                std::copy_n(self.GetfVector(1), kHistory, history.begin());
                std::pair<double, double> axes;
                self.GetEllipsoid(&axes.first, &axes.second);
                return Content(self.getVector(), history, self.getStep(), self.GetSystem(), axes);
            },
            "All but the last interpolated state.")
        .def("__setstate__",
             [](CVorbel& self, const Content& content) {
                 new (&self) CVorbel();
                 const auto& [vector, history, step, system, axes] = content;
                 self.setVector(vector);
                 std::copy(history.begin(), history.end(), self.GetfVector(1));
                 self.setStep(step);
                 self.SetSystem(system);
                 self.SetEllipsoid(axes.first, axes.second);
             })
        .def("setVector", &CVorbel::setVector, "state"_a,
             "Sets the current state, in the frame of GetSystem(), km and km/s.")
        .def("getVector", &CVorbel::getVector,
             "A copy of the current state: after a propagation, the state at the last integrator node.")
        .def(
            "_record", [](CVorbel& self, int index, int j) { return self.GetfVector(index) + j; }, "index"_a, "j"_a,
            nb::rv_policy::reference_internal)
        .def(
            "GetfVector",
            [](nb::handle_t<CVorbel> self, int index) -> nb::object {
                if (nb::cast<CVorbel&>(self).GetfVector(index) == nullptr) {
                    return nb::none();
                }
                const auto record = [&](int j) { return nb::object(self.attr("_record")(index, j)); };
                if (index == 0) {
                    return record(0);
                }
                nb::list history;
                for (int j = 0; j < kHistory; ++j) {
                    history.append(record(j));
                }
                return history;
            },
            "iIndex"_a, nb::sig("def GetfVector(self, iIndex: int) -> fVector | list[fVector] | None"),
            "The object's own records, not copies: writing to them changes the object.\n\n"
            "0: the current state; 1: the derivative history, a list of eight records at the last eight integrator "
            "nodes, oldest first; None for any other index.")
        .def("setStep", &CVorbel::setStep, "dStep"_a, "Sets the integration step, s.")
        .def("getStep", &CVorbel::getStep, "The integration step, s.")
        .def("SetSystem", &CVorbel::SetSystem, "iSystem"_a,
             "Selects the frame of the states: 0 = Greenwich (Earth-fixed), 1 = absolute (inertial).")
        .def("GetSystem", &CVorbel::GetSystem, "The frame of the states: 0 = Greenwich, 1 = absolute.")
        .def("SetEllipsoid", &CVorbel::SetEllipsoid, "dA"_a, "dB"_a,
             "Sets the semi-axes (km) of the ellipsoid on which the imaging geometry places its points.")
        .def(
            "GetEllipsoid",
            [](const CVorbel& self) {
                std::pair<double, double> axes;
                self.GetEllipsoid(&axes.first, &axes.second);
                return axes;
            },
            "Semi-major and semi-minor axis of the imaging geometry's ellipsoid, km.")
        .def("dGetSat_radius", &CVorbel::dGetSat_radius, "Distance of the current state from the Earth's centre, km.")
        .def(
            "SetProgParam",
            [](CVorbel& self, const fVector& state, double step, int system) {
                self.SetProgParam(&state, step, system);
            },
            "pState"_a, "dStep"_a, "iSystem"_a,
            "Sets the current state (km, km/s), the step (s) and the frame together.");
}

void bindPropagation(Class& c) {
    c.def("runceK", &CVorbel::runceK, "state"_a, "dStep"_a,
          "The state dStep seconds later, by one step of the classical fourth-order Runge-Kutta method.")
        .def(
            "adams", &CVorbel::adams, "state"_a, "dStep"_a,
            "Advances `state` itself by one Adams step of order 8 and dStep seconds, renews the derivative history and "
            "returns a copy of the new state. The history must end at `state` and be built with this step.")
        .def("prog", &CVorbel::prog, "dInterval"_a, nb::call_guard<nb::gil_scoped_release>(),
             "Carries the current state over dInterval seconds (negative: backwards) at the object's step, to the "
             "first integrator node at or beyond the interval's end, and returns it.\n\n"
             "As many steps are made as fit into the interval: Ctrl-C waits for them. An interval of more than 2^52 "
             "steps is not propagated.")
        .def(
            "InitLagrange",
            [](CVorbel& self, const fVector& state, double dt, int system) { self.InitLagrange(&state, dt, system); },
            "pState"_a, "dt"_a, "iSystem"_a, nb::call_guard<nb::gil_scoped_release>(),
            "Loads a state (km, km/s, frame iSystem) and propagates it over dt seconds with a step chosen so that the "
            "history covers it: up to 120 s as a whole, beyond that the last seven steps of 120 s.")
        .def(
            "InitLagrange",
            [](CVorbel& self, const fVector& state, double dt, double step, int system) {
                self.InitLagrange(&state, dt, step, system);
            },
            "pState"_a, "dt"_a, "dStep"_a, "iSystem"_a, nb::call_guard<nb::gil_scoped_release>(),
            "The same with the caller's step, s; it must have the sign of dt.");
}

void bindReadOuts(Class& c) {
    c.def(
         "GetFunLagrangeOpt", [](const CVorbel& self, int order) { return readOut(self.GetFunLagrangeOpt(order)); },
         "iOrder"_a,
         nb::sig("def GetFunLagrangeOpt(self, iOrder: int) -> collections.abc.Callable[[CVorbel, float], fVector]"),
         "The read-out for an order 0 to 7, a function (obj, t) that returns the state; that of order 0 for any other.")
        .def(
            "Lagrange", [](CVorbel& self, double time, int order) { return self.Lagrange(&time, order); }, "pdTime"_a,
            "iOrder"_a,
            "State at a time (s, scale of fVector.time) in the frame of the trajectory, by order 1 to 7; nine zeros "
            "for "
            "any other order. The object keeps it too, as its last interpolated state.")
        .def(
            "Lagrange4",
            [](const CVorbel& self, double t) {
                fVectorSimple out;
                self.Lagrange4(out, t);
                return out;
            },
            "t"_a, "Position and velocity at a time (s, scale of fVector.time), from the four newest nodes.")
        .def(
            "Lagrange4_rFv_t",
            [](const CVorbel& self, double dt) {
                fVectorSimple out;
                self.Lagrange4_rFv_t(out, dt);
                return out;
            },
            "dt"_a, "Position and velocity |dt| seconds behind the end state, from the four newest nodes.")
        .def("dLagrange4_rFv_t", &CVorbel::dLagrange4_rFv_t, "point"_a, "dt"_a,
             "Distance (km) from a ground point (x, y, z in the frame of the trajectory) to the satellite |dt| seconds "
             "behind the end state, from the four newest nodes.")
        .def_static(
            "s_Lagrange4",
            [](CVorbel& obj, double t) {
                fVectorSimple out;
                CVorbel::s_Lagrange4(obj, out, t);
                return out;
            },
            "obj"_a, "t"_a, "Lagrange4() of obj.")
        .def_static(
            "s_Lagrange4_m_Fv_t",
            [](CVorbel& obj, double dt) {
                fVectorSimple out;
                CVorbel::s_Lagrange4_m_Fv_t(obj, out, dt);
                return out;
            },
            "obj"_a, "dt"_a, "Lagrange4_rFv_t() of obj.")
        .def_static("s_dLagrange4_rFv_t", &CVorbel::s_dLagrange4_rFv_t, "obj"_a, "point"_a, "dt"_a,
                    "dLagrange4_rFv_t() of obj.")
        .def_static(
            "s_Lagrange_m_Fv_t",
            [](CVorbel& obj, double dt, int order) {
                fVectorSimple out;
                CVorbel::s_Lagrange_m_Fv_t(obj, out, dt, order);
                return out;
            },
            "obj"_a, "dt"_a, "iOrder"_a,
            "Position and velocity |dt| seconds behind the end state, by order 1 to 7; zeros for any other.");

    struct ReadOut {
        const char* name;
        FunLagrangeOpt function;
        const char* doc;
    };
    constexpr std::array<ReadOut, 6> kReadOuts{{
        {"s_LagrangeOpt_0", CVorbel::s_LagrangeOpt_0, "A record of zeros."},
        {"s_LagrangeOpt_1", CVorbel::s_LagrangeOpt_1, "State at t (s) from one node: the line through the end state."},
        {"s_LagrangeOpt_2", CVorbel::s_LagrangeOpt_2, "State at t (s) from the two newest nodes."},
        {"s_LagrangeOpt_3", CVorbel::s_LagrangeOpt_3, "State at t (s) from the three newest nodes."},
        {"s_LagrangeOpt_4", CVorbel::s_LagrangeOpt_4, "State at t (s) from the four newest nodes."},
        {"s_LagrangeOpt_567", CVorbel::s_LagrangeOpt_567, "State at t (s) from all eight nodes."},
    }};
    for (const ReadOut& readOut : kReadOuts) {
        c.def_static(
            readOut.name,
            [function = readOut.function](CVorbel& obj, double t) {
                fVector out;
                function(obj, out, t);
                return out;
            },
            "obj"_a, "t"_a, readOut.doc);
    }
    c.def_prop_ro_static(
        "ms_afunLagrangeOpt",
        [](nb::handle) {
            nb::list functions;
            for (FunLagrangeOpt function : CVorbel::ms_afunLagrangeOpt) {
                functions.append(readOut(function));
            }
            return nb::tuple(functions);
        },
        nb::sig("def ms_afunLagrangeOpt(object, /) -> tuple[collections.abc.Callable[[CVorbel, float], fVector], ...]"),
        "The read-outs by order, 0 to 7, as GetFunLagrangeOpt() returns them. Read only here.");
}

void bindFrames(Class& c) {
    c.def("StarTime", &CVorbel::StarTime, "dDay"_a,
          "Mean sidereal angle (rad) at 0h UT of a whole day number, day 1 = 1900 January 1.")
        .def("ABS_Grnv", nb::overload_cast<const fVector&>(&CVorbel::ABS_Grnv, nb::const_), "v"_a,
             "Turns a state from the absolute into the Greenwich frame, at the sidereal angle of its date and time.")
        .def("ABS_Grnv", nb::overload_cast<const fVector&, double>(&CVorbel::ABS_Grnv, nb::const_), "v"_a, "dAngle"_a,
             "The same at a sidereal angle (degrees) of 0h of day v.date.")
        .def("ABS_GrnvR_t", &CVorbel::ABS_GrnvR_t, "v"_a, "dAngle"_a, "dTime0"_a,
             "Turns a state from the absolute into the Greenwich frame, at a sidereal angle (degrees) of the instant "
             "dTime0 (s, scale of v.time).")
        .def("Grnv_ABS", &CVorbel::Grnv_ABS, "v"_a,
             "Turns a state from the Greenwich into the absolute frame, at the sidereal angle of its date and time.")
        .def(
            "ABS_to_Grinvich",
            [](const CVorbel& self, Ephemeris_Struct record) {
                self.ABS_to_Grinvich(&record, &record);
                return record;
            },
            "record"_a,
            "The record with its state turned from the absolute into the Greenwich frame, `system` 0. `state.drag` and "
            "`extra` are carried over.")
        .def(
            "Grinvich_to_ABS",
            [](const CVorbel& self, Ephemeris_Struct record) {
                self.Grinvich_to_ABS(&record, &record);
                return record;
            },
            "record"_a,
            "The record with its state turned from the Greenwich into the absolute frame, `system` 1. `state.drag` and "
            "`extra` are carried over.")
        .def(
            "Elements_to_Ephemeris",
            [](const CVorbel& self, const Elements_Struct& elements, int system) {
                Ephemeris_Struct record;
                record.system = system;
                self.Elements_to_Ephemeris(&record, &elements);
                return record;
            },
            "el"_a, "system"_a,
            "State of given elements in a frame: `system` 0 = Greenwich, any other value = absolute, which comes back "
            "as 1.")
        .def(
            "Ephemeris_to_Elements",
            [](const CVorbel& self, const Ephemeris_Struct& record) {
                Elements_Struct elements{record.year,   record.month,  record.day,  record.hour,
                                         record.minute, record.second, record.date, record.time};
                self.Ephemeris_to_Elements(&record, &elements);
                return elements;
            },
            "eph"_a,
            "Osculating elements of a state; the epoch is that of the record. What an orbit does not define comes back "
            "as not-a-number.")
        .def(
            "matr_bariz",
            [](const CVorbel& self, const fVector& v) { return orbitFrame(&CVorbel::matr_bariz, self, v); }, "v"_a,
            "Distance from the Earth's centre (km) and the velocity-aligned frame, an array (3, 3) whose column j is "
            "axis j: along the velocity, orbit normal, upward.")
        .def(
            "matr_barizRECT",
            [](const CVorbel& self, const fVector& v) { return orbitFrame(&CVorbel::matr_barizRECT, self, v); }, "v"_a,
            "Distance from the Earth's centre (km) and the radius-aligned frame, an array (3, 3) whose column j is "
            "axis j: forward, orbit normal, along the radius.");
}

void bindGeometry(Class& c) {
    c.def("GeoLocation", &CVorbel::GeoLocation, "dTime"_a, "dRange"_a, "iSide"_a, "dPitch"_a, "dYaw"_a, "dRoll"_a,
          "Ground point in the beam of an attitude (rad), at a time (s) not after the current state and a slant range "
          "(km). iSide is +1 left, -1 right. The default point for a time after the current state.")
        .def("GeoProssess", &CVorbel::GeoProssess, "dTime"_a, "dRange"_a, "dRangeRate"_a, "iSide"_a,
             "Ground point at a time (s), slant range (km) and range rate (km/s, positive when the range grows).")
        .def("centroid", &CVorbel::centroid, "dTime"_a, "dRange"_a, "dPitch"_a, "dYaw"_a, "dRoll"_a, "iSide"_a,
             "Doppler centroid of a beam in the radius-aligned frame, as a range rate, km/s, positive when the range "
             "grows. The Doppler frequency is -2/wavelength times it.")
        .def("centroid_NEW", &CVorbel::centroid_NEW, "dTime"_a, "dRange"_a, "dPitch"_a, "dYaw"_a, "dUnused"_a,
             "iSide"_a,
             "Doppler centroid of a beam in the velocity-aligned frame, as a closing speed, km/s: the opposite sign of "
             "centroid(). dUnused is not read.")
        .def(
            "radial_speed",
            [](CVorbel& self, double time, double latitude, double longitude, double height) {
                double range = 0.0;
                const double rate = self.radial_speed(time, latitude, longitude, height, &range);
                return std::pair(rate, range);
            },
            "dTime"_a, "dLat"_a, "dLon"_a, "dHeight"_a,
            "Range rate (km/s, positive when the range grows) and slant range (km) of a point: degrees, and km above "
            "WGS 84.")
        .def(
            "attitude",
            [](CVorbel& self, double time) {
                double pitch = 0.0;
                double yaw = 0.0;
                double roll = 0.0;
                const double speed = self.attitude(time, &pitch, &yaw, &roll);
                return std::tuple(speed, pitch, yaw, roll);
            },
            "dTime"_a,
            "Speed relative to the Earth (km/s), and its direction in the radius-aligned frame: pitch and yaw (rad, "
            "the yaw without its sign), and a roll of 0.")
        .def(
            "PitchYaw",
            [](CVorbel& self, double time, double range1, double rate1, double range2, double rate2, int side) {
                std::pair<double, double> angles;
                self.PitchYaw(time, range1, rate1, range2, rate2, &angles.first, &angles.second, side);
                return angles;
            },
            "dTime"_a, "dRange1"_a, "dRangeRate1"_a, "dRange2"_a, "dRangeRate2"_a, "iSide"_a,
            "Pitch and yaw (degrees), in the velocity-aligned frame, of the plane through the satellite and two points "
            "given by range (km) and range rate (km/s).");
}

}  // namespace

void bindClass(nb::module_& module) {
    Class c(
        module, "CVorbel",
        "The orbit of one satellite: propagation, read-out at any time, reference frames and imaging geometry.\n\n"
        "The class of the C++ library, every operation under its own name and with its bits. Units are km, km/s and "
        "s; angles are radians except where an operation says degrees. What C++ writes through a pointer comes "
        "back as the result, after what it returns. No operation reports an error: degenerate input comes back as "
        "not-a-number, a record of zeros or a default point.");
    bindState(c);
    bindPropagation(c);
    bindReadOuts(c);
    bindFrames(c);
    bindGeometry(c);
}

}  // namespace vorbel::python
