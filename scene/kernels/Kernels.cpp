// Compiled once for each instruction set; VORBEL_KERNELS names the namespace of this one.
//
// Nothing of the standard library is called here: an inline function compiled for a wide instruction set could be the
// copy that the linker keeps for all.

#include "Kernels.h"

#include "PixelToGround.inl"

namespace vorbel::scene::VORBEL_KERNELS {

const Kernels kKernels{
    {solve<0>, solve<1>},
    {finish<0>, finish<1>},
};

}  // namespace vorbel::scene::VORBEL_KERNELS
