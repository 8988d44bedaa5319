// Channel lanes for x86-64 with AVX and FMA3: two lanes in a 128-bit
// register, four in a 256-bit one, and eight in two (the wide group of the
// AVX2 build).
// Interface: lanes_portable.hpp. Only translation units built for FMA3 (and
// AVX2) include this.
#ifndef MIVORA_LANES_AVX_HPP
#define MIVORA_LANES_AVX_HPP

#if !defined(__FMA__) || !defined(__AVX__)
#error "lanes_avx.hpp needs a translation unit compiled for AVX and FMA3"
#endif

#include <immintrin.h>

#include "channel_cascade.hpp"  // DoubleOf
#include "section_kernels.hpp"  // MIVORA_KERNEL_INLINE

namespace Mivora::detail {
namespace {  // internal linkage: see section_kernels.hpp

// The rounded product as a fused multiply-add of -0.0: the same bits in
// every case (adding -0.0 changes no value, zeros' signs included), without
// the packed multiply's slowdown on subnormal operands (lane_pair_x86.hpp).
inline __m256d productOf(__m256d a, __m256d b) noexcept { return _mm256_fmadd_pd(a, b, _mm256_set1_pd(-0.0)); }

// Lane l of the result is all ones when l < active (active in [0, 8]).
inline __m256i firstLanes8(int active) noexcept {
    return _mm256_cmpgt_epi32(_mm256_set1_epi32(active), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
}
inline __m128i firstLanes4(int active) noexcept {
    return _mm_cmpgt_epi32(_mm_set1_epi32(active), _mm_setr_epi32(0, 1, 2, 3));
}

// Rows of eight floats transposed in place: r[i][j] becomes r[j][i].
inline void transpose8(__m256 (&r)[8]) noexcept {
    const __m256 t0 = _mm256_unpacklo_ps(r[0], r[1]), t1 = _mm256_unpackhi_ps(r[0], r[1]);
    const __m256 t2 = _mm256_unpacklo_ps(r[2], r[3]), t3 = _mm256_unpackhi_ps(r[2], r[3]);
    const __m256 t4 = _mm256_unpacklo_ps(r[4], r[5]), t5 = _mm256_unpackhi_ps(r[4], r[5]);
    const __m256 t6 = _mm256_unpacklo_ps(r[6], r[7]), t7 = _mm256_unpackhi_ps(r[6], r[7]);
    const __m256 u0 = _mm256_shuffle_ps(t0, t2, 0x44), u1 = _mm256_shuffle_ps(t0, t2, 0xEE);
    const __m256 u2 = _mm256_shuffle_ps(t1, t3, 0x44), u3 = _mm256_shuffle_ps(t1, t3, 0xEE);
    const __m256 u4 = _mm256_shuffle_ps(t4, t6, 0x44), u5 = _mm256_shuffle_ps(t4, t6, 0xEE);
    const __m256 u6 = _mm256_shuffle_ps(t5, t7, 0x44), u7 = _mm256_shuffle_ps(t5, t7, 0xEE);
    r[0] = _mm256_permute2f128_ps(u0, u4, 0x20);
    r[1] = _mm256_permute2f128_ps(u1, u5, 0x20);
    r[2] = _mm256_permute2f128_ps(u2, u6, 0x20);
    r[3] = _mm256_permute2f128_ps(u3, u7, 0x20);
    r[4] = _mm256_permute2f128_ps(u0, u4, 0x31);
    r[5] = _mm256_permute2f128_ps(u1, u5, 0x31);
    r[6] = _mm256_permute2f128_ps(u2, u6, 0x31);
    r[7] = _mm256_permute2f128_ps(u3, u7, 0x31);
}

// The first N (1 to 4) of the four doubles at p, reading nothing beyond
// them; the lanes above are zero.
template <int N>
inline __m256d firstOf4(const double* p) noexcept {
    static_assert(N >= 1 && N <= 4, "one to four doubles");
    if constexpr (N == 4) return _mm256_loadu_pd(p);
    else if constexpr (N == 3) return _mm256_maskload_pd(p, _mm256_setr_epi64x(-1, -1, -1, 0));
    else if constexpr (N == 2) return _mm256_zextpd128_pd256(_mm_loadu_pd(p));
    else return _mm256_zextpd128_pd256(_mm_load_sd(p));
}

// Rows of four lanes to columns: lane l of cols[i] is rows[l][at + i]. Four
// columns at a time, each four a 4 x 4 transposition.
template <int N>
MIVORA_KERNEL_INLINE void columns4(const double* const* rows, int at, __m256d* cols) noexcept {
    if constexpr (N > 4) {
        columns4<4>(rows, at, cols);
        columns4<N - 4>(rows, at + 4, cols + 4);
    } else {
        const __m256d r0 = firstOf4<N>(rows[0] + at), r1 = firstOf4<N>(rows[1] + at);
        const __m256d r2 = firstOf4<N>(rows[2] + at), r3 = firstOf4<N>(rows[3] + at);
        const __m256d t0 = _mm256_unpacklo_pd(r0, r1), t1 = _mm256_unpackhi_pd(r0, r1);  // a0 b0 a2 b2, a1 b1 a3 b3
        const __m256d t2 = _mm256_unpacklo_pd(r2, r3), t3 = _mm256_unpackhi_pd(r2, r3);  // c0 d0 c2 d2, c1 d1 c3 d3
        const __m256d c[4] = {_mm256_permute2f128_pd(t0, t2, 0x20), _mm256_permute2f128_pd(t1, t3, 0x20),
                              _mm256_permute2f128_pd(t0, t2, 0x31), _mm256_permute2f128_pd(t1, t3, 0x31)};
        for (int i = 0; i < N; ++i) cols[i] = c[i];
    }
}

// The reverse, for N = 2 or 4 columns: rows[l][i] = lane l of cols[i].
template <int N>
MIVORA_KERNEL_INLINE void rows4(double* const* rows, const __m256d* cols) noexcept {
    static_assert(N == 2 || N == 4, "two or four columns");
    const __m256d c2 = N == 4 ? cols[2] : _mm256_setzero_pd(), c3 = N == 4 ? cols[3] : _mm256_setzero_pd();
    const __m256d t0 = _mm256_unpacklo_pd(cols[0], cols[1]), t1 = _mm256_unpackhi_pd(cols[0], cols[1]);  // a0 a1 c0 c1, b0 b1 d0 d1
    if constexpr (N == 4) {
        const __m256d t2 = _mm256_unpacklo_pd(c2, c3), t3 = _mm256_unpackhi_pd(c2, c3);  // a2 a3 c2 c3, b2 b3 d2 d3
        _mm256_storeu_pd(rows[0], _mm256_permute2f128_pd(t0, t2, 0x20));
        _mm256_storeu_pd(rows[1], _mm256_permute2f128_pd(t1, t3, 0x20));
        _mm256_storeu_pd(rows[2], _mm256_permute2f128_pd(t0, t2, 0x31));
        _mm256_storeu_pd(rows[3], _mm256_permute2f128_pd(t1, t3, 0x31));
    } else {
        _mm_storeu_pd(rows[0], _mm256_castpd256_pd128(t0));
        _mm_storeu_pd(rows[1], _mm256_castpd256_pd128(t1));
        _mm_storeu_pd(rows[2], _mm256_extractf128_pd(t0, 1));
        _mm_storeu_pd(rows[3], _mm256_extractf128_pd(t1, 1));
    }
}

struct Xmm2 {
    static constexpr int width = 2;
    using Mask = __m128d;
    __m128d v;

    static Mask mask(const bool* run) noexcept {
        return _mm_castsi128_pd(_mm_set_epi64x(-static_cast<long long>(run[1]), -static_cast<long long>(run[0])));
    }
    static Xmm2 select(Mask m, Xmm2 a, Xmm2 b) noexcept { return {_mm_blendv_pd(b.v, a.v, m)}; }
    template <class F>
    static Xmm2 generate(F f) noexcept { return {_mm_set_pd(f(1), f(0))}; }
    void store(double* p) const noexcept { _mm_storeu_pd(p, v); }
    template <int N>
    MIVORA_KERNEL_INLINE static void loadColumns(const double* const* rows, Xmm2 (&cols)[N]) noexcept {
        for (int i = 0; i + 1 < N; i += 2) {
            const __m128d a = _mm_loadu_pd(rows[0] + i), b = _mm_loadu_pd(rows[1] + i);
            cols[i].v = _mm_unpacklo_pd(a, b);
            cols[i + 1].v = _mm_unpackhi_pd(a, b);
        }
        if constexpr (N % 2 == 1) cols[N - 1].v = _mm_loadh_pd(_mm_load_sd(rows[0] + N - 1), rows[1] + N - 1);
    }
    template <int N>
    MIVORA_KERNEL_INLINE static void storeColumns(double* const* rows, const Xmm2 (&cols)[N]) noexcept {
        static_assert(N % 2 == 0, "pairs of columns");
        for (int i = 0; i < N; i += 2) {
            _mm_storeu_pd(rows[0] + i, _mm_unpacklo_pd(cols[i].v, cols[i + 1].v));
            _mm_storeu_pd(rows[1] + i, _mm_unpackhi_pd(cols[i].v, cols[i + 1].v));
        }
    }

    // Two floats in one 64-bit load (aliasing-safe), or one (active is 1).
    static Xmm2 loadFloats(const float* p) noexcept {
        return {_mm_cvtps_pd(_mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p))))};
    }
    static Xmm2 loadFloats(const float* p, int) noexcept { return {_mm_cvtps_pd(_mm_load_ss(p))}; }
    static void storeFloats(float* p, Xmm2 x) noexcept {
        _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_castps_si128(_mm_cvtpd_ps(x.v)));
    }
    static void storeFloats(float* p, Xmm2 x, int) noexcept { _mm_store_ss(p, _mm_cvtpd_ps(x.v)); }
    MIVORA_KERNEL_INLINE static void loadTile(const float* const* rows, Xmm2 (&frames)[2]) noexcept {
        // (a0 b0 a1 b1): frame 0 in the low half, frame 1 in the high one.
        const __m128 t = _mm_unpacklo_ps(loadFloatsRaw(rows[0]), loadFloatsRaw(rows[1]));
        frames[0].v = _mm_cvtps_pd(t);
        frames[1].v = _mm_cvtps_pd(_mm_movehl_ps(t, t));
    }
    MIVORA_KERNEL_INLINE static void storeTile(float* const* rows, const Xmm2 (&frames)[2]) noexcept {
        // (a0 a1 b0 b1): row 0 in the low half, row 1 in the high one.
        const __m128 t = _mm_unpacklo_ps(_mm_cvtpd_ps(frames[0].v), _mm_cvtpd_ps(frames[1].v));
        _mm_storel_pi(reinterpret_cast<__m64*>(rows[0]), t);
        _mm_storeh_pi(reinterpret_cast<__m64*>(rows[1]), t);
    }

private:
    static __m128 loadFloatsRaw(const float* p) noexcept {
        return _mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)));
    }
};

inline Xmm2 mul(Xmm2 a, Xmm2 b) noexcept { return {_mm_fmadd_pd(a.v, b.v, _mm_set1_pd(-0.0))}; }
inline Xmm2 mulAdd(Xmm2 a, Xmm2 b, Xmm2 c) noexcept { return {_mm_fmadd_pd(a.v, b.v, c.v)}; }

struct Ymm4 {
    static constexpr int width = 4;
    using Mask = __m256d;
    __m256d v;

    static Mask mask(const bool* run) noexcept {
        return _mm256_castsi256_pd(_mm256_setr_epi64x(-static_cast<long long>(run[0]), -static_cast<long long>(run[1]),
                                                      -static_cast<long long>(run[2]), -static_cast<long long>(run[3])));
    }
    static Ymm4 select(Mask m, Ymm4 a, Ymm4 b) noexcept { return {_mm256_blendv_pd(b.v, a.v, m)}; }
    template <class F>
    static Ymm4 generate(F f) noexcept { return {_mm256_set_pd(f(3), f(2), f(1), f(0))}; }
    void store(double* p) const noexcept { _mm256_storeu_pd(p, v); }
    template <int N>
    MIVORA_KERNEL_INLINE static void loadColumns(const double* const* rows, Ymm4 (&cols)[N]) noexcept {
        __m256d c[N];
        columns4<N>(rows, 0, c);
        for (int i = 0; i < N; ++i) cols[i].v = c[i];
    }
    template <int N>
    MIVORA_KERNEL_INLINE static void storeColumns(double* const* rows, const Ymm4 (&cols)[N]) noexcept {
        __m256d c[N];
        for (int i = 0; i < N; ++i) c[i] = cols[i].v;
        rows4<N>(rows, c);
    }

    static Ymm4 loadFloats(const float* p) noexcept { return {_mm256_cvtps_pd(_mm_loadu_ps(p))}; }
    static Ymm4 loadFloats(const float* p, int active) noexcept {
        return {_mm256_cvtps_pd(_mm_maskload_ps(p, firstLanes4(active)))};
    }
    static void storeFloats(float* p, Ymm4 x) noexcept { _mm_storeu_ps(p, _mm256_cvtpd_ps(x.v)); }
    static void storeFloats(float* p, Ymm4 x, int active) noexcept {
        _mm_maskstore_ps(p, firstLanes4(active), _mm256_cvtpd_ps(x.v));
    }
    MIVORA_KERNEL_INLINE static void loadTile(const float* const* rows, Ymm4 (&frames)[4]) noexcept {
        __m128 r0 = _mm_loadu_ps(rows[0]), r1 = _mm_loadu_ps(rows[1]);
        __m128 r2 = _mm_loadu_ps(rows[2]), r3 = _mm_loadu_ps(rows[3]);
        _MM_TRANSPOSE4_PS(r0, r1, r2, r3);
        frames[0].v = _mm256_cvtps_pd(r0);
        frames[1].v = _mm256_cvtps_pd(r1);
        frames[2].v = _mm256_cvtps_pd(r2);
        frames[3].v = _mm256_cvtps_pd(r3);
    }
    MIVORA_KERNEL_INLINE static void storeTile(float* const* rows, const Ymm4 (&frames)[4]) noexcept {
        __m128 r0 = _mm256_cvtpd_ps(frames[0].v), r1 = _mm256_cvtpd_ps(frames[1].v);
        __m128 r2 = _mm256_cvtpd_ps(frames[2].v), r3 = _mm256_cvtpd_ps(frames[3].v);
        _MM_TRANSPOSE4_PS(r0, r1, r2, r3);
        _mm_storeu_ps(rows[0], r0);
        _mm_storeu_ps(rows[1], r1);
        _mm_storeu_ps(rows[2], r2);
        _mm_storeu_ps(rows[3], r3);
    }
};

inline Ymm4 mul(Ymm4 a, Ymm4 b) noexcept { return {productOf(a.v, b.v)}; }
inline Ymm4 mulAdd(Ymm4 a, Ymm4 b, Ymm4 c) noexcept { return {_mm256_fmadd_pd(a.v, b.v, c.v)}; }

// Two lanes beside two more, for the paired sections of two channels
// (channel_cascade.hpp): lo in lanes 0-1, hi in lanes 2-3.
inline Ymm4 joinLanes(Xmm2 lo, Xmm2 hi) noexcept {
    return {_mm256_insertf128_pd(_mm256_castpd128_pd256(lo.v), hi.v, 1)};
}
inline Xmm2 lowLanes(Ymm4 x) noexcept { return {_mm256_castpd256_pd128(x.v)}; }
inline Xmm2 highLanes(Ymm4 x) noexcept { return {_mm256_extractf128_pd(x.v, 1)}; }
template <>
struct DoubleOf<Xmm2> {
    using type = Ymm4;
};

// Eight lanes in two registers: lanes 0-3 in lo, 4-7 in hi.
struct Ymm8 {
    static constexpr int width = 8;
    struct Mask {
        __m256d lo, hi;
    };
    __m256d lo, hi;

    static Mask mask(const bool* run) noexcept { return {Ymm4::mask(run), Ymm4::mask(run + 4)}; }
    static Ymm8 select(const Mask& m, Ymm8 a, Ymm8 b) noexcept {
        return {_mm256_blendv_pd(b.lo, a.lo, m.lo), _mm256_blendv_pd(b.hi, a.hi, m.hi)};
    }
    template <class F>
    static Ymm8 generate(F f) noexcept {
        return {Ymm4::generate(f).v, Ymm4::generate([&f](int l) { return f(l + 4); }).v};
    }
    void store(double* p) const noexcept {
        _mm256_storeu_pd(p, lo);
        _mm256_storeu_pd(p + 4, hi);
    }
    template <int N>
    MIVORA_KERNEL_INLINE static void loadColumns(const double* const* rows, Ymm8 (&cols)[N]) noexcept {
        __m256d lo[N], hi[N];
        columns4<N>(rows, 0, lo);
        columns4<N>(rows + 4, 0, hi);
        for (int i = 0; i < N; ++i) cols[i] = {lo[i], hi[i]};
    }
    template <int N>
    MIVORA_KERNEL_INLINE static void storeColumns(double* const* rows, const Ymm8 (&cols)[N]) noexcept {
        __m256d lo[N], hi[N];
        for (int i = 0; i < N; ++i) lo[i] = cols[i].lo, hi[i] = cols[i].hi;
        rows4<N>(rows, lo);
        rows4<N>(rows + 4, hi);
    }

    static Ymm8 widen(__m256 f) noexcept {
        return {_mm256_cvtps_pd(_mm256_castps256_ps128(f)), _mm256_cvtps_pd(_mm256_extractf128_ps(f, 1))};
    }
    static __m256 narrow(Ymm8 x) noexcept {
        return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm256_cvtpd_ps(x.lo)), _mm256_cvtpd_ps(x.hi), 1);
    }
    static Ymm8 loadFloats(const float* p) noexcept { return widen(_mm256_loadu_ps(p)); }
    static Ymm8 loadFloats(const float* p, int active) noexcept {
        return widen(_mm256_maskload_ps(p, firstLanes8(active)));
    }
    static void storeFloats(float* p, Ymm8 x) noexcept { _mm256_storeu_ps(p, narrow(x)); }
    static void storeFloats(float* p, Ymm8 x, int active) noexcept {
        _mm256_maskstore_ps(p, firstLanes8(active), narrow(x));
    }
    MIVORA_KERNEL_INLINE static void loadTile(const float* const* rows, Ymm8 (&frames)[8]) noexcept {
        __m256 r[8];
        for (int l = 0; l < 8; ++l) r[l] = _mm256_loadu_ps(rows[l]);
        transpose8(r);
        for (int f = 0; f < 8; ++f) frames[f] = widen(r[f]);
    }
    MIVORA_KERNEL_INLINE static void storeTile(float* const* rows, const Ymm8 (&frames)[8]) noexcept {
        __m256 r[8];
        for (int f = 0; f < 8; ++f) r[f] = narrow(frames[f]);
        transpose8(r);
        for (int l = 0; l < 8; ++l) _mm256_storeu_ps(rows[l], r[l]);
    }
};

inline Ymm8 mul(Ymm8 a, Ymm8 b) noexcept { return {productOf(a.lo, b.lo), productOf(a.hi, b.hi)}; }
inline Ymm8 mulAdd(Ymm8 a, Ymm8 b, Ymm8 c) noexcept {
    return {_mm256_fmadd_pd(a.lo, b.lo, c.lo), _mm256_fmadd_pd(a.hi, b.hi, c.hi)};
}

}  // namespace
}  // namespace Mivora::detail

#endif
