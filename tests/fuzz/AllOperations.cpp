// Calls the operations of one object in any order with any arguments. A sanitizer, a guard zone or one of the checks
// below stops at: a read or write outside the caller's records, a change of what an operation must leave alone,
// undefined behaviour, a call that does not end.

#include "FuzzedInput.h"
#include "Guarded.h"

#include <vorbel/CVorbel.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr double kMostSteps = 2000.0;   // what a propagation may take here
constexpr double kTurnedDown = 0x1p52;  // above as many steps prog() leaves everything as it is
constexpr int kMostCalls = 16;          // for one input
constexpr double kLongestStep = 120.0;  // of InitLagrange() without a step, s

void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "failed: %s\n", what);
        std::abort();
    }
}

template <class T>
bool sameBits(const T& a, const T& b) {
    return std::memcmp(&a, &b, sizeof(T)) == 0;  // NOLINT(bugprone-suspicious-memory-comparison): bits, not values
}

bool isZero(const fVector& v) {
    return sameBits(v, fVector());
}

/// The bytes of an object, to see what a call changes. Its records come first: the current state, the last
/// interpolated state, eight derivatives.
struct Snapshot {
    unsigned char bytes[sizeof(CVorbel)];

    explicit Snapshot(const CVorbel& object) {
        std::memcpy(bytes, static_cast<const void*>(&object), sizeof bytes);
    }

    bool sameIn(const Snapshot& other, std::size_t from, std::size_t to) const {
        return std::memcmp(bytes + from, other.bytes + from, to - from) == 0;
    }
};

constexpr std::size_t kStateEnd = sizeof(fVector);
constexpr std::size_t kInterpolatedEnd = 2 * sizeof(fVector);
constexpr std::size_t kRecordsEnd = 10 * sizeof(fVector);

class Session {
public:
    Session(const std::uint8_t* data, std::size_t size) : m_in(data, size) {}

    void run() {
        load();
        for (int calls = 0; calls < kMostCalls && !m_in.empty(); ++calls) {
            const Snapshot before(*m_object);
            const unsigned which = m_in.byte() % 8;
            if (which == 0) {
                set();
            } else if (which == 1) {
                propagate(before);
            } else if (which <= 3) {
                readOut(before);
            } else if (which == 4) {
                framesAndElements();
                require(sameBits(before, Snapshot(*m_object)), "frames and elements leave the object alone");
            } else {
                geometry();
                const Snapshot after(*m_object);
                require(after.sameIn(before, 0, kStateEnd) &&
                            after.sameIn(before, kInterpolatedEnd, sizeof after.bytes),
                        "geometry changes the last interpolated state alone");
            }
        }
    }

private:
    static bool endsSoon(double interval, double step) {
        const double steps = std::abs(interval) / std::abs(step);
        return !(steps > kMostSteps) || std::abs(interval) > kTurnedDown * std::abs(step);
    }

    void load() {
        Guarded<fVector> state(m_in.state());
        const int system = m_in.byte() % 4 == 0 ? m_in.anyInt() : m_in.byte() % 2;
        const double dt = m_in.number(-600.0, 600.0);
        if (m_in.byte() % 2 == 0) {
            if (endsSoon(dt, std::abs(dt) > kLongestStep ? kLongestStep : dt * 0.5)) {
                m_object->InitLagrange(state.get(), dt, system);
            }
        } else {
            const double step = m_in.number(-60.0, 60.0);
            if (endsSoon(dt, step)) {
                m_object->InitLagrange(state.get(), dt, step, system);
                require(sameBits(m_object->getStep(), step), "InitLagrange keeps the step");
            }
        }
    }

    void set() {
        switch (m_in.byte() % 7) {
        case 0: {
            Guarded<fVector> state(m_in.state());
            m_object->setVector(*state);
            require(sameBits(m_object->getVector(), *state), "getVector gives what setVector took");
            break;
        }
        case 1:
            m_object->setStep(m_in.number(-120.0, 120.0));
            break;
        case 2:
            m_object->SetSystem(m_in.anyInt());
            break;
        case 3: {
            const double a = m_in.number(6370.0, 6400.0);
            const double b = m_in.number(6350.0, 6380.0);
            m_object->SetEllipsoid(a, b);
            Guarded<double> readA;
            Guarded<double> readB;
            m_object->GetEllipsoid(readA.get(), readB.get());
            require(sameBits(a, *readA) && sameBits(b, *readB), "GetEllipsoid gives what SetEllipsoid took");
            break;
        }
        case 4: {
            const int index = m_in.anyInt();
            const fVector* const record = m_object->GetfVector(index);
            require((record != nullptr) == (index == 0 || index == 1), "two indices have records");
            break;
        }
        case 5: {
            Guarded<CVorbel> copy(*m_object);
            Guarded<CVorbel> moved;
            *moved = CVorbel(*copy);
            require(Snapshot(*moved).sameIn(Snapshot(*m_object), 0, kRecordsEnd), "a copy has all records");
            require(moved->GetSystem() == m_object->GetSystem() && sameBits(moved->getStep(), m_object->getStep()),
                    "a copy has the settings");
            *m_object = *moved;
            break;
        }
        default:
            *m_object->GetfVector(1) = m_in.state();
            m_object->dGetSat_radius();
            break;
        }
    }

    void propagate(const Snapshot& before) {
        switch (m_in.byte() % 4) {
        case 0: {
            Guarded<fVector> state(m_in.state());
            const fVector given = *state;
            m_object->runceK(*state, m_in.number(-60.0, 60.0));
            require(sameBits(given, *state), "runceK reads its state only");
            require(sameBits(before, Snapshot(*m_object)), "runceK leaves the object alone");
            return;
        }
        case 1: {
            Guarded<fVector> state(m_object->getVector());
            const double step = m_in.byte() % 2 == 0 ? m_object->getStep() : m_in.number(-60.0, 60.0);
            const fVector result = m_object->adams(*state, step);
            require(sameBits(result, *state), "adams writes what it returns");
            break;
        }
        case 2: {
            const double step = m_object->getStep();
            m_object->adams(*m_object->GetfVector(0), step);
            return;
        }
        default: {
            const double interval = m_in.number(-3000.0, 3000.0);
            if (!endsSoon(interval, m_object->getStep())) {
                return;
            }
            const fVector result = m_object->prog(interval);
            require(sameBits(result, m_object->getVector()), "prog returns the current state");
            if (std::abs(interval) > kTurnedDown * std::abs(m_object->getStep())) {
                require(sameBits(before, Snapshot(*m_object)), "a refused interval changes nothing");
            }
            break;
        }
        }
        require(Snapshot(*m_object).sameIn(before, kStateEnd, kInterpolatedEnd) &&
                    Snapshot(*m_object).sameIn(before, kRecordsEnd, sizeof before.bytes),
                "propagation keeps the settings and the last interpolated state");
    }

    /// Among the nodes, or anywhere.
    double time() {
        const double end = m_object->getVector().time;
        return m_in.byte() % 8 == 0 ? m_in.number(-1e9, 5e9) : end - m_in.number(-1.0, 8.0) * m_object->getStep();
    }

    void readOut(const Snapshot& before) {
        Guarded<fVector> out;
        Guarded<fVectorSimple> simple;
        simple->user1 = 1.0;
        simple->user2 = 2.0;
        simple->user3 = m_in.anyDouble();
        const fVectorSimple given = *simple;
        const int order = m_in.byte() % 4 == 0 ? m_in.anyInt() : m_in.byte() % 9;
        const bool hasOrder = order >= 1 && order <= 7;
        Guarded<double> t(time());
        const double offset = m_object->getVector().time - *t;

        m_object->GetFunLagrangeOpt(order)(*m_object, *out, *t);
        require(hasOrder || isZero(*out), "the table's read-out of no order is zero");
        m_object->Lagrange4(*simple, *t);
        const fVectorSimple member = *simple;
        CVorbel::s_Lagrange4(*m_object, *simple, *t);
        require(sameBits(member, *simple), "s_Lagrange4 is Lagrange4");
        CVorbel::s_Lagrange4_m_Fv_t(*m_object, *simple, offset);
        m_object->Lagrange4_rFv_t(*simple, -offset);
        CVorbel::s_Lagrange_m_Fv_t(*m_object, *simple, offset, order);
        require(hasOrder || (simple->x == 0.0 && simple->vz == 0.0), "the short read-out of no order is zero");
        require(std::memcmp(simple.get(), &given, 3 * sizeof(double)) == 0, "the caller's own fields stay");
        Guarded<Geopoint> point;
        point->x = m_in.number(-7000.0, 7000.0);
        m_object->dLagrange4_rFv_t(*point, offset);
        CVorbel::s_dLagrange4_rFv_t(*m_object, *point, offset);
        require(sameBits(before, Snapshot(*m_object)), "these read-outs leave the object alone");

        m_object->Lagrange(*out, t.get(), order);
        require(hasOrder || isZero(*out), "the read-out of no order is zero");
        const fVector byValue = m_object->Lagrange(t.get(), order);
        require(order == 4 || sameBits(byValue, *out), "both read-outs agree");
        const Snapshot after(*m_object);
        require(after.sameIn(before, 0, kStateEnd) && after.sameIn(before, kInterpolatedEnd, sizeof after.bytes),
                "Lagrange changes the last interpolated state alone");
        if (m_in.byte() % 8 == 0) {  // the current state may take the result
            m_object->GetFunLagrangeOpt(order)(*m_object, *m_object->GetfVector(0), *t);
        }
    }

    void framesAndElements() {
        Guarded<fVector> state(m_in.state());
        Guarded<Ephemeris_Struct> in;
        in->date = m_in.byte() % 4 == 0 ? m_in.anyInt() : 44000 + m_in.byte();
        in->time = m_in.number(0.0, 86400.0);
        in->system = m_in.anyInt();
        in->state = *state;
        Guarded<Ephemeris_Struct> out;
        out->extra = m_in.anyDouble();
        const double extra = out->extra;
        switch (m_in.byte() % 6) {
        case 0:
            m_object->StarTime(m_in.number(-1e5, 1e5));
            m_object->ABS_Grnv(*state);
            m_object->ABS_Grnv(*state, m_in.number(-720.0, 720.0));
            m_object->Grnv_ABS(*state);
            break;
        case 1:
            m_object->ABS_GrnvR_t(*state, m_in.number(-720.0, 720.0), m_in.number(-1e9, 5e9));
            break;
        case 2:
            m_object->ABS_to_Grinvich(in.get(), out.get());
            require(out->system == 0 && sameBits(extra, out->extra), "a turned record keeps the caller's own");
            m_object->Grinvich_to_ABS(out.get(), out.get());
            require(out->system == 1 && sameBits(extra, out->extra), "a turned record keeps the caller's own");
            break;
        case 3: {
            Guarded<Elements_Struct> elements;
            elements->a = m_in.number(6400.0, 50000.0);
            elements->e = m_in.number(0.0, 1.2);
            elements->incl = m_in.number(0.0, 3.2);
            elements->raan = m_in.number(0.0, 6.3);
            elements->u = m_in.number(0.0, 6.3);
            elements->nu = m_in.number(0.0, 6.3);
            elements->date = in->date;
            out->system = in->system;
            m_object->Elements_to_Ephemeris(out.get(), elements.get());
            m_object->Ephemeris_to_Elements(out.get(), elements.get());
            break;
        }
        case 4: {
            Guarded<Elements_Struct> elements;
            elements->time = extra;
            m_object->Ephemeris_to_Elements(in.get(), elements.get());
            require(sameBits(extra, elements->time), "the epoch of the elements stays");
            break;
        }
        default: {
            struct Matrix {
                double m[3][3] = {};
            };
            Guarded<Matrix> matrix;
            m_object->matr_bariz(*state, matrix->m);
            m_object->matr_barizRECT(*state, matrix->m);
            break;
        }
        }
    }

    void geometry() {
        const double t = time();
        const double range = m_in.number(500.0, 3000.0);
        const double rangeRate = m_in.number(-1.0, 1.0);
        const double pitch = m_in.number(-0.2, 0.2);
        const double yaw = m_in.number(-0.2, 0.2);
        const double roll = m_in.number(-0.2, 0.2);
        const int side = m_in.byte() % 4 == 0 ? m_in.anyInt() : (m_in.byte() % 2 == 0 ? 1 : -1);
        Guarded<double> first;
        Guarded<double> second;
        Guarded<double> third;
        switch (m_in.byte() % 6) {
        case 0: {
            const Geopoint point = m_object->GeoLocation(t, range, side, pitch, yaw, roll);
            require(point.kind == 0 && point.a == Geopoint().a && point.f == Geopoint().f, "points are in WGS 84");
            break;
        }
        case 1:
            m_object->GeoProssess(t, range, rangeRate, side);
            break;
        case 2:
            m_object->centroid(t, range, pitch, yaw, roll, side);
            m_object->centroid_NEW(t, range, pitch, yaw, roll, side);
            break;
        case 3:
            m_object->radial_speed(t, m_in.number(-90.0, 90.0), m_in.number(-180.0, 360.0), m_in.number(-1.0, 9.0),
                                   first.get());
            break;
        case 4:
            m_object->attitude(t, first.get(), second.get(), third.get());
            require(*third == 0.0, "the roll is 0");
            break;
        default:
            m_object->PitchYaw(t, range, rangeRate, m_in.number(500.0, 3000.0), rangeRate, first.get(), second.get(),
                               side);
            m_object->PitchYaw(t, range, rangeRate, range, m_in.number(-1.0, 1.0), third.get(), third.get(), side);
            break;
        }
    }

    FuzzedInput m_in;
    Guarded<CVorbel> m_object;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Session(data, size).run();
    return 0;
}
