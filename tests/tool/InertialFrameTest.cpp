// The inertial frame against ERFA's functions of the same theories.

#include "InertialFrame.h"

#include <erfa.h>
#include <erfam.h>
#include <gtest/gtest.h>

#include <cmath>

using vorbel::scene::Instant;
using namespace vorbel::tool;

TEST(InertialFrame, IsThatOfTheSameTheories) {
    const double ut1 = -0.1;  // s
    for (const Instant& time : {Instant::of(2014, 10, 3, 5, 50, 1.5), Instant::of(2017, 3, 1), Instant::of(2021, 7, 1),
                                Instant::of(2026, 6, 6, 18, 19, 10)}) {
        const double leapSeconds = time < Instant::of(2017, 1, 1) ? 35.0 : 37.0;
        const double days = time.since(Instant::of(2000, 1, 1, 12)) / 86400.0;
        const double terrestrial = days + (leapSeconds + 32.184) / 86400.0;
        double precession[3][3], turn[3][3], nutation[3][3];
        eraPmat76(ERFA_DJ00, terrestrial, precession);
        eraNutm80(ERFA_DJ00, terrestrial, nutation);
        eraRxr(nutation, precession, turn);
        eraRz(eraGmst82(ERFA_DJ00, days + ut1 / 86400.0) + eraEqeq94(ERFA_DJ00, terrestrial), turn);
        const Matrix ours = earthFixedFromJ2000(time, ut1);
        for (std::size_t i = 0; i < 3; ++i) {
            for (std::size_t j = 0; j < 3; ++j) {
                // 0.006": the terms of nutation that are left out; worth 0.006 Hz
                EXPECT_NEAR(ours[i][j], turn[i][j], 3e-8) << time.text() << " " << i << j;
            }
        }
    }
}
