#ifndef VORBEL_TESTS_ALL_OPERATIONS_H
#define VORBEL_TESTS_ALL_OPERATIONS_H

#include "OperationInputs.h"

#include <vorbel/CVorbel.h>

#include <algorithm>
#include <cmath>

/// Calls every public operation with the inputs of a case. A sink hears of each call before it is made, by name and
/// order, and then gets what it returned, by values or records; a letter for each value says what it is, see Values.
template <class Sink>
class AllOperations {
public:
    AllOperations(CVorbel& object, const Case& inputs, Sink& sink) : m_object(object), m_case(inputs), m_sink(sink) {}

    void run() {
        recordInputs();
        call("SetSystem");
        m_object.SetSystem(m_case.system);
        steps();
        framesAndElements();
        propagate();
        readOut();
        fourNodes();
        geometry();
        copies();
    }

    /// Loads a state and makes a few steps.
    void steps() {
        call("runceK").add(m_object.runceK(m_case.state, m_case.step));
        call("SetProgParam");
        m_object.SetProgParam(&m_case.state, m_case.step, m_case.system);
        recordObject("SetProgParam");
        const double interval = m_case.step * -6.5;
        if (endsSoon(interval, m_case.step)) {
            call("prog").add(m_object.prog(interval));
            recordObject("prog(object)");
            const double signedStep = interval < 0.0 ? -std::abs(m_case.step) : std::abs(m_case.step);
            fVector state = m_object.getVector();
            call("adams").add(m_object.adams(state, signedStep));
            call("setVector");
            m_object.setVector(state);
            recordObject("adams(object)");
        }
    }

    /// Leaves the object as it is.
    void framesAndElements() {
        const Case& c = m_case;
        const CVorbel& object = m_object;
        double matrix[3][3];
        call("matr_bariz").add('L', object.matr_bariz(c.state, matrix));
        m_sink.add(matrix);
        call("matr_barizRECT").add('L', object.matr_barizRECT(c.state, matrix));
        m_sink.add(matrix);

        call("StarTime").add('A', object.StarTime(c.state.date));
        call("ABS_Grnv").add(object.ABS_Grnv(c.state));
        call("ABS_Grnv(angle)").add(object.ABS_Grnv(c.state, c.angle));
        call("ABS_GrnvR_t").add(object.ABS_GrnvR_t(c.state, c.angle, c.state.time - c.dt));
        call("Grnv_ABS").add(object.Grnv_ABS(c.state));

        Ephemeris_Struct ephemeris;
        call("ABS_to_Grinvich");
        object.ABS_to_Grinvich(&c.ephemeris, &ephemeris);
        m_sink.add(ephemeris);
        ephemeris = c.ephemeris;
        call("Grinvich_to_ABS");
        object.Grinvich_to_ABS(&ephemeris, &ephemeris);
        m_sink.add(ephemeris);
        ephemeris = Ephemeris_Struct();
        ephemeris.system = c.system;
        call("Elements_to_Ephemeris");
        object.Elements_to_Ephemeris(&ephemeris, &c.elements);
        m_sink.add(ephemeris);
        Elements_Struct elements;
        call("Ephemeris_to_Elements");
        object.Ephemeris_to_Elements(&c.ephemeris, &elements);
        m_sink.add(elements);
    }

    /// Loads a trajectory, unless that would take too long.
    void propagate() {
        const Case& c = m_case;
        if (c.ownStep) {
            if (endsSoon(c.dt, c.step)) {
                call("InitLagrange(step)");
                m_object.InitLagrange(&c.state, c.dt, c.step, c.system);
                recordObject("InitLagrange(step)");
            }
        } else if (endsSoon(c.dt, 120.0)) {
            call("InitLagrange");
            m_object.InitLagrange(&c.state, c.dt, c.system);
            recordObject("InitLagrange");
        }
    }

    void readOut() {
        const double offset = readOutOffset();
        for (int order : {0, 1, 2, 3, 4, 7, 8}) {
            const double time = m_object.getVector().time - offset;
            fVector out;
            call("GetFunLagrangeOpt", order);
            m_object.GetFunLagrangeOpt(order)(m_object, out, time);
            m_sink.add(out);
            call("Lagrange", order).add(m_object.Lagrange(&time, order));
            call("Lagrange(out)", order);
            m_object.Lagrange(out, &time, order);
            m_sink.add(out);
            fVectorSimple simple;
            call("s_Lagrange_m_Fv_t", order);
            CVorbel::s_Lagrange_m_Fv_t(m_object, simple, offset, order);
            m_sink.add(simple);
        }
    }

    /// Leaves the object as it is.
    void fourNodes() {
        const double offset = readOutOffset();
        const double time = m_object.getVector().time - offset;
        fVectorSimple simple;
        call("Lagrange4");
        m_object.Lagrange4(simple, time);
        m_sink.add(simple);
        call("s_Lagrange4");
        CVorbel::s_Lagrange4(m_object, simple, time);
        m_sink.add(simple);
        call("Lagrange4_rFv_t");
        m_object.Lagrange4_rFv_t(simple, offset);
        m_sink.add(simple);
        call("s_Lagrange4_m_Fv_t");
        CVorbel::s_Lagrange4_m_Fv_t(m_object, simple, offset);
        m_sink.add(simple);
        Geopoint point;
        point.x = m_case.a;
        point.z = m_case.height;
        call("dLagrange4_rFv_t").add('L', m_object.dLagrange4_rFv_t(point, offset));
        call("s_dLagrange4_rFv_t").add('L', CVorbel::s_dLagrange4_rFv_t(m_object, point, offset));
    }

    void geometry() {
        const Case& c = m_case;
        call("SetEllipsoid");
        m_object.SetEllipsoid(c.a, c.b);
        const double end = m_object.getVector().time;
        double time = end - readOutOffset();
        call("GeoProssess").add(m_object.GeoProssess(time, c.range, c.rangeRate, c.side));
        call("centroid").add('V', m_object.centroid(time, c.range, c.pitch, c.yaw, c.roll, c.side));
        call("centroid_NEW").add('V', m_object.centroid_NEW(time, c.range, c.pitch, c.yaw, c.roll, c.side));
        double first = 0.0;
        double second = 0.0;
        double third = 0.0;
        call("radial_speed").add('V', m_object.radial_speed(time, c.latitude, c.longitude, c.height, &first));
        m_sink.add('L', first);
        call("attitude").add('V', m_object.attitude(time, &first, &second, &third));
        m_sink.addAll("AAA", {first, second, third});
        call("PitchYaw");
        m_object.PitchYaw(time, c.range, c.rangeRate, c.range2, c.rangeRate2, &first, &second, c.side);
        m_sink.addAll("AA", {first, second});
        // Backwards, the trajectory lies after its end state, where GeoLocation() finds nothing.
        time = std::min(time, end);
        call("GeoLocation").add(m_object.GeoLocation(time, c.range, c.side, c.pitch, c.yaw, c.roll));
    }

    /// Copies of the object, which give their own records and variables to be written; their values are not recorded.
    void copies() {
        call("copy");
        CVorbel copy(m_object);
        CVorbel moved;
        moved = CVorbel(copy);
        moved = copy;
        const double step = copy.getStep();
        const double end = copy.getVector().time;
        copy.setStep(m_case.step);
        copy.adams(*copy.GetfVector(0), step);
        moved.GetFunLagrangeOpt(7)(moved, *moved.GetfVector(0), end - m_case.back * step);
        double both = 0.0;
        copy.PitchYaw(end, m_case.range, m_case.rangeRate, m_case.range2, m_case.rangeRate2, &both, &both, m_case.side);
        call("end");
    }

private:
    // Of a propagation. What would take longer is left out; more than 2^52 steps the library turns down at once.
    static constexpr double kMostSteps = 500.0;

    static bool endsSoon(double interval, double step) {
        const double steps = std::abs(interval) / std::abs(step);
        return !(steps > kMostSteps) || steps > 0x1p53;
    }

    double readOutOffset() const {
        return m_case.back * m_object.getStep();
    }

    template <class... Order>
    Sink& call(const char* name, Order... order) {
        m_sink.call(name, order...);
        return m_sink;
    }

    // A difference here is one of the inputs, not of the library.
    void recordInputs() {
        const Case& c = m_case;
        call("(inputs)").add(c.state);
        m_sink.add(c.ephemeris);
        m_sink.add(c.elements);
        m_sink.addAll("...LL", {c.dt, c.step, c.back, c.a, c.b});
        m_sink.addAll("LVLVAAA", {c.range, c.rangeRate, c.range2, c.rangeRate2, c.pitch, c.yaw, c.roll});
        m_sink.addAll("AALA", {c.latitude, c.longitude, c.height, c.angle});
        m_sink.addAll("...", {static_cast<double>(c.system), c.ownStep ? 1.0 : 0.0, static_cast<double>(c.side)});
    }

    void recordObject(const char* name) {
        call(name).add(m_object.getVector());
        m_sink.addAll("..", {m_object.getStep(), static_cast<double>(m_object.GetSystem())});
        m_sink.add('L', m_object.dGetSat_radius());
        double a = 0.0;
        double b = 0.0;
        m_object.GetEllipsoid(&a, &b);
        m_sink.addAll("LL", {a, b});
        for (int j = 0; j < 8; ++j) {
            m_sink.add(m_object.GetfVector(1)[j]);
        }
    }

    CVorbel& m_object;
    const Case& m_case;
    Sink& m_sink;
};

#endif
