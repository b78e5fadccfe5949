#ifndef VORBEL_ARITHMETIC_PAIR_H
#define VORBEL_ARITHMETIC_PAIR_H

#if defined(__SSE2__) || defined(_M_X64)
#define VORBEL_PAIR_SSE2 1
#include <emmintrin.h>
#endif

namespace vorbel {

/// Two doubles side by side: one instruction for two neighbouring fields of a record where the machine has it. Each
/// half is rounded as it would be alone, so the results are those of plain doubles.
#if defined(VORBEL_PAIR_SSE2)

struct Pair {
    __m128d value;
};

inline Pair pairOf(double lower, double upper) {
    return {_mm_set_pd(upper, lower)};
}
inline Pair pairOf(double both) {
    return {_mm_set1_pd(both)};
}
inline Pair pairAt(const double* p) {
    return {_mm_loadu_pd(p)};
}
inline void storePair(double* p, Pair a) {
    _mm_storeu_pd(p, a.value);
}
inline double lower(Pair a) {
    return _mm_cvtsd_f64(a.value);
}
inline double upper(Pair a) {
    return _mm_cvtsd_f64(_mm_unpackhi_pd(a.value, a.value));
}
inline Pair operator+(Pair a, Pair b) {
    return {_mm_add_pd(a.value, b.value)};
}
inline Pair operator-(Pair a, Pair b) {
    return {_mm_sub_pd(a.value, b.value)};
}
inline Pair operator*(Pair a, Pair b) {
    return {_mm_mul_pd(a.value, b.value)};
}
inline Pair operator/(Pair a, Pair b) {
    return {_mm_div_pd(a.value, b.value)};
}

#else

struct Pair {
    double first;
    double second;
};

inline Pair pairOf(double lower, double upper) {
    return {lower, upper};
}
inline Pair pairOf(double both) {
    return {both, both};
}
inline Pair pairAt(const double* p) {
    return {p[0], p[1]};
}
inline void storePair(double* p, Pair a) {
    p[0] = a.first;
    p[1] = a.second;
}
inline double lower(Pair a) {
    return a.first;
}
inline double upper(Pair a) {
    return a.second;
}
inline Pair operator+(Pair a, Pair b) {
    return {a.first + b.first, a.second + b.second};
}
inline Pair operator-(Pair a, Pair b) {
    return {a.first - b.first, a.second - b.second};
}
inline Pair operator*(Pair a, Pair b) {
    return {a.first * b.first, a.second * b.second};
}
inline Pair operator/(Pair a, Pair b) {
    return {a.first / b.first, a.second / b.second};
}

#endif

}  // namespace vorbel

#endif
