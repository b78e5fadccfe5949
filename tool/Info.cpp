// What a product is.

#include "Commands.h"
#include "Geometry.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace vorbel::tool {
namespace {

const char* nameOfKind(products::ImageKind kind) {
    switch (kind) {
    case products::ImageKind::stripmap:
        return "slant range, strip map";
    case products::ImageKind::bursts:
        return "slant range, bursts";
    case products::ImageKind::groundRange:
        return "ground range";
    }
    return "";
}

nlohmann::ordered_json describe(const products::Product& product, const ProductChoice& choice) {
    const products::Annotation& a = product.annotation;
    const scene::Span covered = product.orbit.covered();
    const GridComparison c = compareGrid(product);
    const double reference = product.mapping.bistaticReference();
    nlohmann::ordered_json json;
    json["file"] = a.source;
    json["mission"] = a.mission;
    json["type"] = a.productType;
    json["mode"] = a.mode;
    json["swath"] = a.swath;
    json["polarisation"] = a.polarisation;
    json["image"] = nameOfKind(a.kind);
    json["lines"] = a.lines;
    json["pixels"] = a.samples;
    json["bursts"] = a.bursts.size();
    json["first_time"] = a.startTime.text();
    json["last_time"] = a.stopTime.text();
    json["absolute_orbit"] = a.absoluteOrbit;
    json["pass"] = a.pass;
    json["side"] = product.side == scene::LookSide::right ? "right" : "left";
    json["wavelength_m"] = products::wavelength(a);
    json["bistatic_reference_s"] = nlohmann::ordered_json();
    if (!std::isnan(reference)) {
        json["bistatic_reference_s"] = reference;
    }
    json["orbit"] = choice.orbits.empty() ? "the product's vectors" : choice.orbits.front().filename().string();
    json["orbit_first_time"] = product.mapping.epoch().later(covered.first).text();
    json["orbit_last_time"] = product.mapping.epoch().later(covered.last).text();
    json["own_grid"] = {{"points", c.points},
                        {"compared", c.compared},
                        {"from_times_and_ranges_m", c.fromTimes},
                        {"from_lines_and_pixels_m", c.fromPixels},
                        {"back_to_lines", c.lines},
                        {"back_to_pixels", c.pixels},
                        {"back_to_time_s", c.seconds},
                        {"back_to_range_m", c.range}};
    return json;
}

void printText(const nlohmann::ordered_json& json) {
    const auto text = [&](const char* name) { return json[name].get<std::string>(); };
    std::printf("%s\n", text("file").c_str());
    std::printf("  product        %s %s %s, %s %s\n", text("mission").c_str(), text("mode").c_str(),
                text("type").c_str(), text("swath").c_str(), text("polarisation").c_str());
    std::printf("  image          %d lines of %d pixels, %s", json["lines"].get<int>(), json["pixels"].get<int>(),
                text("image").c_str());
    if (json["bursts"].get<int>() > 0) {
        std::printf(" (%d)", json["bursts"].get<int>());
    }
    std::printf("\n  time           %s to %s UTC\n", text("first_time").c_str(), text("last_time").c_str());
    std::printf("  pass           %s, orbit %d, looks %s\n", text("pass").c_str(), json["absolute_orbit"].get<int>(),
                text("side").c_str());
    std::printf("  wavelength     %.9f m\n", json["wavelength_m"].get<double>());
    std::printf("  vectors cover  %s to %s UTC, %s\n", text("orbit_first_time").c_str(),
                text("orbit_last_time").c_str(), text("orbit").c_str());
    const auto& own = json["own_grid"];
    const auto number = [&](const char* name) { return own[name].get<double>(); };
    std::printf("  own grid       %zu points, of which %zu compared; the worst disagreement:\n",
                own["points"].get<std::size_t>(), own["compared"].get<std::size_t>());
    std::printf("                 %.4f m on the ground from its times and ranges, %.4f m from lines and pixels\n",
                number("from_times_and_ranges_m"), number("from_lines_and_pixels_m"));
    std::printf("                 back: %.6f lines, %.6f pixels; %.2f us, %.6f m\n", number("back_to_lines"),
                number("back_to_pixels"), number("back_to_time_s") * 1e6, number("back_to_range_m"));
}

}  // namespace

products::Product open(const ProductChoice& choice, const std::filesystem::path& file) {
    products::Annotation annotation = products::readAnnotation(file);
    if (choice.orbits.empty()) {
        return products::makeProduct(std::move(annotation), choice.bistatic);
    }
    std::vector<products::OrbitFile> orbits;
    for (const auto& orbit : choice.orbits) {
        orbits.push_back(products::readOrbitFile(orbit));
    }
    try {
        return products::makeProduct(std::move(annotation), products::merged(orbits), choice.bistatic);
    } catch (const std::invalid_argument& error) {
        throw std::runtime_error(error.what());
    }
}

void info(const ProductChoice& choice, Form form) {
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const auto& file : choice.files) {
        all.push_back(describe(open(choice, file), choice));
        if (form == Form::text) {
            printText(all.back());
        }
    }
    if (form == Form::json) {
        std::printf("%s\n", all.dump(2).c_str());
    }
}

}  // namespace vorbel::tool
