// Pixels and ground points, one or a table of them.

#include "Commands.h"
#include "Csv.h"
#include "Geometry.h"
#include "Progress.h"
#include "Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <stdexcept>
#include <string>
#include <string_view>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace vorbel::tool {
namespace {

constexpr std::size_t kRowsOfBlock = 65536;

void write(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) {
        throw std::runtime_error("the output cannot be written");
    }
}

/// Bytes of standard input, 0 if it is no file.
std::uint64_t inputSize() {
#ifndef _WIN32
    struct stat status {};
    if (fstat(fileno(stdin), &status) == 0 && S_ISREG(status.st_mode)) {
        return static_cast<std::uint64_t>(status.st_size);
    }
#endif
    return 0;
}

void appendField(std::string& text, double value, int decimals) {
    text += ',';
    appendFixed(text, value, decimals);
}

/// Copies a table from standard input to standard output, with columns added.
/// \param[in] solve   given the columns read, computes what `append` needs and returns the statuses
/// \param[in] append  appends the added fields of a row
template <class Solve, class Append>
void streamTable(CsvReader& reader, std::string_view added, const Solve& solve, const Append& append) {
    Progress progress(inputSize());
    CsvBlock block;
    std::string out = reader.header();
    out += added;
    out += '\n';
    while (reader.next(block, kRowsOfBlock)) {
        const std::vector<RowStatus>& status = solve(block.columns);
        for (std::size_t i = 0; i < block.rows(); ++i) {
            out += block.row(i);
            append(out, i);
            out += '\n';
            progress.count(status[i]);
        }
        write(out);
        out.clear();
        progress.show(reader.bytes());
    }
    write(out);
    progress.finish();
}

/// One answer as lines of a name and a value, or as JSON.
void print(const std::vector<std::pair<const char*, std::string>>& values, Form form) {
    if (form == Form::text) {
        for (const auto& [name, value] : values) {
            std::printf("%-12s %s\n", name, value.c_str());
        }
        return;
    }
    nlohmann::ordered_json json;
    for (const auto& [name, value] : values) {
        const double number = parseNumber(value);
        if (std::isnan(number)) {
            json[name] = value;
        } else {
            json[name] = number;
        }
    }
    std::printf("%s\n", json.dump(2).c_str());
}

std::string utc(const products::Product& product, double time) {
    std::string text;
    UtcText(product.mapping.epoch()).append(text, time);
    return text;
}

[[noreturn]] void refuse(const std::string& place, RowStatus status) {
    throw std::runtime_error(place + " has no answer: " + nameOf(status));
}

/// A whole table must not have one height twice.
void refuseTwoHeights(const CsvReader& reader, std::size_t heightColumn, const Surface& surface) {
    if (reader.has(heightColumn) && surface.terrain) {
        throw std::runtime_error("the table has a column 'height', which contradicts the terrain");
    }
}

}  // namespace

void locate(const products::Product& product, const Surface& surface, const Pixel& pixel, Form form) {
    GroundColumns points;
    locatePixels(product, surface, std::span(&pixel.line, 1), std::span(&pixel.pixel, 1), {}, points);
    if (!hasNumbers(points.status[0])) {
        refuse("line " + fixed(pixel.line, 3) + ", pixel " + fixed(pixel.pixel, 3), points.status[0]);
    }
    print({{"latitude", fixed(points.latitude[0], kAngleDecimals)},
           {"longitude", fixed(points.longitude[0], kAngleDecimals)},
           {"height", fixed(points.height[0], kLengthDecimals)},
           {"incidence", fixed(points.incidence[0], kSightDecimals)},
           {"time", utc(product, points.time[0])},
           {"slant_range", fixed(points.slantRange[0], kLengthDecimals)},
           {"status", nameOf(points.status[0])}},
          form);
}

void locateTable(const products::Product& product, const Surface& surface) {
    constexpr std::array<CsvColumn, 3> kWanted{{{"line"}, {"pixel"}, {"height", false}}};
    constexpr std::array<std::string_view, 4> kAdded{"latitude", "longitude", "incidence", "status"};
    CsvReader reader(stdin, kWanted, kAdded);
    refuseTwoHeights(reader, 2, surface);
    const bool heightGiven = reader.has(2);
    GroundColumns p;
    streamTable(
        reader, heightGiven ? ",latitude,longitude,incidence,status" : ",latitude,longitude,height,incidence,status",
        [&](const std::vector<std::vector<double>>& columns) -> const std::vector<RowStatus>& {
            locatePixels(product, surface, columns[0], columns[1], columns[2], p);
            return p.status;
        },
        [&](std::string& out, std::size_t i) {
            appendField(out, p.latitude[i], kAngleDecimals);
            appendField(out, p.longitude[i], kAngleDecimals);
            if (!heightGiven) {
                appendField(out, p.height[i], kLengthDecimals);
            }
            appendField(out, p.incidence[i], kSightDecimals);
            out += ',';
            out += nameOf(p.status[i]);
        });
}

void project(const products::Product& product, const Surface& surface, const GroundPoint& point, Form form) {
    ImageColumns p;
    projectPoints(product, surface, std::span(&point.latitude, 1), std::span(&point.longitude, 1), {}, p);
    if (!hasNumbers(p.status[0])) {
        refuse("latitude " + fixed(point.latitude, kAngleDecimals) + ", longitude " +
                   fixed(point.longitude, kAngleDecimals),
               p.status[0]);
    }
    std::vector<std::pair<const char*, std::string>> values{{"line", fixed(p.line[0], kImageDecimals)},
                                                            {"pixel", fixed(p.pixel[0], kImageDecimals)}};
    if (!std::isnan(p.otherLine[0])) {
        values.emplace_back("other_line", fixed(p.otherLine[0], kImageDecimals));
    }
    values.emplace_back("height", fixed(p.height[0], kLengthDecimals));
    values.emplace_back("time", utc(product, p.time[0]));
    values.emplace_back("slant_range", fixed(p.slantRange[0], kLengthDecimals));
    values.emplace_back("status", nameOf(p.status[0]));
    print(values, form);
}

void projectTable(const products::Product& product, const Surface& surface) {
    constexpr std::array<CsvColumn, 3> kWanted{{{"latitude"}, {"longitude"}, {"height", false}}};
    constexpr std::array<std::string_view, 6> kAdded{"line", "pixel", "other_line", "time", "slant_range", "status"};
    CsvReader reader(stdin, kWanted, kAdded);
    refuseTwoHeights(reader, 2, surface);
    const bool bursts = product.annotation.kind == products::ImageKind::bursts;
    UtcText time(product.mapping.epoch());
    ImageColumns p;
    streamTable(
        reader, bursts ? ",line,pixel,other_line,time,slant_range,status" : ",line,pixel,time,slant_range,status",
        [&](const std::vector<std::vector<double>>& columns) -> const std::vector<RowStatus>& {
            projectPoints(product, surface, columns[0], columns[1], columns[2], p);
            return p.status;
        },
        [&](std::string& out, std::size_t i) {
            appendField(out, p.line[i], kImageDecimals);
            appendField(out, p.pixel[i], kImageDecimals);
            if (bursts) {
                appendField(out, p.otherLine[i], kImageDecimals);
            }
            out += ',';
            time.append(out, p.time[i]);
            appendField(out, p.slantRange[i], kLengthDecimals);
            out += ',';
            out += nameOf(p.status[i]);
        });
}

void grid(const products::Product& product, const Surface& surface, const Steps& steps) {
    // the last line and pixel belong to the grid whatever the steps are
    const auto places = [](int count, int step) {
        std::vector<double> list;
        for (int i = 0; i < count - 1; i += std::min(step, count - 1 - i)) {
            list.push_back(i);
        }
        list.push_back(count - 1);
        return list;
    };
    const std::vector<double> lines = places(product.annotation.lines, steps.lines);
    const std::vector<double> pixels = places(product.annotation.samples, steps.pixels);
    Progress progress(lines.size());
    UtcText time(product.mapping.epoch());
    GroundColumns p;
    std::vector<double> line;
    std::vector<double> pixel;
    std::string out = "line,pixel,time,slant_range,latitude,longitude,height,incidence,look_angle,azimuth,status\n";
    const std::size_t linesOfBlock = kRowsOfBlock / pixels.size() + 1;
    for (std::size_t first = 0; first < lines.size(); first += linesOfBlock) {
        line.clear();
        pixel.clear();
        for (std::size_t i = first; i < std::min(lines.size(), first + linesOfBlock); ++i) {
            line.insert(line.end(), pixels.size(), lines[i]);
            pixel.insert(pixel.end(), pixels.begin(), pixels.end());
        }
        locatePixels(product, surface, line, pixel, {}, p);
        for (std::size_t i = 0; i < line.size(); ++i) {
            appendFixed(out, line[i], 0);
            appendField(out, pixel[i], 0);
            out += ',';
            time.append(out, p.time[i]);
            appendField(out, p.slantRange[i], kLengthDecimals);
            appendField(out, p.latitude[i], kAngleDecimals);
            appendField(out, p.longitude[i], kAngleDecimals);
            appendField(out, p.height[i], kLengthDecimals);
            appendField(out, p.incidence[i], kSightDecimals);
            appendField(out, p.lookAngle[i], kSightDecimals);
            appendField(out, p.azimuth[i], kSightDecimals);
            out += ',';
            out += nameOf(p.status[i]);
            out += '\n';
            progress.count(p.status[i]);
        }
        write(out);
        out.clear();
        progress.show(first);
    }
    progress.finish();
}

}  // namespace vorbel::tool
