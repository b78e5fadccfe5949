#include "Operation.h"
#include "Reports.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

// usage: vorbel_benchmarks [Google Benchmark's options]
//        vorbel_benchmarks --compare ROUNDS
//        vorbel_benchmarks --agreement | --growth | --bound
//        vorbel_benchmarks --repeat NAME COUNT    one operation alone, for a profiler

namespace {

/// Software beside the library, where it is installed.
struct Other {
    std::vector<bench::Operation> (*operations)();
    std::vector<bench::Agreement> (*agreement)();
};

std::vector<Other> others() {
    return {
#ifdef VORBEL_BENCH_ODEINT
        {bench::odeintOperations, bench::odeintAgreement},
#endif
#ifdef VORBEL_BENCH_GSL
        {bench::gslOperations, bench::gslAgreement},
#endif
#ifdef VORBEL_BENCH_GEOGRAPHICLIB
        {bench::geographicLibOperations, bench::geographicLibAgreement},
#endif
    };
}

std::vector<bench::Operation> allOperations() {
    std::vector<bench::Operation> all = bench::libraryOperations();
    for (const Other& other : others()) {
        const std::vector<bench::Operation> more = other.operations();
        all.insert(all.end(), more.begin(), more.end());
    }
    return all;
}

/// False when other software's result is not that of the same work.
bool printAgreement() {
    constexpr double kMostMetres = 0.5;
    bool good = true;
    std::puts("| Beside the library                                 | Results differ by, m |");
    std::puts("|:--|--:|");
    for (const Other& other : others()) {
        for (const bench::Agreement& agreement : other.agreement()) {
            std::printf("| %-50s | %20.2g |\n", agreement.name.c_str(), agreement.metres);
            good = good && agreement.metres < kMostMetres;
        }
    }
    return good;
}

int repeat(const std::vector<bench::Operation>& operations, std::string_view name, const char* count) {
    for (const bench::Operation& operation : operations) {
        if (operation.name == name) {
            operation.repeat(std::atoll(count));
            return 0;
        }
    }
    std::fprintf(stderr, "vorbel_benchmarks: no operation '%.*s'\n", static_cast<int>(name.size()), name.data());
    return 2;
}

int runGoogleBenchmark(int argc, char** argv, const std::vector<bench::Operation>& operations) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    for (const bench::Operation& operation : operations) {
        benchmark::RegisterBenchmark(operation.name.c_str(), [&operation](benchmark::State& state) {
            const std::int64_t batch = std::max<std::int64_t>(100, operation.atOnce);
            while (state.KeepRunningBatch(batch)) {
                operation.repeat(batch);
            }
        });
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<bench::Operation> operations = allOperations();
    const std::string_view mode = argc > 1 ? argv[1] : "";
    if (mode == "--compare" && argc == 3) {
        bench::printComparison(operations, std::atoi(argv[2]));
    } else if (mode == "--agreement" && argc == 2) {
        return printAgreement() ? 0 : 1;
    } else if (mode == "--growth" && argc == 2) {
        bench::printGrowth();
    } else if (mode == "--bound" && argc == 2) {
        bench::printBound(operations);
    } else if (mode == "--repeat" && argc == 4) {
        return repeat(operations, argv[2], argv[3]);
    } else {
        return runGoogleBenchmark(argc, argv, operations);
    }
    return 0;
}
