#include "Comparison.h"
#include "Operation.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

// Every operation of the library that matters for speed, beside other software on the same work.
//
// usage: vorbel_benchmarks [Google Benchmark's options]
//        vorbel_benchmarks --compare ROUNDS

namespace {

std::vector<bench::Operation> allOperations() {
    std::vector<bench::Operation> all = bench::libraryOperations();
    const auto add = [&all](const std::vector<bench::Operation>& more) {
        all.insert(all.end(), more.begin(), more.end());
    };
#ifdef VORBEL_BENCH_ODEINT
    add(bench::odeintOperations());
#endif
#ifdef VORBEL_BENCH_GSL
    add(bench::gslOperations());
#endif
#ifdef VORBEL_BENCH_GEOGRAPHICLIB
    add(bench::geographicLibOperations());
#endif
    return all;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<bench::Operation> operations = allOperations();
    if (argc == 3 && argv[1] == std::string_view("--compare")) {
        bench::printComparison(operations, std::atoi(argv[2]));
        return 0;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    for (const bench::Operation& operation : operations) {
        benchmark::RegisterBenchmark(operation.name.c_str(), [&operation](benchmark::State& state) {
            constexpr std::int64_t kBatch = 100;
            while (state.KeepRunningBatch(kBatch)) {
                operation.repeat(kBatch);
            }
        });
    }
    benchmark::RunSpecifiedBenchmarks();
}
