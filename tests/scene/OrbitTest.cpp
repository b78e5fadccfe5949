// The orbit over a span of time.

#include <vorbel/scene/Orbit.h>

#include <gtest/gtest.h>

#include <stdexcept>

using namespace vorbel::scene;

namespace {

TEST(Orbit, RefusesOneVector) {
    const StateVector one{Instant(), {7e6, 0.0, 0.0, 0.0, 7e3, 0.0}};
    EXPECT_THROW(Orbit::fromVectors({&one, 1}), std::invalid_argument);
}

}  // namespace
