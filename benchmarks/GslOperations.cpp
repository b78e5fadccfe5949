#include "Operation.h"
#include "PlainForceModel.h"

#include <benchmark/benchmark.h>
#include <gsl/gsl_odeiv2.h>
#include <gsl/gsl_version.h>

#include <algorithm>
#include <memory>

namespace {

using bench::PlainState;

int force(double time, const double y[], double dydt[], void* /*parameters*/) {
    PlainState state;
    PlainState rate;
    std::copy_n(y, state.size(), state.begin());
    bench::plainForceModel(state, rate, time);
    std::copy_n(rate.begin(), rate.size(), dydt);
    return 0;
}

PlainState princeDormandSteps(std::int64_t count) {
    PlainState x = bench::plainStart();
    PlainState error;
    const gsl_odeiv2_system system = {force, nullptr, x.size(), nullptr};
    const std::unique_ptr<gsl_odeiv2_step, void (*)(gsl_odeiv2_step*)> stepper(
        gsl_odeiv2_step_alloc(gsl_odeiv2_step_rk8pd, x.size()), gsl_odeiv2_step_free);
    for (std::int64_t i = 0; i < count; ++i) {
        gsl_odeiv2_step_apply(stepper.get(), static_cast<double>(i) * bench::kStep, bench::kStep, x.data(),
                              error.data(), nullptr, nullptr, &system);
    }
    return x;
}

}  // namespace

std::vector<bench::Operation> bench::gslOperations() {
    return {{"GSL rk8pd step", [](std::int64_t count) { benchmark::DoNotOptimize(princeDormandSteps(count)); }}};
}

std::vector<bench::Agreement> bench::gslAgreement() {
    return {{"GSL rk8pd, GSL " GSL_VERSION, metresFromProg(princeDormandSteps(kRevolutionSteps))}};
}
