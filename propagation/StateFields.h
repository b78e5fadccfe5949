#ifndef VORBEL_PROPAGATION_STATE_FIELDS_H
#define VORBEL_PROPAGATION_STATE_FIELDS_H

#include "../arithmetic/Pair.h"

#include <vorbel/Records.h>

#include <cstddef>
#include <type_traits>

namespace vorbel {

/// Calls f(&fVector::x) and so on for position and velocity.
template <class F>
inline void forPositionAndVelocity(F f) {
    f(&fVector::x);
    f(&fVector::y);
    f(&fVector::z);
    f(&fVector::vx);
    f(&fVector::vy);
    f(&fVector::vz);
}

/// The same for the seven fields that have a derivative: position, velocity and time. `date` and `drag` are carried.
template <class F>
inline void forIntegratedFields(F f) {
    forPositionAndVelocity(f);
    f(&fVector::time);
}

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
