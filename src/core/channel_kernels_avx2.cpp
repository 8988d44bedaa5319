// The channel kernels for x86-64 with AVX2 and FMA3 (this file alone gets
// -mavx2 -mfma): up to four channels in one 256-bit register, more in
// groups of eight in two, whose chains then overlap.
//
// Nothing with external linkage may be defined here but the two entry
// points (see kernels_x86_fma.cpp); a test checks the exported symbols.
#include "channel_kernels.hpp"
#include "channel_paths.hpp"
#include "lanes_avx.hpp"

namespace Mivora::detail::x86avx2 {

void processPlanar(const ChannelView* views, int channels, const float* const* in, float* const* out,
                   unsigned int frames) noexcept {
    runPlanar<Ymm8, Ymm4, Xmm2>(views, channels, in, out, frames);
}

void processInterleaved(const ChannelView* views, int channels, const float* in, float* out,
                        unsigned int frames) noexcept {
    runInterleaved<Ymm8, Ymm4, Xmm2>(views, channels, in, out, frames);
}

}  // namespace Mivora::detail::x86avx2
