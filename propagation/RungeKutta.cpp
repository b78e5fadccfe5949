#include "RungeKutta.h"

#include <vorbel/CVorbel.h>

fVector CVorbel::runceK(const fVector& state, double dStep) const {
    return vorbel::withOrWithoutDrag(
        state, [&](auto drag) { return vorbel::rungeKuttaStep<drag()>(state, dStep, m_iSystem); });
}
