#ifndef VORBEL_TESTS_BITS_REPORT_H
#define VORBEL_TESTS_BITS_REPORT_H

#include "Values.h"

#include <functional>
#include <vector>

/// The main() of a program that evaluates operations over a fixed set of inputs. Two builds of a library whose programs
/// print the same total have returned the same bits throughout.
///
/// usage: PROGRAM                 digest of each operation's values, and of all
///        PROGRAM --portable      the same of those inputs for which every platform must return the same bits
///        PROGRAM --check FILE    compares those digests with the lines in FILE; status 1 if any differs
///        PROGRAM --all           every operation's values, as the bits of doubles
///        PROGRAM --compare FILE  how far the values are from those that `--all` wrote elsewhere; status 1 if any
///                                differs
int reportBits(int argc, char** argv, const char* program,
               const std::function<std::vector<Operation>(bool portable)>& evaluate);

#endif
