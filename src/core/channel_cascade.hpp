// The two second-order sections of a group of channels in one register of
// twice the group's lanes: the low half runs section 0 on frame n while the
// high half runs section 1 on frame n - kChannelLag, taking section 0's
// output of that frame from the low half of an older result. It is the
// single-channel cascade of block_kernels.hpp with a lane type in place of
// a double: every lane still computes exactly its own channel's section, in
// the fixed order, so the bits are those of the plain kernels; but one
// operation does the work of two, and with few channels (stereo) the
// sections' feedback chains no longer wait on each other's operations.
//
// A lane type L takes part when DoubleOf<L> names a type of twice its lanes,
// with joinLanes(lo, hi), lowLanes and highLanes (lanes_avx.hpp).
#ifndef MIVORA_CHANNEL_CASCADE_HPP
#define MIVORA_CHANNEL_CASCADE_HPP

#include <type_traits>
#include <utility>

#include "lane_stages.hpp"
#include "section_kernels.hpp"

namespace Mivora::detail {
namespace {  // internal linkage: see section_kernels.hpp

// DoubleOf<L>::type: two L side by side, or void where L has none. A lane
// header that has one specialises it (the header includes this one, so the
// specialisation is seen before any kernel uses it).
template <class L>
struct DoubleOf {
    using type = void;
};
template <class L>
constexpr bool hasDoubleLanes = !std::is_void_v<typename DoubleOf<L>::type>;

// How many frames section 1 trails section 0: as in the single-channel
// cascade, enough for section 0's output to be ready long before section 1's
// feedback needs it; even, so that a turn of the loop is whole tiles.
constexpr unsigned int kChannelLag = 4;
// Shorter blocks run the sections one after the other: the lag's start and
// finish would outweigh what sharing a register saves.
constexpr unsigned int kMinChannelCascadeBlock = 16;

// The paired sections' state, in registers for the whole block (kept apart
// from the sample buffers, whose addresses the IO takes, so that no field
// of it is left in memory).
template <class D, unsigned int Lag>
struct PairedSections {
    SectionCoefs<D> c;
    D x1, x2;  // X(n-1), X(n-2): X(n) = (x[n], y0[n - Lag]), the sections' inputs
    D r[Lag];  // Y(n) = (y0[n], y1[n - Lag]) for the last Lag frames, at r[n % Lag]
};

template <class L, bool First, bool Full>
struct ChannelCascade {
    using D = typename DoubleOf<L>::type;
    static constexpr int W = L::width;
    static constexpr unsigned int Lag = kChannelLag;
    static_assert(Lag % W == 0 && Lag >= 3, "a whole number of tiles, and more than section 1's two-frame feedback");
    using Stages = LaneStages<L, 2, First, false, Full>;
    using Tiles = L[Lag / W][W];

    // Frame j of a turn: section 0 on input j, section 1 on section 0's
    // output of Lag frames before.
    template <unsigned int j>
    MIVORA_KERNEL_INLINE static void frame(PairedSections<D, Lag>& q, const Tiles& in, Tiles& out) noexcept {
        constexpr unsigned int back1 = (j + Lag - 1) % Lag, back2 = (j + Lag - 2) % Lag;
        const D x = joinLanes(in[j / W][j % W], lowLanes(q.r[j]));
        q.r[j] = sectionOut(q.c, x, q.x1, q.x2, q.r[back1], q.r[back2]);
        q.x2 = q.x1;
        q.x1 = x;
        out[j / W][j % W] = highLanes(q.r[j]);
    }
    template <unsigned int... j>
    MIVORA_KERNEL_INLINE static void turn(PairedSections<D, Lag>& q, const Tiles& in, Tiles& out,
                                          std::integer_sequence<unsigned int, j...>) noexcept {
        (frame<j>(q, in, out), ...);
    }
    // The first-order section on a turn's outputs, in order.
    template <unsigned int... j>
    MIVORA_KERNEL_INLINE static void firstOrder(Stages& st, Tiles& t, std::integer_sequence<unsigned int, j...>) noexcept {
        ((t[j / W][j % W] = st.f.step(t[j / W][j % W])), ...);
    }

    // frames >= kMinChannelCascadeBlock.
    template <class IO>
    MIVORA_KERNEL_OUTLINE static void run(const LaneGroup<W>& g, IO& io, unsigned int frames) noexcept {
        Stages st;
        st.load(g);
        Tiles in, out;
        // Section 0 runs ahead alone for Lag frames.
        for (unsigned int t = 0; t < Lag / W; ++t) io.load(in[t], t * W);
        L head[Lag];
        for (unsigned int k = 0; k < Lag; ++k) head[k] = st.s0.step(in[k / W][k % W]);
        PairedSections<D, Lag> q;
        const LaneSection<L>&s0 = st.s0, &s1 = st.s1;
        q.c = {joinLanes(s0.c.b0, s1.c.b0), joinLanes(s0.c.b1, s1.c.b1), joinLanes(s0.c.b2, s1.c.b2),
               joinLanes(s0.c.a1, s1.c.a1), joinLanes(s0.c.a2, s1.c.a2)};
        q.x1 = joinLanes(s0.x1, s1.x1);
        q.x2 = joinLanes(s0.x2, s1.x2);
        // Section 1's outputs before the block stand in the high lanes of
        // the last two; the older high lanes are never read.
        const L zero = L::generate([](int) { return 0.0; });
        for (unsigned int k = 0; k + 2 < Lag; ++k) q.r[k] = joinLanes(head[k], zero);
        q.r[Lag - 2] = joinLanes(head[Lag - 2], s1.y2);
        q.r[Lag - 1] = joinLanes(head[Lag - 1], s1.y1);

        constexpr auto frameSeq = std::make_integer_sequence<unsigned int, Lag>{};
        unsigned int i = Lag;  // a multiple of Lag throughout: r[k] is Y(i - Lag + k)
        if constexpr (First) {
            // The first-order section takes a turn's outputs after the next
            // turn's sections, in program order: the processor issues the
            // oldest ready operation first, and its work would otherwise
            // become ready together with the next turn's feedback and
            // delay it. Outputs trail the inputs by two turns.
            for (unsigned int t = 0; t < Lag / W; ++t) io.load(in[t], i + t * W);
            turn(q, in, out, frameSeq);
            for (i += Lag; i + Lag <= frames; i += Lag) {
                Tiles held;
                for (unsigned int t = 0; t < Lag / W; ++t) io.load(in[t], i + t * W);
                turn(q, in, held, frameSeq);
                firstOrder(st, out, frameSeq);
                for (unsigned int t = 0; t < Lag / W; ++t) io.store(out[t], i - 2 * Lag + t * W);
                for (unsigned int t = 0; t < Lag / W; ++t)
                    for (int k = 0; k < W; ++k) out[t][k] = held[t][k];
            }
            firstOrder(st, out, frameSeq);
            for (unsigned int t = 0; t < Lag / W; ++t) io.store(out[t], i - 2 * Lag + t * W);
        } else {
            for (; i + Lag <= frames; i += Lag) {
                for (unsigned int t = 0; t < Lag / W; ++t) io.load(in[t], i + t * W);
                turn(q, in, out, frameSeq);
                // Outputs trail the inputs by Lag frames, read a turn ago: in
                // place works.
                for (unsigned int t = 0; t < Lag / W; ++t) io.store(out[t], i - Lag + t * W);
            }
        }
        finish(q, st, io, i, frames);
        st.store(g);
    }

    // Back to two sections of W lanes: section 0 takes the last few inputs,
    // then section 1 catches up on everything section 0 produced ahead. The
    // paired state comes by value: taken by reference, the loop kept a copy
    // of it in memory up to date on every turn.
    template <class IO>
    MIVORA_KERNEL_INLINE static void finish(PairedSections<D, Lag> q, Stages& st, IO& io, unsigned int i,
                       unsigned int frames) noexcept {
        LaneSection<L>&s0 = st.s0, &s1 = st.s1;
        s0.x1 = lowLanes(q.x1), s0.x2 = lowLanes(q.x2), s0.y1 = lowLanes(q.r[Lag - 1]), s0.y2 = lowLanes(q.r[Lag - 2]);
        s1.x1 = highLanes(q.x1), s1.x2 = highLanes(q.x2);
        s1.y1 = highLanes(q.r[Lag - 1]), s1.y2 = highLanes(q.r[Lag - 2]);
        const unsigned int left = frames - i;  // below Lag
        Tiles in;
        for (unsigned int t = 0; t * W < left; ++t) {
            const unsigned int k = left - t * W;
            if (k >= static_cast<unsigned int>(W)) io.load(in[t], i + t * W);
            else io.loadPart(in[t], i + t * W, k);
        }
        L pending[2 * Lag];
        unsigned int m = 0;
        for (; m < Lag; ++m) pending[m] = lowLanes(q.r[m]);
        for (unsigned int k = 0; k < left; ++k) pending[m++] = s0.step(in[k / W][k % W]);
        for (unsigned int k = 0; k < m; ++k) {
            L z = s1.step(pending[k]);
            if constexpr (First) z = st.f.step(z);
            pending[k] = z;
        }
        // Frames i - Lag (a whole tile) to the end.
        const unsigned int at = i - Lag;
        for (unsigned int k = 0; k < m; k += W) {
            L tile[W] = {};
            const unsigned int n = m - k < static_cast<unsigned int>(W) ? m - k : W;
            for (unsigned int j = 0; j < n; ++j) tile[j] = pending[k + j];
            if (n == static_cast<unsigned int>(W)) io.store(tile, at + k);
            else io.storePart(tile, at + k, n);
        }
    }
};

}  // namespace
}  // namespace Mivora::detail

#endif
