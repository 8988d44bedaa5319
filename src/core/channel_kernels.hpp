// Many channels at once, one channel per lane of a lane type L
// (lanes_*.hpp), written once and compiled once per path
// (channel_kernels_*.cpp).
//
// Each lane runs the very expressions of the single-channel kernels
// (sectionOut, firstOrderOut of section_kernels.hpp) on its own channel's
// coefficients and state, sample after sample, so every channel gets the
// bits a lone IirProcess gives it. What a lane cannot do is branch: a group
// of lanes runs the union of its channels' stages, and in a lane whose
// channel lacks a stage the stage's result is discarded by a select (its
// input passes on unchanged) and its state is never written back. No
// coefficient can stand in for "no stage": 0 * inf is NaN.
//
// One channel's feedback allows one sample per two fused multiply-add
// latencies; with the channels in lanes that latency is shared by all of
// them. Channels go in groups of L::width lanes (fewer in the last), each
// group a pass over the block with its state in registers.
//
// No standard algorithm templates (std::min, std::copy, ...) in the kernels:
// their instances have external linkage, and one built for a wide
// instruction set could be the copy the whole program ends up using.
#ifndef MIVORA_CHANNEL_KERNELS_HPP
#define MIVORA_CHANNEL_KERNELS_HPP

#include <cstddef>
#include <utility>

#include "channel_cascade.hpp"
#include "channel_paths.hpp"
#include "kernel_paths.hpp"
#include "lane_stages.hpp"
#include "section_kernels.hpp"

namespace Mivora::detail {
namespace {  // internal linkage: see section_kernels.hpp

// A block through one group: chunks of W frames (a tile of W x W samples),
// then the rest. IO moves the group's samples between the caller's buffer
// and frame vectors (lane l: the group's channel l at one frame).
template <class L, int Sections, bool First, bool Masked, class IO>
MIVORA_KERNEL_OUTLINE void runGroup(const LaneGroup<L::width>& g, IO& io, unsigned int frames) noexcept {
    constexpr int W = L::width;
    LaneStages<L, Sections, First, Masked, IO::full> st;
    st.load(g);
    L x[W];
    unsigned int n = 0;
    for (; n + W <= frames; n += W) {
        io.load(x, n);
        st.stepAll(x, std::make_integer_sequence<int, W>{});
        io.store(x, n);
    }
    if (n < frames) {
        const unsigned int k = frames - n;
        io.loadPart(x, n, k);
        for (unsigned int j = 0; j < k; ++j) x[j] = st.step(x[j]);
        io.storePart(x, n, k);
    }
    st.store(g);
}

template <class L, int Sections, bool First, class IO>
MIVORA_KERNEL_INLINE void runGroupMaybeMasked(bool masked, const LaneGroup<L::width>& g, IO& io,
                                              unsigned int frames) noexcept {
    if (masked) runGroup<L, Sections, First, true>(g, io, frames);
    else runGroup<L, Sections, First, false>(g, io, frames);
}

// Two second-order sections: in one register of twice the lanes where the
// lane type has one, the group is unmasked and the block long enough.
template <class L, bool First, class IO>
MIVORA_KERNEL_INLINE void runTwoSections(bool masked, const LaneGroup<L::width>& g, IO& io,
                                         unsigned int frames) noexcept {
    if constexpr (hasDoubleLanes<L>) {
        if (!masked && frames >= kMinChannelCascadeBlock) {
            return ChannelCascade<L, First, IO::full>::run(g, io, frames);
        }
    }
    runGroupMaybeMasked<L, 2, First>(masked, g, io, frames);
}

// The union of the group's stage sets, masked where a channel lacks a stage.
template <class L, class IO>
MIVORA_KERNEL_INLINE void runGroupStages(const LaneGroup<L::width>& g, IO& io, unsigned int frames) noexcept {
    // Masked exactly when some channel's stages differ from the first one's.
    const ChannelView* v = g.views;
    int stages = v[0].stages;
    bool masked = false;
    for (int l = 1; l < g.active; ++l) {
        masked = masked || v[l].stages != v[0].stages;
        // The union: stage sets order their sections by the bits above the
        // first one's.
        const int sections = stages & ~1, others = v[l].stages & ~1;
        stages = (sections > others ? sections : others) | ((stages | v[l].stages) & 1);
    }
    switch (stages) {
        case 0: runGroup<L, 0, false, false>(g, io, frames); break;
        case 1: runGroupMaybeMasked<L, 0, true>(masked, g, io, frames); break;
        case 2: runGroupMaybeMasked<L, 1, false>(masked, g, io, frames); break;
        case 3: runGroupMaybeMasked<L, 1, true>(masked, g, io, frames); break;
        case 4: runTwoSections<L, false>(masked, g, io, frames); break;
        default: runTwoSections<L, true>(masked, g, io, frames); break;
    }
}

// Interleaved frames of `stride` floats; the group's channels start at in,
// out. Full: all W lanes hold channels (plain loads and stores), else the
// first `active` (masked ones, touching no other channel's samples).
template <class L, bool Full>
struct InterleavedIO {
    static constexpr int W = L::width;
    static constexpr bool full = Full;
    const float* in;
    float* out;
    std::size_t stride;
    int active;

    MIVORA_KERNEL_INLINE L loadFrame(const float* p) const noexcept {
        if constexpr (Full) return L::loadFloats(p);
        else return L::loadFloats(p, active);
    }
    MIVORA_KERNEL_INLINE void storeFrame(float* p, const L& y) const noexcept {
        if constexpr (Full) L::storeFloats(p, y);
        else L::storeFloats(p, y, active);
    }
    MIVORA_KERNEL_INLINE void load(L (&x)[W], unsigned int n) const noexcept { loadPart(x, n, W); }
    MIVORA_KERNEL_INLINE void store(const L (&y)[W], unsigned int n) const noexcept { storePart(y, n, W); }
    // The stride in a local: a member would be reloaded after every store.
    MIVORA_KERNEL_INLINE void loadPart(L (&x)[W], unsigned int n, unsigned int k) const noexcept {
        const std::size_t s = stride;
        const float* p = in + n * s;
        for (unsigned int j = 0; j < k; ++j, p += s) x[j] = loadFrame(p);
    }
    MIVORA_KERNEL_INLINE void storePart(const L (&y)[W], unsigned int n, unsigned int k) const noexcept {
        const std::size_t s = stride;
        float* p = out + n * s;
        for (unsigned int j = 0; j < k; ++j, p += s) storeFrame(p, y[j]);
    }
};

// One buffer per channel: in[l], out[l] for the group's lanes l < active.
// Tiles of W frames of every lane are transposed into frame vectors; lanes
// without a channel read zeros and write to scratch. Full: all W lanes hold
// channels, and no lane is tested. The group's row pointers are copied in:
// read through the caller's array, each would be two dependent loads per
// tile, redone after every store to the samples (which may alias it).
template <class L, bool Full>
struct PlanarIO {
    static constexpr int W = L::width;
    static constexpr bool full = Full;
    const float* in[W] = {};
    float* out[W] = {};
    int active;
    float zeros[W] = {};
    float scratch[W] = {};

    PlanarIO(const float* const* inRows, float* const* outRows, int activeLanes) noexcept : active(activeLanes) {
        for (int l = 0; l < (Full ? W : activeLanes); ++l) {
            in[l] = inRows[l];
            out[l] = outRows[l];
        }
    }
    MIVORA_KERNEL_INLINE bool holds(int l) const noexcept { return Full || l < active; }
    MIVORA_KERNEL_INLINE void load(L (&x)[W], unsigned int n) const noexcept {
        const float* rows[W];
        for (int l = 0; l < W; ++l) rows[l] = holds(l) ? in[l] + n : zeros;
        L::loadTile(rows, x);
    }
    MIVORA_KERNEL_INLINE void store(const L (&y)[W], unsigned int n) noexcept {
        float* rows[W];
        for (int l = 0; l < W; ++l) rows[l] = holds(l) ? out[l] + n : scratch;
        L::storeTile(rows, y);
    }
    // The last k < W frames, through a tile of the caller's k and zeros.
    void loadPart(L (&x)[W], unsigned int n, unsigned int k) const noexcept {
        float tile[W][W] = {};
        const float* rows[W];
        for (int l = 0; l < W; ++l) {
            if (l < active)
                for (unsigned int j = 0; j < k; ++j) tile[l][j] = in[l][n + j];
            rows[l] = tile[l];
        }
        L::loadTile(rows, x);
    }
    void storePart(const L (&y)[W], unsigned int n, unsigned int k) const noexcept {
        float tile[W][W];
        float* rows[W];
        for (int l = 0; l < W; ++l) rows[l] = tile[l];
        L::storeTile(rows, y);
        for (int l = 0; l < active; ++l)
            for (unsigned int j = 0; j < k; ++j) out[l][n + j] = tile[l][j];
    }
};


// (out is written through the IO object, which the check does not follow.)
template <class L>
MIVORA_KERNEL_INLINE void interleavedGroup(const ChannelView* ch, int firstChannel, int active, int channels,
                                           const float* in,
                                           float* out,  // NOLINT(readability-non-const-parameter)
                                           unsigned int frames) noexcept {
    const LaneGroup<L::width> g{ch + firstChannel, active};
    const std::size_t stride = static_cast<std::size_t>(channels);
    if (active == L::width) {
        InterleavedIO<L, true> io{in + firstChannel, out + firstChannel, stride, active};
        runGroupStages<L>(g, io, frames);
    } else {
        InterleavedIO<L, false> io{in + firstChannel, out + firstChannel, stride, active};
        runGroupStages<L>(g, io, frames);
    }
}

template <class L>
MIVORA_KERNEL_INLINE void planarGroup(const ChannelView* ch, int firstChannel, int active, const float* const* in,
                                      float* const* out, unsigned int frames) noexcept {
    const LaneGroup<L::width> g{ch + firstChannel, active};
    if (active == L::width) {
        PlanarIO<L, true> io{in + firstChannel, out + firstChannel, active};
        runGroupStages<L>(g, io, frames);
    } else {
        PlanarIO<L, false> io{in + firstChannel, out + firstChannel, active};
        runGroupStages<L>(g, io, frames);
    }
}

// The channels in groups, each of the narrowest lane type that holds what
// is left, or of the widest while more is left than the next one holds: few
// channels do not pay for a wide register's work. Lanes: widest first.
// The way from the entry point down to a group's kernel is inlined into one
// function: every instruction between two calls' feedback chains delays the
// second call's chain once the first call's work fills the reorder window,
// and a call of a few dozen frames feels each such layer.
template <class Wide, class... Narrower>
struct LaneTypes {
    template <class Group>
    MIVORA_KERNEL_INLINE static void forEachGroup(int firstChannel, int channels, Group& group) noexcept {
        for (int c = firstChannel; c < channels;) {
            const int left = channels - c;
            if constexpr (sizeof...(Narrower) > 0) {
                if (left <= LaneTypes<Narrower...>::widest) return LaneTypes<Narrower...>::forEachGroup(c, channels, group);
            }
            const int active = left < Wide::width ? left : Wide::width;
            group(Wide{}, c, active);
            c += active;
        }
    }
    static constexpr int widest = Wide::width;
};

template <class... Lanes>
void runInterleaved(const ChannelView* ch, int channels, const float* in, float* out, unsigned int frames) noexcept {
    auto group = [&](auto lanes, int c, int active) {
        interleavedGroup<decltype(lanes)>(ch, c, active, channels, in, out, frames);
    };
    LaneTypes<Lanes...>::forEachGroup(0, channels, group);
}

template <class... Lanes>
void runPlanar(const ChannelView* ch, int channels, const float* const* in, float* const* out,
               unsigned int frames) noexcept {
    auto group = [&](auto lanes, int c, int active) { planarGroup<decltype(lanes)>(ch, c, active, in, out, frames); };
    LaneTypes<Lanes...>::forEachGroup(0, channels, group);
}

}  // namespace
}  // namespace Mivora::detail

#endif
