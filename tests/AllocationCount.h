#ifndef VORBEL_TESTS_ALLOCATION_COUNT_H
#define VORBEL_TESTS_ALLOCATION_COUNT_H

/// Calls of operator new so far, in the whole process; where countsMalloc() says so, calls of malloc, calloc and
/// realloc too, whoever makes them: the definitions of the main program come before those of the C library.
long allocationCount();

bool countsMalloc();

#endif
