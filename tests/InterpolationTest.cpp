#include "TestOrbits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <climits>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace interpolation_test {

using namespace orbits;

constexpr int kAbsolute = 1;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr fVector kFilled{7, 7, 7, 7, 7, 7, 7, 7, 7};

bool sameBits(const fVector& a, const fVector& b) {
    using Bits = std::array<std::uint64_t, 9>;
    return std::bit_cast<Bits>(a) == std::bit_cast<Bits>(b);
}

/// The read-outs of a chosen order. A short record comes back in a full one, completed from the end state.
struct ReadOut {
    const char* name;
    fVector (*at)(CVorbel& orbit, int order, double time);
};
constexpr ReadOut kReadOuts[] = {
    {"from the table ",
     [](CVorbel& orbit, int order, double time) {
         fVector out = kFilled;
         orbit.GetFunLagrangeOpt(order)(orbit, out, time);
         EXPECT_EQ(orbit.GetFunLagrangeOpt(order), CVorbel::ms_afunLagrangeOpt[order >= 0 && order < 8 ? order : 0]);
         CVorbel replaced = orbit;
         replaced.GetFunLagrangeOpt(order)(replaced, *replaced.GetfVector(0), time);
         EXPECT_TRUE(sameBits(replaced.getVector(), out)) << "into the current state itself, order " << order;
         return out;
     }},
    {"by value ",
     [](CVorbel& orbit, int order, double time) {
         orbit.GetfVector(0)[1] = kFilled;
         const fVector out = orbit.Lagrange(&time, order);
         EXPECT_TRUE(sameBits(orbit.GetfVector(0)[1], out)) << "the object's own copy, order " << order;
         return out;
     }},
    {"into a record ",
     [](CVorbel& orbit, int order, double time) {
         fVector out = orbit.GetfVector(0)[1] = kFilled;
         orbit.Lagrange(out, &time, order);
         EXPECT_TRUE(sameBits(orbit.GetfVector(0)[1], out)) << "the object's own copy, order " << order;
         return out;
     }},
    {"into a short record ",
     [](CVorbel& orbit, int order, double time) {
         fVectorSimple s;
         const fVector end = orbit.getVector();
         CVorbel::s_Lagrange_m_Fv_t(orbit, s, time - end.time, order);
         return fVector{s.x, s.y, s.z, s.vx, s.vy, s.vz, end.date, time, end.drag};
     }},
};

/// The real orbit at its real date, with drag so that every field of a state can be seen to come back.
CVorbel realOrbit(double interval) {
    CVorbel orbit;
    fVector start = sentinel();
    start.drag = 1e-8;
    orbit.InitLagrange(&start, interval, 0);
    return orbit;
}

/// A derivative u^d, u in steps back from the end, integrates to s^(d+1) / (d+1). What must not be read is not a
/// number: records beyond the order's nodes, and date and drag of the history.
void expectExactPolynomial(double step, int order, int degree) {
    const int nodes = order <= 4 ? order : 8;
    CVorbel orbit;
    orbit.setStep(step);
    orbit.setVector({1, 2, 3, 4, 5, 6, 44664, 1000, 1e-8});
    for (int j = 0; j < 8; ++j) {
        const double one = j < nodes ? 1 : kNaN;
        const double u = one * std::pow(j / 7.0, degree);
        orbit.GetfVector(1)[7 - j] = {u, 2 * u, 3 * u, 4 * u, 5 * u, 6 * u, kNaN, one, kNaN};
    }
    for (double s : {0.25, 1.0, 2.5, 7.0}) {
        const double x = 1 - step * s * std::pow(s / 7.0, degree) / (degree + 1);
        for (const ReadOut& read : kReadOuts) {
            SCOPED_TRACE(testing::Message() << read.name << order << " degree " << degree << " s " << s);
            const fVector out = read.at(orbit, order, 1000 - s * step);
            // km; at s = 7 the eight-node polynomials lose six of sixteen digits to cancellation
            EXPECT_LT(distance(out, {x, 2 * x, 3 * x}), 1e-10);
            EXPECT_LT(speedBetween(out, {0, 0, 0, 4 * x, 5 * x, 6 * x}), 1e-10);
            EXPECT_NEAR(out.time, 1000 - s * step, 1e-10);
            EXPECT_EQ(std::pair(out.date, out.drag), std::pair(44664.0, 1e-8));

            fVector ahead = read.at(orbit, order, 1000 + s * step);
            ahead.time = &read == &kReadOuts[3] ? out.time : ahead.time;  // the short record has none
            EXPECT_EQ(ahead, out) << "a time ahead counts as one behind";
            EXPECT_TRUE(order < 5 || sameBits(out, read.at(orbit, 7, 1000 - s * step))) << "as order 7";
        }
    }
}

TEST(InitLagrange, ChoosesTheStepFromTheInterval) {
    const struct {
        double interval, step, reached;  // s
    } cases[] = {{120, 60, 120}, {121, 120, 240}, {-120, -60, -120}, {-300, -120, -360}, {50, 25, 50}, {-50, -25, -50}};
    const fVector start = low(1.0);
    for (const auto& c : cases) {
        CVorbel orbit;
        orbit.InitLagrange(&start, c.interval, kAbsolute);
        EXPECT_EQ(orbit.getStep(), c.step) << c.interval;
        EXPECT_EQ(orbit.GetSystem(), kAbsolute);
        EXPECT_NEAR(orbit.getVector().time, c.reached, 1e-12) << c.interval;

        CVorbel own;
        own.setVector(start);
        own.InitLagrange(own.GetfVector(0), c.interval, c.step, kAbsolute);
        EXPECT_EQ(own.getVector(), orbit.getVector()) << "from its own current state, with the step given";
    }
    for (double interval : {kInfinity, -kInfinity, 0.0}) {
        CVorbel orbit;
        orbit.InitLagrange(&start, interval, kAbsolute);
        EXPECT_EQ(orbit.getVector(), start) << interval;
    }
}

TEST(DenseOutput, IsExactForPolynomialsBelowTheNumberOfNodes) {
    for (double step : {10.0, -10.0}) {
        for (int order = 1; order <= 7; ++order) {
            for (int degree = 0; degree < (order <= 4 ? order : 8); ++degree) {
                expectExactPolynomial(step, order, degree);
            }
        }
    }
}

TEST(DenseOutput, MeetsTheIntegratorsNodesWithTheErrorOfItsOrder) {
    for (double step : {30.0, -30.0}) {
        CVorbel orbit;
        const fVector start = low(1.0);
        orbit.SetProgParam(&start, step, kAbsolute);
        std::vector<fVector> nodes{orbit.prog(step)};
        while (nodes.size() < 8) {
            nodes.push_back(orbit.adams(*orbit.GetfVector(0), step));
        }
        // One step back the leading error is the Adams-Moulton constant times r (n h)^(order + 1), with n the mean
        // motion; the next term and J2 are worth 3 %.
        const double constants[] = {1.0 / 2, 1.0 / 12, 1.0 / 24, 19.0 / 720};
        for (const ReadOut& read : kReadOuts) {
            for (int order = 1; order <= 4; ++order) {
                const double expected = constants[order - 1] * start.x * std::pow(7.67 / start.x * 30.0, order + 1);
                const double error = distance(read.at(orbit, order, nodes[6].time), nodes[6]);
                EXPECT_NEAR(error / expected, 1.0, 0.04) << read.name << order;
            }
            for (const fVector& node : nodes) {
                EXPECT_LT(distance(read.at(orbit, 7, node.time), node), 1e-3 * kMillimetre) << read.name;
                EXPECT_LT(speedBetween(read.at(orbit, 7, node.time), node), 1e-6 * kMillimetre) << read.name;
            }
        }
    }
}

TEST(DenseOutput, EndStateComesBackExactly) {
    CVorbel orbit = realOrbit(100.0);
    CVorbel near0;  // every derivative 1 km/s, so that what is not the end state shows in x
    near0.setStep(1.0);
    std::fill_n(near0.GetfVector(1), 8, fVector{1, 1, 1, 1, 1, 1, 0, 1, 0});
    for (int order = 1; order <= 7; ++order) {
        for (const ReadOut& read : kReadOuts) {
            EXPECT_EQ(read.at(orbit, order, orbit.getVector().time), orbit.getVector()) << read.name << order;
            // Within 1e-13 steps the end state comes back; orders 4 to 7 of the table test the square against 1e-25.
            const bool squared = &read == kReadOuts && order >= 4;
            EXPECT_EQ(read.at(near0, order, -0.9e-13).x, 0.0) << read.name << order;
            EXPECT_EQ(read.at(near0, order, -1e-13).x == 0.0, squared) << read.name << order;
            EXPECT_NE(read.at(near0, order, -4e-13).x, 0.0) << read.name << order;
        }
    }
    for (double dt : {0.9e-13, 1e-13}) {
        fVectorSimple out[2];
        near0.Lagrange4(out[0], -dt);
        near0.Lagrange4_rFv_t(out[1], dt);
        Geopoint centre;
        centre.x = 0.0;
        for (double x : {out[0].x, out[1].x, near0.dLagrange4_rFv_t(centre, dt)}) {
            EXPECT_EQ(x == 0.0, dt < 1e-13) << dt;
        }
    }
}

TEST(DenseOutput, OrdersOutOfRangeGiveZerosAndAZeroStepNotANumber) {
    CVorbel orbit = realOrbit(100.0);
    CVorbel still = orbit;
    still.setStep(0.0);
    const double time = orbit.getVector().time - 33.0;
    for (const ReadOut& read : kReadOuts) {
        for (int order : {0, 8, -1, INT_MIN, INT_MAX}) {
            const fVector out = read.at(orbit, order, time);
            EXPECT_TRUE(distance(out, {}) == 0.0 && speedBetween(out, {}) == 0.0) << read.name << order;
            EXPECT_TRUE(&read == &kReadOuts[3] || out == fVector()) << read.name << order;
        }
        for (int order = 1; order <= 7; ++order) {
            EXPECT_TRUE(std::isnan(distance(read.at(still, order, time), {}))) << read.name << order;
        }
    }
}

TEST(ShortRecord, FourNodesFollowTheFullRecordAndLeaveTheCallersFields) {
    CVorbel orbit = realOrbit(-100.0);
    const auto state = [](const fVectorSimple& s) {
        EXPECT_TRUE(s.user1 == 1.0 && s.user2 == 2.0 && s.user3 == 3.0);
        return fVector{s.x, s.y, s.z, s.vx, s.vy, s.vz};
    };
    for (double dt : {0.0, 13.0, 90.0}) {
        const double time = orbit.getVector().time + dt;  // the history of a negative step lies ahead
        const fVector expected = orbit.Lagrange(&time, 4);
        fVectorSimple outs[7];
        std::fill_n(outs, 7, fVectorSimple{1, 2, 3, 7, 7, 7, 7, 7, 7});
        orbit.Lagrange4(outs[0], time);
        orbit.Lagrange4_rFv_t(outs[1], dt);
        orbit.Lagrange4_rFv_t(outs[2], -dt);
        CVorbel::s_Lagrange4(orbit, outs[3], time);
        CVorbel::s_Lagrange4_m_Fv_t(orbit, outs[4], dt);
        CVorbel::s_Lagrange_m_Fv_t(orbit, outs[5], -dt, 4);
        CVorbel::s_Lagrange_m_Fv_t(orbit, outs[6], dt, 8);
        for (int i = 0; i < 6; ++i) {
            EXPECT_LE(distance(state(outs[i]), expected), dt * 1e-12) << i;  // km, rounding
            EXPECT_LE(speedBetween(state(outs[i]), expected), dt * 1e-15) << i;
        }
        EXPECT_EQ(state(outs[6]), fVector());

        // By value order 4 rounds as Lagrange4() does, into a record as the table's.
        fVector record;
        fVector fromTable;
        orbit.Lagrange(record, &time, 4);
        orbit.GetFunLagrangeOpt(4)(orbit, fromTable, time);
        EXPECT_EQ(distance(state(outs[0]), expected) + speedBetween(state(outs[0]), expected), 0.0) << dt;
        EXPECT_TRUE(sameBits(record, fromTable) && (dt == 0.0 || !sameBits(record, expected))) << dt;

        const fVector at = state(outs[1]);
        Geopoint point;
        point.x = at.x + 2.0;
        point.y = at.y - 3.0;
        point.z = at.z + 6.0;
        EXPECT_NEAR(orbit.dLagrange4_rFv_t(point, dt), 7.0, 1e-11) << dt;
        EXPECT_EQ(CVorbel::s_dLagrange4_rFv_t(orbit, point, -dt), orbit.dLagrange4_rFv_t(point, dt)) << dt;
    }
}

}  // namespace interpolation_test
