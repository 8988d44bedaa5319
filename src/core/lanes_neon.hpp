// Channel lanes for AArch64 Advanced SIMD: two lanes in a 128-bit register,
// four in two. Interface: lanes_portable.hpp. Only the NEON build of the
// channel kernels includes this.
#ifndef MIVORA_LANES_NEON_HPP
#define MIVORA_LANES_NEON_HPP

#if !defined(__aarch64__)
#error "lanes_neon.hpp is for AArch64"
#endif

#include <arm_neon.h>

#include <cstdint>

#include "lane_columns.hpp"

namespace Mivora::detail {
namespace {  // internal linkage: see section_kernels.hpp

inline uint64x2_t laneMask(const bool* run) noexcept {
    const uint64_t m[2] = {run[0] ? ~uint64_t{0} : 0, run[1] ? ~uint64_t{0} : 0};
    return vld1q_u64(m);
}
// Two floats widened (exact) / narrowed (round to nearest, the default mode).
inline float64x2_t widen2(float32x2_t f) noexcept { return vcvt_f64_f32(f); }
inline float32x2_t narrow2(float64x2_t d) noexcept { return vcvt_f32_f64(d); }

struct Neon2 {
    static constexpr int width = 2;
    using Mask = uint64x2_t;
    float64x2_t v;

    static Mask mask(const bool* run) noexcept { return laneMask(run); }
    static Neon2 select(Mask m, Neon2 a, Neon2 b) noexcept { return {vbslq_f64(m, a.v, b.v)}; }
    template <class F>
    static Neon2 generate(F f) noexcept {
        const double t[2] = {f(0), f(1)};
        return {vld1q_f64(t)};
    }
    void store(double* p) const noexcept { vst1q_f64(p, v); }
    template <int N>
    static void loadColumns(const double* const* rows, Neon2 (&cols)[N]) noexcept {
        columnsOfRows(rows, cols);
    }
    template <int N>
    static void storeColumns(double* const* rows, const Neon2 (&cols)[N]) noexcept {
        rowsOfColumns(rows, cols);
    }

    static Neon2 loadFloats(const float* p) noexcept { return {widen2(vld1_f32(p))}; }
    static Neon2 loadFloats(const float* p, int) noexcept { return {widen2(vset_lane_f32(*p, vdup_n_f32(0.0f), 0))}; }
    static void storeFloats(float* p, Neon2 x) noexcept { vst1_f32(p, narrow2(x.v)); }
    static void storeFloats(float* p, Neon2 x, int) noexcept { vst1_lane_f32(p, narrow2(x.v), 0); }
    static void loadTile(const float* const* rows, Neon2 (&frames)[2]) noexcept {
        const float32x2x2_t t = vtrn_f32(vld1_f32(rows[0]), vld1_f32(rows[1]));  // (a0 b0), (a1 b1)
        frames[0].v = widen2(t.val[0]);
        frames[1].v = widen2(t.val[1]);
    }
    static void storeTile(float* const* rows, const Neon2 (&frames)[2]) noexcept {
        const float32x2x2_t t = vtrn_f32(narrow2(frames[0].v), narrow2(frames[1].v));  // (a0 a1), (b0 b1)
        vst1_f32(rows[0], t.val[0]);
        vst1_f32(rows[1], t.val[1]);
    }
};

inline Neon2 mul(Neon2 a, Neon2 b) noexcept { return {vmulq_f64(a.v, b.v)}; }
inline Neon2 mulAdd(Neon2 a, Neon2 b, Neon2 c) noexcept { return {vfmaq_f64(c.v, a.v, b.v)}; }

// Four lanes in two registers: lanes 0-1 in lo, 2-3 in hi.
struct Neon4 {
    static constexpr int width = 4;
    struct Mask {
        uint64x2_t lo, hi;
    };
    float64x2_t lo, hi;

    static Mask mask(const bool* run) noexcept { return {laneMask(run), laneMask(run + 2)}; }
    static Neon4 select(const Mask& m, Neon4 a, Neon4 b) noexcept {
        return {vbslq_f64(m.lo, a.lo, b.lo), vbslq_f64(m.hi, a.hi, b.hi)};
    }
    template <class F>
    static Neon4 generate(F f) noexcept {
        const double t[4] = {f(0), f(1), f(2), f(3)};
        return {vld1q_f64(t), vld1q_f64(t + 2)};
    }
    void store(double* p) const noexcept {
        vst1q_f64(p, lo);
        vst1q_f64(p + 2, hi);
    }
    template <int N>
    static void loadColumns(const double* const* rows, Neon4 (&cols)[N]) noexcept {
        columnsOfRows(rows, cols);
    }
    template <int N>
    static void storeColumns(double* const* rows, const Neon4 (&cols)[N]) noexcept {
        rowsOfColumns(rows, cols);
    }

    static Neon4 loadFloats(const float* p) noexcept {
        const float32x4_t f = vld1q_f32(p);
        return {widen2(vget_low_f32(f)), widen2(vget_high_f32(f))};
    }
    static Neon4 loadFloats(const float* p, int active) noexcept {
        float t[4] = {};
        for (int l = 0; l < active; ++l) t[l] = p[l];
        return loadFloats(t);
    }
    static void storeFloats(float* p, Neon4 x) noexcept { vst1q_f32(p, vcombine_f32(narrow2(x.lo), narrow2(x.hi))); }
    static void storeFloats(float* p, Neon4 x, int active) noexcept {
        float t[4];
        storeFloats(t, x);
        for (int l = 0; l < active; ++l) p[l] = t[l];
    }
    static void loadTile(const float* const* rows, Neon4 (&frames)[4]) noexcept {
        // Rows (a b c d) of four frames each to four frames of four lanes.
        const float32x4x2_t ab = vtrnq_f32(vld1q_f32(rows[0]), vld1q_f32(rows[1]));  // (a0 b0 a2 b2), (a1 b1 a3 b3)
        const float32x4x2_t cd = vtrnq_f32(vld1q_f32(rows[2]), vld1q_f32(rows[3]));  // (c0 d0 c2 d2), (c1 d1 c3 d3)
        for (int j = 0; j < 2; ++j) {
            frames[j].lo = widen2(vget_low_f32(ab.val[j]));
            frames[j].hi = widen2(vget_low_f32(cd.val[j]));
            frames[j + 2].lo = widen2(vget_high_f32(ab.val[j]));
            frames[j + 2].hi = widen2(vget_high_f32(cd.val[j]));
        }
    }
    static void storeTile(float* const* rows, const Neon4 (&frames)[4]) noexcept {
        // The same transposition, frames to rows.
        const float32x4x2_t ab = vtrnq_f32(vcombine_f32(narrow2(frames[0].lo), narrow2(frames[2].lo)),
                                           vcombine_f32(narrow2(frames[1].lo), narrow2(frames[3].lo)));
        const float32x4x2_t cd = vtrnq_f32(vcombine_f32(narrow2(frames[0].hi), narrow2(frames[2].hi)),
                                           vcombine_f32(narrow2(frames[1].hi), narrow2(frames[3].hi)));
        vst1q_f32(rows[0], ab.val[0]);
        vst1q_f32(rows[1], ab.val[1]);
        vst1q_f32(rows[2], cd.val[0]);
        vst1q_f32(rows[3], cd.val[1]);
    }
};

inline Neon4 mul(Neon4 a, Neon4 b) noexcept { return {vmulq_f64(a.lo, b.lo), vmulq_f64(a.hi, b.hi)}; }
inline Neon4 mulAdd(Neon4 a, Neon4 b, Neon4 c) noexcept {
    return {vfmaq_f64(c.lo, a.lo, b.lo), vfmaq_f64(c.hi, a.hi, b.hi)};
}

}  // namespace
}  // namespace Mivora::detail

#endif
