#ifndef VORBEL_SCENE_EXECUTION_H
#define VORBEL_SCENE_EXECUTION_H

/// \file
/// How a call is carried out; nothing here changes a result.

#include <vorbel/scene/Export.h>

#include <span>

namespace vorbel::scene {

/// The processor instructions that the array kernels are compiled for. All give the same bits.
enum class InstructionSet {
    automatic,  ///< the widest that this machine has
    baseline,   ///< what every processor of the platform has (SSE2 on x86-64)
    avx2,
    avx512,
};

/// How a call is carried out; nothing here changes a result.
struct Execution {
    unsigned threads = 1;                                       ///< 0: one for each processor
    InstructionSet instructionSet = InstructionSet::automatic;  ///< one that the machine lacks is refused
};

/// The instruction sets of this machine, narrowest first.
VORBEL_SCENE_API std::span<const InstructionSet> instructionSets() noexcept;

/// "baseline", "avx2", "avx512" or "automatic".
VORBEL_SCENE_API const char* name(InstructionSet set) noexcept;

}  // namespace vorbel::scene

#endif
