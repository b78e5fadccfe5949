#include "Reports.h"
#include "Sampling.h"

#include <cstdio>
#include <stdexcept>
#include <string_view>

namespace {

using bench::Operation;

struct Beside {
    const char* ours;
    const char* theirs;
    double aim;  // greatest ratio aimed at; 0 for none
};

constexpr const char* kAdams = "odeint adams_bashforth_moulton<8> step";
constexpr const char* kReverse = "GeographicLib Geocentric::Reverse";
constexpr const char* kInit = "InitLagrange over 120 s";
constexpr double kInitAim = 4000.0;      // ns on a machine
constexpr double kReferenceStep = 70.0;  // ns, of odeint's Adams step there

constexpr Beside kBeside[] = {
    {"Runge-Kutta step", "odeint runge_kutta4 step", 0.0},
    {"Adams step", kAdams, 1.0},
    {"Adams step", "odeint runge_kutta_fehlberg78 step", 0.0},
    {"Adams step", "GSL rk8pd step", 0.0},
    {"Adams step, drag on", kAdams, 0.0},
    {"Adams step, absolute frame", kAdams, 0.0},
    {"prog over a revolution", "odeint adams_bashforth_moulton<8> revolution", 0.0},
    {kInit, kAdams, kInitAim / kReferenceStep},
    {"Lagrange of order 7", kReverse, 0.16},
    {"Geodetic conversion", kReverse, 0.0},
    {"GeoLocation", kReverse, 1.4},
    {"GeoLocation, middle latitude", kReverse, 1.4},
    {"GeoLocation, antenna rolled", kReverse, 0.0},
    {"Pixel to ground, avx512", kReverse, 0.055},
    {"Pixel to ground, avx2", kReverse, 0.09},
    {"Pixel to ground, baseline", kReverse, 0.18},
    {"Pixel to ground and angles, avx512", kReverse, 0.09},
    {"Pixel to ground and angles, avx2", kReverse, 0.15},
    {"Pixel to ground and angles, baseline", kReverse, 0.29},
    {"Ground to pixel, avx512", kReverse, 0.03},
    {"Ground to pixel, avx2", kReverse, 0.045},
    {"Ground to pixel, baseline", kReverse, 0.11},
    {"Ground to pixel from latitude, avx512", kReverse, 0.05},
    {"Ground to pixel from latitude, avx2", kReverse, 0.08},
    {"Ground to pixel from latitude, baseline", kReverse, 0.20},
    {"Ground to pixel with range rate, avx512", kReverse, 0.07},
    {"Ground to pixel with range rate, avx2", kReverse, 0.11},
    {"Ground to pixel with range rate, baseline", kReverse, 0.35},
    {"Ground to pixel in any order, avx512", kReverse, 0.10},
    {"Ground to pixel in any order, avx2", kReverse, 0.12},
    {"Ground to pixel in any order, baseline", kReverse, 0.30},
    {"Pixel to terrain, avx512", kReverse, 0.16},
    {"Pixel to terrain, avx2", kReverse, 0.25},
    {"Pixel to terrain, baseline", kReverse, 0.6},
};

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Nanoseconds per repetition, one value for each sample.
struct Side {
    const Operation* operation;
    std::int64_t count;
    std::vector<double> samples;

    explicit Side(const Operation* o) : operation(o), count(o == nullptr ? 0 : sampleCount(*o)) {}

    void sample() {
        if (operation != nullptr) {
            samples.push_back(nanoseconds(*operation, count) / static_cast<double>(count));
        }
    }

    double least() const {
        return *std::min_element(samples.begin(), samples.end());
    }
};

struct Row {
    Side ours;
    Side theirs;
    double aim;

    /// The two sides take turns in going first.
    void sample(bool oursFirst) {
        (oursFirst ? ours : theirs).sample();
        (oursFirst ? theirs : ours).sample();
    }

    double ratioOfLeast() const {
        return ours.least() / theirs.least();
    }

    double medianRatio() const {
        std::vector<double> ratios;
        for (std::size_t i = 0; i < ours.samples.size(); ++i) {
            ratios.push_back(ours.samples[i] / theirs.samples[i]);
        }
        return median(ratios);
    }

    void print() const {
        std::printf("| %-45s | %8.1f | %8.1f |", ours.operation->name.c_str(), ours.least(), median(ours.samples));
        if (theirs.operation == nullptr) {
            std::printf(" %-44s | %8s | %8s | %6s | %6s | %5s |\n", "", "", "", "", "", "");
            return;
        }
        std::printf(" %-44s | %8.1f | %8.1f | %6.3f | %6.3f |", theirs.operation->name.c_str(), theirs.least(),
                    median(theirs.samples), ratioOfLeast(), medianRatio());
        if (aim > 0.0) {
            std::printf(" %5.3g |\n", aim);
        } else {
            std::printf(" %5s |\n", "");
        }
    }
};

const Operation* find(const std::vector<Operation>& operations, const char* name) {
    const auto found =
        std::find_if(operations.begin(), operations.end(), [&](const Operation& o) { return o.name == name; });
    return found == operations.end() ? nullptr : &*found;
}

std::vector<Row> rowsOf(const std::vector<Operation>& operations) {
    for (const Beside& beside : kBeside) {
        // the instruction sets that this machine lacks have no rows
        if (find(operations, beside.ours) == nullptr &&
            std::string_view(beside.ours).find(", avx") == std::string::npos) {
            throw std::logic_error(std::string("no operation ") + beside.ours);
        }
    }
    std::vector<Row> rows;
    for (const Operation& library : bench::libraryOperations()) {
        const Operation* const ours = find(operations, library.name.c_str());
        const std::size_t before = rows.size();
        for (const Beside& beside : kBeside) {
            const Operation* const theirs = find(operations, beside.theirs);
            if (library.name == beside.ours && theirs != nullptr) {
                rows.push_back({Side(ours), Side(theirs), beside.aim});
            }
        }
        if (rows.size() == before) {
            rows.push_back({Side(ours), Side(nullptr), 0.0});
        }
    }
    return rows;
}

}  // namespace

void bench::printComparison(const std::vector<Operation>& operations, int rounds) {
    std::vector<Row> rows = rowsOf(operations);

    // A row's samples come in bursts spread over the whole run, so that a busy second of the machine spoils no row.
    constexpr int kBurst = 50;
    constexpr int kLongBurst = 2;  // of samples that take milliseconds
    for (int done = 0; done < rounds; done += kBurst) {
        for (Row& row : rows) {
            const int burst = row.ours.operation->atOnce > 1 ? kLongBurst : kBurst;
            for (int i = 0; i < burst; ++i) {
                row.sample(i % 2 == 0);
            }
        }
    }

    std::printf("| %-45s | %8s | %8s | %-44s | %8s | %8s | %6s | %6s | %5s |\n", "Library", "ns, min", "median",
                "Beside it", "ns, min", "median", "Ratio", "median", "Aim");
    std::puts("|:--|--:|--:|:--|--:|--:|--:|--:|--:|");
    for (const Row& row : rows) {
        row.print();
    }
    for (const Row& row : rows) {
        if (row.ours.operation->name == kInit && row.theirs.operation != nullptr) {
            std::printf("\n%s: %.2f µs on a machine where odeint's Adams step takes %.0f ns (aim: below %.0f).\n",
                        kInit, row.ratioOfLeast() * kReferenceStep / 1000.0, kReferenceStep, kInitAim / 1000.0);
        }
    }
}
