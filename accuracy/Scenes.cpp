#include "Scenes.h"

#include "../examples/sentinel1_scene.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>

namespace accuracy {

namespace {

namespace fs = std::filesystem;

constexpr double kSecondsPerDay = 86400;
constexpr double kMetresPerKilometre = 1000;

// What a radar satellite and its scenes can have; anything else is a mistake in a table.
constexpr double kLeastRadius = 6400;  // km
constexpr double kMostRadius = 50000;  // km
constexpr double kLongestScene = 600;  // s

[[noreturn]] void fail(const fs::path& file, const std::string& what) {
    throw std::runtime_error(file.string() + ": " + what);
}

std::vector<std::string> cellsOf(std::string line) {
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    std::vector<std::string> cells;
    std::size_t from = 0;
    for (std::size_t comma; (comma = line.find(',', from)) != std::string::npos; from = comma + 1) {
        cells.push_back(line.substr(from, comma - from));
    }
    cells.push_back(line.substr(from));
    return cells;
}

/// A comma-separated table with one header line, read by the names of its columns.
class Table {
public:
    explicit Table(const fs::path& file) : m_file(file) {
        std::ifstream in(file);
        std::string line;
        if (!in || !std::getline(in, line)) {
            fail(file, "cannot be read or is empty");
        }
        const std::vector<std::string> names = cellsOf(line);
        for (std::size_t i = 0; i < names.size(); ++i) {
            m_columns[names[i]] = i;
        }
        while (std::getline(in, line)) {
            m_rows.push_back(cellsOf(line));
            if (m_rows.back().size() != names.size()) {
                fail(file, "line " + std::to_string(m_rows.size() + 1) + " has " +
                               std::to_string(m_rows.back().size()) + " cells, the header " +
                               std::to_string(names.size()));
            }
        }
        if (m_rows.empty()) {
            fail(file, "has no line under its header");
        }
    }

    std::size_t size() const {
        return m_rows.size();
    }

    double number(std::size_t row, const std::string& column) const {
        const auto found = m_columns.find(column);
        if (found == m_columns.end()) {
            fail(m_file, "has no column " + column);
        }
        const std::string& cell = m_rows[row][found->second];
        double value = 0;
        const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), value);
        if (error != std::errc() || end != cell.data() + cell.size() || !std::isfinite(value)) {
            complain(row, "'" + cell + "' in column " + column + " is not a finite number");
        }
        return value;
    }

    [[noreturn]] void complain(std::size_t row, const std::string& what) const {
        fail(m_file, "line " + std::to_string(row + 2) + ": " + what);
    }

    /// From 0h of a day.
    double seconds(std::size_t row, double day) const {
        return (number(row, "day") - day) * kSecondsPerDay + number(row, "seconds_of_day");
    }

private:
    fs::path m_file;
    std::map<std::string, std::size_t> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};

Scene readScene(const std::string& name, const fs::path& orbitFile, const fs::path& gridFile) {
    Scene scene;
    scene.name = name;
    const Table orbit(orbitFile);
    scene.day = orbit.number(0, "day");
    for (std::size_t i = 0; i < orbit.size(); ++i) {
        fVector s;
        s.x = orbit.number(i, "x_km");
        s.y = orbit.number(i, "y_km");
        s.z = orbit.number(i, "z_km");
        s.vx = orbit.number(i, "vx_km_s");
        s.vy = orbit.number(i, "vy_km_s");
        s.vz = orbit.number(i, "vz_km_s");
        s.date = orbit.number(i, "day");
        s.time = orbit.seconds(i, scene.day);
        const double radius = std::hypot(s.x, s.y, s.z);
        if (radius < kLeastRadius || radius > kMostRadius) {
            orbit.complain(i, std::to_string(radius) + " km from the Earth's centre; are the lengths in km?");
        }
        scene.orbit.push_back(s);
    }
    const auto inTime = [](const fVector& a, const fVector& b) { return a.time < b.time; };
    if (!std::is_sorted(scene.orbit.begin(), scene.orbit.end(), inTime)) {
        fail(orbitFile, "is not in the order of time");
    }
    const Table grid(gridFile);
    for (std::size_t i = 0; i < grid.size(); ++i) {
        const double seconds = grid.seconds(i, scene.day);
        if (seconds < scene.orbit.front().time - kLongestScene || seconds > scene.orbit.back().time + kLongestScene) {
            grid.complain(i, "more than " + std::to_string(static_cast<int>(kLongestScene)) +
                                 " s before or after the state vectors; is it the same scene?");
        }
        scene.grid.push_back({seconds, grid.number(i, "slant_range_km"), grid.number(i, "latitude_deg"),
                              grid.number(i, "longitude_deg"), grid.number(i, "height_m") / kMetresPerKilometre});
    }
    return scene;
}

}  // namespace

Scene exampleScene() {
    Scene scene;
    scene.name = "S1A_IW_SLC__1SDH_20220414T102209_20220414T102236_042768_051AA4_E677";
    scene.day = kDay;
    for (const OrbitVector& vector : kOrbit) {
        scene.orbit.push_back(stateOf(vector));
        scene.orbit.back().time = vector.seconds;
    }
    scene.grid.reserve(std::size(kGrid));
    for (const ::GridPoint& p : kGrid) {
        scene.grid.push_back({p.seconds, p.slantRange, p.latitude, p.longitude, p.height / kMetresPerKilometre});
    }
    return scene;
}

std::vector<Scene> readScenes(const std::string& folder) {
    const std::string ending = "_orbit.csv";
    std::error_code error;
    std::map<std::string, fs::path> orbits;  // by the scene's name
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error)) {
        const std::string file = entry.path().filename().string();
        if (file.size() > ending.size() && file.ends_with(ending)) {
            orbits[file.substr(0, file.size() - ending.size())] = entry.path();
        }
    }
    if (error) {
        fail(folder, "is no folder that can be read");
    }
    if (orbits.empty()) {
        fail(folder, "holds no *" + ending);
    }
    std::vector<Scene> scenes;
    scenes.reserve(orbits.size());
    for (const auto& [name, orbitFile] : orbits) {
        scenes.push_back(readScene(name, orbitFile, fs::path(folder) / (name + "_grid.csv")));
    }
    return scenes;
}

}  // namespace accuracy
