#include "Operation.h"
#include "PlainForceModel.h"
#include "Scene.h"

#include <benchmark/benchmark.h>
#include <boost/numeric/odeint/stepper/adams_bashforth_moulton.hpp>
#include <boost/numeric/odeint/stepper/runge_kutta4.hpp>
#include <boost/numeric/odeint/stepper/runge_kutta_fehlberg78.hpp>

namespace {

using bench::kStep;
using bench::PlainForce;
using bench::PlainState;
using AdamsBashforthMoulton = boost::numeric::odeint::adams_bashforth_moulton<8, PlainState>;

PlainState plainStart() {
    const fVector s = bench::startState();
    return {s.x, s.y, s.z, s.vx, s.vy, s.vz};
}

template <class Stepper>
void repeatSteps(Stepper& stepper, PlainState x, double t, std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i) {
        stepper.do_step(PlainForce(), x, t, kStep);
        t += kStep;
    }
    benchmark::DoNotOptimize(x);
}

void adamsSteps(std::int64_t count) {
    struct Started {
        AdamsBashforthMoulton stepper;
        PlainState x = plainStart();
        double t = 0.0;
        Started() {
            stepper.initialize(PlainForce(), x, t, kStep);
        }
    };
    static const Started started;
    AdamsBashforthMoulton stepper(started.stepper);
    repeatSteps(stepper, started.x, started.t, count);
}

void revolutions(std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i) {
        AdamsBashforthMoulton stepper;
        PlainState x = plainStart();
        double t = 0.0;
        stepper.initialize(PlainForce(), x, t, kStep);
        repeatSteps(stepper, x, t, bench::kRevolutionSteps);
    }
}

}  // namespace

std::vector<bench::Operation> bench::odeintOperations() {
    return {
        {"odeint adams_bashforth_moulton<8> step", adamsSteps},
        {"odeint adams_bashforth_moulton<8> revolution", revolutions},
        {"odeint runge_kutta4 step",
         [](std::int64_t count) {
             boost::numeric::odeint::runge_kutta4<PlainState> stepper;
             repeatSteps(stepper, plainStart(), 0.0, count);
         }},
        {"odeint runge_kutta_fehlberg78 step",
         [](std::int64_t count) {
             boost::numeric::odeint::runge_kutta_fehlberg78<PlainState> stepper;
             repeatSteps(stepper, plainStart(), 0.0, count);
         }},
    };
}
