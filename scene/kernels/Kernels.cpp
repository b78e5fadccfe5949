// Compiled once for each instruction set; VORBEL_KERNELS names the namespace of this one.
//
// Nothing of the standard library is called here: an inline function compiled for a wide instruction set could be the
// copy that the linker keeps for all.

#include "Kernels.h"

#include "GroundToPixel.inl"
#include "PixelToGround.inl"
#include "SightFrames.inl"
#include "TerrainTrace.inl"

namespace vorbel::scene::VORBEL_KERNELS {

const Kernels kKernels{
    {readStates, setDopplerAxes, completeFrames},
    {{{solve<0, false>, finish<0, false>, localIncidences<0>}, {solve<0, true>, finish<0, true>, localIncidences<0>}},
     {{solve<1, false>, finish<1, false>, localIncidences<1>}, {solve<1, true>, finish<1, true>, localIncidences<1>}}},
    {zeroDoppler, squinted, cartesian, gather, crossings, coarseTimes},
    trace,
    stepsOnPlain,
};

}  // namespace vorbel::scene::VORBEL_KERNELS
