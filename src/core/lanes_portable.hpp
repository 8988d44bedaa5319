// W lanes of doubles as a plain array: the channel lanes of the portable
// build (channel_kernels.hpp). Each lane takes exactly the scalar operation.
//
// A lane type L provides, besides mul and mulAdd (found by overload):
//   L::width                  lanes, one channel each
//   L::Mask, mask(run)        which lanes a stage runs in (run: width bools)
//   select(m, a, b)           a in the lanes of m, b elsewhere
//   generate(f)               lanes f(0), f(1), ... (f(l) a double)
//   store(p)                  width doubles
//   loadColumns(rows, cols)   rows[l] (N doubles of lane l) to N lane
//                             vectors: lane l of cols[i] is rows[l][i]
//   storeColumns(rows, cols)  the reverse (N: 2 or 4)
//   loadFloats(p[, active])   width floats widened (exactly); with active,
//                             the first active only, zero above
//   storeFloats(p, v[, active])  narrowed (round to nearest), likewise
//   loadTile(rows, frames)    rows[l][f] (width floats per row) becomes lane
//                             l of frames[f]: planar to frame vectors
//   storeTile(rows, frames)   the reverse
#ifndef MIVORA_LANES_PORTABLE_HPP
#define MIVORA_LANES_PORTABLE_HPP

#include <cmath>

#include "lane_columns.hpp"

namespace Mivora::detail {
namespace {  // internal linkage: see section_kernels.hpp

template <int W>
struct PlainLanes {
    static constexpr int width = W;
    struct Mask {
        bool m[W];
    };
    double v[W];

    static Mask mask(const bool* run) noexcept {
        Mask r{};
        for (int l = 0; l < W; ++l) r.m[l] = run[l];
        return r;
    }
    static PlainLanes select(const Mask& m, const PlainLanes& a, const PlainLanes& b) noexcept {
        PlainLanes r;
        for (int l = 0; l < W; ++l) r.v[l] = m.m[l] ? a.v[l] : b.v[l];
        return r;
    }
    template <class F>
    static PlainLanes generate(F f) noexcept {
        PlainLanes r;
        for (int l = 0; l < W; ++l) r.v[l] = f(l);
        return r;
    }
    void store(double* p) const noexcept {
        for (int l = 0; l < W; ++l) p[l] = v[l];
    }
    template <int N>
    static void loadColumns(const double* const* rows, PlainLanes (&cols)[N]) noexcept {
        columnsOfRows(rows, cols);
    }
    template <int N>
    static void storeColumns(double* const* rows, const PlainLanes (&cols)[N]) noexcept {
        rowsOfColumns(rows, cols);
    }
    static PlainLanes loadFloats(const float* p, int active = W) noexcept {
        PlainLanes r;
        for (int l = 0; l < W; ++l) r.v[l] = l < active ? static_cast<double>(p[l]) : 0.0;
        return r;
    }
    static void storeFloats(float* p, const PlainLanes& x, int active = W) noexcept {
        for (int l = 0; l < active; ++l) p[l] = static_cast<float>(x.v[l]);
    }
    static void loadTile(const float* const* rows, PlainLanes (&frames)[W]) noexcept {
        for (int f = 0; f < W; ++f)
            for (int l = 0; l < W; ++l) frames[f].v[l] = static_cast<double>(rows[l][f]);
    }
    static void storeTile(float* const* rows, const PlainLanes (&frames)[W]) noexcept {
        for (int f = 0; f < W; ++f)
            for (int l = 0; l < W; ++l) rows[l][f] = static_cast<float>(frames[f].v[l]);
    }
};

template <int W>
PlainLanes<W> mul(const PlainLanes<W>& a, const PlainLanes<W>& b) noexcept {
    PlainLanes<W> r;
    for (int l = 0; l < W; ++l) r.v[l] = a.v[l] * b.v[l];
    return r;
}
template <int W>
PlainLanes<W> mulAdd(const PlainLanes<W>& a, const PlainLanes<W>& b, const PlainLanes<W>& c) noexcept {
    PlainLanes<W> r;
    for (int l = 0; l < W; ++l) r.v[l] = std::fma(a.v[l], b.v[l], c.v[l]);
    return r;
}

}  // namespace
}  // namespace Mivora::detail

#endif
