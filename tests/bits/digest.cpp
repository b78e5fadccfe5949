// Evaluates every operation over a fixed set of inputs and prints a digest of the values of each. Two builds of the
// library that print the same total have returned the same bits throughout.
//
// usage: vorbel_bits                 digest of each operation, and of all
//        vorbel_bits --portable      digest of the operations that every platform must return the same bits for
//        vorbel_bits --check FILE    compares those digests with the ones in FILE; status 1 if any differs
//        vorbel_bits --all           every call's values: operation, units, number of the call, hexadecimal floats
//        vorbel_bits --compare FILE  how far the values are from those that `--all` wrote elsewhere; status 1 if any
//                                    differs

#include "Cases.h"
#include "Values.h"

#include <vorbel/CVorbel.h>

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
#include <utility>
#include <vector>

namespace {

constexpr int kRegularCases = 1500;
constexpr int kEdgeCases = 1500;
constexpr double kMostSteps = 500.0;  // of a propagation; what would take longer is left out

bool endsSoon(double interval, double step) {
    const double steps = std::abs(interval) / std::abs(step);
    return !(steps > kMostSteps) || steps > 0x1p53;  // the library turns down more than 2^52 at once
}

class Evaluation {
public:
    Evaluation(Values& values, const Case& inputs, std::string suffix)
        : m_values(values), m_case(inputs), m_suffix(std::move(suffix)) {}

    void run() {
        recordInputs();
        m_object.SetSystem(m_case.system);
        steps();
        framesAndElements();
        propagate();
        readOut();
        geometry();
    }

private:
    Values& call(const std::string& name) {
        m_values.call(name + m_suffix);
        return m_values;
    }

    // A difference here is one of the inputs, not of the library.
    void recordInputs() {
        const Case& c = m_case;
        Values& v = call("(inputs)");
        v.add(c.state);
        v.add(c.ephemeris);
        v.add(c.elements);
        v.addAll("...LL", {c.dt, c.step, c.back, c.a, c.b});
        v.addAll("LVLVAAA", {c.range, c.rangeRate, c.range2, c.rangeRate2, c.pitch, c.yaw, c.roll});
        v.addAll("AALA", {c.latitude, c.longitude, c.height, c.angle});
    }

    void recordObject(const char* name) {
        Values& v = call(name);
        v.add(m_object.getVector());
        v.addAll("..", {m_object.getStep(), static_cast<double>(m_object.GetSystem())});
        v.add('L', m_object.dGetSat_radius());
        double a = 0.0;
        double b = 0.0;
        m_object.GetEllipsoid(&a, &b);
        v.addAll("LL", {a, b});
        for (int j = 0; j < 8; ++j) {
            v.add(m_object.GetfVector(1)[j]);
        }
    }

    void steps() {
        call("runceK").add(m_object.runceK(m_case.state, m_case.step));
        m_object.SetProgParam(&m_case.state, m_case.step, m_case.system);
        recordObject("SetProgParam");
        const double interval = m_case.step * -6.5;
        if (endsSoon(interval, m_case.step)) {
            call("prog").add(m_object.prog(interval));
            recordObject("prog(object)");
            const double signedStep = interval < 0.0 ? -std::abs(m_case.step) : std::abs(m_case.step);
            fVector state = m_object.getVector();
            call("adams").add(m_object.adams(state, signedStep));
            m_object.setVector(state);
            recordObject("adams(object)");
        }
    }

    void framesAndElements() {
        const Case& c = m_case;
        const CVorbel& object = m_object;
        double matrix[3][3];
        call("matr_bariz").add('L', object.matr_bariz(c.state, matrix));
        m_values.add(matrix);
        call("matr_barizRECT").add('L', object.matr_barizRECT(c.state, matrix));
        m_values.add(matrix);

        call("StarTime").add('A', object.StarTime(c.state.date));
        call("ABS_Grnv").add(object.ABS_Grnv(c.state));
        call("ABS_Grnv(angle)").add(object.ABS_Grnv(c.state, c.angle));
        call("ABS_GrnvR_t").add(object.ABS_GrnvR_t(c.state, c.angle, c.state.time - c.dt));
        call("Grnv_ABS").add(object.Grnv_ABS(c.state));

        Ephemeris_Struct ephemeris;
        object.ABS_to_Grinvich(&c.ephemeris, &ephemeris);
        call("ABS_to_Grinvich").add(ephemeris);
        ephemeris = c.ephemeris;
        object.Grinvich_to_ABS(&ephemeris, &ephemeris);
        call("Grinvich_to_ABS").add(ephemeris);
        ephemeris = Ephemeris_Struct();
        ephemeris.system = c.system;
        object.Elements_to_Ephemeris(&ephemeris, &c.elements);
        call("Elements_to_Ephemeris").add(ephemeris);
        Elements_Struct elements;
        object.Ephemeris_to_Elements(&c.ephemeris, &elements);
        call("Ephemeris_to_Elements").add(elements);
    }

    void propagate() {
        const Case& c = m_case;
        if (c.ownStep) {
            if (endsSoon(c.dt, c.step)) {
                m_object.InitLagrange(&c.state, c.dt, c.step, c.system);
                recordObject("InitLagrange(step)");
            }
        } else if (endsSoon(c.dt, 120.0)) {
            m_object.InitLagrange(&c.state, c.dt, c.system);
            recordObject("InitLagrange");
        }
    }

    void readOut() {
        const double offset = m_case.back * m_object.getStep();
        const double time = m_object.getVector().time - offset;
        for (int order : {0, 1, 2, 3, 4, 7, 8}) {
            const std::string number = '(' + std::to_string(order) + ')';
            fVector out;
            m_object.GetFunLagrangeOpt(order)(m_object, out, time);
            call("GetFunLagrangeOpt" + number).add(out);
            call("Lagrange" + number).add(m_object.Lagrange(&time, order));
            m_object.Lagrange(out, &time, order);
            call("Lagrange(out)" + number).add(out);
            fVectorSimple simple;
            CVorbel::s_Lagrange_m_Fv_t(m_object, simple, offset, order);
            call("s_Lagrange_m_Fv_t" + number).add(simple);
        }
        fVectorSimple simple;
        m_object.Lagrange4(simple, time);
        call("Lagrange4").add(simple);
        CVorbel::s_Lagrange4(m_object, simple, time);
        call("s_Lagrange4").add(simple);
        m_object.Lagrange4_rFv_t(simple, offset);
        call("Lagrange4_rFv_t").add(simple);
        CVorbel::s_Lagrange4_m_Fv_t(m_object, simple, offset);
        call("s_Lagrange4_m_Fv_t").add(simple);
        Geopoint point;
        point.x = m_case.a;
        point.z = m_case.height;
        call("dLagrange4_rFv_t").add('L', m_object.dLagrange4_rFv_t(point, offset));
        call("s_dLagrange4_rFv_t").add('L', CVorbel::s_dLagrange4_rFv_t(m_object, point, offset));
    }

    void geometry() {
        const Case& c = m_case;
        m_object.SetEllipsoid(c.a, c.b);
        const double end = m_object.getVector().time;
        double time = end - c.back * m_object.getStep();
        call("GeoProssess").add(m_object.GeoProssess(time, c.range, c.rangeRate, c.side));
        call("centroid").add('V', m_object.centroid(time, c.range, c.pitch, c.yaw, c.roll, c.side));
        call("centroid_NEW").add('V', m_object.centroid_NEW(time, c.range, c.pitch, c.yaw, c.roll, c.side));
        double first = 0.0;
        double second = 0.0;
        double third = 0.0;
        call("radial_speed").add('V', m_object.radial_speed(time, c.latitude, c.longitude, c.height, &first));
        m_values.add('L', first);
        call("attitude").add('V', m_object.attitude(time, &first, &second, &third));
        m_values.addAll("AAA", {first, second, third});
        m_object.PitchYaw(time, c.range, c.rangeRate, c.range2, c.rangeRate2, &first, &second, c.side);
        call("PitchYaw").addAll("AA", {first, second});
        // Backwards, the trajectory lies after its end state, where GeoLocation() finds nothing.
        time = std::min(time, end);
        call("GeoLocation").add(m_object.GeoLocation(time, c.range, c.side, c.pitch, c.yaw, c.roll));
    }

    Values& m_values;
    const Case& m_case;
    const std::string m_suffix;
    CVorbel m_object;
};

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
    Digest digest;
    for (double value : operation.values) {
        digest.add(value);
    }
    return digestLine(operation.name, operation.values.size(), digest);
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
        Evaluation(values, inputs, "").run();
    }
    for (int i = 0; i < kEdgeCases && !portable; ++i) {
        Evaluation(values, edgeCase(static_cast<std::uint64_t>(i)), "/edge").run();
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
