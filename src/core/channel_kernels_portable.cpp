// The channel kernels built for the target's baseline, four lanes of plain
// doubles: the fallback on every CPU. Where the baseline has no fused
// multiply-add instruction, std::fma is the C library's exact one.
#include "channel_kernels.hpp"
#include "channel_paths.hpp"
#include "lanes_portable.hpp"

namespace Mivora::detail::portable {

void processPlanar(const ChannelView* views, int channels, const float* const* in, float* const* out,
                   unsigned int frames) noexcept {
    runPlanar<PlainLanes<4>>(views, channels, in, out, frames);
}

void processInterleaved(const ChannelView* views, int channels, const float* in, float* out,
                        unsigned int frames) noexcept {
    runInterleaved<PlainLanes<4>>(views, channels, in, out, frames);
}

}  // namespace Mivora::detail::portable
