#include <vorbel/CVorbel.h>

#include <cmath>

namespace {

constexpr double kLongestStep = 120.0;  // s

}  // namespace

void CVorbel::InitLagrange(const fVector* pState, double dt, int iSystem) {
    const double step = std::abs(dt) > kLongestStep ? std::copysign(kLongestStep, dt) : dt * 0.5;
    InitLagrange(pState, dt, step, iSystem);
}

void CVorbel::InitLagrange(const fVector* pState, double dt, double dStep, int iSystem) {
    SetProgParam(pState, dStep, iSystem);
    prog(dt);
}
