#include "TestOrbits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <tuple>
#include <utility>

namespace {

using namespace orbits;

constexpr int kGreenwich = 0;
constexpr int kAbsolute = 1;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// The field's constants as the force model splits them; published ones are 398600.44 km³/s² and 44041.9 km².
constexpr double kMu = 62.5647465 * 6371.0;                    // km³/s²
constexpr double kJ2R2 = 4133214.32438489 / 1.5 / 62.5647465;  // km², J2 times the squared equatorial radius
constexpr double kDragFigure = 6378.245;                       // km, equatorial radius under the atmosphere
constexpr double kDragFactor = 1.1e-8;                         // km²/kg, half of 2.2 times 0.01 m²/kg

double potential(const fVector& p) {
    const double r = std::hypot(p.x, p.y, p.z);
    const double sine = p.z / r;
    return kMu / r * (1.0 - kJ2R2 / (r * r) * (1.5 * sine * sine - 0.5));
}

double energy(const fVector& s) {
    return 0.5 * (s.vx * s.vx + s.vy * s.vy + s.vz * s.vz) - potential(s);
}

CVorbel prepared(const fVector& state, double step, int system) {
    CVorbel orbit;
    orbit.SetProgParam(&state, step, system);
    return orbit;
}

using History = std::array<fVector, 8>;  // oldest first

History historyOf(CVorbel& orbit) {
    History records;
    std::copy_n(orbit.GetfVector(1), 8, records.begin());
    return records;
}

}  // namespace

// Object and state

TEST(Object, GivesAccessToItsRecordsAndIsCopiedWhole) {
    CVorbel orbit;
    double a = 0.0;
    double b = 0.0;
    orbit.GetEllipsoid(&a, &b);
    EXPECT_EQ(std::pair(a, b), std::pair(6378.137, 6356.752314245));
    EXPECT_EQ(orbit.GetSystem(), kGreenwich);
    EXPECT_EQ(orbit.getStep(), 0.0);
    EXPECT_EQ(orbit.getVector(), fVector());
    EXPECT_EQ(historyOf(orbit), History());
    EXPECT_EQ(orbit.GetfVector(1), orbit.GetfVector(0) + 2) << "the last interpolated state stands between";
    EXPECT_EQ(orbit.GetfVector(2), nullptr);
    EXPECT_EQ(orbit.GetfVector(-1), nullptr);
    orbit.setVector({3, 4, 12, 50, 60, 70, 80, 90, 100});
    orbit.setVector(*orbit.GetfVector(0));
    EXPECT_EQ(orbit.getVector(), (fVector{3, 4, 12, 50, 60, 70, 80, 90, 100}));
    EXPECT_EQ(orbit.dGetSat_radius(), 13.0);

    const fVector start = sentinel();
    orbit.InitLagrange(&start, 60.0, kAbsolute);
    orbit.SetEllipsoid(1.0, 2.0);
    const double time = start.time + 40.0;
    const fVector interpolated = orbit.Lagrange(&time, 7);
    CVorbel copies[] = {CVorbel(orbit), CVorbel(), CVorbel()};
    copies[1] = orbit;
    copies[2] = CVorbel(orbit);
    orbit.prog(600.0);
    EXPECT_EQ(orbit.GetfVector(0)[1], interpolated) << "propagation is another matter";
    for (CVorbel& copy : copies) {
        copy.GetEllipsoid(&a, &b);
        EXPECT_EQ(std::pair(a, b), std::pair(1.0, 2.0));
        EXPECT_EQ(copy.GetSystem(), kAbsolute);
        EXPECT_EQ(copy.GetfVector(0)[1], interpolated);
        EXPECT_EQ(copy.Lagrange(&time, 7), interpolated) << "reads out the trajectory of its source";
    }
}

// Force model

TEST(ForceModel, GravityIsTheGradientOfThePotential) {
    for (const fVector& at : {fVector{7000}, fVector{0, -6600}, fVector{0, 0, 7000}, fVector{0, 0, -20000}, sentinel(),
                              fVector{-4000, 4000, -4000}}) {
        const fVector rate = derivative(at, kAbsolute);
        EXPECT_EQ(derivative(at, 2), rate) << "every frame but 0 is absolute";
        const auto gradient = [&](double fVector::*axis) {
            const auto moved = [&](double by) {
                fVector p = at;
                p.*axis += by;
                return potential(p);
            };
            return (8.0 * (moved(8.0) - moved(-8.0)) - (moved(16.0) - moved(-16.0))) / 96.0;
        };
        // km/s²; the difference formula is of fourth order over 16 km. J2 is worth 1e-5.
        EXPECT_NEAR(rate.vx, gradient(&fVector::x), 2e-12);
        EXPECT_NEAR(rate.vy, gradient(&fVector::y), 2e-12);
        EXPECT_NEAR(rate.vz, gradient(&fVector::z), 2e-12);
    }
}

TEST(ForceModel, DensityFollowsItsBandsAndEachBoundBelongsToTheLowerOne) {
    // Density (kg/km³) from the deceleration of a state on the X axis that moves along Y
    const auto densityAt = [](double radius) {
        return -derivative({radius, 0, 0, 0, 7.5, 0, 1, 0, kDragFactor}, kAbsolute).vy / (kDragFactor * 7.5 * 7.5);
    };
    const struct {
        double base, atBase, middle, atMiddle, top, atTop;  // km, kg/km³, from 40-digit exponentials
    } bands[] = {
        {0, 1.225e9, 10, 4.30219749276967e+08, 20, 8.91300129092516e+07},
        {20, 8.91e6, 40, 4.01902499427770e+05, 60, 2.57916170984376e+04},
        {60, 257800, 80, 2.84225854234963e+04, 100, 4.04211950154705e+02},
        {100, 406.1, 125, 1.38699472991698e+01, 150, 2.97159675025032e+00},
        {150, 2.13, 225, 2.03080460712741e-01, 300, 4.76449793174681e-02},
        {300, 0.04764, 450, 5.49132868017796e-03, 600, 8.71676198950192e-04},
        {600, 0.008726, 750, 2.26031588287653e-03, 900, 6.35779848769863e-04},
        {900, 0.0006367, 1400, 5.39945804784224e-06, 20000, 4.67089521216939e-83},
    };
    // Of the density: one unit of the radius, 1e-9 m, is worth 2e-13 where the density falls fastest.
    constexpr double kRelative = 1e-12;
    for (const auto& band : bands) {
        const double justAbove = std::nextafter(kDragFigure + band.base, kInfinity);
        EXPECT_NEAR(densityAt(justAbove) / band.atBase, 1.0, kRelative) << "above " << band.base << " km";
        EXPECT_NEAR(densityAt(kDragFigure + band.middle) / band.atMiddle, 1.0, kRelative) << band.middle << " km";
        EXPECT_NEAR(densityAt(kDragFigure + band.top) / band.atTop, 1.0, kRelative) << band.top << " km";
    }
    EXPECT_DOUBLE_EQ(densityAt(kDragFigure), 1.225e9);
    EXPECT_EQ(densityAt(std::nextafter(kDragFigure, 0.0)), 0.0);
    EXPECT_EQ(densityAt(std::nextafter(kDragFigure + 20000.0, kInfinity)), 0.0);
}

TEST(ForceModel, DragActsAgainstTheVelocityAboveAFlattenedFigure) {
    for (double sine : {0.0, 0.6, 1.0}) {                                 // of the latitude
        const double ground = kDragFigure * (1.0 - sine * sine / 298.3);  // Krasovsky, first order in the flattening
        for (int system : {kGreenwich, kAbsolute}) {
            const auto dragAt = [&](double r) {
                fVector s{r * std::sqrt(1.0 - sine * sine), 0, r * sine, 1, -2, 2, 1, 0, kDragFactor};
                const fVector with = derivative(s, system);
                s.drag = 0.0;
                const fVector without = derivative(s, system);
                return fVector{with.vx - without.vx, with.vy - without.vy, with.vz - without.vz};
            };
            // 0.1 m above ground the density is 1e-5 less, and the rounded 298.3 is worth another 2 cm.
            const double expected = kDragFactor * 1.225e9 * 3.0;  // km/s² for each km/s, at 3 km/s
            EXPECT_LT(distance(dragAt(ground + 0.1 * kMetre), {-expected, 2 * expected, -2 * expected}),
                      4e-5 * expected);
            EXPECT_EQ(dragAt(ground - 0.1 * kMetre), fVector()) << sine;
        }
    }
}

TEST(ForceModel, StatesWithoutAnAltitudeEnd) {
    for (double x : {0.0, kNaN, kInfinity}) {
        const fVector rate = derivative({x, 0, 0, 1, 1, 1, 7, 8, kDragFactor}, kAbsolute);
        EXPECT_TRUE(std::isnan(rate.vx));
        EXPECT_EQ(std::tuple(rate.date, rate.time, rate.drag), std::tuple(7.0, 1.0, kDragFactor));
        EXPECT_TRUE(std::isnan(prepared({}, 1.0, kAbsolute).runceK({x, 0, 0, 1, 1, 1, 7, 8, kDragFactor}, 1.0).vx));
    }
}

// Runge-Kutta

TEST(RungeKutta, IsOfFourthOrder) {
    fVector start = sentinel();
    start.drag = kDragFactor;
    CVorbel orbit;
    EXPECT_EQ(orbit.runceK(start, 0.0), start);
    const fVector later = orbit.runceK(start, 10.0);
    EXPECT_EQ(std::tuple(later.date, later.time, later.drag), std::tuple(start.date, start.time + 10, start.drag));
    for (int system : {kGreenwich, kAbsolute}) {
        const fVector exact = integrateFinely(start, 200.0, 800, system);
        const double coarse = distance(integrateFinely(start, 200.0, 4, system), exact);  // 0.1 m
        const double fine = distance(integrateFinely(start, 200.0, 8, system), exact);
        EXPECT_NEAR(coarse / fine, 16.0, 0.5) << "half the step";
    }
}

// Adams

TEST(Adams, StartsFromQuarterStepsBehindAndKeepsTheLastEightNodes) {
    for (double step : {30.0, -30.0}) {
        fVector state = sentinel();
        state.drag = kDragFactor;
        CVorbel orbit = prepared(state, step, kGreenwich);
        fVector end = orbit.prog(step);
        History expected;
        for (size_t k = 7; k-- > 0;) {
            expected[k] = derivative(state, kGreenwich);
            state = integrateFinely(state, -step, 4, kGreenwich);
        }
        expected[7] = derivative(end, kGreenwich);
        EXPECT_EQ(historyOf(orbit), expected) << step;

        for (int i = 2; i < 12; ++i) {
            end.drag = i * kDragFactor;  // each record keeps its own
            const fVector returned = orbit.adams(end, step);
            EXPECT_EQ(returned, end);
            std::copy(expected.begin() + 1, expected.end(), expected.begin());
            expected[7] = derivative(end, kGreenwich);
            EXPECT_EQ(historyOf(orbit), expected) << step;
        }
    }
}

TEST(Adams, AgreesWithAMuchFinerIntegration) {
    fVector start = sentinel();
    start.time = 0.0;
    start.drag = kDragFactor;
    // The fine integration is good to 4e-11 km (found by halving its step). The truncation at a step of 30 s is 2e-10;
    // that at 120 s stands far out, and is pinned.
    for (auto [interval, errorAt120] : {std::pair{600.0, 20.53 * kMillimetre}, {-600.0, 28.23 * kMillimetre}}) {
        const fVector exact = integrateFinely(start, interval, 1200, kGreenwich);
        EXPECT_LT(distance(prepared(start, 30.0, kGreenwich).prog(interval), exact), 1e-3 * kMillimetre);
        const double error = distance(prepared(start, 120.0, kGreenwich).prog(interval), exact);
        EXPECT_NEAR(error, errorAt120, 0.01 * kMillimetre) << interval;
    }
}

TEST(Adams, BothFramesTellTheSameOrbit) {
    // The axes coincide at time 0, and the Greenwich frame has turned by 7.2921158e-5 rad/s * time.
    constexpr double kRate = 7.2921158e-5;
    fVector greenwich = sentinel();
    greenwich.time = 0.0;
    fVector absolute = greenwich;
    absolute.vx -= kRate * absolute.y;
    absolute.vy += kRate * absolute.x;
    greenwich = prepared(greenwich, 20.0, kGreenwich).prog(2000.0);
    absolute = prepared(absolute, 20.0, kAbsolute).prog(2000.0);
    const double c = std::cos(kRate * 2000.0);
    const double s = std::sin(kRate * 2000.0);
    // The force model holds the squared rate to nine digits: 0.02 mm. The rate of the frame conversions, 7.29211515e-5,
    // would be 90 mm away.
    EXPECT_LT(distance(absolute, {c * greenwich.x - s * greenwich.y, s * greenwich.x + c * greenwich.y, greenwich.z}),
              0.1 * kMillimetre);
}

TEST(Adams, KeepsEnergyAndAngularMomentum) {
    const fVector start = low(1.7);
    const fVector after = prepared(start, 30.0, kAbsolute).prog(86400.0);
    EXPECT_NEAR(energy(after) / energy(start) - 1.0, 0.0, 3e-12);
    EXPECT_NEAR((after.x * after.vy - after.y * after.vx) / (start.x * start.vy) - 1.0, 0.0, 3e-12);
    const fVector coarse = prepared(start, 60.0, kAbsolute).prog(86400.0);
    EXPECT_NEAR(energy(coarse) / energy(start) - 1.0, -1.4109e-9, 0.001e-9) << "the method's own loss, pinned";
}

// Propagation over an interval

TEST(Prog, StopsOnTheFirstNodeAtOrBeyondTheInterval) {
    // The last case makes eleven steps: ten times 0.1 falls short of 1 by rounding.
    const struct {
        double step, interval, reached;  // s
    } cases[] = {{10, 100, 100},   {10, 95, 100},   {10, 100.1, 110}, {10, 3, 10},     {10, 0, 10},    {-10, 0, -10},
                 {10, -100, -100}, {-10, 100, 100}, {-30, -95, -120}, {30, -95, -120}, {0.1, 1.0, 1.1}};
    for (const auto& c : cases) {
        fVector start = equatorial();
        start.drag = kDragFactor;
        CVorbel orbit = prepared(start, c.step, kGreenwich);
        const fVector end = orbit.prog(c.interval);
        EXPECT_NEAR(end.time, c.reached, 1e-12) << c.step << " over " << c.interval;
        EXPECT_EQ(std::pair(end.date, end.drag), std::pair(start.date, start.drag));
        EXPECT_EQ(orbit.getVector(), end);
        EXPECT_EQ(orbit.getStep(), c.step);
    }
}

TEST(Prog, MirrorsBackwardsStartsAfreshAndLetsAdamsGoOn) {
    CVorbel orbit = prepared(equatorial(), 60.0, kAbsolute);
    const fVector ahead = orbit.prog(600.0);
    const fVector behind = prepared(equatorial(), 60.0, kAbsolute).prog(-600.0);
    EXPECT_EQ(behind, (fVector{ahead.x, -ahead.y, 0, -ahead.vx, ahead.vy, 0, ahead.date, -ahead.time, ahead.drag}));

    CVorbel stepped = orbit;
    stepped.adams(*stepped.GetfVector(0), 60.0);
    EXPECT_EQ(stepped.getVector(), prepared(equatorial(), 60.0, kAbsolute).prog(660.0));
    EXPECT_EQ(orbit.prog(600.0), prepared(ahead, 60.0, kAbsolute).prog(600.0));
}

TEST(Prog, AlwaysEnds) {
    CVorbel ready = prepared(sentinel(), 30.0, kGreenwich);
    const fVector start = ready.prog(60.0);
    const std::pair<double, double> neverReached[] = {
        {0.0, 10.0},        {0.0, -10.0},       {0.0, kInfinity}, {10.0, kInfinity},   {10.0, -kInfinity},
        {-10.0, kInfinity}, {1e306, kInfinity}, {1e-300, 1.0},    {1e306, -kInfinity}, {1e-9, 1e9},
    };
    for (auto [step, interval] : neverReached) {
        CVorbel orbit = ready;
        orbit.setStep(step);
        EXPECT_EQ(orbit.prog(interval), start) << step << " over " << interval;
        EXPECT_EQ(orbit.getVector(), start);
        EXPECT_EQ(historyOf(orbit), historyOf(ready)) << step << " over " << interval;
    }
    EXPECT_DOUBLE_EQ(prepared(start, 1e306, kGreenwich).prog(3e306).time, 3e306);  // three steps, if of no use
    for (double step : {10.0, -10.0}) {
        EXPECT_EQ(prepared(start, step, kGreenwich).prog(kNaN), prepared(start, step, kGreenwich).prog(step));
    }
    for (double interval : {0.0, 10.0, kInfinity, kNaN}) {
        const fVector end = prepared(start, kNaN, kGreenwich).prog(interval);
        EXPECT_TRUE(std::isnan(end.x) && std::isnan(end.vz) && std::isnan(end.time)) << interval;
        EXPECT_FALSE(std::isfinite(prepared(start, kInfinity, kGreenwich).prog(interval).x)) << interval;
    }
    CVorbel still = prepared(start, 0.0, kGreenwich);
    EXPECT_EQ(still.prog(0.0), start);
    History equal;
    equal.fill(derivative(start, kGreenwich));
    EXPECT_EQ(historyOf(still), equal);
}
