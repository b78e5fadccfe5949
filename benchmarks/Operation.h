#ifndef VORBEL_BENCHMARKS_OPERATION_H
#define VORBEL_BENCHMARKS_OPERATION_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace bench {

/// One piece of work that can be done any number of times, the loop inside, so that it inlines with its loop.
struct Operation {
    std::string name;
    std::function<void(std::int64_t count)> repeat;
    std::int64_t atOnce = 1;  // fewest repetitions that are its usual work
};

std::vector<Operation> libraryOperations();
std::vector<Operation> arrayOperations();
std::vector<Operation> odeintOperations();
std::vector<Operation> gslOperations();
std::vector<Operation> geographicLibOperations();

/// How far other software's result is from the library's on the same work.
struct Agreement {
    std::string name;
    double metres;
};

std::vector<Agreement> odeintAgreement();
std::vector<Agreement> gslAgreement();
std::vector<Agreement> geographicLibAgreement();

}  // namespace bench

#endif
