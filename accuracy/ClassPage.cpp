// The pages of the class: what each of its operations loses, and what its models leave out.

#include "Pages.h"

#include "Measures.h"
#include "Page.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace accuracy {

namespace {

void integrator() {
    section("Orbit integration");
    paragraph(
        "`prog()` of the sample orbit, without drag: distance from the exact solution of the same equations of motion, "
        "at the first node at or after a quarter of a revolution and a whole one (" +
        text("%g s", kRevolution) + "). Velocities are off by " +
        text("%.2g", integratorError(0, 60, kRevolution).velocity / integratorError(0, 60, kRevolution).position) +
        " m/s for each metre, the mean motion.");
    head({"Step", "Greenwich, quarter", "Greenwich, revolution", "Absolute, quarter", "Absolute, revolution",
          "Energy, revolution"});
    for (double step : {5.0, 10.0, 20.0, 30.0, 40.0, 50.0, 60.0, 80.0, 100.0, 120.0}) {
        std::vector<std::string> cells{text("%g s", step)};
        for (int system : {0, 1}) {
            for (double seconds : {kRevolution / 4, kRevolution}) {
                cells.push_back(length(integratorError(system, step, seconds).position));
            }
        }
        cells.push_back(text("%.1e", std::abs(energyError(step))));
        row(cells);
    }
    paragraph(
        "The method is of order 8. Over a quarter of a revolution the error grows with the eighth power of the step. "
        "Over longer arcs it grows faster, because the energy drifts with the ninth power, and that moves the "
        "satellite along its track with the square of the time. Below a step of 20 s rounding takes over. The absolute "
        "time does not enter: the same state gives the same orbit, bit for bit, whatever its `time`.");
}

void readOuts() {
    section("Dense output");
    paragraph("What reading out adds to the error of the orbit: largest distance from the exact motion through the end "
              "state, over the two newest steps of a history of integrator nodes. The orders 5, 6 and 7 are one.");
    head({"Step", "Order 1", "Order 2", "Order 3", "Order 4", "Order 7", "Order 7, seven steps"});
    for (double step : {5.0, 10.0, 15.0, 20.0, 30.0, 40.0, 50.0, 60.0, 120.0}) {
        std::vector<std::string> cells{text("%g s", step)};
        for (int order : {1, 2, 3, 4, 7}) {
            cells.push_back(length(readOutError(step, order, 2).position));
        }
        cells.push_back(length(readOutError(step, 7, 7).position));
        row(cells);
    }
    paragraph("An order of n nodes errs with the power n + 1 of the step. Seven steps back, the eight weights are "
              "small sums of large terms, whose rounding costs up to " +
              length(readOutError(10, 7, 7).position / 10) + " for each second of the step.");
    paragraph("The whole of it, as a caller meets it: largest distance from the exact motion through the start vector, "
              "within an interval loaded with `InitLagrange()`. Order 4 is also what `Lagrange4()` and its kin give. "
              "Around intervals of 60 s most of the error of order 7 comes from the history behind the start, which is "
              "made by a method of order 4 in quarter steps. Intervals above 120 s are made in steps of 120 s, of "
              "which order 7 covers the last seven and order 4 the last three.");
    head({"Interval", "Step", "Order 4", "Order 7", "Order 7, velocity"});
    for (double interval : {10.0, 20.0, 30.0, 60.0, 100.0, 120.0, 240.0, 600.0, 840.0}) {
        const MotionError best = intervalError(interval, 0, 7, 7);
        row({text("%g s", interval), text("%g s", interval > 120 ? 120 : interval / 2),
             length(intervalError(interval, 0, 4, 3).position), length(best.position), speed(best.velocity)});
    }
    for (double step : {30.0, 60.0}) {
        const MotionError best = intervalError(600, step, 7, 7);
        row({"600 s", text("%g s, the caller's", step), length(intervalError(600, step, 4, 3).position),
             length(best.position), speed(best.velocity)});
    }
    paragraph(
        "**What helps:** order 7; over 120 s it has a " +
        text("%.0f",
             1000 * std::round(intervalError(120, 0, 4, 3).position / intervalError(120, 0, 7, 7).position / 1000)) +
        " times smaller error than order 4 and `Lagrange4()`. And for intervals beyond 120 s a step of one's own, of a "
        "seventh of the time to be read out.");
}

void timeResolution(const Scene& scene) {
    section("Resolution of time");
    paragraph("`time` counts seconds from 1900. Near today's 4e9 s a double resolves 4.8e-7 s, in which a satellite "
              "flies 3.6 mm. Two things follow: a time that is handed over is rounded by up to half of that; and a "
              "step that is no multiple of that resolution is rounded in the same direction each time it is added, so "
              "that `time` runs away from the state, which is carried by the exact step.");
    head({"Step", "`time` after 2 steps", "after 500 steps", "that is, in flight"});
    for (double step : {15.0, 13.5, 12.25, 13.65, 7.7, 0.1}) {
        const double late = timeError(step, 500);
        row({text("%g s", step), duration(timeError(step, 2)), duration(late), length(std::abs(late) * 7500)});
    }
    const Approach whole = fromBefore(scene);

    const auto byDay = [](Approach approach) {
        approach.origin = TimeOrigin::SceneDay;
        return approach;
    };
    paragraph("The points that the examples carry of " + code(scene.name) +
              " with time counted from 1900, against the same points with time counted from 0h of the day, where a "
              "double resolves 7.3e-12 s:");
    head({"Interval of `InitLagrange`", "Points apart by", "rms"});
    const auto shiftOf = [&](double interval) {
        Approach approach = whole;
        approach.interval = interval;
        return pointShift(scene, approach, byDay(approach));
    };
    const Spread best = shiftOf(whole.interval);
    row({text("%g s", whole.interval), length(best.largest()), length(best.rms())});
    double worst = whole.interval + 0.1;
    for (int tenths = 2; tenths < 10; ++tenths) {
        const double interval = whole.interval + tenths / 10.0;
        worst = shiftOf(interval).rms() > shiftOf(worst).rms() ? interval : worst;
    }
    row({text("%g s, the worst of the tenths up to the next second", worst), length(shiftOf(worst).largest()),
         length(shiftOf(worst).rms())});
    paragraph("With whole seconds there remains the rounding of the vector's time and the points' own. **What helps:** "
              "an interval of whole seconds, or any step that is a multiple of 2⁻²¹ s, as whole and half seconds are: "
              "`time` then sums exactly. In the Greenwich frame, a time origin of one's own, such as 0h of the day: "
              "nothing reads the absolute time or `date` there, so `time` of the state and every time handed over may "
              "count from anywhere. In the absolute frame this is not allowed, because `GeoLocation()` turns its point "
              "by the sidereal angle of `date` and `time`.");
}

void groundPoints() {
    section("Ground points");
    paragraph("Distance of the returned `x`, `y`, `z` from the exact intersection of range, beam plane or range rate, "
              "and ellipsoid, for the state that the library itself reads out: the largest of 400 lines of sight over "
              "60 s of orbit, on both sides, pointed within 4 degrees (`GeoLocation()`) or with range rates within 0.5 "
              "km/s (`GeoProssess()`).");
    head({"Slant range", "`GeoLocation`, Greenwich", "`GeoLocation`, absolute", "`GeoProssess`, Greenwich",
          "`GeoProssess`, absolute"});
    for (double range : {750.0, 800.0, 900.0, 1000.0, 1200.0, 1500.0, 2000.0}) {
        std::vector<std::string> cells{text("%g km", range)};
        for (Operation operation : {Operation::GeoLocation, Operation::GeoProssess}) {
            for (int system : {0, 1}) {
                cells.push_back(length(intersectionError(operation, system, range).largest()));
            }
        }
        row(cells);
    }
    paragraph("The look angle is sought until its step falls below 1e-10 rad, and the last step is not applied. So the "
              "point is off by at most 1e-10 of the slant range, along the circle of that range; by nanometres where "
              "the last step happened to be small.");
}

void geodetic() {
    section("Latitude, longitude and height");
    paragraph("`lat` and `h` of a returned point are one first-order correction of the geocentric latitude, not an "
              "exact inversion. This is how far north of the exact geodetic latitude of the point's own `x`, `y` and "
              "`z` (which do not suffer from it) `lat` comes out; the south mirrors the north:");
    const std::vector<double> heights{0, 1, 8.8, 100, 700};
    std::vector<std::string> titles{"Latitude"};
    std::vector<std::string> largest{"largest, any latitude"};
    std::vector<std::string> largestUp{"largest of `h`, any latitude"};
    const auto orNothing = [](double m) { return std::abs(m) < 1e-6 ? "below 1 µm" : length(m); };
    for (double height : heights) {
        titles.push_back(text("%g km high", height));
        double degrees = 0;
        double up = 0;
        for (int latitude = 0; latitude <= 90; ++latitude) {
            const GeodeticError error = geodeticError(latitude, height);
            degrees = std::max(degrees, std::abs(error.latitude));
            up = std::max(up, std::abs(error.up));
        }
        largest.push_back(text("%.3f µ°", degrees * 1e6));
        largestUp.push_back(orNothing(up));
    }
    head(titles);
    for (double latitude : {0.0, 15.0, 30.0, 45.0, 60.0, 75.0, 90.0}) {
        std::vector<std::string> cells{text("%g°", latitude)};
        for (double height : heights) {
            cells.push_back(orNothing(geodeticError(latitude, height).north));
        }
        row(cells);
    }
    row(largest);
    row(largestUp);
    paragraph("A degree is 0.0174532925156 rad in the library, 2.5e-10 of itself less than pi/180. A product's "
              "longitude given in true degrees is therefore placed to the west of its point, and a longitude that the "
              "library returns reads too large by the same; on the equator:");
    head({"Longitude", "Displacement"});
    for (double longitude : {45.0, 90.0, 180.0, 360.0}) {
        row({text("%g°", longitude), length(degreeError(longitude))});
    }
    paragraph("**What helps:** where centimetres count, use `x`, `y`, `z` and convert them exactly; and give "
              "`radial_speed()` longitudes between -180 and 180 degrees.");
}

void forceModel() {
    section("What the force model leaves out");
    paragraph("How far the sample orbit moves when one thing of the model is changed, in the reference:");
    head({"Changed", "after 10 s", "30 s", "60 s", "100 s"});
    const struct {
        const char* name;
        double ModelShift::*shift;
    } changes[] = {
        {"Gravity to degree and order 4 (EGM96) instead of J2", &ModelShift::gravity},
        {"Gravitational parameter 398600.4415 instead of 398600.0 km³/s²", &ModelShift::parameter},
        {"Rotation axis half an arc second off z, as polar motion leaves it", &ModelShift::pole},
        {"Moon and Sun added, both overhead", &ModelShift::tides},
        {"The library's own drag, factor 1e-8 km²/kg (0.01 m²/kg)", &ModelShift::drag},
    };
    for (const auto& change : changes) {
        std::vector<std::string> cells{change.name};
        for (double seconds : {10.0, 30.0, 60.0, 100.0}) {
            cells.push_back(length(modelShift(seconds).*change.shift));
        }
        row(cells);
    }
    paragraph("All of them grow with the square of the time, being accelerations; gravity beyond J2 is what counts, "
              "and it differs from place to place. The density of the drag model jumps up tenfold at a height of 600 "
              "km, so that drag above it is better left off (factor 0).");
}

void absoluteFrame(double day) {
    section("The absolute frame");
    paragraph("The absolute frame is the Greenwich frame turned back about z, no more. A trajectory that stays in the "
              "Greenwich frame never meets what follows.");
    head({"Sample orbit in the absolute frame, turned back, against the Greenwich frame", ""});
    for (double seconds : {30.0, 100.0, kRevolution}) {
        row({text("after %g s", seconds), length(frameShift(seconds))});
    }
    paragraph("The frame conversions turn at 7.29211515e-5 rad/s and the force model at 7.2921158e-5 rad/s; the "
              "difference acts like a small Coriolis acceleration.");
    paragraph("States of another inertial frame must not be loaded as absolute ones. On the day of the sample orbit "
              "they would be displaced by:");
    const InertialShift shift = inertialShift(day);
    head({"Other frame", "Displacement of the satellite"});
    row({"Mean equator and equinox of J2000: precession is left out", length(shift.precession)});
    row({"True equator and equinox of date: nutation is left out", length(shift.nutation)});
    row({"Mean equinox of date of IAU 1982 instead of Newcomb's", length(std::abs(shift.sidereal))});
    paragraph(
        "In addition, `time` is taken for UT1, which is up to 0.9 s apart from UTC; in that time the Earth turns by " +
        length(0.9 * 7.29211515e-5 * 6378137) +
        " at the equator; and the pole of the Earth-fixed frame wanders by some tenths of an arc second, " +
        length(0.5 / 206265 * 6378137) +
        " for half of one. **What helps:** load Earth-fixed vectors, as products give them, and stay in the Greenwich "
        "frame.");
}

void fromVectorToVector(const std::vector<Scene>& all) {
    paragraph("From each state vector to the later ones, largest distance (rms):");
    const std::vector<double> after{10, 20, 30, 60, 100};
    std::vector<std::string> titles{"Product", "Vectors"};
    for (double seconds : after) {
        titles.push_back(text("after %g s", seconds));
    }
    head(titles);
    for (const Scene& scene : all) {
        std::vector<std::string> cells{scene.name, std::to_string(scene.orbit.size())};
        for (double seconds : after) {
            cells.push_back(maximumAndRms(propagationError(scene, seconds), length));
        }
        row(cells);
    }
    paragraph("What keeps the vectors off one orbit of the library's force model, each with those 30 s before and "
              "after it (rms): velocities that differ from the motion of the positions, which is the product's own, "
              "and accelerations that differ from the library's and, beside it, from those of a field to degree and "
              "order 4. In 100 s a velocity off by 1 mm/s makes 0.1 m, and an acceleration off by 100 µm/s² 0.5 m.");
    head({"Product", "Velocity", "Acceleration", "to degree and order 4"});
    for (const Scene& scene : all) {
        const OrbitMisfit misfit = orbitMisfit(scene);
        row({scene.name, speed(misfit.velocity.rms()), acceleration(misfit.acceleration.rms()),
             acceleration(misfit.accelerationDegree4.rms())});
    }
}

void gridPoints(const std::vector<Scene>& all) {
    paragraph("Grid points, largest difference (rms): slant range and range rate of `radial_speed()`, and the point of "
              "`GeoProssess()` with range rate 0 on the ellipsoid swollen by the point's height. The trajectory starts "
              "at the last vector before the scene, at the one nearest to its middle, or anew for each point at the "
              "one nearest to that; or there is none, and a state is interpolated to each point:");
    head({"Product", "Points", "Start vector", "Interval", "Range", "Range rate", "Point", "of it along the track"});
    for (const Scene& scene : all) {
        std::string product = scene.name;
        std::string points = count(scene.grid.size());
        const auto errorRow = [&](const std::string& name, const std::string& interval, const SceneError& e) {
            row({product, points, name, interval, maximumAndRms(e.range, length), maximumAndRms(e.rangeRate, speed),
                 maximumAndRms(e.point, length), maximumAndRms(e.along, length)});
            product.clear();
            points.clear();
        };
        const Approach before = fromBefore(scene);
        const Approach middle = fromMiddle(scene);
        errorRow("before", text("%g s", before.interval), sceneError(scene, before));
        errorRow("middle", text("%g s", middle.interval), sceneError(scene, middle));
        errorRow("nearest", "", sceneErrorFromNearest(scene));
        if (canInterpolate(scene)) {
            errorRow("none", "", sceneErrorFromEach(scene));
            errorRow("none, without the library", "", productsOwnError(scene));
        }
    }
}

void realScenes(const std::vector<Scene>& all) {
    section("The class on real scenes");
    paragraph(
        "What products (Copernicus Sentinel data) say of their own orbit and grid, against what the class makes of "
        "one state vector, in the Greenwich frame and without drag; and what it makes of states interpolated "
        "between all of them. The vectors are taken as written.");
    fromVectorToVector(all);
    gridPoints(all);
    paragraph(
        "The last two rows of a product of at least eight vectors propagate nothing: polynomials through eight "
        "of its vectors give the state at each point. The library then puts the points where the product's own orbit "
        "puts them without it, in extended precision, which shows that the rows above are errors of propagation; what "
        "remains in the range is the library's degree, by which `radial_speed()` places the point. Along the track a "
        "point moves by the range rate's error times slant range over speed, some 110 s, so it errs with "
        "the *velocity*, which goes wrong with the first power of the time from the start vector; across the track it "
        "errs with the range, which goes wrong with its square. Where the vectors' velocities do not agree with their "
        "positions, as in vectors determined on board, the distance grows with the first power of the time from the "
        "start, and no force model would help.");
    paragraph("**What helps most:** all vectors of the product instead of one. Interpolate them to the time of each "
              "azimuth line and hand the state over with `setVector()`, on an object whose step `setStep()` has made "
              "other than 0: every operation asked for the state's own `time` uses that state as it is, without "
              "propagation and history. [locate_from_vectors.cpp](@ref locate_from_vectors.cpp) does so.");
    paragraph("**What helps with one vector:** one in the middle of the scene. `InitLagrange()` from there to the end "
              "of the scene is enough: the history reaches back five steps, two and a half times the interval, behind "
              "the start, and order 7 reads it. For longer scenes, a fresh start from each state vector.");
}

}  // namespace

void classSummary(const std::vector<Scene>& scenes) {
    for (double step : {30.0, 60.0, 120.0}) {
        row({"Orbit after one revolution, step " + text("%g s", step),
             length(integratorError(0, step, kRevolution).position)});
    }
    for (double interval : {30.0, 120.0}) {
        row({"State within `InitLagrange` of " + text("%g s", interval) + ", order 7",
             length(intervalError(interval, 0, 7, 7).position)});
        row({"The same, order 4 and `Lagrange4`", length(intervalError(interval, 0, 4, 3).position)});
    }
    Spread ground;
    ground.add(intersectionError(Operation::GeoLocation, 0, 800).largest());
    ground.add(intersectionError(Operation::GeoProssess, 0, 800).largest());
    row({"Ground point at a slant range of 800 km, from the exact intersection", length(ground.largest())});
    row({"Its latitude, at 45 degrees on the ellipsoid", length(geodeticError(45, 0).north)});
    Spread before;
    Spread middle;
    Spread each;
    for (const Scene& scene : scenes) {
        before.add(sceneError(scene, fromBefore(scene)).point);
        middle.add(sceneError(scene, fromMiddle(scene)).point);
        if (canInterpolate(scene)) {
            each.add(sceneErrorFromEach(scene).point);
        }
    }
    row({"Points of real scenes, from one state vector before each scene", maximumAndRms(before, length)});
    row({"The same, from one in its middle", maximumAndRms(middle, length)});
    row({"The same, each from a state interpolated between the product's vectors", maximumAndRms(each, length)});
}

void classPages(const std::vector<Scene>& scenes) {
    const Scene example = exampleScene();
    integrator();
    readOuts();
    timeResolution(example);
    groundPoints();
    geodetic();
    forceModel();
    realScenes(scenes);
    absoluteFrame(example.day);
}

}  // namespace accuracy
