#ifndef VORBEL_INTERPOLATION_READ_OUT_H
#define VORBEL_INTERPOLATION_READ_OUT_H

#include "LagrangeWeights.h"

#include "../propagation/StateFields.h"

#include <vorbel/Records.h>

#include <cmath>

namespace vorbel {

/// What the read-outs take from an object.
struct Trajectory {
    const fVector& end;     // state at node 0
    const fVector* newest;  // derivative at node 0; that at node j, j steps back, stands j records before it
    double step;            // signed step of the history, s
};

/// Of an object's ten records: the end state, the last interpolated state, and the derivatives, oldest first.
inline Trajectory trajectoryOf(const fVector (&records)[10], double step) {
    return {records[0], &records[9], step};
}

/// Distance of a time behind the end state, in steps. Never negative: a time ahead counts as one behind.
inline double stepsBack(const Trajectory& t, double time) {
    return std::abs(t.end.time - time) / std::abs(t.step);
}

/// The same for an offset from the end state.
inline double stepsOfOffset(const Trajectory& t, double offset) {
    return std::abs(offset / t.step);
}

/// Within this many steps of the end state a read-out is the end state.
inline constexpr double kAtEnd = 1e-13;

inline double zeroAtEnd(double steps) {
    if (steps < kAtEnd) [[unlikely]] {
        return 0.0;
    }
    return steps;
}

/// Sum over the nodes of weight times derivative, newest first.
template <std::size_t N>
inline double weightedSum(const Trajectory& t, const Weights<N>& c, double fVector::*field) {
    double sum = c[0] * (t.newest->*field);
    for (std::size_t j = 1; j < N; ++j) {
        sum = sum + c[j] * (t.newest[-static_cast<std::ptrdiff_t>(j)].*field);
    }
    return sum;
}

/// Writes the complete state; `scale` is what the weights are in units of, the step for plain weights.
template <std::size_t N>
inline void readOut(fVector& out, const Trajectory& t, const Weights<N>& c, double scale) {
    const double date = t.end.date;
    const double drag = t.end.drag;
    forFieldPairs([&](int i) {
        Pair sum = pairOf(c[0]) * fieldPair(*t.newest, i);
        for (std::size_t j = 1; j < N; ++j) {
            sum = sum + pairOf(c[j]) * fieldPair(t.newest[-static_cast<std::ptrdiff_t>(j)], i);
        }
        const Pair value = fieldPair(t.end, i) - pairOf(scale) * sum;
        storeFieldPair(out, i, i == kDateTimePair ? pairOf(date, upper(value)) : value);
    });
    out.drag = drag;
}

}  // namespace vorbel

#endif
