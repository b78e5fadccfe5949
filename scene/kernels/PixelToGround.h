#ifndef VORBEL_SCENE_KERNELS_PIXEL_TO_GROUND_H
#define VORBEL_SCENE_KERNELS_PIXEL_TO_GROUND_H

namespace vorbel::scene {

struct SightFrame {};
struct PixelTile {};

}  // namespace vorbel::scene

#endif
