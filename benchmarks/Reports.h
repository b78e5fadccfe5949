#ifndef VORBEL_BENCHMARKS_REPORTS_H
#define VORBEL_BENCHMARKS_REPORTS_H

#include "Operation.h"

namespace bench {

/// One table of every operation of the library, with other software on the same work beside it: both sides in turn, in
/// many short samples, so that a change of the machine's clock touches both.
void printComparison(const std::vector<Operation>& operations, int rounds);

/// How the time of a propagation grows with its interval, and that of a scene with its pixels.
void printGrowth();

/// The chains of operations that each wait for the one before, in time and clock cycles: of an Adams step and of a
/// pixel.
void printBound(const std::vector<Operation>& operations);

}  // namespace bench

#endif
