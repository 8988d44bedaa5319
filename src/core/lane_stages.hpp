// The stages of a group of channels, one channel per lane of a lane type L
// (lanes_*.hpp), with their coefficients and state in registers: loaded from
// the channels' own storage, stepped sample after sample with the very
// expressions of the single-channel kernels (section_kernels.hpp), and
// stored back.
#ifndef MIVORA_LANE_STAGES_HPP
#define MIVORA_LANE_STAGES_HPP

#include <type_traits>
#include <utility>

#include "channel_paths.hpp"
#include "kernel_paths.hpp"
#include "section_kernels.hpp"

namespace Mivora::detail {
namespace {  // internal linkage: see section_kernels.hpp

// The channels of one group: lane l < active holds views[l]; the lanes above
// hold zeros and are never written back.
template <int W>
struct LaneGroup {
    const ChannelView* views;
    int active;
};

// Which lanes of a group run a stage.
template <int W>
struct LaneRuns {
    bool run[W];
};

// N consecutive values of each lane's channel (from: a view to the first of
// them), as N lane vectors; zeros in the lanes that do not run. The lane
// type transposes the channels' rows of values into lane vectors in
// registers: far cheaper per call than a value at a time.
// AllRun: every lane runs (the group is full and unmasked), and no lane is
// tested.
template <class L, bool AllRun, int N, class From>
MIVORA_KERNEL_INLINE void laneValues(const LaneGroup<L::width>& g, const LaneRuns<L::width>& r, From from,
                                     L (&out)[N]) noexcept {
    static constexpr double zeros[N] = {};
    const double* rows[L::width];
    for (int l = 0; l < L::width; ++l) rows[l] = AllRun || r.run[l] ? from(g.views[l]) : zeros;
    L::loadColumns(rows, out);
}

// The reverse: N lane vectors back to N consecutive values of each running
// lane's channel (to: a view to the first of them); the other lanes' values
// go to a scratch row.
template <class L, bool AllRun, int N, class To>
MIVORA_KERNEL_INLINE void putLaneValues(const LaneGroup<L::width>& g, const LaneRuns<L::width>& r,
                                        const L (&in)[N], To to) noexcept {
    double scratch[N] = {};  // written, never read
    double* rows[L::width];
    for (int l = 0; l < L::width; ++l) rows[l] = AllRun || r.run[l] ? to(g.views[l]) : scratch;
    L::storeColumns(rows, in);
}

template <class L>
struct LaneSection {
    SectionCoefs<L> c;
    L x1, x2, y1, y2;

    template <bool AllRun>
    MIVORA_KERNEL_INLINE void load(const LaneGroup<L::width>& g, const LaneRuns<L::width>& r, int k) noexcept {
        L coef[5], state[4];
        laneValues<L, AllRun>(g, r, [=](const ChannelView& v) { return v.record + ChannelView::coefAt + 5 * k; }, coef);
        laneValues<L, AllRun>(g, r, [=](const ChannelView& v) { return v.record + ChannelView::delayAt + 4 * k; }, state);
        c = {coef[0], coef[1], coef[2], coef[3], coef[4]};
        x1 = state[0], x2 = state[1], y1 = state[2], y2 = state[3];
    }
    template <bool AllRun>
    MIVORA_KERNEL_INLINE void store(const LaneGroup<L::width>& g, const LaneRuns<L::width>& r, int k) const noexcept {
        const L state[4] = {x1, x2, y1, y2};
        putLaneValues<L, AllRun>(g, r, state, [=](const ChannelView& v) { return v.record + ChannelView::delayAt + 4 * k; });
    }
    MIVORA_KERNEL_INLINE L step(L x) noexcept {
        const L y = sectionOut(c, x, x1, x2, y1, y2);
        x2 = x1, x1 = x;
        y2 = y1, y1 = y;
        return y;
    }
};

template <class L>
struct LaneFirstOrder {
    FirstOrderCoefs<L> c;
    L x1, y1;

    template <bool AllRun>
    MIVORA_KERNEL_INLINE void load(const LaneGroup<L::width>& g, const LaneRuns<L::width>& r) noexcept {
        L coef[3], state[2];
        laneValues<L, AllRun>(g, r, [](const ChannelView& v) { return v.record + ChannelView::coef1stAt; }, coef);
        laneValues<L, AllRun>(g, r, [](const ChannelView& v) { return v.record + ChannelView::delay1stAt; }, state);
        c = {coef[0], coef[1], coef[2]};
        x1 = state[0], y1 = state[1];
    }
    template <bool AllRun>
    MIVORA_KERNEL_INLINE void store(const LaneGroup<L::width>& g, const LaneRuns<L::width>& r) const noexcept {
        const L state[2] = {x1, y1};
        putLaneValues<L, AllRun>(g, r, state, [](const ChannelView& v) { return v.record + ChannelView::delay1stAt; });
    }
    MIVORA_KERNEL_INLINE L step(L x) noexcept {
        const L y = firstOrderOut(c, x, x1, y1);
        x1 = x, y1 = y;
        return y;
    }
};

// A member a group's stage set does without: it takes no room, so copying
// the stages copies only what runs.
struct Absent {};
template <bool Present, class T>
using MemberIf = std::conditional_t<Present, T, Absent>;

// The stages a group runs, in registers for the whole block. Masked: some
// lane lacks one of them.
// (Its layout is of no consequence: the object never leaves registers, and
// C++17 gives absent members a byte each, whatever the order.)
template <class L, int Sections, bool First, bool Masked, bool Full>
struct LaneStages {  // NOLINT(clang-analyzer-optin.performance.Padding)
    static constexpr int W = L::width;
    static constexpr bool AllRun = Full && !Masked;
    struct Mask {  // (a vector type as a template argument would lose its attributes)
        typename L::Mask m;
    };
    MemberIf<(Sections >= 1), LaneSection<L>> s0;
    MemberIf<(Sections >= 2), LaneSection<L>> s1;
    MemberIf<First, LaneFirstOrder<L>> f;
    MemberIf<(Masked && Sections >= 1), Mask> m0;
    MemberIf<(Masked && Sections >= 2), Mask> m1;
    MemberIf<(Masked && First), Mask> mf;

    // (Unmasked, every channel of the group runs every stage.)
    static LaneRuns<W> runsOfSection(const LaneGroup<W>& g, int k) noexcept {
        LaneRuns<W> r{};
        if constexpr (!AllRun)
            for (int l = 0; l < W; ++l) r.run[l] = l < g.active && (!Masked || g.views[l].sections() > k);
        return r;
    }
    static LaneRuns<W> runsOfFirst(const LaneGroup<W>& g) noexcept {
        LaneRuns<W> r{};
        if constexpr (!AllRun)
            for (int l = 0; l < W; ++l) r.run[l] = l < g.active && (!Masked || g.views[l].first());
        return r;
    }

    // Inline, like every member that touches the stages: the object's
    // address then never leaves runGroup and the compiler keeps each field
    // in a register. (Out of line, the object lived in memory and was copied
    // into registers and back, a fixed cost per block that 64 frames do not
    // amortise.)
    MIVORA_KERNEL_INLINE void load(const LaneGroup<W>& g) noexcept {
        if constexpr (Sections >= 1) {
            const LaneRuns<W> r = runsOfSection(g, 0);
            s0.template load<AllRun>(g, r, 0);
            if constexpr (Masked) m0 = {L::mask(r.run)};
        }
        if constexpr (Sections >= 2) {
            const LaneRuns<W> r = runsOfSection(g, 1);
            s1.template load<AllRun>(g, r, 1);
            if constexpr (Masked) m1 = {L::mask(r.run)};
        }
        if constexpr (First) {
            const LaneRuns<W> r = runsOfFirst(g);
            f.template load<AllRun>(g, r);
            if constexpr (Masked) mf = {L::mask(r.run)};
        }
    }
    MIVORA_KERNEL_INLINE void store(const LaneGroup<W>& g) const noexcept {
        if constexpr (Sections >= 1) s0.template store<AllRun>(g, runsOfSection(g, 0), 0);
        if constexpr (Sections >= 2) s1.template store<AllRun>(g, runsOfSection(g, 1), 1);
        if constexpr (First) f.template store<AllRun>(g, runsOfFirst(g));
    }

    // A stage's result where it runs, its input elsewhere.
    template <class M>
    MIVORA_KERNEL_INLINE static L through(const M& m, const L& y, const L& x) noexcept {
        if constexpr (Masked) return L::select(m.m, y, x);
        else return (void)m, (void)x, y;
    }
    MIVORA_KERNEL_INLINE L step(L x) noexcept {
        if constexpr (Sections >= 1) x = through(m0, s0.step(x), x);
        if constexpr (Sections >= 2) x = through(m1, s1.step(x), x);
        if constexpr (First) x = through(mf, f.step(x), x);
        return x;
    }
    // W frames, stage after stage: each stage still takes its frames in
    // order, so every value is the one step() would give; but the next
    // stage's work on the earlier frames comes after the first stage's on
    // all of them, and the CPU, waiting on fewer feedback results per frame,
    // overlaps the stages' chains better (about 5% with 2 channels at
    // orders 3-5).
    template <int N, int... j>
    MIVORA_KERNEL_INLINE void stepAll(L (&x)[N], std::integer_sequence<int, j...>) noexcept {
        if constexpr (Sections >= 1) ((x[j] = through(m0, s0.step(x[j]), x[j])), ...);
        if constexpr (Sections >= 2) ((x[j] = through(m1, s1.step(x[j]), x[j])), ...);
        if constexpr (First) ((x[j] = through(mf, f.step(x[j]), x[j])), ...);
    }
};

}  // namespace
}  // namespace Mivora::detail

#endif
