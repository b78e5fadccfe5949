#ifndef VORBEL_SCENE_VECTOR_LIST_H
#define VORBEL_SCENE_VECTOR_LIST_H

#include <vorbel/scene/Orbit.h>

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace vorbel::scene {

/// State vectors in order of time, and where their spacing breaks.
struct VectorList {
    std::vector<StateVector> vectors;
    std::vector<std::size_t> stretches;  // the first vector of each stretch without a gap, and the number of vectors
};

/// Checks, sorts and merges state vectors; Orbit::fromVectors() says how.
/// \throws std::invalid_argument  as it says
VectorList listOf(std::span<const StateVector> vectors);

/// Throws unless the state is finite and outside the Earth.
/// \param[in] name  what the sentence calls the vector
void requireState(const StateVector& vector, const std::string& name);

}  // namespace vorbel::scene

#endif
