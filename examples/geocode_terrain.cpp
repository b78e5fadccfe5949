// Geocodes a raster of hills: for each of its cells the time and slant range at which the radar of a Sentinel-1 scene
// sees it, and from these two alone back onto the terrain. Then the heights and the mask along one line of the image.

#include "sentinel1_scene.h"

#include <vorbel/scene/GroundToPixel.h>
#include <vorbel/scene/Terrain.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <utility>
#include <vector>

using namespace vorbel::scene;

const double kLargestDistance = 0.001;  // m; heights on terrain come in steps of 1/8192 m

/// The product's vectors, in metres; times are seconds of the day.
Orbit orbitOfScene() {
    const Instant epoch = Instant::of(2022, 4, 14);
    std::vector<StateVector> vectors;
    for (const OrbitVector& v : kOrbit) {
        vectors.push_back(
            {epoch.later(v.seconds), {v.x * 1e3, v.y * 1e3, v.z * 1e3, v.vx * 1e3, v.vy * 1e3, v.vz * 1e3}});
    }
    return Orbit::fromVectors(withEvenTimes(vectors), epoch);
}

/// Height (m) of gentle hills and a peak of 60 degrees, which lays over towards the radar and hides what is behind it.
float hills(double row, double column) {
    const double gentle = 300.0 + 120.0 * std::sin(row / 20.0) * std::cos(column / 25.0);
    const double fromPeak = std::hypot(row - 100.0, column - 140.0);
    return static_cast<float>(gentle + std::max(0.0, 900.0 - 60.0 * fromPeak));
}

/// A raster of the hills, a cell of 0.0003 by 0.0005 degrees, some 33 by 35 m, in the middle of the scene.
struct Hills {
    RasterGrid grid{50.80, -61.20, 0.0003, 0.0005, 201, 241};
    std::vector<float> heights;

    Hills() {
        for (std::size_t row = 0; row < grid.rows; ++row) {
            for (std::size_t column = 0; column < grid.columns; ++column) {
                heights.push_back(hills(static_cast<double>(row), static_cast<double>(column)));
            }
        }
    }
};

/// Distance (m) between two points near each other.
double apart(double latitude1, double longitude1, double height1, double latitude2, double longitude2, double height2) {
    const double degree = kSemiMajor * 1e3 * std::acos(-1.0) / 180.0;
    const double north = (latitude2 - latitude1) * degree;
    const double east = (longitude2 - longitude1) * degree * std::cos(latitude1 * std::acos(-1.0) / 180.0);
    return std::sqrt(north * north + east * east + (height2 - height1) * (height2 - height1));
}

/// Every cell to the radar and back. Returns whether all is as it should be.
bool thereAndBack(const Orbit& orbit, const Hills& raster, const Terrain& terrain) {
    const std::size_t count = raster.grid.rows * raster.grid.columns;
    std::vector<double> latitude, longitude, height(raster.heights.begin(), raster.heights.end());
    for (std::size_t row = 0; row < raster.grid.rows; ++row) {
        for (std::size_t column = 0; column < raster.grid.columns; ++column) {
            latitude.push_back(raster.grid.north - static_cast<double>(row) * raster.grid.latitudeStep);
            longitude.push_back(raster.grid.west + static_cast<double>(column) * raster.grid.longitudeStep);
        }
    }
    std::vector<double> time(count), range(count);
    std::vector<Status> seen(count);
    groundToPixel(orbit, LookSide::right, {.latitude = latitude, .longitude = longitude, .height = height}, {},
                  {.time = time, .slantRange = range, .status = seen});

    std::vector<double> backLatitude(count), backLongitude(count), backHeight(count);
    std::vector<std::uint8_t> mask(count);
    std::vector<Status> status(count);
    pixelToTerrain(
        orbit, LookSide::right, {1, count}, {.time = time, .slantRange = range}, terrain,
        {.latitude = backLatitude, .longitude = backLongitude, .height = backHeight, .mask = mask, .status = status});

    std::printf("row column    UTC               slant range  back: lat, deg    lon, deg   height  status\n"
                "                                         km                                   m\n");
    const std::size_t columns = raster.grid.columns;
    for (const auto& [row, column] : {std::pair(40U, 60U), {100U, 120U}, {100U, 140U}, {100U, 153U}, {160U, 180U}}) {
        const std::size_t i = row * columns + column;
        std::printf("%3u    %3u    %s  %10.6f      %10.6f  %10.6f  %7.2f  %s\n", row, column,
                    clockTime(time[i]).c_str(), range[i] / 1e3, backLatitude[i], backLongitude[i], backHeight[i],
                    name(status[i]));
    }

    std::size_t clear = 0;
    std::size_t layover = 0;
    std::size_t shadow = 0;
    std::size_t pastEdge = 0;
    double worst = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        layover += (mask[i] & kLayoverMask) != 0 ? 1 : 0;
        shadow += (mask[i] & kShadowMask) != 0 ? 1 : 0;
        pastEdge += status[i] == Status::outside_terrain ? 1 : 0;
        if (located(status[i]) && mask[i] == 0) {
            ++clear;
            const double metres =
                apart(latitude[i], longitude[i], height[i], backLatitude[i], backLongitude[i], backHeight[i]);
            worst = metres <= worst ? worst : metres;  // takes not-a-number too
        }
    }
    const auto unseen = count - static_cast<std::size_t>(std::count(seen.begin(), seen.end(), Status::ok));
    std::printf(
        "cells %zu, not seen %zu, in layover %zu, at the range of hidden ones %zu, met outside the raster %zu\n", count,
        unseen, layover, shadow, pastEdge);
    std::printf("worst distance of the %zu others from where they started: %.4f m (allowed: %.3f m)\n", clear, worst,
                kLargestDistance);
    return unseen == 0 && layover > 0 && clear > count / 2 && worst <= kLargestDistance;
}

/// One line of the image over the peak: heights that belong to the surface, and what the mask says.
bool alongLine(const Orbit& orbit, const Hills& raster, const Terrain& terrain) {
    std::vector<double> peakTime(1), peakRange(1);
    const std::vector<double> latitude{raster.grid.north - 100.0 * raster.grid.latitudeStep};
    const std::vector<double> longitude{raster.grid.west + 140.0 * raster.grid.longitudeStep};
    const std::vector<double> top{raster.heights[100 * raster.grid.columns + 140]};
    groundToPixel(orbit, LookSide::right, {.latitude = latitude, .longitude = longitude, .height = top}, {},
                  {.time = peakTime, .slantRange = peakRange});

    const Extent extent{1, 800};
    std::vector<double> range;
    for (std::size_t i = 0; i < extent.samples; ++i) {
        range.push_back(peakRange[0] - 500.0 + 2.5 * static_cast<double>(i));
    }
    bool good = true;
    terrainGrid(orbit, LookSide::right, extent, {.time = peakTime, .slantRange = range}, terrain, 1,
                [&](const TerrainGridBlock& block) {
                    std::vector<double> surface(extent.samples);
                    terrain.heights(block.latitude, block.longitude, surface);
                    double worst = 0.0;
                    for (std::size_t i = 0; i < extent.samples; ++i) {
                        const double off = located(block.status[i]) ? std::abs(block.height[i] - surface[i]) : 0.0;
                        worst = off <= worst ? worst : off;  // takes not-a-number too
                    }
                    const auto layover = std::count(block.status.begin(), block.status.end(), Status::layover);
                    const auto ok = std::count(block.status.begin(), block.status.end(), Status::ok);
                    const auto hidden = std::count(block.status.begin(), block.status.end(), Status::hidden);
                    std::printf("\na line over the peak: of %zu pixels %td show one point, %td several, %td none but "
                                "hidden ones\nworst height above the surface: %.4f m (allowed: %.3f m)\n",
                                extent.samples, ok, layover, hidden, worst, kLargestDistance);
                    good = layover > 0 && hidden > 0 && ok + layover + hidden == std::ssize(range) &&
                           worst <= kLargestDistance;
                });
    return good;
}

int main() {
    const Orbit orbit = orbitOfScene();
    const Hills raster;
    const Terrain terrain(raster.heights, raster.grid);
    std::printf("A raster of hills in a Sentinel-1 scene: each cell to the radar, and back onto the terrain.\n\n");
    const bool back = thereAndBack(orbit, raster, terrain);
    const bool line = alongLine(orbit, raster, terrain);
    return back && line ? 0 : 1;
}
