#ifndef VORBEL_SCENE_NOT_A_NUMBER_H
#define VORBEL_SCENE_NOT_A_NUMBER_H

#include <limits>

namespace vorbel::scene {

/// What an output holds where there is no answer.
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

}  // namespace vorbel::scene

#endif
