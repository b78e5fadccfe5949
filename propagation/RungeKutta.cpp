#include "RungeKutta.h"

#include <vorbel/CVorbel.h>

fVector CVorbel::runceK(const fVector& state, double dStep) const {
    return vorbel::rungeKuttaStep(state, dStep, m_iSystem);
}
