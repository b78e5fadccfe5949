#ifndef VORBEL_PROPAGATION_RUNGE_KUTTA_H
#define VORBEL_PROPAGATION_RUNGE_KUTTA_H

#include "ForceModel.h"
#include "StateFields.h"

namespace vorbel {

/// One step of the classical fourth-order Runge-Kutta method.
template <bool withDrag>
inline fVector rungeKuttaStep(const fVector& start, double step, int system) {
    constexpr double kStage[] = {1.0, 0.5, 0.5, 1.0};  // offset of each stage and, as divisor, its weight

    fVector stage = start;
    fVector increment;
    fVector sum;
    for (int j = 0; j < 4; ++j) {
        const double c = kStage[j];
        if (j > 0) {
            forIntegratedFields([&](auto field) { stage.*field = c * (increment.*field) + start.*field; });
        }
        const fVector rate = derivative<withDrag>(stage, system);
        forIntegratedFields([&](auto field) {
            increment.*field = step * (rate.*field);
            sum.*field = increment.*field / c + sum.*field;
        });
    }

    fVector end = start;
    forIntegratedFields([&](auto field) { end.*field = sum.*field / 6.0 + start.*field; });
    return end;
}

}  // namespace vorbel

#endif
