#include "Folder.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace accuracy {

namespace {

namespace fs = std::filesystem;
using namespace vorbel;

std::string nameOf(const products::Annotation& a) {
    constexpr std::size_t kDate = 10;  // letters of one
    const std::string what = a.kind == products::ImageKind::groundRange ? a.swath + " " + a.productType : a.swath;
    return what + ", " + a.startTime.text(0).substr(0, kDate);
}

std::vector<fs::path> filesBelow(const std::string& folder) {
    std::vector<fs::path> files;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder, error)) {
        files.push_back(entry.path());
    }
    if (error) {
        throw std::runtime_error(folder + " is no folder that can be read");
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool isRaster(const fs::path& file) {
    return file.extension() == ".tif" && file.filename().string().find("ellipsoidal") != std::string::npos;
}

}  // namespace

Folder readFolder(const std::string& folder) {
    Folder content;
    const std::vector<fs::path> files = filesBelow(folder);
    for (const fs::path& file : files) {
        if (file.extension() == ".EOF") {
            content.orbitFiles.push_back(products::readOrbitFile(file));
        } else if (file.extension() == ".xml" && file.filename().string().starts_with("s1")) {
            products::Product product = products::makeProduct(products::readAnnotation(file));
            NamedProduct named{nameOf(product.annotation), std::move(product), {}};
            for (const fs::path& beside : files) {
                if (beside.parent_path() == file.parent_path() && isRaster(beside)) {
                    named.dem = tool::readGeoTiff(beside);
                }
            }
            content.products.push_back(std::move(named));
        }
    }
    if (content.products.empty()) {
        throw std::runtime_error(folder + " holds no annotation file s1*.xml");
    }
    std::stable_sort(content.products.begin(), content.products.end(),
                     [](const NamedProduct& a, const NamedProduct& b) {
                         return a.product.annotation.startTime < b.product.annotation.startTime;
                     });
    return content;
}

std::vector<NamedProduct> onOrbitFiles(const Folder& folder) {
    std::vector<NamedProduct> result;
    for (const NamedProduct& product : folder.products) {
        const products::Annotation& a = product.product.annotation;
        for (const products::OrbitFile& file : folder.orbitFiles) {
            if (file.mission == a.mission && file.vectors.front().time <= a.startTime &&
                file.vectors.back().time >= a.stopTime) {
                result.push_back({product.name + ", " + file.type, products::makeProduct(a, file), product.dem});
            }
        }
    }
    return result;
}

}  // namespace accuracy
