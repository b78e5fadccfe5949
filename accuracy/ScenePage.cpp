// The sections of the operations on arrays: the orbit, pixels and the ground, terrain, products.

#include "Pages.h"

#include "Page.h"

#include <string>

namespace accuracy {

namespace {

std::string seconds(int s) {
    return std::to_string(s) + " s";
}

void orbit(const Folder& folder, const SceneFigures& figures) {
    section("The orbit between vectors");
    std::size_t vectors = 0;
    for (const auto& file : folder.orbitFiles) {
        vectors += file.vectors.size();
    }
    if (vectors > 0) {
        paragraph("[Orbit::fromVectors()](orbit.md) on some of the vectors of precise and restituted orbit files, 10 s "
                  "apart (files: " +
                  count(folder.orbitFiles.size()) + ", vectors: " + count(vectors) +
                  "): distance of those that were left out, the largest (and root-mean-square).");
        head({"Spacing of the vectors kept", "from the orbit through all kept", "from that through two alone"});
        for (const auto& [spacing, error] : figures.thinned) {
            row({seconds(spacing), maximumAndRms(error.fromAll, length), maximumAndRms(error.fromTwo, length)});
        }
    }
    paragraph("Vectors of the class's own force model, 2 to 40 of them, against its exact motion from the first to the "
              "last; and one vector propagated by Orbit::propagated():");
    head({"Spacing of the vectors", "Position", "Velocity"});
    for (int spacing : {1, 10, 30, 60}) {
        const MotionSpread error = modelOrbit(spacing);
        row({seconds(spacing), maximumAndRms(error.position, length), maximumAndRms(error.velocity, speed)});
    }
    head({"Propagated over", "Position"});
    for (double reach : {60.0, 120.0, 240.0, 600.0, 6000.0}) {
        row({text("%g s", reach), maximumAndRms(propagatedError(reach), length)});
    }
    paragraph("Orbit::fromTrajectory() after steps of 60 s is " + length(readOutDifference(1).largest()) +
              " from `CVorbel::Lagrange` of order 7 within the newest step, " + length(readOutDifference(2).largest()) +
              " within two and " + length(readOutDifference(7).largest()) +
              " within all seven, which is the class's own rounding there.");
    if (vectors > 0) {
        paragraph("Beyond the last of eight vectors of an orbit file, continued by Orbit::extended(): distance of the "
                  "vectors that follow. The force model bounds it.");
        head({"After", "Distance"});
        for (double after : {10.0, 30.0, 60.0, 120.0}) {
            row({text("%g s", after), maximumAndRms(beyondVectors(folder, after), length)});
        }
    }
    if (const auto two = overlap(folder)) {
        paragraph("Two files that overlap, " + two->names + ", the vectors of the second " +
                  text("%.1f s", two->offset) + " beside those of the first, " + length(two->vectors.largest()) +
                  " from the first's orbit at most. The one orbit of both is " + length(two->first.largest()) +
                  " from that of the first file until a minute before its end, " + length(two->lastMinute.largest()) +
                  " in this minute, " + length(two->between.largest()) +
                  " from the second file's in the minute that follows, and " + length(two->second.largest()) +
                  " from then on.");
    }
}

void productOrbits(const Folder& folder) {
    paragraph(
        "The vectors of products, as written, with times rounded to 1 µs, and with the even times of "
        "[withEvenTimes()](orbit.md): distance of every second vector from the orbit through the others. And how "
        "much the velocities matter: the points of the geolocation grid by pixelToGround(), if derivatives of the "
        "positions took their place, and as they are.");
    head({"Product", "Vectors", "as written", "with even times", "Grid, derivatives", "Grid, velocities"});
    for (const NamedProduct& product : folder.products) {
        const ProductOrbit error = productOrbit(product);
        row({product.name, count(product.product.annotation.vectors.size()), length(error.asWritten.largest()),
             length(error.evenTimes.largest()), length(error.derivatives.largest()),
             length(error.ownVelocities.largest())});
    }
    paragraph(
        "Vectors determined on board, as those of strip map products of 2021, have velocities that differ from the "
        "motion of their positions by 12 mm/s; the processor took them as they are.");
}

void gridRows(const std::vector<NamedProduct>& products, const std::vector<GridError>& errors,
              void (*print)(const NamedProduct&, const GridError&)) {
    for (std::size_t i = 0; i < products.size(); ++i) {
        print(products[i], errors[i]);
    }
}

void pixelToGround(const Folder& folder, const SceneFigures& figures) {
    section("Pixel to ground");
    const GroundError& e = figures.ground;
    paragraph(
        "[pixelToGround()](pixel_to_ground.md) against the same quantities reckoned from its x, y and z in extended "
        "precision, " +
        count(static_cast<std::size_t>(e.range.count())) + " points of " + std::to_string(kRandomScenes) +
        " orbits 150 to 700 km high: both sides, all latitudes with the poles, ranges from 5 % beyond the nadir to "
        "the limb, heights from -500 to 9000 m, range rates up to 750 m/s in every second orbit:");
    head({"Quantity", "Largest error (rms)", "Promised"});
    row({"Slant range", maximumAndRms(e.range, length), "1 µm"});
    row({"Range rate", maximumAndRms(e.rangeRate, speed), "1 µm/s"});
    row({"Height", maximumAndRms(e.height, length), "1 µm"});
    row({"Latitude and longitude, on the ground", maximumAndRms(e.horizontal, length), ""});
    row({"Incidence", maximumAndRms(e.incidence, degrees), ""});
    row({"Look angle", maximumAndRms(e.lookAngle, degrees), ""});
    row({"Azimuth, times the sine of the incidence", maximumAndRms(e.azimuth, degrees), ""});
    paragraph("Two Newton steps bound the height near the nadir, rounding the rest.");
    paragraph("The points of products' geolocation grids, from the grid's times, ranges and heights:");
    head({"Product", "Points", "Distance, largest (rms)"});
    const auto print = [](const NamedProduct& product, const GridError& error) {
        row({product.name, count(static_cast<std::size_t>(error.point.count())), maximumAndRms(error.point, length)});
    };
    gridRows(folder.products, figures.grids, print);
    gridRows(figures.onOrbitFiles, figures.orbitFileGrids, print);
    paragraph("The grids' times are rounded to 1 µs, 7 mm of flight, which is most of it; an orbit file is another "
              "estimate of the orbit, a centimetre or two apart.");
    const BeamDifference beam = beamDifference();
    paragraph("[beamToGround()](pixel_to_ground.md) and the class from the same states, ranges of 720 to 1200 km and "
              "attitudes of some degrees:");
    head({"Difference", "Largest (rms)", "It is the class that"});
    row({"Point at height 0", maximumAndRms(beam.pointAtHeight0, length), "ends its iteration at 1e-10 rad"});
    row({"Point at heights to 4 km", maximumAndRms(beam.pointAbove, length), "takes a swollen ellipsoid"});
    row({"Latitude, on the ground", maximumAndRms(beam.latitude, length), "reckons to first order in the flattening"});
    row({"Doppler centroid, as a range rate", maximumAndRms(beam.centroid, speed), "finds the point as above"});
}

void groundToPixel(const Folder& folder, const SceneFigures& figures) {
    section("Ground to pixel");
    paragraph(
        "Pixels to the ground by pixelToGround() and back by [groundToPixel()](ground_to_pixel.md), through "
        "latitude, longitude and height; the pixels of the random orbits above, and 20,000 between the corners of "
        "the first product:");
    head({"Pixels", "Time, largest (rms)", "Range, largest (rms)"});
    const auto trip = [](const std::string& name, const RoundTrip& error) {
        row({name, maximumAndRms(error.time, duration), maximumAndRms(error.range, length)});
    };
    trip("Random orbits, zero Doppler", figures.zeroDoppler);
    trip("Random orbits, range rates up to 750 m/s", figures.squinted);
    trip(folder.products.front().name, roundTrip(folder.products.front()));
    row({"Promised", "1 ns", "1 µm"});
    paragraph("Points of the products' grids, against the grid's times and ranges:");
    head({"Product", "Points", "Time, largest (rms)", "Range, largest (rms)"});
    const auto print = [](const NamedProduct& product, const GridError& error) {
        row({product.name, count(static_cast<std::size_t>(error.time.count())), maximumAndRms(error.time, duration),
             maximumAndRms(error.range, length)});
    };
    gridRows(folder.products, figures.grids, print);
    gridRows(figures.onOrbitFiles, figures.orbitFileGrids, print);
    paragraph("The times of the grids are rounded to 1 µs, and the vectors of a product share a shift of up to half of "
              "that. What remains is the product's own: the section on the class on real scenes shows the same without "
              "the library. On an orbit file the difference between the two orbits is added.");
}

void terrain(const Folder& folder, const SceneFigures& figures) {
    section("Terrain");
    paragraph(
        "Points of a [terrain](terrain.md) forward to the radar by groundToPixel() and back by pixelToTerrain(): how "
        "many lie on the raster's rim, where rounding decides whether there is terrain, and are left out; how many "
        "of the others share their range with more by the mask (layover) or with hidden ones (shadow); how many "
        "without a mask were not found (outside the raster, or otherwise); and how far the rest comes to lie from "
        "where it was. The rough rasters are " +
        std::to_string(kRoughRasters) +
        " of 601 by 601 values, 12 seconds of arc apart: hills of 500 m and 30 to 1000 m of noise at each value.");
    head({"Points", "All", "Rim", "Layover", "Shadow", "Outside", "Otherwise", "Back", "Distance, largest (rms)"});
    const auto print = [](const std::string& name, const TerrainReturn& r) {
        row({name, count(r.points), count(r.rim), count(r.layover), count(r.shadow), count(r.outside), count(r.other),
             count(static_cast<std::size_t>(r.distance.count())), maximumAndRms(r.distance, length)});
    };
    std::size_t next = 0;
    for (const NamedProduct& product : folder.products) {
        if (product.dem) {
            constexpr std::size_t kElsewhere = 1000000;
            print("All values of the raster of " + product.name, figures.values[next++]);
            print("Elsewhere on it, half of them on the sides of cells", surfaceReturn(product, kElsewhere));
        }
    }
    print("Values of rough rasters", figures.roughValues);
    print("Elsewhere on these, half of them on the sides of cells", roughSurfaceReturn());
    const TerrainPixels& p = figures.pixels;
    paragraph("Pixels in lines over the rough rasters, " + count(p.pixels) + " of which " + count(p.located) +
              " were located, " + count(p.layover) + " of these in layover, and " + count(p.hidden) +
              " hidden; against the bilinear surface in extended precision and the pixel's own range and range rate:");
    head({"Quantity", "Largest error (rms)", "Promised"});
    row({"Height over the surface", maximumAndRms(p.vertical, length), "500 µm"});
    row({"Slant range", maximumAndRms(p.range, length), "1 µm"});
    row({"Range rate", maximumAndRms(p.rangeRate, speed), "1 µm/s"});
    paragraph("Heights come in steps of 1/8192 m, 122 µm, which bounds both tables.");
}

void products(const Folder& folder, const SceneFigures& figures) {
    section("Products");
    paragraph(
        "Lines and pixels of [products](products.md) against their own geolocation grids, largest differences: of "
        "the time and range that the mapping gives for the grid's lines and pixels; of the points that "
        "pixelToGround() finds for them; and of the lines and pixels that groundToPixel() leads back to.");
    head({"Product", "Time", "without the bistatic correction", "Range", "Point", "Lines back", "Pixels back"});
    const auto print = [](const NamedProduct& product) {
        const ProductError error = productError(product);
        row({product.name, duration(error.corrected.worstTime), duration(error.uncorrected.worstTime),
             length(error.corrected.worstRange), length(error.grid.fromPixels), text("%.4f", error.grid.lines),
             text("%.6f", error.grid.pixels)});
    };
    for (const NamedProduct& product : folder.products) {
        print(product);
    }
    for (const NamedProduct& product : figures.onOrbitFiles) {
        print(product);
    }
    paragraph("Doppler centroids by beamToGround() from orbit and attitude, on the ellipsoid, against the product's "
              "polynomials from orbit and attitude; see [the command](command.md) for the frame of the attitude:");
    head({"Product", "Centroids", "Largest (rms)"});
    for (const NamedProduct& product : folder.products) {
        const Spread error = centroidError(product);
        row({product.name, std::to_string(error.count()),
             maximumAndRms(error, [](double hertz) { return text("%.3f Hz", hertz); })});
    }
}

}  // namespace

SceneFigures sceneFigures(const Folder& folder) {
    SceneFigures figures;
    figures.ground = groundError();
    figures.zeroDoppler = roundTrip(false);
    figures.squinted = roundTrip(true);
    figures.onOrbitFiles = onOrbitFiles(folder);
    for (const NamedProduct& product : folder.products) {
        figures.grids.push_back(gridError(product));
        if (product.dem) {
            figures.values.push_back(valuesReturn(product));
        }
    }
    for (const NamedProduct& product : figures.onOrbitFiles) {
        figures.orbitFileGrids.push_back(gridError(product));
    }
    figures.roughValues = roughValuesReturn();
    figures.pixels = terrainPixels();
    for (int spacing : {20, 30, 60, 120, 240, 480}) {
        figures.thinned.emplace_back(spacing, thinned(folder, spacing));
    }
    return figures;
}

void sceneSummary(const SceneFigures& figures) {
    if (figures.thinned.front().second.fromAll.count() > 0) {
        row({"Vectors of orbit files, 10 s apart, every second one left out",
             maximumAndRms(figures.thinned.front().second.fromAll, length)});
    }
    row({"Height of the points of pixels, in the model", maximumAndRms(figures.ground.height, length)});
    row({"Their range", maximumAndRms(figures.ground.range, length)});
    row({"Pixels to the ground and back, range", maximumAndRms(figures.squinted.range, length)});
    row({"The same, time", maximumAndRms(figures.squinted.time, duration)});
    row({"Pixels on rough terrain, height over the surface", maximumAndRms(figures.pixels.vertical, length)});
    Spread points;
    Spread times;
    Spread ranges;
    for (const GridError& error : figures.grids) {
        points.add(error.point);
        times.add(error.time);
        ranges.add(error.range);
    }
    row({"Points of the grids of real products, on their own vectors", maximumAndRms(points, length)});
    row({"These grids back to time", maximumAndRms(times, duration)});
    row({"and range", maximumAndRms(ranges, length)});
    for (const TerrainReturn& values : figures.values) {
        row({"Real terrain to the radar and back", maximumAndRms(values.distance, length)});
    }
}

void scenePages(const Folder& folder, const SceneFigures& figures) {
    orbit(folder, figures);
    productOrbits(folder);
    pixelToGround(folder, figures);
    groundToPixel(folder, figures);
    terrain(folder, figures);
    products(folder, figures);
}

}  // namespace accuracy
