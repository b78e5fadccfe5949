#include "Operation.h"
#include "PlainForceModel.h"
#include "Scene.h"

#include <benchmark/benchmark.h>
#include <gsl/gsl_odeiv2.h>

#include <algorithm>
#include <memory>

namespace {

int force(double time, const double y[], double dydt[], void* /*parameters*/) {
    bench::PlainState state;
    bench::PlainState rate;
    std::copy_n(y, state.size(), state.begin());
    bench::plainForceModel(state, rate, time);
    std::copy_n(rate.begin(), rate.size(), dydt);
    return 0;
}

void princeDormandSteps(std::int64_t count) {
    const fVector s = bench::startState();
    double x[6] = {s.x, s.y, s.z, s.vx, s.vy, s.vz};
    double error[6];
    const gsl_odeiv2_system system = {force, nullptr, 6, nullptr};
    const std::unique_ptr<gsl_odeiv2_step, void (*)(gsl_odeiv2_step*)> stepper(
        gsl_odeiv2_step_alloc(gsl_odeiv2_step_rk8pd, 6), gsl_odeiv2_step_free);
    for (std::int64_t i = 0; i < count; ++i) {
        gsl_odeiv2_step_apply(stepper.get(), static_cast<double>(i) * bench::kStep, bench::kStep, x, error, nullptr,
                              nullptr, &system);
    }
    benchmark::DoNotOptimize(x);
}

}  // namespace

std::vector<bench::Operation> bench::gslOperations() {
    return {{"GSL rk8pd step", princeDormandSteps}};
}
