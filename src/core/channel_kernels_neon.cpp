// The channel kernels for AArch64 Advanced SIMD, part of the baseline there:
// two channels per register, groups of four in two.
#include "channel_kernels.hpp"
#include "channel_paths.hpp"
#include "lanes_neon.hpp"

namespace Mivora::detail::neon {

void processPlanar(const ChannelView* views, int channels, const float* const* in, float* const* out,
                   unsigned int frames) noexcept {
    runPlanar<Neon4, Neon2>(views, channels, in, out, frames);
}

void processInterleaved(const ChannelView* views, int channels, const float* in, float* out,
                        unsigned int frames) noexcept {
    runInterleaved<Neon4, Neon2>(views, channels, in, out, frames);
}

}  // namespace Mivora::detail::neon
