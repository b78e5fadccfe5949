#include "Measures.h"

#include "Reference.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace accuracy {

namespace {

constexpr int kSamples = 512;               // of a read-out over its steps
constexpr Real kEarthRate = 7.29211515e-5;  // rad/s, of the library's frames
constexpr Real kLibraryDegree = 0.0174532925156;
constexpr Real kArcSecond = kDegree / 3600;

MotionError difference(const fVector& found, const Motion& exact) {
    const Motion d = motionOf(found) - exact;
    return {metres(d.r), metres(d.v)};
}

MotionError larger(const MotionError& a, const MotionError& b) {
    return {std::max(a.position, b.position), std::max(a.velocity, b.velocity)};
}

Vec positionOf(const Geopoint& g) {
    return {g.x, g.y, g.z};
}

/// About z, counter-clockwise seen from +z.
Vec turned(const Vec& a, Real angle) {
    const Real c = std::cos(angle);
    const Real s = std::sin(angle);
    return {c * a.x - s * a.y, s * a.x + c * a.y, a.z};
}

/// Largest difference of a read-out from an exact motion, up to a distance back from the end state: there, and at
/// points of the golden section, since fractions with few bits round kindly.
template <class Exact>
MotionError largestDifference(CVorbel& orbit, int order, double secondsBack, const Exact& exactAt) {
    const double end = orbit.getVector().time;
    MotionError largest{0, 0};
    for (int i = 1; i <= kSamples; ++i) {
        const double section = i * 0.6180339887498949;
        const double time = end - secondsBack * (i == kSamples ? 1.0 : section - std::floor(section));
        largest = larger(largest, difference(orbit.Lagrange(&time, order), exactAt(time)));
    }
    return largest;
}

CVorbel propagatedAt(const fVector& start, double step, int system, double seconds) {
    CVorbel orbit;
    orbit.SetProgParam(&start, step, system);
    orbit.prog(seconds);
    return orbit;
}

/// With its time on the scale that counts from 1900.
fVector sampleStateToday(int system) {
    const Scene scene = exampleScene();
    fVector state = fromBefore(scene).start;
    state.time += (scene.day - 1) * 86400;
    return system == 0 ? state : CVorbel().Grnv_ABS(state);
}

constexpr std::size_t kInterpolatedVectors = 8;

/// Position or velocity at a time on a polynomial through the eight nearest vectors.
Motion interpolated(const std::vector<fVector>& vectors, Real time) {
    constexpr std::size_t nodes = kInterpolatedVectors;
    std::size_t first = 0;
    while (first + nodes < vectors.size() &&
           std::abs(vectors[first].time - time) > std::abs(vectors[first + nodes].time - time)) {
        ++first;
    }
    Motion sum;
    for (std::size_t i = first; i < first + nodes; ++i) {
        Real weight = 1;
        for (std::size_t j = first; j < first + nodes; ++j) {
            if (j != i) {
                weight *= (time - vectors[j].time) / (Real(vectors[i].time) - vectors[j].time);
            }
        }
        sum = sum + weight * motionOf(vectors[i]);
    }
    return sum;
}

Vec exactPosition(const GridPoint& p) {
    return cartesianOf({p.latitude * kDegree, p.longitude * kDegree, p.height});
}

double firstTime(const Scene& scene) {
    double first = scene.grid.front().seconds;
    for (const GridPoint& p : scene.grid) {
        first = std::min(first, p.seconds);
    }
    return first;
}

double lastTime(const Scene& scene) {
    double last = scene.grid.front().seconds;
    for (const GridPoint& p : scene.grid) {
        last = std::max(last, p.seconds);
    }
    return last;
}

/// The vector whose time is nearest.
const fVector& nearestVector(const Scene& scene, double seconds) {
    return *std::min_element(scene.orbit.begin(), scene.orbit.end(), [&](const fVector& a, const fVector& b) {
        return std::abs(a.time - seconds) < std::abs(b.time - seconds);
    });
}

/// A trajectory loaded from an approach, and what it makes of the scene's points.
class LoadedApproach {
public:
    LoadedApproach(const Scene& scene, const Approach& approach)
        : m_origin(approach.origin == TimeOrigin::Year1900 ? (scene.day - 1) * 86400 : 0),
          m_along(unit(motionOf(approach.start).v)) {
        fVector start = approach.start;
        start.time = m_origin + start.time;
        m_orbit.InitLagrange(&start, approach.interval, 0);
    }

    /// For points at the state's own time alone, which counts from 0h of the scene's day.
    explicit LoadedApproach(const fVector& state) : m_origin(0), m_along(unit(motionOf(state).v)) {
        m_orbit.setStep(1.0);
        m_orbit.setVector(state);
    }

    Vec point(const GridPoint& p) {
        constexpr int kLooksRight = -1;
        // the ellipsoid swollen by the point's height
        m_orbit.SetEllipsoid(static_cast<double>(kSemiMajorAxis) + p.height,
                             static_cast<double>(kSemiMinorAxis) + p.height);
        return positionOf(m_orbit.GeoProssess(m_origin + p.seconds, p.slantRange, 0.0, kLooksRight));
    }

    void addErrors(const GridPoint& p, SceneError& error) {
        double range = 0;
        const double rate = m_orbit.radial_speed(m_origin + p.seconds, p.latitude, p.longitude, p.height, &range);
        error.range.add(metres(Real(range) - p.slantRange));
        error.rangeRate.add(metres(rate));
        const Vec miss = point(p) - exactPosition(p);
        error.point.add(metres(miss));
        error.along.add(metres(dot(miss, m_along)));
    }

private:
    CVorbel m_orbit;
    double m_origin;  // of the times given to the library, s
    Vec m_along;
};

/// Of the first vector that lies within half a second of a time, or null.
const fVector* vectorAt(const Scene& scene, double time) {
    const auto at = std::find_if(scene.orbit.begin(), scene.orbit.end(),
                                 [&](const fVector& s) { return std::abs(s.time - time) < 0.5; });
    return at == scene.orbit.end() ? nullptr : &*at;
}

Real julianCenturiesFrom2000(double day) {
    return (Real(day) - Real(36525.5)) / 36525;  // 2000 January 1.5 is day 36525.5
}

/// Sidereal angle of the library's frames, by its polynomial.
Real siderealAngle(double day, Real secondsOfDay) {
    const Real T = (Real(day) - Real(0.5)) / 36525;
    const Real degrees = Real(99.6909833) + (Real(36000.7689) + Real(0.00038708) * T) * T;
    return std::fmod(degrees, Real(360)) * kDegree + kEarthRate * secondsOfDay;
}

/// Mean sidereal angle at 0h UT1, IAU 1982.
Real siderealAngleIau1982(double day) {
    const Real T = julianCenturiesFrom2000(day);
    const Real seconds = 24110.54841L + (8640184.812866L + (0.093104L - 6.2e-6L * T) * T) * T;
    return std::fmod(seconds / 240, Real(360)) * kDegree;
}

}  // namespace

fVector sampleState(int system) {
    fVector state = sampleStateToday(system);
    state.time = 0;
    return state;
}

double energyError(double step) {
    const J2Model model = libraryModel(1);
    const auto energy = [&](const Motion& m) {
        const Real r = norm(m.r);
        const Real oblate = model.j2R2 * (1 - 3 * m.r.z * m.r.z / (r * r)) / (r * r) / 2;
        return dot(m.v, m.v) / 2 - model.mu / r * (1 + oblate);
    };
    const fVector start = sampleState(1);
    const Real before = energy(motionOf(start));
    const fVector end = propagatedAt(start, step, 1, kRevolution).getVector();
    return static_cast<double>((energy(motionOf(end)) - before) / before);
}

double referenceError() {
    const Real rate = 7.292115e-5L;
    const J2Model inertial = libraryModel(1);
    const J2Model turning{inertial.mu, inertial.j2R2, Turn{rate, rate * rate}};
    const Motion start = motionOf(sampleState(0));
    Motion absolute = start;
    absolute.v = start.v + cross(rate * Vec{0, 0, 1}, start.r);
    const Motion there = propagated(start, kRevolution, turning);
    const Vec turnedThere = turned(propagated(absolute, kRevolution, inertial).r, -rate * kRevolution);
    const Motion back = propagated(there, -kRevolution, turning, 30);
    return std::max(metres(turnedThere - there.r), metres(back.r - start.r));
}

MotionError integratorError(int system, double step, double seconds) {
    const fVector start = sampleState(system);
    const fVector end = propagatedAt(start, step, system, seconds).getVector();
    return difference(end, propagated(motionOf(start), end.time, libraryModel(system)));
}

MotionError readOutError(double step, int order, double newestSteps) {
    CVorbel orbit = propagatedAt(sampleState(0), step, 0, 10 * step);
    const fVector end = orbit.getVector();
    return largestDifference(orbit, order, newestSteps * step, [&](double time) {
        return propagated(motionOf(end), Real(time) - end.time, libraryModel(0), 20);
    });
}

MotionError intervalError(double interval, double step, int order, double newestSteps) {
    const fVector start = sampleState(0);
    CVorbel orbit;
    if (step == 0) {
        orbit.InitLagrange(&start, interval, 0);
    } else {
        orbit.InitLagrange(&start, interval, step, 0);
    }
    const double readable = std::min(orbit.getVector().time, newestSteps * orbit.getStep());
    return largestDifference(orbit, order, readable,
                             [&](double time) { return propagated(motionOf(start), time, libraryModel(0), 20); });
}

double timeError(double step, int steps) {
    const fVector start = sampleStateToday(0);
    const double time = propagatedAt(start, step, 0, step * (steps - 0.5)).getVector().time;
    return static_cast<double>(Real(time) - start.time - Real(step) * steps);
}

Spread intersectionError(Operation operation, int system, double slantRange) {
    const fVector start = sampleStateToday(system);
    CVorbel orbit;
    orbit.InitLagrange(&start, 60.0, system);

    Spread spread;
    for (int i = 0; i < 400; ++i) {
        // quasi-random points of [-1, 1] and sides
        const auto varied = [i](double irrational) { return 2 * (i * irrational - std::floor(i * irrational)) - 1; };
        const double time = start.time + 30 + 30 * varied(std::sqrt(2.0));
        const int side = i % 2 == 0 ? 1 : -1;
        const double pitch = 0.07 * varied(std::sqrt(3.0));
        const double yaw = 0.07 * varied(std::sqrt(5.0));
        const double roll = 0.07 * varied(std::sqrt(7.0));
        const double rangeRate = 0.5 * varied(std::sqrt(11.0));

        const Motion m = motionOf(orbit.Lagrange(&time, 7));
        if (operation == Operation::GeoProssess) {
            const Vec point = positionOf(orbit.GeoProssess(time, slantRange, rangeRate, side));
            const Vec exact = lineOfSightPoint(m.r, slantRange, m.v, -Real(rangeRate) * slantRange, kSemiMajorAxis,
                                               kSemiMinorAxis, point);
            spread.add(metres(exact - point));
            continue;
        }
        // The beam plane's normal: the along-track axis turned by pitch, then roll, then yaw, right-handed.
        const Vec inertialVelocity = system == 0 ? m.v + cross(kEarthRate * Vec{0, 0, 1}, m.r) : m.v;
        const Vec up = unit(m.r);
        const Vec left = unit(cross(m.r, inertialVelocity));
        const Vec ahead = cross(left, up);
        const Vec pitched{std::cos(Real(pitch)), 0, -std::sin(Real(pitch))};
        const Vec rolled{pitched.x, -pitched.z * std::sin(Real(roll)), pitched.z * std::cos(Real(roll))};
        const Vec inFrame = turned(rolled, yaw);
        const Vec normal = inFrame.x * ahead + inFrame.y * left + inFrame.z * up;

        const Vec point = positionOf(orbit.GeoLocation(time, slantRange, side, pitch, yaw, roll));
        const Real angle = system == 0 ? 0 : siderealAngle(start.date, Real(time) - (Real(start.date) - 1) * 86400);
        const Vec exact =
            lineOfSightPoint(m.r, slantRange, normal, 0, kSemiMajorAxis, kSemiMinorAxis, turned(point, angle));
        spread.add(metres(turned(exact, -angle) - point));
    }
    return spread;
}

GeodeticError geodeticError(double latitude, double height) {
    // A satellite to the upper east of the point sees it on the ellipsoid drawn through it.
    const Geodetic place{latitude * kDegree, 0.5L, height};
    const Vec target = cartesianOf(place);
    const Vec up = unit(cartesianOf({place.latitude, place.longitude, place.height + 1}) - target);
    const Vec east{-std::sin(place.longitude), std::cos(place.longitude), 0};
    const Vec north = cross(up, east);
    const Vec r = target + Real(600) * up + Real(600 + 1.5 * height) * east;
    const Vec v = Real(7) * north;
    fVector satellite;
    satellite.x = static_cast<double>(r.x);
    satellite.y = static_cast<double>(r.y);
    satellite.z = static_cast<double>(r.z);
    satellite.vx = static_cast<double>(v.x);
    satellite.vy = static_cast<double>(v.y);
    satellite.vz = static_cast<double>(v.z);

    const Real swelling = std::sqrt((target.x * target.x + target.y * target.y) / (kSemiMajorAxis * kSemiMajorAxis) +
                                    target.z * target.z / (kSemiMinorAxis * kSemiMinorAxis));
    CVorbel orbit;
    orbit.SetProgParam(&satellite, 1.0, 0);
    orbit.SetEllipsoid(static_cast<double>(swelling * kSemiMajorAxis), static_cast<double>(swelling * kSemiMinorAxis));
    const Geopoint point = orbit.GeoProssess(0.0, static_cast<double>(norm(target - r)), 0.0, +1);

    const Geodetic exact = geodeticOf(positionOf(point));
    const Real difference = point.lat * kLibraryDegree - exact.latitude;
    const Vec step =
        cartesianOf({exact.latitude + difference, 0, exact.height}) - cartesianOf({exact.latitude, 0, exact.height});
    return {static_cast<double>(difference / kDegree), std::copysign(metres(step), static_cast<double>(difference)),
            metres(point.h - exact.height)};
}

double degreeError(double longitude) {
    // from a satellite on the point's tangent, 1000 km to the east
    const Geodetic place{0, longitude * kDegree, 0};
    const Vec r = cartesianOf(place) + Real(1000) * Vec{-std::sin(place.longitude), std::cos(place.longitude), 0};
    fVector satellite;
    satellite.x = static_cast<double>(r.x);
    satellite.y = static_cast<double>(r.y);
    CVorbel orbit;
    orbit.SetProgParam(&satellite, 1.0, 0);
    double range = 0;
    orbit.radial_speed(0.0, 0.0, longitude, 0.0, &range);
    return metres(range - 1000);
}

Approach fromBefore(const Scene& scene) {
    const double first = firstTime(scene);
    const fVector* start = nullptr;
    for (const fVector& s : scene.orbit) {
        start = s.time <= first ? &s : start;
    }
    if (start == nullptr) {
        throw std::runtime_error(scene.name + ": no state vector before the first point of the grid");
    }
    return {*start, std::max(1.0, std::ceil(lastTime(scene) - start->time))};
}

Approach fromMiddle(const Scene& scene) {
    const double first = firstTime(scene);
    const double last = lastTime(scene);
    const fVector& start = nearestVector(scene, 0.5 * (first + last));
    // The end lies two steps ahead of the start, and five steps of the history behind it.
    return {start, std::max(1.0, std::ceil(std::max(last - start.time, (start.time - first) / 2.5)))};
}

SceneError sceneError(const Scene& scene, const Approach& approach) {
    LoadedApproach loaded(scene, approach);
    SceneError error;
    for (const GridPoint& p : scene.grid) {
        loaded.addErrors(p, error);
    }
    return error;
}

SceneError sceneErrorFromNearest(const Scene& scene) {
    SceneError error;
    for (const GridPoint& p : scene.grid) {
        const fVector& start = nearestVector(scene, p.seconds);
        const double interval = std::max(1.0, std::ceil(std::abs(p.seconds - start.time)));
        LoadedApproach(scene, {start, interval}).addErrors(p, error);
    }
    return error;
}

bool canInterpolate(const Scene& scene) {
    return scene.orbit.size() >= kInterpolatedVectors;
}

SceneError sceneErrorFromEach(const Scene& scene) {
    SceneError error;
    for (const GridPoint& p : scene.grid) {
        const Motion m = interpolated(scene.orbit, p.seconds);
        fVector state;
        state.x = static_cast<double>(m.r.x);
        state.y = static_cast<double>(m.r.y);
        state.z = static_cast<double>(m.r.z);
        state.vx = static_cast<double>(m.v.x);
        state.vy = static_cast<double>(m.v.y);
        state.vz = static_cast<double>(m.v.z);
        state.date = scene.day;
        state.time = p.seconds;
        LoadedApproach(state).addErrors(p, error);
    }
    return error;
}

Spread pointShift(const Scene& scene, const Approach& one, const Approach& other) {
    LoadedApproach loaded(scene, one);
    LoadedApproach otherLoaded(scene, other);
    Spread shift;
    for (const GridPoint& p : scene.grid) {
        shift.add(metres(loaded.point(p) - otherLoaded.point(p)));
    }
    return shift;
}

SceneError productsOwnError(const Scene& scene) {
    SceneError error;
    for (const GridPoint& p : scene.grid) {
        const Motion m = interpolated(scene.orbit, p.seconds);
        const Vec target = exactPosition(p);
        const Real range = norm(m.r - target);
        error.range.add(metres(range - p.slantRange));
        error.rangeRate.add(metres(dot(m.v, m.r - target) / range));
        const Vec miss =
            lineOfSightPoint(m.r, p.slantRange, m.v, 0, kSemiMajorAxis + p.height, kSemiMinorAxis + p.height, target) -
            target;
        error.point.add(metres(miss));
        error.along.add(metres(dot(miss, unit(m.v))));
    }
    return error;
}

Spread propagationError(const Scene& scene, double seconds) {
    Spread spread;
    for (const fVector& start : scene.orbit) {
        if (const fVector* later = vectorAt(scene, start.time + seconds)) {
            CVorbel orbit;
            orbit.InitLagrange(&start, seconds + 1, 0);
            spread.add(difference(orbit.Lagrange(&later->time, 7), motionOf(*later)).position);
        }
    }
    return spread;
}

OrbitMisfit orbitMisfit(const Scene& scene) {
    constexpr double kArm = 30;  // s
    const J2Model library = libraryModel(0);
    const DegreeFourModel better{library.turn};
    OrbitMisfit misfit;
    for (const fVector& s : scene.orbit) {
        const fVector* before = vectorAt(scene, s.time - kArm);
        const fVector* after = vectorAt(scene, s.time + kArm);
        if (before == nullptr || after == nullptr) {
            continue;
        }
        const auto miss = [&](const fVector& other, const auto& model) {
            return propagated(motionOf(s), Real(other.time) - s.time, model).r - motionOf(other).r;
        };
        const auto acceleration = [&](const auto& model) {
            return metres((1 / Real(kArm * kArm)) * (miss(*before, model) + miss(*after, model)));
        };
        misfit.velocity.add(metres((1 / Real(2 * kArm)) * (miss(*after, better) - miss(*before, better))));
        misfit.acceleration.add(acceleration(library));
        misfit.accelerationDegree4.add(acceleration(better));
    }
    return misfit;
}

ModelShift modelShift(double seconds) {
    const fVector start = sampleState(0);
    const J2Model library = libraryModel(0);
    const Vec there = propagated(motionOf(start), seconds, library).r;
    const auto shift = [&](const auto& model) { return metres(propagated(motionOf(start), seconds, model).r - there); };
    J2Model heavier = library;
    heavier.mu = 398600.4415L;
    J2Model tilted = library;
    tilted.turn.axis = {std::sin(kArcSecond / 2), 0, std::cos(kArcSecond / 2)};

    const auto tides = [&](const Motion& m) {
        // gravitational parameter (km³/s²) and mean distance (km)
        const auto tide = [&](Real mu, Real distance) {
            const Vec towards = unit(motionOf(start).r);
            return (mu / (distance * distance * distance)) * (3 * dot(towards, m.r) * towards - m.r);
        };
        return library(m) + tide(4902.8L, 384400) + tide(1.327124e11L, 1.495979e8L);
    };

    fVector dragged = start;
    dragged.drag = 1e-8;
    const fVector end = propagatedAt(start, 10.0, 0, seconds).getVector();
    return {shift(DegreeFourModel{library.turn}), shift(heavier), shift(tilted), shift(tides),
            difference(propagatedAt(dragged, 10.0, 0, seconds).getVector(), motionOf(end)).position};
}

double frameShift(double seconds) {
    const CVorbel turn;
    const fVector greenwich = propagatedAt(sampleStateToday(0), 10.0, 0, seconds).getVector();
    const fVector absolute = propagatedAt(sampleStateToday(1), 10.0, 1, seconds).getVector();
    return difference(turn.ABS_Grnv(absolute), motionOf(greenwich)).position;
}

InertialShift inertialShift(double day) {
    const Vec r = motionOf(sampleState(1)).r;
    const Real T = julianCenturiesFrom2000(day);
    const auto aboutY = [](const Vec& a, Real angle) {  // the axes turn, as in the textbook's R2
        const Real c = std::cos(angle);
        const Real s = std::sin(angle);
        return Vec{c * a.x - s * a.z, a.y, s * a.x + c * a.z};
    };

    // IAU 1976
    const Real zeta = (2306.2181L + (0.30188L + 0.017998L * T) * T) * T * kArcSecond;
    const Real z = (2306.2181L + (1.09468L + 0.018203L * T) * T) * T * kArcSecond;
    const Real theta = (2004.3109L - (0.42665L + 0.041833L * T) * T) * T * kArcSecond;
    const Vec precessed = turned(aboutY(turned(r, zeta), theta), z);

    // the four largest terms of IAU 1980
    const Real node = (125.04452L - 1934.136261L * T) * kDegree;
    const Real sun = (280.4665L + 36000.7698L * T) * kDegree;
    const Real moon = (218.3165L + 481267.8813L * T) * kDegree;
    const Real obliquity = 23.4393L * kDegree;
    const Real inLongitude = (-17.20L * std::sin(node) - 1.32L * std::sin(2 * sun) - 0.23L * std::sin(2 * moon) +
                              0.21L * std::sin(2 * node)) *
                             kArcSecond;
    const Real inObliquity =
        (9.20L * std::cos(node) + 0.57L * std::cos(2 * sun) + 0.10L * std::cos(2 * moon) - 0.09L * std::cos(2 * node)) *
        kArcSecond;
    const Vec pole{0, -std::sin(obliquity), std::cos(obliquity)};  // of the ecliptic

    const Real sidereal = std::remainder(siderealAngle(day, 0) - siderealAngleIau1982(day), 2 * kPi);
    return {metres(precessed - r), metres(cross(inLongitude * pole + inObliquity * Vec{1, 0, 0}, r)),
            metres(sidereal * std::hypot(r.x, r.y))};
}

}  // namespace accuracy
