#include "kernels/Kernels.h"

#include <vorbel/scene/Execution.h>

#include <array>
#include <stdexcept>
#include <string>

namespace {

using vorbel::scene::InstructionSet;

constexpr std::array<InstructionSet, 3> kAll{InstructionSet::baseline, InstructionSet::avx2, InstructionSet::avx512};

// How many of kAll this machine has: each set contains the ones before it.
std::size_t present() noexcept {
#ifdef VORBEL_KERNELS_X86
    __builtin_cpu_init();
    if (!__builtin_cpu_supports("avx2")) {
        return 1;
    }
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
                   __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512bw")
               ? 3
               : 2;
#else
    return 1;
#endif
}

}  // namespace

std::span<const InstructionSet> vorbel::scene::instructionSets() noexcept {
    return std::span(kAll).first(present());
}

const char* vorbel::scene::name(InstructionSet set) noexcept {
    switch (set) {
    case InstructionSet::automatic:
        return "automatic";
    case InstructionSet::baseline:
        return "baseline";
    case InstructionSet::avx2:
        return "avx2";
    case InstructionSet::avx512:
        return "avx512";
    }
    return "unknown";
}

const vorbel::scene::Kernels& vorbel::scene::kernels(InstructionSet set) {
    const std::span<const InstructionSet> sets = instructionSets();
    const InstructionSet chosen = set == InstructionSet::automatic ? sets.back() : set;
    for (const InstructionSet one : sets) {
        if (one != chosen) {
            continue;
        }
#ifdef VORBEL_KERNELS_X86
        if (one == InstructionSet::avx512) {
            return avx512::kKernels;
        }
        if (one == InstructionSet::avx2) {
            return avx2::kKernels;
        }
#endif
        return baseline::kKernels;
    }
    throw std::invalid_argument(std::string("this machine does not have the instruction set ") + name(set) + ", only " +
                                name(sets.back()) + " and below");
}
