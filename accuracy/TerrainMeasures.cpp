// Points of a terrain forward to the radar and back, and pixels on rough terrains against the bilinear surface.

#include "SceneMeasures.h"

#include "Reference.h"

#include "../tests/Random.h"
#include "../tests/scene/SceneOrbits.h"

#include <vorbel/scene/GroundToPixel.h>
#include <vorbel/scene/Terrain.h>

#include <algorithm>
#include <cmath>

namespace accuracy {

namespace {

using namespace vorbel;
using scene::LookSide;
using scene::RasterGrid;
using scene::Status;

constexpr std::size_t kRoughSize = 601;
constexpr double kRoughStep = 1.0 / 300;  // degrees

/// Height of the bilinear surface; the rows and columns may have fractions.
Real bilinear(const tool::Raster& raster, Real row, Real column) {
    const auto inside = [](Real place, std::size_t size) {
        return std::clamp(std::floor(place), Real(0), static_cast<Real>(size - 2));
    };
    const Real i = inside(row, raster.grid.rows);
    const Real j = inside(column, raster.grid.columns);
    const Real a = row - i;
    const Real b = column - j;
    const float* corner =
        &raster.values[static_cast<std::size_t>(i) * raster.grid.columns + static_cast<std::size_t>(j)];
    const float* below = corner + raster.grid.columns;
    return (1 - a) * ((1 - b) * corner[0] + b * corner[1]) + a * ((1 - b) * below[0] + b * below[1]);
}

Real bilinearAt(const tool::Raster& raster, Real latitude, Real longitude) {
    const RasterGrid& g = raster.grid;
    const Real east = std::remainder(longitude - g.west, Real(360));
    return bilinear(raster, (g.north - latitude) / g.latitudeStep, (east < 0 ? east + 360 : east) / g.longitudeStep);
}

/// Points on a terrain, to be seen by a radar.
struct Points {
    std::vector<double> latitude, longitude, height;
    std::vector<bool> onRim;

    void add(const tool::Raster& raster, double row, double column) {
        latitude.push_back(raster.grid.north - row * raster.grid.latitudeStep);
        longitude.push_back(raster.grid.west + column * raster.grid.longitudeStep);
        height.push_back(static_cast<double>(bilinear(raster, row, column)));
        onRim.push_back(row <= 0 || column <= 0 || row >= static_cast<double>(raster.grid.rows - 1) ||
                        column >= static_cast<double>(raster.grid.columns - 1));
    }
};

/// So many points of a surface, every second one on the side of a cell.
Points anywhere(const tool::Raster& raster, std::size_t count, Random& random) {
    Points points;
    for (std::size_t i = 0; i < count; ++i) {
        double row = random.uniform(0, static_cast<double>(raster.grid.rows - 1));
        double column = random.uniform(0, static_cast<double>(raster.grid.columns - 1));
        if (i % 4 == 0) {
            row = std::floor(row);
        } else if (i % 4 == 2) {
            column = std::floor(column);
        }
        points.add(raster, row, column);
    }
    return points;
}

void addReturn(const scene::Orbit& orbit, LookSide side, const tool::Raster& raster, const Points& points,
               TerrainReturn& result) {
    const scene::Terrain terrain(raster.values, raster.grid);
    const std::size_t count = points.height.size();
    std::vector<double> time(count), range(count), x(count), y(count), z(count);
    std::vector<Status> seen(count), status(count);
    std::vector<std::uint8_t> mask(count);
    scene::groundToPixel(orbit, side, {points.latitude, points.longitude, points.height}, {},
                         {.time = time, .slantRange = range, .status = seen});
    scene::pixelToTerrain(orbit, side, {1, count}, {time, range}, terrain,
                          {.x = x, .y = y, .z = z, .mask = mask, .status = status});
    for (std::size_t i = 0; i < count; ++i) {
        ++result.points;
        if (points.onRim[i]) {
            ++result.rim;
            continue;
        }
        result.layover += (mask[i] & scene::kLayoverMask) != 0 ? 1 : 0;
        result.shadow += (mask[i] & scene::kShadowMask) != 0 ? 1 : 0;
        if (mask[i] != 0) {
            continue;
        }
        if (seen[i] == Status::ok && status[i] == Status::ok) {
            const Geodetic start{points.latitude[i] * kDegree, points.longitude[i] * kDegree,
                                 points.height[i] / Real(kMetres)};
            const Vec back = (1 / Real(kMetres)) * Vec{x[i], y[i], z[i]};
            result.distance.add(metres(norm(back - cartesianOf(start, kDefinedSemiMinorAxis))));
        } else {
            ++(status[i] == Status::outside_terrain ? result.outside : result.other);
        }
    }
}

/// A rough raster to the side of an orbit.
struct Rough {
    scene::Orbit orbit;
    LookSide side;
    double range;  // to its middle, m
    tool::Raster raster;
};

Rough roughRaster(int number) {
    Random random(static_cast<std::uint64_t>(number) + 100);
    Rough rough{circularOrbit(7.07e6, random.uniform(1.2, 1.9), random.uniform(-1.2, 1.2), random.uniform(-4, 4)),
                number % 2 == 0 ? LookSide::right : LookSide::left,
                random.uniform(770e3, 1000e3),
                {}};
    const double time = 25;
    double latitude = 0;
    double longitude = 0;
    scene::pixelToGround(rough.orbit, rough.side, {1, 1}, {{&time, 1}, {&rough.range, 1}},
                         {.latitude = {&latitude, 1}, .longitude = {&longitude, 1}});
    const double half = 0.5 * static_cast<double>(kRoughSize - 1) * kRoughStep;
    rough.raster.grid = {latitude + half, longitude - half, kRoughStep, kRoughStep, kRoughSize, kRoughSize};
    const double roughness[] = {30, 60, 110, 200, 400, 1000};  // m
    const double noise = roughness[static_cast<std::size_t>(number) % std::size(roughness)];
    for (std::size_t i = 0; i < kRoughSize; ++i) {
        for (std::size_t j = 0; j < kRoughSize; ++j) {
            const double hills =
                500 * std::sin(static_cast<double>(i) * 0.05) * std::cos(static_cast<double>(j) * 0.07);
            rough.raster.values.push_back(static_cast<float>(1500 + hills + random.uniform(-noise, noise)));
        }
    }
    return rough;
}

}  // namespace

TerrainReturn valuesReturn(const NamedProduct& product) {
    const tool::Raster& raster = product.dem.value();
    Points points;
    for (std::size_t row = 0; row < raster.grid.rows; ++row) {
        for (std::size_t column = 0; column < raster.grid.columns; ++column) {
            points.add(raster, static_cast<double>(row), static_cast<double>(column));
        }
    }
    TerrainReturn result;
    addReturn(product.product.orbit, product.product.side, raster, points, result);
    return result;
}

TerrainReturn surfaceReturn(const NamedProduct& product, std::size_t points) {
    Random random(6);
    TerrainReturn result;
    addReturn(product.product.orbit, product.product.side, product.dem.value(),
              anywhere(product.dem.value(), points, random), result);
    return result;
}

TerrainReturn roughValuesReturn() {
    constexpr std::size_t kEvery = 31;  // of the raster's values
    TerrainReturn result;
    for (int number = 0; number < kRoughRasters; ++number) {
        const Rough rough = roughRaster(number);
        Points points;
        for (std::size_t i = 0; i < rough.raster.values.size(); i += kEvery) {
            const std::size_t row = i / kRoughSize;
            points.add(rough.raster, static_cast<double>(row), static_cast<double>(i % kRoughSize));
        }
        addReturn(rough.orbit, rough.side, rough.raster, points, result);
    }
    return result;
}

TerrainReturn roughSurfaceReturn() {
    constexpr std::size_t kPoints = 40000;
    Random random(8);
    TerrainReturn result;
    for (int number = 0; number < kRoughRasters; ++number) {
        const Rough rough = roughRaster(number);
        addReturn(rough.orbit, rough.side, rough.raster, anywhere(rough.raster, kPoints, random), result);
    }
    return result;
}

TerrainPixels terrainPixels() {
    constexpr scene::Extent kExtent{16, 1500};
    constexpr std::size_t kCount = kExtent.lines * kExtent.samples;
    TerrainPixels result;
    for (int number = 0; number < kRoughRasters; ++number) {
        const Rough rough = roughRaster(number);
        const scene::Terrain terrain(rough.raster.values, rough.raster.grid);
        std::vector<double> time, range;
        const double rate = number % 3 == 0 ? 40 : 0;  // m/s
        for (std::size_t line = 0; line < kExtent.lines; ++line) {
            time.push_back(20 + 0.6 * static_cast<double>(line));
        }
        for (std::size_t sample = 0; sample < kExtent.samples; ++sample) {
            range.push_back(rough.range + 20 * (static_cast<double>(sample) - kExtent.samples / 2.0));
        }
        std::vector<double> latitude(kCount), longitude(kCount), height(kCount), x(kCount), y(kCount), z(kCount);
        std::vector<Status> status(kCount);
        scene::pixelToTerrain(
            rough.orbit, rough.side, kExtent, {time, range, {&rate, 1}}, terrain,
            {.latitude = latitude, .longitude = longitude, .height = height, .x = x, .y = y, .z = z, .status = status});
        for (std::size_t i = 0; i < kCount; ++i) {
            ++result.pixels;
            result.hidden += status[i] == Status::hidden ? 1 : 0;
            if (!scene::located(status[i])) {
                continue;
            }
            ++result.located;
            result.layover += status[i] == Status::layover ? 1 : 0;
            result.vertical.add(static_cast<double>(bilinearAt(rough.raster, latitude[i], longitude[i]) - height[i]));
            const Motion satellite = motionOf(rough.orbit.at(time[i / kExtent.samples]));
            const Vec sight = Vec{x[i], y[i], z[i]} - satellite.r;
            result.range.add(static_cast<double>(norm(sight) - range[i % kExtent.samples]));
            result.rangeRate.add(static_cast<double>(-dot(sight, satellite.v) / norm(sight) - rate));
        }
    }
    return result;
}

}  // namespace accuracy
