#ifndef VORBEL_BENCHMARKS_COMPARISON_H
#define VORBEL_BENCHMARKS_COMPARISON_H

#include "Operation.h"

namespace bench {

/// Times the library's operations in turn with other software's, in many short samples, and prints one table.
void printComparison(const std::vector<Operation>& operations, int rounds);

}  // namespace bench

#endif
