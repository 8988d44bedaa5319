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
#ifndef MIVORA_CHANNEL_KERNELS_HPP
#define MIVORA_CHANNEL_KERNELS_HPP

#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <utility>

#include "kernel_paths.hpp"
#include "section_kernels.hpp"

namespace Mivora::detail {
namespace {  // internal linkage: see section_kernels.hpp

// The channels of one group: lane l < active holds views[l]; the lanes above
// hold zeros and are never written back.
template <int W>
struct LaneGroup {
    const StageView* views;
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
    double scratch[N];  // written, never read
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
        laneValues<L, AllRun>(g, r, [=](const StageView& v) { return v.coef + 5 * k; }, coef);
        laneValues<L, AllRun>(g, r, [=](const StageView& v) { return v.delay + 4 * k; }, state);
        c = {coef[0], coef[1], coef[2], coef[3], coef[4]};
        x1 = state[0], x2 = state[1], y1 = state[2], y2 = state[3];
    }
    template <bool AllRun>
    MIVORA_KERNEL_INLINE void store(const LaneGroup<L::width>& g, const LaneRuns<L::width>& r, int k) const noexcept {
        const L state[4] = {x1, x2, y1, y2};
        putLaneValues<L, AllRun>(g, r, state, [=](const StageView& v) { return v.delay + 4 * k; });
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
        laneValues<L, AllRun>(g, r, [](const StageView& v) { return v.coef1st; }, coef);
        laneValues<L, AllRun>(g, r, [](const StageView& v) { return static_cast<const double*>(v.delay1st); }, state);
        c = {coef[0], coef[1], coef[2]};
        x1 = state[0], y1 = state[1];
    }
    template <bool AllRun>
    MIVORA_KERNEL_INLINE void store(const LaneGroup<L::width>& g, const LaneRuns<L::width>& r) const noexcept {
        const L state[2] = {x1, y1};
        putLaneValues<L, AllRun>(g, r, state, [](const StageView& v) { return v.delay1st; });
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
            for (int l = 0; l < W; ++l) r.run[l] = l < g.active && (!Masked || g.views[l].sections > k);
        return r;
    }
    static LaneRuns<W> runsOfFirst(const LaneGroup<W>& g) noexcept {
        LaneRuns<W> r{};
        if constexpr (!AllRun)
            for (int l = 0; l < W; ++l) r.run[l] = l < g.active && (!Masked || g.views[l].first);
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

// A block through one group: chunks of W frames (a tile of W x W samples),
// then the rest. IO moves the group's samples between the caller's buffer
// and frame vectors (lane l: the group's channel l at one frame).
template <class L, int Sections, bool First, bool Masked, class IO>
void runGroup(const LaneGroup<L::width>& g, IO& io, unsigned int frames) noexcept {
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
void runGroupMaybeMasked(bool masked, const LaneGroup<L::width>& g, IO& io, unsigned int frames) noexcept {
    if (masked) runGroup<L, Sections, First, true>(g, io, frames);
    else runGroup<L, Sections, First, false>(g, io, frames);
}

// The union of the group's stage sets, masked where a channel lacks a stage.
template <class L, class IO>
void runGroupStages(const LaneGroup<L::width>& g, IO& io, unsigned int frames) noexcept {
    int sections = 0;
    bool first = false;
    for (int l = 0; l < g.active; ++l) {
        sections = std::max(sections, g.views[l].sections);
        first = first || g.views[l].first;
    }
    bool masked = false;
    for (int l = 0; l < g.active; ++l) masked = masked || g.views[l].sections != sections || g.views[l].first != first;
    switch (stageSet(sections, first)) {
        case 0: runGroup<L, 0, false, false>(g, io, frames); break;
        case 1: runGroupMaybeMasked<L, 0, true>(masked, g, io, frames); break;
        case 2: runGroupMaybeMasked<L, 1, false>(masked, g, io, frames); break;
        case 3: runGroupMaybeMasked<L, 1, true>(masked, g, io, frames); break;
        case 4: runGroupMaybeMasked<L, 2, false>(masked, g, io, frames); break;
        default: runGroupMaybeMasked<L, 2, true>(masked, g, io, frames); break;
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
// channels, and no lane is tested.
template <class L, bool Full>
struct PlanarIO {
    static constexpr int W = L::width;
    static constexpr bool full = Full;
    const float* const* in;
    float* const* out;
    int active;
    float zeros[W] = {};
    float scratch[W] = {};

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
            if (l < active) std::copy(in[l] + n, in[l] + n + k, tile[l]);
            rows[l] = tile[l];
        }
        L::loadTile(rows, x);
    }
    void storePart(const L (&y)[W], unsigned int n, unsigned int k) const noexcept {
        float tile[W][W];
        float* rows[W];
        for (int l = 0; l < W; ++l) rows[l] = tile[l];
        L::storeTile(rows, y);
        for (int l = 0; l < active; ++l) std::copy(tile[l], tile[l] + k, out[l] + n);
    }
};


// (out is written through the IO object, which the check does not follow.)
template <class L>
void interleavedGroup(const StageView* ch, int firstChannel, int active, int channels, const float* in,
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
void planarGroup(const StageView* ch, int firstChannel, int active, const float* const* in, float* const* out,
                 unsigned int frames) noexcept {
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
template <class Wide, class... Narrower>
struct LaneTypes {
    template <class Group>
    static void forEachGroup(int firstChannel, int channels, Group& group) noexcept {
        for (int c = firstChannel; c < channels;) {
            const int left = channels - c;
            if constexpr (sizeof...(Narrower) > 0) {
                if (left <= LaneTypes<Narrower...>::widest) return LaneTypes<Narrower...>::forEachGroup(c, channels, group);
            }
            const int active = std::min(left, Wide::width);
            group(Wide{}, c, active);
            c += active;
        }
    }
    static constexpr int widest = Wide::width;
};

template <class... Lanes>
void runInterleaved(const StageView* ch, int channels, const float* in, float* out, unsigned int frames) noexcept {
    auto group = [&](auto lanes, int c, int active) {
        interleavedGroup<decltype(lanes)>(ch, c, active, channels, in, out, frames);
    };
    LaneTypes<Lanes...>::forEachGroup(0, channels, group);
}

template <class... Lanes>
void runPlanar(const StageView* ch, int channels, const float* const* in, float* const* out,
               unsigned int frames) noexcept {
    auto group = [&](auto lanes, int c, int active) { planarGroup<decltype(lanes)>(ch, c, active, in, out, frames); };
    LaneTypes<Lanes...>::forEachGroup(0, channels, group);
}

}  // namespace
}  // namespace Mivora::detail

#endif
