#include "Operation.h"
#include "PlainForceModel.h"

#include <benchmark/benchmark.h>
#include <boost/numeric/odeint/stepper/adams_bashforth_moulton.hpp>
#include <boost/numeric/odeint/stepper/runge_kutta4.hpp>
#include <boost/numeric/odeint/stepper/runge_kutta_fehlberg78.hpp>
#include <boost/version.hpp>

namespace {

using namespace bench;
using AdamsBashforthMoulton = boost::numeric::odeint::adams_bashforth_moulton<8, PlainState>;
using RungeKutta4 = boost::numeric::odeint::runge_kutta4<PlainState>;
using Fehlberg78 = boost::numeric::odeint::runge_kutta_fehlberg78<PlainState>;

/// The stepper inlined into the loop as a whole, which is up to a third faster than calls in between.
template <class Stepper>
[[gnu::noinline, gnu::flatten]] PlainState steps(Stepper& stepper, PlainState x, double t, std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i) {
        stepper.do_step(PlainForce(), x, t, kStep);
        t += kStep;
    }
    return x;
}

/// The multistep method with its history, which its own starter makes from seven Runge-Kutta steps.
struct Started {
    AdamsBashforthMoulton stepper;
    PlainState x = plainStart();
    double t = 0.0;

    Started() {
        stepper.initialize(PlainForce(), x, t, kStep);
    }
};

PlainState revolution() {
    constexpr int kStarterSteps = 7;
    Started started;
    return steps(started.stepper, started.x, started.t, kRevolutionSteps - kStarterSteps);
}

void adamsSteps(std::int64_t count) {
    static const Started started;
    AdamsBashforthMoulton stepper(started.stepper);
    benchmark::DoNotOptimize(steps(stepper, started.x, started.t, count));
}

void revolutions(std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i) {
        benchmark::DoNotOptimize(revolution());
    }
}

template <class Stepper>
void oneStepMethod(std::int64_t count) {
    Stepper stepper;
    benchmark::DoNotOptimize(steps(stepper, plainStart(), 0.0, count));
}

}  // namespace

std::vector<bench::Operation> bench::odeintOperations() {
    return {
        {"odeint adams_bashforth_moulton<8> step", adamsSteps},
        {"odeint adams_bashforth_moulton<8> revolution", revolutions},
        {"odeint runge_kutta4 step", oneStepMethod<RungeKutta4>},
        {"odeint runge_kutta_fehlberg78 step", oneStepMethod<Fehlberg78>},
    };
}

std::vector<bench::Agreement> bench::odeintAgreement() {
    Fehlberg78 fehlberg;
    return {
        {"odeint adams_bashforth_moulton<8>, Boost " BOOST_LIB_VERSION, metresFromProg(revolution())},
        {"odeint runge_kutta_fehlberg78, Boost " BOOST_LIB_VERSION,
         metresFromProg(steps(fehlberg, plainStart(), 0.0, kRevolutionSteps))},
    };
}
