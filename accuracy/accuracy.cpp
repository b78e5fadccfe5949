// Measures the library's accuracy and prints it as a page in Markdown.
//
// usage: vorbel_accuracy FOLDER
// FOLDER holds annotation files of radar products, orbit files and rasters of heights, see readFolder().

#include "Measures.h"
#include "Page.h"
#include "Pages.h"
#include "Reference.h"

#include <cstdio>
#include <exception>
#include <vector>

namespace {

using namespace accuracy;

void introduction() {
    std::puts("# Accuracy");
    paragraph("`script/accuracy` measures every figure of this page and writes the page. Two yardsticks are used:");
    paragraph("- the library's own models, evaluated apart from it in extended precision "
              "(`accuracy/Reference.h`): this shows what the library's arithmetic and methods lose;\n- real "
              "radar products, which know their orbit and the places of their pixels: this shows what the models "
              "themselves leave out.");
    paragraph(
        "The reference is good to " + length(referenceError()) +
        " over a revolution: that is the largest disagreement between integrating in either frame, and forwards then "
        "backwards. The sample orbit is that of a Sentinel-1 satellite, near circular, 700 km high and "
        "inclined by 98 degrees. Errors are distances, the largest found unless the text says otherwise.");
}

void footer() {
    section("Making this page again");
    paragraph("```sh\nscript/accuracy          # prints the page for the extracts in examples/products\n"
              "script/accuracy FOLDER   # writes docs/accuracy.md with all products in FOLDER\n```");
    paragraph(
        "The products above are Copernicus Sentinel data and not part of the sources. FOLDER holds, in any folders "
        "below it, the annotation files of Sentinel-1 products (`s1*.xml`), orbit files (`*.EOF`) and, in the "
        "folder of an annotation, a raster of the ground below it (GeoTIFF, heights above the ellipsoid, "
        "`*ellipsoidal*.tif`).");
}

void page(const Folder& folder) {
    const std::vector<Scene> scenes = scenesOf(folder);
    const SceneFigures figures = sceneFigures(folder);
    introduction();
    section("The main figures");
    head({"What", "Largest error (rms)"});
    sceneSummary(figures);
    classSummary(scenes);
    paragraph(
        "Within their models the operations on arrays lose less than a micrometre, on terrain a quarter of a "
        "millimetre. Centimetres come from what the products themselves round; decimetres and more from one state "
        "vector in the place of all: the force model (J2 only) and the vector's own error then grow with the time "
        "between the vector and the scene.");
    scenePages(folder, figures);
    classPages(scenes);
    footer();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: vorbel_accuracy FOLDER\n", stderr);
        return 2;
    }
    if (!kExtendedPrecision) {
        std::fputs("vorbel_accuracy: long double is no wider than double here, there is nothing to measure against\n",
                   stderr);
        return 1;
    }
    try {
        page(readFolder(argv[1]));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vorbel_accuracy: %s\n", error.what());
        return 1;
    }
    return 0;
}
