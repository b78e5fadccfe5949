#include "ForceModel.h"
#include "RungeKutta.h"
#include "StateFields.h"

#include <vorbel/CVorbel.h>

namespace {

using namespace vorbel;

constexpr int kNodes = 8;  // derivative records that the method keeps

// Adams-Bashforth weights of order 8 for the derivatives at the nodes 0, -1, ..., -7, newest first.
constexpr double kPredictor[kNodes] = {
    434241.0 / 120960.0,  -1152169.0 / 120960.0, 2183877.0 / 120960.0, -2664477.0 / 120960.0,
    2102243.0 / 120960.0, -1041723.0 / 120960.0, 295767.0 / 120960.0,  -36799.0 / 120960.0,
};

// Adams-Moulton weights of order 8: for the derivative at the predicted state, then for the nodes 0, -1, ..., -6.
constexpr double kCorrectorNewest = 36799.0 / 120960.0;
constexpr double kCorrector[kNodes - 1] = {
    139849.0 / 120960.0, -121797.0 / 120960.0, 123133.0 / 120960.0, -88547.0 / 120960.0,
    41499.0 / 120960.0,  -11351.0 / 120960.0,  1375.0 / 120960.0,
};

/// Fills the history (eight records, oldest first) with the derivatives at the start and at one to seven steps behind
/// it, against the direction of the signed step.
template <bool withDrag>
void startAdams(const fVector& start, double step, int system, fVector* history) {
    fVector state = start;
    history[kNodes - 1] = derivative<withDrag>(state, system);
    for (int k = kNodes - 2; k >= 0; --k) {
        for (int quarter = 0; quarter < 4; ++quarter) {
            state = rungeKuttaStep<withDrag>(state, step * -0.25, system);
        }
        history[k] = derivative<withDrag>(state, system);
    }
}

/// One step in predict-evaluate-correct-evaluate form; moves state and history (oldest first) on by one node.
template <bool withDrag>
void stepAdams(fVector& state, double step, int system, fVector* history) {
    const fVector start = state;
    fVector* const newest = history + kNodes - 1;
    const Pair h = pairOf(step);

    // The corrector's largest part is kept apart and its newest term added last: with `time` near 4e9 s any other order
    // moves the sum by whole units of 4.8e-7 s.
    Pair predictedPairs[kFieldPairs];
    Pair correctedPairs[kFieldPairs];
    forFieldPairs([&](int i) {
        Pair f[kNodes];  // newest first
        for (int j = 0; j < kNodes; ++j) {
            f[j] = fieldPair(newest[-j], i);
        }
        for (int j = 0; j + 1 < kNodes; ++j) {
            storeFieldPair(newest[-j - 1], i, f[j]);
        }
        Pair p = pairOf(0.0);
        for (int j = 0; j < kNodes; ++j) {
            p = p + f[j] * pairOf(kPredictor[j]);
        }
        Pair c = pairOf(0.0);
        for (int j = 0; j + 1 < kNodes; ++j) {
            c = c + f[j] * pairOf(kCorrector[j]);
        }
        const Pair y = fieldPair(state, i);
        predictedPairs[i] = p * h + y;
        correctedPairs[i] = y + c * h;
    });

    const fVector rate = derivative<withDrag>(recordOf(predictedPairs, start), system);
    const double weight = step * kCorrectorNewest;
    fVector corrected = recordOf(correctedPairs, start);
    forIntegratedFields([&](auto field) { corrected.*field = weight * (rate.*field) + corrected.*field; });

    for (int k = 0; k < kNodes - 1; ++k) {
        history[k].drag = history[k + 1].drag;
    }
    storeByPairs(*newest, derivative<withDrag>(corrected, system));
    storeByPairs(state, corrected);
}

}  // namespace

void CVorbel::adamsR(const fVector& state, double dStep) {
    withOrWithoutDrag(state, [&](auto drag) { startAdams<drag()>(state, dStep, m_iSystem, m_afVector + 2); });
}

fVector CVorbel::adams(fVector& state, double dStep) {
    withOrWithoutDrag(state, [&](auto drag) { stepAdams<drag()>(state, dStep, m_iSystem, m_afVector + 2); });
    return state;
}
