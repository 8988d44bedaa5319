// The builds (paths) of the channel kernels (channel_kernels.hpp), and the
// choice among them: the widest the CPU runs. Every path gives identical
// results, so the choice only affects speed.
//
// Internal to the library (and its tests, which force each path).
#ifndef MIVORA_CHANNEL_PATHS_HPP
#define MIVORA_CHANNEL_PATHS_HPP

#include "kernel_paths.hpp"

namespace Mivora::detail {

// One channel as the channel kernels see it: a record of its coefficients
// and state, 23 doubles in the order below (the layout of IirProcess's
// storage), and the stages it runs, stageSet(sections, first) =
// 2 * sections + first (section_kernels.hpp). Two words per channel: a call
// prepares its channels with two stores each.
struct ChannelView {
    static constexpr int delayAt = 0;     // 4 per second-order section: x1 x2 y1 y2
    static constexpr int coefAt = 8;      // 5 per second-order section: b0 b1 b2 a1 a2
    static constexpr int delay1stAt = 18; // x1 y1
    static constexpr int coef1stAt = 20;  // b0 b1 a1
    double* record;
    int stages;

    int sections() const noexcept { return stages >> 1; }
    bool first() const noexcept { return (stages & 1) != 0; }
};

enum class ChannelPath {
    portable,   // plain C++, built for the baseline of the target
    x86Avx2,    // x86-64, AVX2 and FMA3: 4 lanes per register
    x86Avx512,  // x86-64, AVX-512F and VL: 8 lanes per register
    neon,       // AArch64 Advanced SIMD: 2 lanes per register
};

inline constexpr ChannelPath allChannelPaths[] = {ChannelPath::portable, ChannelPath::x86Avx2,
                                                  ChannelPath::x86Avx512, ChannelPath::neon};

// Built into this library and supported by the CPU it runs on.
bool channelPathAvailable(ChannelPath path) noexcept;
// The path IirChannels uses: the CPU is asked here, once per call.
ChannelPath fastestChannelPath() noexcept;

// `channels` (0 to 16) channels, views[c] holding channel c's record, over
// `frames` frames: planar (in[c], out[c] per channel) or interleaved (frames
// of `channels` floats). out may be in; no other overlap. The path must be
// available: it is not checked again.
void processPlanar(ChannelPath path, const ChannelView* views, int channels, const float* const* in,
                   float* const* out, unsigned int frames) noexcept;
void processInterleaved(ChannelPath path, const ChannelView* views, int channels, const float* in, float* out,
                        unsigned int frames) noexcept;

// Entry points of each build (channel_kernels_*.cpp).
namespace portable {
void processPlanar(const ChannelView* views, int channels, const float* const* in, float* const* out,
                   unsigned int frames) noexcept;
void processInterleaved(const ChannelView* views, int channels, const float* in, float* out,
                        unsigned int frames) noexcept;
}  // namespace portable
namespace x86avx2 {
void processPlanar(const ChannelView* views, int channels, const float* const* in, float* const* out,
                   unsigned int frames) noexcept;
void processInterleaved(const ChannelView* views, int channels, const float* in, float* out,
                        unsigned int frames) noexcept;
}  // namespace x86avx2
namespace x86avx512 {
void processPlanar(const ChannelView* views, int channels, const float* const* in, float* const* out,
                   unsigned int frames) noexcept;
void processInterleaved(const ChannelView* views, int channels, const float* in, float* out,
                        unsigned int frames) noexcept;
}  // namespace x86avx512
namespace neon {
void processPlanar(const ChannelView* views, int channels, const float* const* in, float* const* out,
                   unsigned int frames) noexcept;
void processInterleaved(const ChannelView* views, int channels, const float* in, float* out,
                        unsigned int frames) noexcept;
}  // namespace neon

}  // namespace Mivora::detail

#endif
