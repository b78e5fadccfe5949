#include "Report.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

/// Bits of a double, with one pattern for all that is not a number: which one a processor makes is not the library's.
std::uint64_t canonicalBits(double value) {
    return std::isnan(value) ? 0x7ff8000000000000U : std::bit_cast<std::uint64_t>(value);
}

/// FNV-1a, carried on from an earlier digest.
std::uint64_t digestOf(const std::vector<double>& values, std::uint64_t digest = 0xcbf29ce484222325U) {
    for (double value : values) {
        for (unsigned shift = 0; shift < 64; shift += 8) {
            digest = (digest ^ ((canonicalBits(value) >> shift) & 0xffU)) * 0x100000001b3U;
        }
    }
    return digest;
}

/// Sixteen digits, by formats that every C library knows.
std::string hexadecimal(std::uint64_t bits) {
    char text[40];
    std::snprintf(text, sizeof text, "%08lx%08lx", static_cast<unsigned long>(bits >> 32U),
                  static_cast<unsigned long>(bits & 0xffffffffU));
    return text;
}

std::string digestLine(const std::string& name, std::size_t count, std::uint64_t digest) {
    char line[80];
    std::snprintf(line, sizeof line, "%-28s %8lu  ", name.c_str(), static_cast<unsigned long>(count));
    return line + hexadecimal(digest);
}

std::string digestLine(const Operation& operation) {
    return digestLine(operation.name, operation.values.size(), digestOf(operation.values));
}

int printDigests(const std::vector<Operation>& operations) {
    std::uint64_t total = digestOf({});
    std::size_t count = 0;
    for (const Operation& operation : operations) {
        total = digestOf(operation.values, total);
        count += operation.values.size();
        std::puts(digestLine(operation).c_str());
    }
    std::puts(digestLine("total", count, total).c_str());
    return 0;
}

/// The rest of each line after its first word, by that word.
std::map<std::string, std::string> readLines(const char* path) {
    std::map<std::string, std::string> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        line.erase(line.find_last_not_of('\r') + 1);
        lines[line.substr(0, line.find(' '))] = line;
    }
    return lines;
}

int checkDigests(const std::vector<Operation>& operations, const char* path) {
    auto lines = readLines(path);
    bool good = !lines.empty();
    for (const Operation& operation : operations) {
        const auto line = lines.find(operation.name);
        if (line != lines.end()) {
            if (line->second != digestLine(operation)) {
                std::printf("%s rounds otherwise, or over other inputs:\n  here    %s\n  %s %s\n",
                            operation.name.c_str(), digestLine(operation).c_str(), path, line->second.c_str());
                good = false;
            }
            lines.erase(line);
        }
    }
    for (const auto& [name, line] : lines) {
        std::printf("'%s' stands in %s, but no operation of this name is called\n", name.c_str(), path);
        good = false;
    }
    if (!good) {
        std::puts(
            "The written order of the arithmetic is promised to callers. Where it changes on purpose, take the new "
            "lines of these operations, and of no others, from the same program with --portable.");
    }
    return good ? 0 : 1;
}

int printAll(const std::vector<Operation>& operations) {
    for (const Operation& operation : operations) {
        std::printf("%s", operation.name.c_str());
        for (double value : operation.values) {
            std::printf(" %s", hexadecimal(canonicalBits(value)).c_str());
        }
        std::puts("");
    }
    return 0;
}

/// The values of one operation in a line of `printAll`.
std::vector<double> valuesIn(const std::string& line) {
    std::vector<double> values;
    std::istringstream words(line);
    std::string word;
    for (words >> word; words >> word;) {
        values.push_back(std::bit_cast<double>(std::uint64_t{std::stoull(word, nullptr, 16)}));
    }
    return values;
}

int compare(const std::vector<Operation>& operations, const char* path, const char* program) {
    auto lines = readLines(path);
    std::printf("%-28s %8s %8s %8s  largest difference\n", "", "values", "differ", "not both");
    std::printf("%-28s %8s %8s %8s  %11s %11s %11s %11s\n", "", "", "", "finite", "length, m", "speed, m/s", "angle",
                "other");
    std::size_t allDiffering = 0;
    std::string first;
    for (const Operation& operation : operations) {
        const std::vector<double> there = valuesIn(lines[operation.name]);
        if (there.size() != operation.values.size()) {
            std::cerr << program << ": " << operation.name << ": " << operation.values.size() << " values here, "
                      << there.size() << " in '" << path << "'\n";
            return 2;
        }
        std::size_t differing = 0;
        std::size_t oneSided = 0;  // finite on one side only
        std::map<char, double> largest;
        for (std::size_t i = 0; i < there.size(); ++i) {
            const double here = operation.values[i];
            if (canonicalBits(here) == canonicalBits(there[i])) {
                continue;
            }
            ++differing;
            const std::size_t width = operation.letters.size();
            if (!std::isfinite(here) || !std::isfinite(there[i])) {
                ++oneSided;
            } else {
                double& most = largest[operation.letters[i % width]];
                most = std::max(most, std::abs(here - there[i]));
            }
            if (first.empty()) {
                std::ostringstream text;
                text.precision(17);
                text << operation.name << ", call " << i / width << ", value " << i % width << ": " << here
                     << ", there " << there[i];
                first = text.str();
            }
        }
        if (differing > 0) {
            std::printf("%-28s %8zu %8zu %8zu  %11.2g %11.2g %11.2g %11.2g\n", operation.name.c_str(), there.size(),
                        differing, oneSided, std::max(largest['L'] * 1000.0, largest['l']),
                        std::max(largest['V'] * 1000.0, largest['v']), largest['A'], largest['.']);
        }
        allDiffering += differing;
    }
    std::printf("%zu values differ%s%s\n", allDiffering, first.empty() ? "" : "; the first: ", first.c_str());
    return allDiffering > 0 ? 1 : 0;
}

}  // namespace

int reportBits(int argc, char** argv, const char* program,
               const std::function<std::vector<Operation>(bool portable)>& evaluate) {
    const std::string mode = argc > 1 ? argv[1] : "";
    const bool takesFile = mode == "--compare" || mode == "--check";
    const bool known = takesFile || mode.empty() || mode == "--all" || mode == "--portable";
    if (!known || argc != (mode.empty() ? 1 : 2) + (takesFile ? 1 : 0)) {
        std::cerr << "usage: " << program << " [--all | --compare FILE | --portable | --check FILE]\n";
        return 2;
    }

    const std::vector<Operation> operations = evaluate(mode == "--portable" || mode == "--check");
    return mode == "--compare" ? compare(operations, argv[2], program)
           : mode == "--check" ? checkDigests(operations, argv[2])
           : mode == "--all"   ? printAll(operations)
                               : printDigests(operations);
}
