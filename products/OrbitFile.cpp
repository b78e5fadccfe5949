#include <vorbel/products/OrbitFile.h>

#include "Text.h"
#include "Xml.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <stdexcept>
#include <utility>

namespace vorbel::products {
namespace {

bool earlier(const scene::StateVector& a, const scene::StateVector& b) {
    return a.time < b.time;
}

/// "Sentinel-1A" as annotation files call it, "S1A"; any other name as it is.
std::string shortMission(const std::string& name) {
    constexpr std::string_view kLong = "Sentinel-1";
    return name.size() == kLong.size() + 1 && name.starts_with(kLong) ? "S1" + name.substr(kLong.size()) : name;
}

void requireText(const Element& e, const char* child, std::string_view right) {
    if (const std::string text = e.text(child); text != right) {
        throw std::runtime_error(e.place(child) + " is " + shown(text) + ", not " + shown(right));
    }
}

OrbitFile fromXml(std::string_view text, std::string_view source) {
    const Document document(text, std::string(source));
    const Element root = document.root("Earth_Explorer_File", "orbit file");
    const Element header = root.at("Earth_Explorer_Header");
    const Element fixed = header.at("Fixed_Header");
    const Element variable = header.at("Variable_Header");
    requireText(variable, "Ref_Frame", "EARTH_FIXED");
    requireText(variable, "Time_Reference", "UTC");
    OrbitFile file{std::string(source), shortMission(fixed.text("Mission")), fixed.text("File_Type"), {}};
    for (const Element& e : root.at("Data_Block").list("List_of_OSVs", "OSV")) {
        file.vectors.push_back(
            {e.time("UTC"),
             {e.number("X"), e.number("Y"), e.number("Z"), e.number("VX"), e.number("VY"), e.number("VZ")}});
    }
    return file;
}

/// Takes the text up to a separator, which goes too, or all of it.
std::string_view takeUntil(std::string_view& rest, char separator) {
    const std::size_t end = std::min(rest.find(separator), rest.size());
    const std::string_view taken = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return trimmed(taken);
}

/// The columns that a table of state vectors must have, in the order in which they are kept here.
constexpr std::array<std::string_view, 7> kColumns{"time", "x", "y", "z", "vx", "vy", "vz"};

class Table {
public:
    Table(std::string_view text, std::string_view source) : m_rest(text), m_source(source) {}

    OrbitFile read() {
        OrbitFile file{std::string(m_source), "", "", {}};
        bool header = false;
        while (!m_rest.empty()) {
            ++m_row;
            const std::string_view row = takeUntil(m_rest, '\n');
            if (row.empty() || row.front() == '#') {
                continue;
            }
            if (header) {
                file.vectors.push_back(vector(row));
            } else {
                readHeader(row);
                header = true;
            }
        }
        return file;
    }

private:
    void readHeader(std::string_view row) {
        m_place.fill(kColumns.size());  // none
        std::vector<bool> found(kColumns.size(), false);
        for (m_fields = 0; !row.empty(); ++m_fields) {
            const std::string_view name = takeUntil(row, ',');
            const auto* const column = std::find(kColumns.begin(), kColumns.end(), name);
            if (column == kColumns.end()) {
                continue;
            }
            const auto index = static_cast<std::size_t>(column - kColumns.begin());
            if (found[index]) {
                refuse("has the column " + shown(name) + " twice");
            }
            found[index] = true;
            m_place[index] = m_fields;
        }
        if (const auto missing = std::find(found.begin(), found.end(), false); missing != found.end()) {
            throw std::runtime_error(std::string(m_source) +
                                     " is neither an orbit file nor a table of state vectors: line " +
                                     std::to_string(m_row) + " has no column '" +
                                     std::string(kColumns[static_cast<std::size_t>(missing - found.begin())]) + "'");
        }
    }

    scene::StateVector vector(std::string_view row) const {
        std::array<std::string_view, kColumns.size()> fields{};
        std::size_t column = 0;
        for (; !row.empty(); ++column) {
            const std::string_view field = takeUntil(row, ',');
            for (std::size_t i = 0; i < kColumns.size(); ++i) {
                if (m_place[i] == column) {
                    fields[i] = field;
                }
            }
        }
        scene::StateVector v;
        try {
            v.time = scene::Instant::parse(fields[0]);
        } catch (const std::invalid_argument&) {
            refuse("has " + shown(fields[0]) + " as 'time', not a time such as 2022-04-14T10:22:07.036419");
        }
        double* const numbers[] = {&v.state.x, &v.state.y, &v.state.z, &v.state.vx, &v.state.vy, &v.state.vz};
        for (std::size_t i = 0; i < std::size(numbers); ++i) {
            const auto number = finiteNumber(fields[i + 1]);
            if (!number) {
                refuse("has " + shown(fields[i + 1]) + " as '" + std::string(kColumns[i + 1]) +
                       "', not a finite number");
            }
            *numbers[i] = *number;
        }
        return v;
    }

    [[noreturn]] void refuse(const std::string& what) const {
        throw std::runtime_error(std::string(m_source) + ": line " + std::to_string(m_row) + " " + what);
    }

    std::string_view m_rest;
    std::string_view m_source;
    std::size_t m_row = 0;
    std::size_t m_fields = 0;
    std::array<std::size_t, kColumns.size()> m_place{};  // in the row, of each of kColumns
};

/// The median of the spacings, 0 of fewer than two vectors.
double usualSpacing(std::span<const scene::StateVector> vectors) {
    std::vector<double> spacings;
    for (std::size_t i = 1; i < vectors.size(); ++i) {
        spacings.push_back(vectors[i].time.since(vectors[i - 1].time));
    }
    if (spacings.empty()) {
        return 0.0;
    }
    const auto middle = spacings.begin() + static_cast<std::ptrdiff_t>(spacings.size() / 2);
    std::nth_element(spacings.begin(), middle, spacings.end());
    return *middle;
}

}  // namespace

OrbitFile readOrbitFile(const std::filesystem::path& file) {
    return parseOrbitFile(readFile(file), file.string());
}

OrbitFile parseOrbitFile(std::string_view text, std::string_view source) {
    refuseLarge(text.size(), source);
    constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
    if (text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    const std::string_view content = trimmed(text);
    OrbitFile file = content.empty() || content.front() == '<' ? fromXml(text, source) : Table(text, source).read();
    if (file.vectors.empty()) {
        throw std::runtime_error(file.source + " has no state vectors");
    }
    std::stable_sort(file.vectors.begin(), file.vectors.end(), earlier);
    return file;
}

OrbitFile merged(std::span<const OrbitFile> files) {
    if (files.empty()) {
        throw std::invalid_argument("no orbit file to merge, not one or more");
    }
    OrbitFile all = files.front();
    for (std::size_t i = 1; i < files.size(); ++i) {
        const OrbitFile& file = files[i];
        if (!all.mission.empty() && !file.mission.empty() && file.mission != all.mission) {
            throw std::invalid_argument(file.source + " is of the satellite " + shown(file.mission) + ", not " +
                                        shown(all.mission) + " as " + files.front().source);
        }
        all.source += ", " + file.source;
        all.mission = all.mission.empty() ? file.mission : all.mission;
        // Nearer to another file's last vector than that, a difference of centimetres would look like a velocity.
        const double distance = usualSpacing(file.vectors) / 2;
        std::copy_if(file.vectors.begin(), file.vectors.end(), std::back_inserter(all.vectors),
                     [&](const scene::StateVector& v) {
                         return std::none_of(files.begin(), files.begin() + static_cast<std::ptrdiff_t>(i),
                                             [&](const OrbitFile& before) {
                                                 return !before.vectors.empty() &&
                                                        v.time.since(before.vectors.front().time) >= -distance &&
                                                        v.time.since(before.vectors.back().time) <= distance;
                                             });
                     });
    }
    std::stable_sort(all.vectors.begin(), all.vectors.end(), earlier);
    return all;
}

std::vector<scene::StateVector> vectorsAround(const OrbitFile& file, const scene::Instant& first,
                                              const scene::Instant& last, double margin) {
    const auto& vectors = file.vectors;
    if (vectors.empty() || vectors.front().time > first || vectors.back().time < last) {
        throw std::runtime_error(file.source +
                                 (vectors.empty() ? " has no vectors and"
                                                  : " reaches from " + vectors.front().time.text(0) + " to " +
                                                        vectors.back().time.text(0) + " and") +
                                 " does not cover " + first.text(0) + " to " + last.text(0));
    }
    const scene::Instant from = first.later(-margin);
    const scene::Instant to = last.later(margin);
    auto begin = std::lower_bound(vectors.begin(), vectors.end(), scene::StateVector{from, {}}, earlier);
    auto end = std::upper_bound(vectors.begin(), vectors.end(), scene::StateVector{to, {}}, earlier);
    // A small margin may hold no vector, and yet the interval must lie between vectors.
    begin = begin == vectors.end() || begin->time > first ? std::prev(begin) : begin;
    end = end == vectors.begin() || std::prev(end)->time < last ? std::next(end) : end;
    std::vector<scene::StateVector> chosen(begin, end);
    const double usual = usualSpacing(chosen);
    for (std::size_t i = 1; i < chosen.size(); ++i) {
        if (chosen[i].time.since(chosen[i - 1].time) > 3.0 * usual && chosen[i].time > first &&
            chosen[i - 1].time < last) {
            throw std::runtime_error(file.source + " has no vectors from " + chosen[i - 1].time.text(0) + " to " +
                                     chosen[i].time.text(0) + " and does not cover " + first.text(0) + " to " +
                                     last.text(0));
        }
    }
    return chosen;
}

}  // namespace vorbel::products
