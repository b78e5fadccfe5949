// Compiled once for each instruction set; VORBEL_KERNELS names the namespace of this one.
//
// Nothing of the standard library is called here: an inline function compiled for a wide instruction set could be the
// copy that the linker keeps for all.

#include "Kernels.h"

#include "PixelToGround.inl"

const vorbel::scene::Kernels vorbel::scene::VORBEL_KERNELS::kKernels{
    vorbel::scene::VORBEL_KERNELS::pixelToGround,
};
