// Which build of the channel kernels runs: the widest this CPU has.
#include "channel_paths.hpp"

namespace Mivora::detail {

namespace {

// The flags come from the compiler runtime's CPU probe, which also checks
// that the OS saves the wider registers (see process.cpp).
bool cpuRunsAvx2() noexcept {
#if defined(MIVORA_HAVE_X86_CHANNEL_KERNELS)
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
#else
    return false;
#endif
}

bool cpuRunsAvx512() noexcept {
#if defined(MIVORA_HAVE_X86_CHANNEL_KERNELS)
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") && cpuRunsAvx2();
#else
    return false;
#endif
}

}  // namespace

bool channelPathAvailable(ChannelPath path) noexcept {
    switch (path) {
        case ChannelPath::portable: return true;
        case ChannelPath::x86Avx2: return cpuRunsAvx2();
        case ChannelPath::x86Avx512: return cpuRunsAvx512();
#if defined(MIVORA_HAVE_NEON_CHANNEL_KERNELS)
        case ChannelPath::neon: return true;  // in the AArch64 baseline
#else
        case ChannelPath::neon: return false;
#endif
    }
    return false;
}

ChannelPath fastestChannelPath() noexcept {
#if defined(MIVORA_HAVE_NEON_CHANNEL_KERNELS)
    return ChannelPath::neon;
#else
    if (cpuRunsAvx512()) return ChannelPath::x86Avx512;
    if (cpuRunsAvx2()) return ChannelPath::x86Avx2;
    return ChannelPath::portable;
#endif
}

void processPlanar(ChannelPath path, const ChannelView* views, int channels, const float* const* in,
                   float* const* out, unsigned int frames) noexcept {
    switch (path) {
#if defined(MIVORA_HAVE_X86_CHANNEL_KERNELS)
        case ChannelPath::x86Avx512: return x86avx512::processPlanar(views, channels, in, out, frames);
        case ChannelPath::x86Avx2: return x86avx2::processPlanar(views, channels, in, out, frames);
#endif
#if defined(MIVORA_HAVE_NEON_CHANNEL_KERNELS)
        case ChannelPath::neon: return neon::processPlanar(views, channels, in, out, frames);
#endif
        default: return portable::processPlanar(views, channels, in, out, frames);
    }
}

void processInterleaved(ChannelPath path, const ChannelView* views, int channels, const float* in, float* out,
                        unsigned int frames) noexcept {
    switch (path) {
#if defined(MIVORA_HAVE_X86_CHANNEL_KERNELS)
        case ChannelPath::x86Avx512: return x86avx512::processInterleaved(views, channels, in, out, frames);
        case ChannelPath::x86Avx2: return x86avx2::processInterleaved(views, channels, in, out, frames);
#endif
#if defined(MIVORA_HAVE_NEON_CHANNEL_KERNELS)
        case ChannelPath::neon: return neon::processInterleaved(views, channels, in, out, frames);
#endif
        default: return portable::processInterleaved(views, channels, in, out, frames);
    }
}

}  // namespace Mivora::detail
