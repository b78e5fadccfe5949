#ifndef VORBEL_PROPAGATION_ADAMS_H
#define VORBEL_PROPAGATION_ADAMS_H

#include "ForceModel.h"
#include "IntegratedFields.h"
#include "RungeKutta.h"

namespace vorbel {

inline constexpr int kNodes = 8;  // derivative records that the method keeps

// Adams-Bashforth weights of order 8 for the derivatives at the nodes 0, -1, ..., -7, newest first.
inline constexpr double kPredictor[kNodes] = {
    434241.0 / 120960.0,  -1152169.0 / 120960.0, 2183877.0 / 120960.0, -2664477.0 / 120960.0,
    2102243.0 / 120960.0, -1041723.0 / 120960.0, 295767.0 / 120960.0,  -36799.0 / 120960.0,
};

// Adams-Moulton weights of order 8: for the derivative at the predicted state, then for the nodes 0, -1, ..., -6.
inline constexpr double kCorrectorNewest = 36799.0 / 120960.0;
inline constexpr double kCorrector[kNodes - 1] = {
    139849.0 / 120960.0, -121797.0 / 120960.0, 123133.0 / 120960.0, -88547.0 / 120960.0,
    41499.0 / 120960.0,  -11351.0 / 120960.0,  1375.0 / 120960.0,
};

/// Fills the history (eight records, oldest first) with the derivatives at the start and at one to seven steps behind
/// it, against the direction of the signed step.
inline void startAdams(const fVector& start, double step, int system, fVector* history) {
    fVector state = start;
    history[kNodes - 1] = derivative(state, system);
    for (int k = kNodes - 2; k >= 0; --k) {
        for (int quarter = 0; quarter < 4; ++quarter) {
            state = rungeKuttaStep(state, step * -0.25, system);
        }
        history[k] = derivative(state, system);
    }
}

/// One step in predict-evaluate-correct-evaluate form; moves the history (oldest first) on by one node.
inline fVector adamsStep(const fVector& start, double step, int system, fVector* history) {
    const fVector* const newest = history + kNodes - 1;

    // The corrector's largest part is kept apart and its newest term added last: with `time` near 4e9 s any other order
    // moves the sum by whole units of 4.8e-7 s.
    fVector predicted = start;
    fVector corrected = start;
    forIntegratedFields([&](auto field) {
        double p = 0.0;
        for (int j = 0; j < kNodes; ++j) {
            p = p + newest[-j].*field * kPredictor[j];
        }
        predicted.*field = p * step + start.*field;

        double c = 0.0;
        for (int j = 0; j < kNodes - 1; ++j) {
            c = c + newest[-j].*field * kCorrector[j];
        }
        corrected.*field = start.*field + c * step;
    });

    const fVector rate = derivative(predicted, system);
    const double weight = step * kCorrectorNewest;
    forIntegratedFields([&](auto field) { corrected.*field = weight * (rate.*field) + corrected.*field; });

    for (int k = 0; k + 1 < kNodes; ++k) {
        history[k] = history[k + 1];
    }
    history[kNodes - 1] = derivative(corrected, system);
    return corrected;
}

}  // namespace vorbel

#endif
