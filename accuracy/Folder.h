#ifndef VORBEL_ACCURACY_FOLDER_H
#define VORBEL_ACCURACY_FOLDER_H

#include "../tool/Surface.h"

#include <vorbel/products/Product.h>

#include <optional>
#include <string>
#include <vector>

// Radar products and what came with them, out of a folder.

namespace accuracy {

/// A product, and the ground below it if a raster stands beside its annotation.
struct NamedProduct {
    std::string name;                   // such as "IW2, 2023-01-08"
    vorbel::products::Product product;  // on its own vectors, whose times count as evenly spaced, unless said otherwise
    std::optional<vorbel::tool::Raster> dem;  // m above the ellipsoid
};

struct Folder {
    std::vector<NamedProduct> products;
    std::vector<vorbel::products::OrbitFile> orbitFiles;
};

/// Reads all annotation files (`s1*.xml`), orbit files (`*.EOF`) and rasters (`*ellipsoidal*.tif`) in and below a
/// folder. Throws std::runtime_error with one line of text for what cannot be read, and for a folder without products.
Folder readFolder(const std::string& folder);

/// The products again, each on the vectors of an orbit file of its satellite and time; what no file covers is left out.
std::vector<NamedProduct> onOrbitFiles(const Folder& folder);

}  // namespace accuracy

#endif
