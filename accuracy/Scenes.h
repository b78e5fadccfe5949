#ifndef VORBEL_ACCURACY_SCENES_H
#define VORBEL_ACCURACY_SCENES_H

#include <vorbel/Records.h>

#include <string>
#include <vector>

namespace accuracy {

/// A pixel whose place the product's own processor found: what the radar measured, and where it lies.
struct GridPoint {
    double seconds;     // zero-Doppler azimuth time, from 0h of the scene's day
    double slantRange;  // km
    double latitude;    // geodetic, WGS 84, degrees
    double longitude;   // degrees, east positive
    double height;      // km
};

/// What a radar product says of its own orbit and geolocation. The radar looks to the right.
struct Scene {
    std::string name;
    double day;                  // day number of its first state vector
    std::vector<fVector> orbit;  // Earth-fixed, in the order of time; `time` counts from 0h of `day`
    std::vector<GridPoint> grid;
};

/// The scene of the examples.
Scene exampleScene();

/// The scenes of all `<name>_orbit.csv` with `<name>_grid.csv` in a folder, in the order of their names. Throws
/// std::runtime_error with one line of text for anything missing or not to be understood.
std::vector<Scene> readScenes(const std::string& folder);

}  // namespace accuracy

#endif
