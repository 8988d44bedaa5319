// The channel kernels for x86-64 with AVX-512F and VL (this file alone gets
// -mavx512f -mavx512vl -mavx2 -mfma): groups of eight channels in one
// 512-bit register, up to four in a 256-bit one; VL lets the narrower
// registers use all 32 vector registers.
//
// Nothing with external linkage may be defined here but the two entry
// points (see kernels_x86_fma.cpp); a test checks the exported symbols.
#include "channel_kernels.hpp"
#include "channel_paths.hpp"
#include "lanes_avx512.hpp"

namespace Mivora::detail::x86avx512 {

void processPlanar(const ChannelView* views, int channels, const float* const* in, float* const* out,
                   unsigned int frames) noexcept {
    runPlanar<Zmm8, Ymm4, Xmm2>(views, channels, in, out, frames);
}

void processInterleaved(const ChannelView* views, int channels, const float* in, float* out,
                        unsigned int frames) noexcept {
    runInterleaved<Zmm8, Ymm4, Xmm2>(views, channels, in, out, frames);
}

}  // namespace Mivora::detail::x86avx512
