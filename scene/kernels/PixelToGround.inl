namespace vorbel::scene::VORBEL_KERNELS {

static void pixelToGround(const SightFrame& /*frame*/, PixelTile& /*tile*/) {
}

}  // namespace vorbel::scene::VORBEL_KERNELS
