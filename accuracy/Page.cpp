#include "Page.h"

#include <cmath>
#include <cstdio>

namespace accuracy {

namespace {

/// In the unit that leaves a number between 1 and 1000; `unit` is that of 1.
std::string scaled(double value, const std::string& unit) {
    const struct {
        double size;
        const char* prefix;
    } units[] = {{1e3, "k"}, {1, ""}, {1e-3, "m"}, {1e-6, "µ"}, {1e-9, "n"}, {1e-12, "p"}};
    const double size = std::abs(value);
    if (size == 0 || std::isnan(size)) {
        return text("%g", value);
    }
    for (const auto& u : units) {
        if (size >= u.size * 0.9995 || u.size == 1e-12) {
            const double x = value / u.size;
            const int digits = std::abs(x) < 9.995 ? 2 : std::abs(x) < 99.95 ? 1 : 0;
            char buffer[64];
            std::snprintf(buffer, sizeof buffer, "%.*f %s%s", digits, x, u.prefix, unit.c_str());
            return buffer;
        }
    }
    return {};
}

}  // namespace

std::string text(const char* format, double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, value);
    return buffer;
}

std::string length(double m) {
    return scaled(m, "m");
}

std::string speed(double mPerS) {
    return scaled(mPerS, "m/s");
}

std::string duration(double s) {
    return scaled(s, "s");
}

std::string acceleration(double mPerS2) {
    return scaled(mPerS2, "m/s²");
}

std::string maximumAndRms(const Spread& s, const std::function<std::string(double)>& unit) {
    return s.count() == 0 ? "none" : unit(s.largest()) + " (" + unit(s.rms()) + ")";
}

std::string degrees(double degrees) {
    return text("%.1e°", degrees);
}

std::string count(std::size_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t i = digits.size(); i > 3; i -= 3) {
        digits.insert(i - 3, ",");
    }
    return digits;
}

std::string code(const std::string& words) {
    return "`" + words + "`";
}

void row(const std::vector<std::string>& cells) {
    for (const std::string& cell : cells) {
        std::printf("| %s ", cell.c_str());
    }
    std::puts("|");
}

void head(const std::vector<std::string>& cells) {
    std::puts("");
    row(cells);
    row(std::vector<std::string>(cells.size(), "---"));
}

void paragraph(const std::string& words) {
    std::printf("\n%s\n", words.c_str());
}

void section(const std::string& title) {
    std::printf("\n## %s\n", title.c_str());
}

}  // namespace accuracy
