#include "Vectors.h"

#include <vorbel/CVorbel.h>

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <tuple>

// Sidereal time, the turn between the frames, orbital elements and orbit frames.

namespace {

const CVorbel kOrbit;  // these operations use nothing of the object

/// A state of no special direction, at an epoch that a double holds exactly.
fVector generalState(int day, double secondsOfDay) {
    return {5000.0, 3000.0, 4000.0, -3.0, -2.0, 6.5, 1.0 * day, (day - 1) * 86400.0 + secondsOfDay, 0.01};
}

/// The default is some ulps of an orbit radius (km) and, a thousandth of it, of an orbit speed (km/s).
void expectSameState(const fVector& a, const fVector& b, double tolerance = 1e-11) {
    EXPECT_LT(length(positionOf(a) - positionOf(b)), tolerance);
    EXPECT_LT(length(velocityOf(a) - velocityOf(b)), 1e-3 * tolerance);
}

/// What the turn leaves alone.
auto unturned(const fVector& v) {
    return std::tie(v.date, v.time, v.drag);
}

/// The fields that the records of states and of elements share.
template <class Record>
auto epochOf(Record& r) {
    return std::tie(r.year, r.month, r.day, r.hour, r.minute, r.second, r.date, r.time);
}

constexpr std::tuple kEpoch(2022, 4, 14, 10, 22, 7.0625, 44664, 37327.0625);

TEST(SiderealTime, AdvancesByAFixedAngleADay) {
    EXPECT_NEAR(kOrbit.StarTime(0.5), 99.6909833 * kPi / 180.0, 1e-15);
    const double perDay = 36000.7689 / 36525.0 * kPi / 180.0;
    for (int day = -400; day < 50000; ++day) {
        const double angle = kOrbit.StarTime(day);
        // one turn, with the sign that the angle has on its side of day -100.6
        ASSERT_TRUE(day > -101 ? angle >= 0.0 && angle < 2.0 * kPi : angle <= 0.0 && angle > -2.0 * kPi) << day;
        // the acceleration adds 2.9e-8 degrees to a day's advance by 2037
        ASSERT_NEAR(std::remainder(kOrbit.StarTime(day + 1) - angle - perDay, 2.0 * kPi), 0.0, 6e-10) << day;
    }
}

TEST(EarthTurn, IsARotationEastwardAboutTheAxis) {
    for (const int day : {1, 25568, 44664}) {
        for (const double seconds : {-40000.0, 0.0, 61200.25, 200000.0}) {
            const fVector fixed = generalState(day, seconds);
            const Axes turn = rotationZ(kOrbit.StarTime(day) + kEarthRate * seconds);
            const Vec3 r = turn * positionOf(fixed);
            const Vec3 v = turn * velocityOf(fixed) + carried(r);
            const fVector inertial{r.x, r.y, r.z, v.x, v.y, v.z, fixed.date, fixed.time, fixed.drag};
            expectSameState(kOrbit.ABS_Grnv(inertial), fixed);
            expectSameState(kOrbit.Grnv_ABS(fixed), inertial);
            EXPECT_EQ(unturned(kOrbit.ABS_Grnv(inertial)), unturned(fixed));
            EXPECT_EQ(unturned(kOrbit.Grnv_ABS(fixed)), unturned(fixed));
        }
    }
}

TEST(EarthTurn, TakesTheAngleFromTheDateOrInDegrees) {
    const fVector v = generalState(44664, 37327.0625);
    const double midnight = (v.date - 1.0) * 86400.0;
    const double angle = kOrbit.StarTime(v.date) / kLibraryDegree;
    const double later = angle + kEarthRate * 50000.0 / kLibraryDegree;  // where the Earth has turned to by then
    for (const fVector& turned : {kOrbit.ABS_Grnv(v, angle), kOrbit.ABS_GrnvR_t(v, angle, midnight),
                                  kOrbit.ABS_GrnvR_t(v, later, midnight + 50000.0)}) {
        expectSameState(turned, kOrbit.ABS_Grnv(v));
        EXPECT_EQ(unturned(turned), unturned(v));
    }
}

TEST(EarthTurn, RecordsTurnAtTheirOwnEpochAndKeepWhatIsTheCallers) {
    Ephemeris_Struct in;
    epochOf(in) = kEpoch;
    in.state = generalState(in.date, in.time);
    in.extra = 3.0;
    const fVector turned[] = {kOrbit.ABS_Grnv(in.state), kOrbit.Grnv_ABS(in.state)};
    in.state.date = 7.0;  // not the epoch of the turn
    in.state.time = 8.0;

    for (const int marker : {0, 1}) {
        in.system = marker;  // not a condition of the turn
        for (const int target : {0, 1}) {
            Ephemeris_Struct out;
            out.state.drag = 0.77;
            out.extra = 9.0;
            Ephemeris_Struct same = in;
            const auto turn = target == 0 ? &CVorbel::ABS_to_Grinvich : &CVorbel::Grinvich_to_ABS;
            (kOrbit.*turn)(&in, &out);
            (kOrbit.*turn)(&same, &same);
            for (const Ephemeris_Struct& record : {out, same}) {
                expectSameState(record.state, turned[target]);
                EXPECT_EQ(record.system, target);
                EXPECT_EQ(epochOf(record), kEpoch);
            }
            EXPECT_EQ(unturned(out.state), std::tuple(7.0, 8.0, 0.77));
            EXPECT_EQ(out.extra, 9.0);
            EXPECT_EQ(unturned(same.state), std::tuple(7.0, 8.0, 0.01));
            EXPECT_EQ(same.extra, 3.0);
        }
    }
}

/// The two-body state in the orbit plane, from the focus and the direction of perigee, turned into space.
fVector twoBodyState(const Elements_Struct& el) {
    const double p = el.a * (1.0 - el.e * el.e);
    const Axes toSpace = rotationZ(el.raan) * (rotationX(el.incl) * rotationZ(el.u - el.nu));
    const Vec3 r = toSpace * (p / (1.0 + el.e * std::cos(el.nu)) * Vec3{std::cos(el.nu), std::sin(el.nu), 0.0});
    const Vec3 v = toSpace * (std::sqrt(398600.398 / p) * Vec3{-std::sin(el.nu), el.e + std::cos(el.nu), 0.0});
    return {r.x, r.y, r.z, v.x, v.y, v.z, 0.0, 0.0, 0.0};
}

TEST(Elements, AgreeWithTheTwoBodySolutionBothWaysInBothFrames) {
    constexpr double orbits[][6] = {
        // a, e, inclination, node, argument of latitude, true anomaly
        {7000.0, 0.01, 1.7, 0.5, 1.2, 0.3},   // retrograde, outward
        {7200.0, 0.2, 0.3, 4.0, 0.2, 4.0},    // inward, past the node since perigee
        {26600.0, 0.74, 1.1, 6.0, 5.0, 3.0},  // close to apogee
        {-20000.0, 1.4, 0.8, 2.0, 1.9, 0.9},  // hyperbola, outward
        {-9000.0, 2.5, 1.9, 5.0, 1.7, 5.2},   // hyperbola, inward
    };
    for (const auto& [a, e, incl, raan, u, nu] : orbits) {
        Elements_Struct el;
        epochOf(el) = kEpoch;
        std::tie(el.a, el.e, el.incl, el.raan, el.u, el.nu) = std::tie(a, e, incl, raan, u, nu);
        for (const int system : {0, 2}) {
            SCOPED_TRACE(testing::Message() << "a " << a << ", frame " << system);
            Ephemeris_Struct eph;
            eph.system = system;
            eph.state.drag = 0.77;
            eph.extra = 9.0;
            kOrbit.Elements_to_Ephemeris(&eph, &el);
            EXPECT_EQ(epochOf(eph), kEpoch);
            EXPECT_EQ(unturned(eph.state), std::tuple(44664.0, 37327.0625, system == 0 ? 0.77 : 0.0));
            EXPECT_EQ(eph.system, system == 0 ? 0 : 1);
            EXPECT_EQ(eph.extra, system == 0 ? 9.0 : 0.0);

            Ephemeris_Struct absolute = eph;
            if (system == 0) {
                kOrbit.Grinvich_to_ABS(&eph, &absolute);
            }
            expectSameState(absolute.state, twoBodyState(el), 1e-9);

            Elements_Struct back;
            eph.system = system;  // every frame but 0 is absolute
            back.date = 7;        // the epoch is the caller's
            kOrbit.Ephemeris_to_Elements(&eph, &back);
            EXPECT_EQ(epochOf(back), std::tuple(1900, 1, 1, 0, 0, 0.0, 7, 0.0));
            // rounding; the anomaly's is that over the eccentricity
            EXPECT_NEAR(back.a / a, 1.0, 1e-12);
            EXPECT_NEAR(back.e, e, 1e-12);
            EXPECT_NEAR(back.incl, incl, 1e-12);
            EXPECT_NEAR(back.raan, raan, 1e-12);
            EXPECT_NEAR(back.u, u, 1e-12);
            EXPECT_NEAR(back.nu, nu, 1e-11);
        }
    }
}

TEST(Elements, AtTheirSingularitiesAndBounds) {
    const auto elementsOf = [](double x, double vx, double vy, double vz) {
        Ephemeris_Struct eph;
        eph.system = 1;
        eph.state = {x, 0.0, 0.0, vx, vy, vz, 0.0, 0.0, 0.0};
        Elements_Struct el;
        kOrbit.Ephemeris_to_Elements(&eph, &el);
        return el;
    };
    // round speeds at the radii that make them exactly circular and parabolic
    const Elements_Struct circular = elementsOf(398600.398, 0.0, 0.0, 1.0);
    EXPECT_EQ(circular.a, 398600.398);
    EXPECT_EQ(circular.e, 0.0);
    EXPECT_TRUE(std::isnan(circular.nu));
    const Elements_Struct parabolic = elementsOf(398600.398 / 2.0, 0.0, 0.0, 2.0);
    EXPECT_TRUE(std::isinf(parabolic.a));
    EXPECT_EQ(parabolic.e, 1.0);
    const Elements_Struct equatorial = elementsOf(7000.0, 0.0, 8.0, 0.0);
    EXPECT_EQ(equatorial.incl, 0.0);
    EXPECT_TRUE(std::isnan(equatorial.u));
    EXPECT_EQ(equatorial.raan, kPi);  // the node's direction is (0, -0)
    const Elements_Struct radial = elementsOf(7000.0, 8.0, 0.0, 0.0);
    EXPECT_TRUE(std::isnan(radial.incl) && std::isnan(radial.u));
    const Elements_Struct perigeeAtNode = elementsOf(7000.0, 0.0, 4.0, 7.0);
    EXPECT_EQ(std::tuple(perigeeAtNode.raan, perigeeAtNode.u, perigeeAtNode.nu), std::tuple(0.0, 0.0, 0.0));
}

TEST(OrbitFrame, IsRightHandedAlongVelocityOrRadius) {
    const fVector states[] = {generalState(1, 0.0),
                              {7000.0, 0.0, 0.0, 1.0, -7.5, 0.0, 0.0, 0.0, 0.0},
                              {-100.0, 6800.0, -900.0, 7.0, 1.5, 2.0, 0.0, 0.0, 0.0}};
    for (const fVector& state : states) {
        const Vec3 r = positionOf(state);
        const Vec3 v = velocityOf(state);
        const auto expectAxes = [&](double radius, const double(&m)[3][3], const Axes& expected) {
            EXPECT_NEAR(radius, length(r), 1e-12);
            EXPECT_LT(length(Vec3{m[0][0], m[1][0], m[2][0]} - expected.e1), 1e-15);
            EXPECT_LT(length(Vec3{m[0][1], m[1][1], m[2][1]} - expected.e2), 1e-15);
            EXPECT_LT(length(Vec3{m[0][2], m[1][2], m[2][2]} - expected.e3), 1e-15);
        };
        double m[3][3];
        double radius = kOrbit.matr_bariz(state, m);
        expectAxes(radius, m, velocityAligned(r, v));
        radius = kOrbit.matr_barizRECT(state, m);
        expectAxes(radius, m, radiusAligned(r, v));
    }
    double m[3][3];  // a purely radial velocity spans no orbit plane
    kOrbit.matr_bariz({7000.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 0.0}, m);
    EXPECT_TRUE(std::isnan(m[0][1]) && std::isnan(m[0][2]));
    kOrbit.matr_barizRECT({7000.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 0.0}, m);
    EXPECT_TRUE(std::isnan(m[0][0]) && std::isnan(m[0][1]));
}

}  // namespace
