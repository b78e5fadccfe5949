// Evaluates every operation over a fixed set of inputs and prints a digest of the values of each. Two builds of the
// library that print the same total have returned the same bits throughout.
//
// usage: vorbel_bits                 digest of each operation, and of all
//        vorbel_bits --portable      digest of the operations that every platform must return the same bits for
//        vorbel_bits --check FILE    compares those digests with the ones in FILE; status 1 if any differs
//        vorbel_bits --all           every call's values: operation, units, number of the call, hexadecimal floats
//        vorbel_bits --compare FILE  how far the values are from those that `--all` wrote elsewhere; status 1 if any
//                                    differs

#include "Values.h"

#include "../AllOperations.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr int kRegularCases = 1500;
constexpr int kEdgeCases = 1500;
void evaluate(Values& values, const Case& inputs) {
    CVorbel object;
    AllOperations(object, inputs, values).run();
}

/// Whether an operation is made of + - * / and square roots alone, as long as there is no drag. The others also take
/// functions of the C library, which differ in the last place.
bool isPortable(const std::string& name) {
    constexpr const char* kBeginnings[] = {"(inputs)", "runceK",     "SetProgParam",   "prog",
                                           "adams",    "matr_bariz", "InitLagrange",   "GetFunLagrangeOpt",
                                           "Lagrange", "s_Lagrange", "dLagrange4_rFv", "s_dLagrange4_rFv"};
    return std::any_of(std::begin(kBeginnings), std::end(kBeginnings),
                       [&](const char* beginning) { return name.rfind(beginning, 0) == 0; });
}

std::string digestLine(const std::string& name, std::size_t count, const Digest& digest) {
    char line[80];
    std::snprintf(line, sizeof line, "%-28s %8lu  %08lx%08lx", name.c_str(), static_cast<unsigned long>(count),
                  static_cast<unsigned long>(digest.value() >> 32U),
                  static_cast<unsigned long>(digest.value() & 0xffffffffU));
    return line;
}

std::string digestLine(const Operation& operation) {
    return digestLine(operation.name, operation.values.size(), digestOf(operation));
}

void printDigests(const std::vector<Operation>& operations) {
    Digest total;
    std::size_t count = 0;
    for (const Operation& operation : operations) {
        for (double value : operation.values) {
            total.add(value);
        }
        count += operation.values.size();
        std::printf("%s\n", digestLine(operation).c_str());
    }
    std::printf("%s\n", digestLine("total", count, total).c_str());
}

int checkDigests(const std::vector<Operation>& operations, const char* path) {
    std::ifstream file(path);
    int differing = 0;
    for (const Operation& operation : operations) {
        std::string line;
        std::getline(file, line);
        line.erase(line.find_last_not_of('\r') + 1);
        if (line != digestLine(operation)) {
            std::printf("%s rounds otherwise: '%s', in %s '%s'\n", operation.name.c_str(),
                        digestLine(operation).c_str(), path, line.c_str());
            ++differing;
        }
    }
    if (differing > 0) {
        std::printf("%d of %zu operations differ. The written order of the arithmetic is promised to callers; where it "
                    "changes on purpose, write the output of vorbel_bits --portable to tests/bits/reference.txt.\n",
                    differing, operations.size());
    }
    return differing > 0 ? 1 : 0;
}

void printAll(const std::vector<Operation>& operations) {
    for (const Operation& operation : operations) {
        const std::size_t width = operation.letters.size();
        for (std::size_t i = 0; i < operation.values.size(); ++i) {
            if (i % width == 0) {
                std::printf("%s%s %s %zu", i == 0 ? "" : "\n", operation.name.c_str(), operation.letters.c_str(),
                            i / width);
            }
            std::printf(" %s", hexadecimal(operation.values[i]).c_str());
        }
        std::printf("\n");
    }
}

bool readAll(const char* path, std::map<std::string, std::vector<double>>& values) {
    std::ifstream file(path);
    std::string line;
    while (std::getline(file, line)) {
        std::istringstream words(line);
        std::string name;
        std::string letters;
        std::string word;
        words >> name >> letters >> word;
        while (words >> word) {
            values[name].push_back(std::strtod(word.c_str(), nullptr));
        }
    }
    return !values.empty();
}

/// The differences of one operation.
struct Comparison {
    std::size_t differing = 0;
    std::size_t oneSided = 0;  // finite on one side only
    std::map<char, double> largest{{'L', 0.0}, {'V', 0.0}, {'A', 0.0}, {'.', 0.0}};

    void add(char letter, double here, double there) {
        if (canonicalBits(here) == canonicalBits(there)) {
            return;
        }
        ++differing;
        if (!std::isfinite(here) || !std::isfinite(there)) {
            ++oneSided;
        } else {
            largest[letter] = std::max(largest[letter], std::abs(here - there));
        }
    }
};

/// The call that returned the value of this number, here and there.
void printCall(const Operation& operation, const std::vector<double>& there, std::size_t value) {
    const std::size_t width = operation.letters.size();
    const std::size_t first = value / width * width;
    std::printf("first difference: %s, call %zu, value %zu\n", operation.name.c_str(), value / width, value % width);
    const std::vector<double>* const sides[] = {&operation.values, &there};
    for (const auto* side : sides) {
        std::printf("%s", side == sides[0] ? "  here " : "  there");
        for (std::size_t i = first; i < first + width; ++i) {
            std::printf(" %s", hexadecimal((*side)[i]).c_str());
        }
        std::printf("\n");
    }
}

int compare(const std::vector<Operation>& operations, const char* path) {
    std::map<std::string, std::vector<double>> all;
    if (!readAll(path, all)) {
        std::cerr << "vorbel_bits: no values in '" << path << "'\n";
        return 2;
    }
    std::printf("%-28s %8s %8s %8s  largest difference\n", "", "values", "differ", "not both");
    std::printf("%-28s %8s %8s %8s  %11s %11s %11s %11s\n", "", "", "", "finite", "length, m", "speed, m/s", "angle",
                "other");
    std::size_t differing = 0;
    const Operation* firstOperation = nullptr;
    std::size_t firstValue = 0;
    for (const Operation& operation : operations) {
        const std::vector<double>& there = all[operation.name];
        if (there.size() != operation.values.size()) {
            std::cerr << "vorbel_bits: " << operation.name << ": " << operation.values.size() << " values here, "
                      << there.size() << " in '" << path << "'\n";
            return 2;
        }
        Comparison comparison;
        for (std::size_t i = 0; i < there.size(); ++i) {
            comparison.add(operation.letters[i % operation.letters.size()], operation.values[i], there[i]);
            if (firstOperation == nullptr && comparison.differing > 0) {
                firstOperation = &operation;
                firstValue = i;
            }
        }
        differing += comparison.differing;
        if (comparison.differing > 0) {
            std::printf("%-28s %8zu %8zu %8zu  %11.2g %11.2g %11.2g %11.2g\n", operation.name.c_str(), there.size(),
                        comparison.differing, comparison.oneSided, comparison.largest['L'] * 1000.0,
                        comparison.largest['V'] * 1000.0, comparison.largest['A'], comparison.largest['.']);
        }
    }
    std::printf("%zu values differ\n", differing);
    if (firstOperation != nullptr) {
        printCall(*firstOperation, all[firstOperation->name], firstValue);
    }
    return differing > 0 ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    const bool takesFile = mode == "--compare" || mode == "--check";
    if (argc != (takesFile  ? 3
                 : argc > 1 ? 2
                            : 1) ||
        !(takesFile || argc == 1 || mode == "--all" || mode == "--portable")) {
        std::cerr << "usage: vorbel_bits [--all | --compare FILE | --portable | --check FILE]\n";
        return 2;
    }
    const bool portable = mode == "--portable" || mode == "--check";

    Values values;
    for (int i = 0; i < kRegularCases; ++i) {
        Case inputs = regularCase(static_cast<std::uint64_t>(i));
        if (portable) {
            inputs.state.drag = 0.0;
        }
        evaluate(values, inputs);
    }
    values.setSuffix("/edge");
    for (int i = 0; i < kEdgeCases && !portable; ++i) {
        evaluate(values, edgeCase(static_cast<std::uint64_t>(i)));
    }

    std::vector<Operation> operations = values.operations();
    if (portable) {
        std::erase_if(operations, [](const Operation& operation) { return !isPortable(operation.name); });
    }
    if (mode == "--compare") {
        return compare(operations, argv[2]);
    }
    if (mode == "--check") {
        return checkDigests(operations, argv[2]);
    }
    if (mode == "--all") {
        printAll(operations);
    } else {
        printDigests(operations);
    }
    return 0;
}
