#ifndef VORBEL_PROPAGATION_INTEGRATED_FIELDS_H
#define VORBEL_PROPAGATION_INTEGRATED_FIELDS_H

#include <vorbel/Records.h>

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

}  // namespace vorbel

#endif
