#ifndef VORBEL_ACCURACY_SCENES_H
#define VORBEL_ACCURACY_SCENES_H

#include "Folder.h"

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

/// The products of a folder, of the swaths of one data take the first alone.
std::vector<Scene> scenesOf(const Folder& folder);

}  // namespace accuracy

#endif
