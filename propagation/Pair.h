#ifndef VORBEL_PROPAGATION_PAIR_H
#define VORBEL_PROPAGATION_PAIR_H

#include <vorbel/Records.h>

#include <cstddef>
#include <type_traits>

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

static_assert(std::is_standard_layout<fVector>::value && offsetof(fVector, time) == 7 * sizeof(double),
              "the fields of a record stand side by side");

/// The eight fields from `x` to `time`, two by two: (x, y), (z, vx), (vy, vz), (date, time).
constexpr int kFieldPairs = 4;
constexpr int kDateTimePair = 3;

inline Pair fieldPair(const fVector& v, int i) {
    return pairAt(&v.x + 2 * i);
}

inline void storeFieldPair(fVector& v, int i, Pair a) {
    storePair(&v.x + 2 * i, a);
}

/// Copies a record so that it can be read by pairs at once: a wide load behind narrow stores has to wait until they
/// have left the store buffer.
inline void storeByPairs(fVector& to, const fVector& v) {
    storeFieldPair(to, 0, pairOf(v.x, v.y));
    storeFieldPair(to, 1, pairOf(v.z, v.vx));
    storeFieldPair(to, 2, pairOf(v.vy, v.vz));
    storeFieldPair(to, 3, pairOf(v.date, v.time));
    to.drag = v.drag;
}

/// Calls f for each of the field pairs, written out so that what they compute stays in registers.
template <class F>
inline void forFieldPairs(F f) {
    f(0);
    f(1);
    f(2);
    f(3);
}

/// A record made of its field pairs; `date` and `drag` come from `carried`.
inline fVector recordOf(const Pair (&pairs)[kFieldPairs], const fVector& carried) {
    fVector v = carried;
    v.x = lower(pairs[0]);
    v.y = upper(pairs[0]);
    v.z = lower(pairs[1]);
    v.vx = upper(pairs[1]);
    v.vy = lower(pairs[2]);
    v.vz = upper(pairs[2]);
    v.time = upper(pairs[3]);
    return v;
}

}  // namespace vorbel

#endif
