#ifndef VORBEL_ACCURACY_PAGES_H
#define VORBEL_ACCURACY_PAGES_H

#include "Folder.h"
#include "SceneMeasures.h"
#include "Scenes.h"

#include <utility>
#include <vector>

// The sections of the page, measured and printed.

namespace accuracy {

/// Rows of the table of main figures.
void classSummary(const std::vector<Scene>& scenes);

/// The operations of the class.
void classPages(const std::vector<Scene>& scenes);

/// What the main figures and the sections below them share.
struct SceneFigures {
    GroundError ground;
    RoundTrip zeroDoppler;
    RoundTrip squinted;
    std::vector<NamedProduct> onOrbitFiles;
    std::vector<GridError> grids;           // of each product
    std::vector<GridError> orbitFileGrids;  // of each of those on orbit files
    std::vector<TerrainReturn> values;      // of each product with a raster
    TerrainReturn roughValues;
    TerrainPixels pixels;
    std::vector<std::pair<int, Thinned>> thinned;  // by the spacing that is left, s
};
SceneFigures sceneFigures(const Folder& folder);

/// Rows of the table of main figures.
void sceneSummary(const SceneFigures& figures);

/// The operations on arrays, the terrain, orbits and products.
void scenePages(const Folder& folder, const SceneFigures& figures);

}  // namespace accuracy

#endif
