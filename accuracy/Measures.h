#ifndef VORBEL_ACCURACY_MEASURES_H
#define VORBEL_ACCURACY_MEASURES_H

#include "Scenes.h"
#include "Spread.h"

#include <vorbel/CVorbel.h>

// The library beside the reference. Lengths are in metres and speeds in metres per second unless a comment says
// otherwise.

namespace accuracy {

/// Of a position and a velocity.
struct MotionError {
    double position;
    double velocity;
};

// The orbit that everything but the real scenes is measured on: that of the examples' scene, 700 km high and near
// circular, inclined by 98 degrees. Its states come with time 0.

fVector sampleState(int system);
inline constexpr double kRevolution = 5924;  // s

/// How far the reference differs from itself over a revolution: integrated in turning axes and in inertial ones, and
/// there and back in different steps.
double referenceError();

/// Of Adams steps after the given time, at the first node there or later.
MotionError integratorError(int system, double step, double seconds);

/// Largest error of a read-out over the newest steps, against the exact motion through the end state: what the read-out
/// adds to the integrator's error. The history holds Adams nodes only.
MotionError readOutError(double step, int order, double newestSteps);

/// Largest error of a read-out within the newest steps of InitLagrange() over an interval, against the exact motion
/// through the start. A step of 0 leaves it to InitLagrange().
MotionError intervalError(double interval, double step, int order, double newestSteps);

/// How far `time` (s) is from the sum of the steps after a number of them, at a date of today.
double timeError(double step, int steps);

/// Relative drift of the orbit's energy in the absolute frame over one revolution.
double energyError(double step);

enum class Operation { GeoLocation, GeoProssess };

/// Distances from the exact intersection of the line of sight and the ellipsoid over times, sides, and pointing within
/// 4 degrees, at one slant range (km).
Spread intersectionError(Operation operation, int system, double slantRange);

/// `lat`, `lon` and `h` of a point against the exact geodetic coordinates of its `x`, `y` and `z`.
struct GeodeticError {
    double latitude;  // degrees
    double north;     // the same in metres
    double up;
};

/// At a geodetic latitude (degrees) and height (km), in the library's own degrees.
GeodeticError geodeticError(double latitude, double height);

/// How far from its place (degrees of longitude, on the equator) radial_speed() sees a point, by the library's degree.
double degreeError(double longitude);

/// Differences over the grid of a scene.
struct SceneError {
    Spread range;      // radial_speed() to the point less the slant range
    Spread rangeRate;  // of the same, less the 0 of zero Doppler
    Spread point;      // distance of the GeoProssess() point from the grid's
    Spread along;      // its part along the track
};

enum class TimeOrigin { Year1900, SceneDay };

/// The trajectory from which a scene's points are found: loaded over `interval` (s) from a state vector.
struct Approach {
    fVector start;
    double interval;
    TimeOrigin origin = TimeOrigin::Year1900;
};

/// The last vector before the scene, over the whole seconds that reach its end. Throws std::runtime_error if there is
/// no such vector.
Approach fromBefore(const Scene& scene);

/// The vector nearest to the middle of the scene, over the whole seconds that reach its end. The first half is read out
/// of the history behind the start.
Approach fromMiddle(const Scene& scene);

SceneError sceneError(const Scene& scene, const Approach& approach);

/// With the trajectory loaded anew for each point, from the vector nearest to it.
SceneError sceneErrorFromNearest(const Scene& scene);

/// Whether a scene has the eight vectors that the next one and productsOwnError() need.
bool canInterpolate(const Scene& scene);

/// Without a propagation: for each point the product's vectors are interpolated, positions and velocities through
/// polynomials of their own, and the state is handed over with setVector().
SceneError sceneErrorFromEach(const Scene& scene);

/// How far apart (m) two approaches put the points of a scene.
Spread pointShift(const Scene& scene, const Approach& one, const Approach& other);

/// The same as sceneError(), without the library: from the product's own positions through a polynomial in time and its
/// velocities through another.
SceneError productsOwnError(const Scene& scene);

/// Distances from a product's later state vectors after a number of seconds.
Spread propagationError(const Scene& scene, double seconds);

/// What keeps a product's vectors from lying on one orbit of the library's force model, from each vector and those 30 s
/// before and after it.
struct OrbitMisfit {
    Spread velocity;             // the vectors' velocity less that of their positions
    Spread acceleration;         // m/s², the vectors' less the library's
    Spread accelerationDegree4;  // m/s², the vectors' less that of a field to degree and order 4
};

OrbitMisfit orbitMisfit(const Scene& scene);

/// How far the sample orbit moves within some seconds when the library's force model is exchanged for another.
struct ModelShift {
    double gravity;    // degree and order 4 instead of J2
    double parameter;  // gravitational parameter of EGM96
    double pole;       // Earth's axis half an arc second off z
    double tides;      // Moon and Sun, both overhead
    double drag;       // library's own drag with a factor of 1e-8 km²/kg
};

ModelShift modelShift(double seconds);

/// How far the sample orbit in the absolute frame, turned back, is from that in the Greenwich frame.
double frameShift(double seconds);

/// Displacement of the sample position by what separates the absolute frame from other inertial frames, on a day.
struct InertialShift {
    double precession;  // mean equator and equinox of J2000
    double nutation;    // true equator and equinox of date
    double sidereal;    // sidereal time of IAU 1982 instead of the library's
};

InertialShift inertialShift(double day);

}  // namespace accuracy

#endif
