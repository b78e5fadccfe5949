#include "Adams.h"

#include <vorbel/CVorbel.h>

void CVorbel::adamsR(const fVector& state, double dStep) {
    vorbel::startAdams(state, dStep, m_iSystem, m_afVector + 2);
}

fVector CVorbel::adams(fVector& state, double dStep) {
    state = vorbel::adamsStep(state, dStep, m_iSystem, m_afVector + 2);
    return state;
}
