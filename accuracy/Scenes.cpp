#include "Scenes.h"

#include "../examples/sentinel1_scene.h"

#include <cmath>
#include <iterator>

namespace accuracy {

namespace {

constexpr double kSecondsPerDay = 86400;
constexpr double kMetresPerKilometre = 1000;
constexpr double kLightSpeed = 299792.458;  // km/s

/// As an annotation has them, in the library's units.
Scene sceneOf(const NamedProduct& named) {
    using vorbel::scene::Instant;
    const vorbel::products::Annotation& a = named.product.annotation;
    const Instant origin = Instant::of(1900, 1, 1);
    Scene scene;
    scene.name = named.name;
    scene.day = std::floor(a.vectors.front().time.since(origin) / kSecondsPerDay) + 1;
    const Instant midnight = origin.later((scene.day - 1) * kSecondsPerDay);
    for (const auto& [time, s] : a.vectors) {
        fVector state;
        state.x = s.x / kMetresPerKilometre;
        state.y = s.y / kMetresPerKilometre;
        state.z = s.z / kMetresPerKilometre;
        state.vx = s.vx / kMetresPerKilometre;
        state.vy = s.vy / kMetresPerKilometre;
        state.vz = s.vz / kMetresPerKilometre;
        state.date = scene.day;
        state.time = time.since(midnight);
        scene.orbit.push_back(state);
    }
    for (const vorbel::products::GridPoint& g : a.grid) {
        scene.grid.push_back({g.time.since(midnight), g.slantRangeTime * (kLightSpeed / 2), g.latitude, g.longitude,
                              g.height / kMetresPerKilometre});
    }
    return scene;
}

}  // namespace

Scene exampleScene() {
    Scene scene;
    scene.name = "S1A_IW_SLC__1SDH_20220414T102209_20220414T102236_042768_051AA4_E677";
    scene.day = kDay;
    for (const OrbitVector& vector : kOrbit) {
        scene.orbit.push_back(stateOf(vector));
        scene.orbit.back().time = vector.seconds;
    }
    scene.grid.reserve(std::size(kGrid));
    for (const ::GridPoint& p : kGrid) {
        scene.grid.push_back({p.seconds, p.slantRange, p.latitude, p.longitude, p.height / kMetresPerKilometre});
    }
    return scene;
}

std::vector<Scene> scenesOf(const Folder& folder) {
    std::vector<Scene> scenes;
    int orbit = 0;
    for (const NamedProduct& product : folder.products) {
        if (scenes.empty() || product.product.annotation.absoluteOrbit != orbit) {
            scenes.push_back(sceneOf(product));
            orbit = product.product.annotation.absoluteOrbit;
        }
    }
    return scenes;
}

}  // namespace accuracy
