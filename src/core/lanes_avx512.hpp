// Eight channel lanes in one 512-bit register, for x86-64 with AVX-512F.
// Interface: lanes_portable.hpp. Only the AVX-512 build of the channel
// kernels includes this.
#ifndef MIVORA_LANES_AVX512_HPP
#define MIVORA_LANES_AVX512_HPP

#if !defined(__AVX512F__)
#error "lanes_avx512.hpp needs a translation unit compiled for AVX-512F"
#endif

#include <immintrin.h>

#include "section_kernels.hpp"  // MIVORA_KERNEL_INLINE

#include "lanes_avx.hpp"

namespace Mivora::detail {
namespace {  // internal linkage: see section_kernels.hpp

// Conversions and shuffles in their zero-masked forms, all lanes selected:
// the same instructions, but GCC 12's plain forms warn about an undefined
// pass-through operand of their own.
inline __m512d widen8(__m256 f) noexcept { return _mm512_maskz_cvtps_pd(0xFF, f); }
inline __m256 narrow8(__m512d d) noexcept { return _mm512_maskz_cvtpd_ps(0xFF, d); }
inline __m512d unpackLo8(__m512d a, __m512d b) noexcept { return _mm512_maskz_unpacklo_pd(0xFF, a, b); }
inline __m512d unpackHi8(__m512d a, __m512d b) noexcept { return _mm512_maskz_unpackhi_pd(0xFF, a, b); }
template <int imm>
inline __m512d shuffle128(__m512d a, __m512d b) noexcept { return _mm512_maskz_shuffle_f64x2(0xFF, a, b, imm); }
inline __m512d halves(__m256d lo, __m256d hi) noexcept {
    return _mm512_maskz_insertf64x4(0xFF, _mm512_castpd256_pd512(lo), hi, 1);
}
inline __m256d lowHalf(__m512d x) noexcept { return _mm512_maskz_extractf64x4_pd(0xF, x, 0); }
inline __m256d highHalf(__m512d x) noexcept { return _mm512_maskz_extractf64x4_pd(0xF, x, 1); }

// Rows of eight lanes to columns: lane l of cols[i] is rows[l][at + i]. Four
// columns at a time: rows paired in registers (a c), (b d), (e g), (f h),
// their halves holding four values each, then interleaved.
template <int N>
MIVORA_KERNEL_INLINE void columns8(const double* const* rows, int at, __m512d* cols) noexcept {
    if constexpr (N > 4) {
        columns8<4>(rows, at, cols);
        columns8<N - 4>(rows, at + 4, cols + 4);
    } else {
        const auto pair = [at, rows](int a, int b) {
            return halves(firstOf4<N>(rows[a] + at), firstOf4<N>(rows[b] + at));
        };
        const __m512d ac = pair(0, 2), bd = pair(1, 3), eg = pair(4, 6), fh = pair(5, 7);
        const __m512d t0 = unpackLo8(ac, bd), t1 = unpackHi8(ac, bd);  // a0 b0 a2 b2 c0 d0 c2 d2, a1 b1 a3 b3 ...
        const __m512d t2 = unpackLo8(eg, fh), t3 = unpackHi8(eg, fh);  // e0 f0 e2 f2 g0 h0 g2 h2, e1 f1 e3 f3 ...
        const __m512d c[4] = {shuffle128<0x88>(t0, t2), shuffle128<0x88>(t1, t3), shuffle128<0xDD>(t0, t2),
                              shuffle128<0xDD>(t1, t3)};
        for (int i = 0; i < N; ++i) cols[i] = c[i];
    }
}

// The reverse, for N = 2 or 4 columns: rows[l][i] = lane l of cols[i].
template <int N>
MIVORA_KERNEL_INLINE void rows8(double* const* rows, const __m512d* cols) noexcept {
    static_assert(N == 2 || N == 4, "two or four columns");
    const __m512d c2 = N == 4 ? cols[2] : _mm512_setzero_pd(), c3 = N == 4 ? cols[3] : _mm512_setzero_pd();
    const __m512i lo = _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11), hi = _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15);
    const __m512d t0 = _mm512_permutex2var_pd(cols[0], lo, c2), t1 = _mm512_permutex2var_pd(cols[1], lo, c3);
    const __m512d t2 = _mm512_permutex2var_pd(cols[0], hi, c2), t3 = _mm512_permutex2var_pd(cols[1], hi, c3);
    // t0: a0 b0 a2 b2 c0 d0 c2 d2, t1: a1 b1 a3 b3 c1 d1 c3 d3; t2, t3: the same of e f g h.
    const auto put = [rows](int a, int b, __m512d x) {  // row a in the low half, row b in the high one
        const __m256d low = lowHalf(x), high = highHalf(x);
        if constexpr (N == 4) {
            _mm256_storeu_pd(rows[a], low);
            _mm256_storeu_pd(rows[b], high);
        } else {
            _mm_storeu_pd(rows[a], _mm256_castpd256_pd128(low));
            _mm_storeu_pd(rows[b], _mm256_castpd256_pd128(high));
        }
    };
    put(0, 2, unpackLo8(t0, t1));
    put(1, 3, unpackHi8(t0, t1));
    put(4, 6, unpackLo8(t2, t3));
    put(5, 7, unpackHi8(t2, t3));
}

struct Zmm8 {
    static constexpr int width = 8;
    using Mask = __mmask8;
    __m512d v;

    static Mask mask(const bool* run) noexcept {
        unsigned m = 0;
        for (int l = 0; l < 8; ++l) m |= (run[l] ? 1u : 0u) << l;
        return static_cast<Mask>(m);
    }
    static Zmm8 select(Mask m, Zmm8 a, Zmm8 b) noexcept { return {_mm512_mask_blend_pd(m, b.v, a.v)}; }
    template <class F>
    static Zmm8 generate(F f) noexcept { return {_mm512_set_pd(f(7), f(6), f(5), f(4), f(3), f(2), f(1), f(0))}; }
    void store(double* p) const noexcept { _mm512_storeu_pd(p, v); }
    template <int N>
    MIVORA_KERNEL_INLINE static void loadColumns(const double* const* rows, Zmm8 (&cols)[N]) noexcept {
        __m512d c[N];
        columns8<N>(rows, 0, c);
        for (int i = 0; i < N; ++i) cols[i].v = c[i];
    }
    template <int N>
    MIVORA_KERNEL_INLINE static void storeColumns(double* const* rows, const Zmm8 (&cols)[N]) noexcept {
        __m512d c[N];
        for (int i = 0; i < N; ++i) c[i] = cols[i].v;
        rows8<N>(rows, c);
    }

    static Zmm8 loadFloats(const float* p) noexcept { return {widen8(_mm256_loadu_ps(p))}; }
    // The first `active` of the float lanes: masked loads and stores touch
    // no memory outside them. (AVX-512 masks, not AVX's masked moves, whose
    // stores are slow on some CPUs.)
    static __mmask16 firstLanes(int active) noexcept { return static_cast<__mmask16>((1u << active) - 1u); }
    static Zmm8 loadFloats(const float* p, int active) noexcept {
        const __m512 f = _mm512_maskz_loadu_ps(firstLanes(active), p);
        return {widen8(_mm256_castpd_ps(_mm512_maskz_extractf64x4_pd(0xFF, _mm512_castps_pd(f), 0)))};
    }
    static void storeFloats(float* p, Zmm8 x) noexcept { _mm256_storeu_ps(p, narrow8(x.v)); }
    static void storeFloats(float* p, Zmm8 x, int active) noexcept {
        _mm512_mask_storeu_ps(p, firstLanes(active), _mm512_castps256_ps512(narrow8(x.v)));
    }
    MIVORA_KERNEL_INLINE static void loadTile(const float* const* rows, Zmm8 (&frames)[8]) noexcept {
        __m256 r[8];
        for (int l = 0; l < 8; ++l) r[l] = _mm256_loadu_ps(rows[l]);
        transpose8(r);
        for (int f = 0; f < 8; ++f) frames[f].v = widen8(r[f]);
    }
    MIVORA_KERNEL_INLINE static void storeTile(float* const* rows, const Zmm8 (&frames)[8]) noexcept {
        __m256 r[8];
        for (int f = 0; f < 8; ++f) r[f] = narrow8(frames[f].v);
        transpose8(r);
        for (int l = 0; l < 8; ++l) _mm256_storeu_ps(rows[l], r[l]);
    }
};

// The rounded product as a fused multiply-add of -0.0, as in lanes_avx.hpp.
inline Zmm8 mul(Zmm8 a, Zmm8 b) noexcept { return {_mm512_fmadd_pd(a.v, b.v, _mm512_set1_pd(-0.0))}; }
inline Zmm8 mulAdd(Zmm8 a, Zmm8 b, Zmm8 c) noexcept { return {_mm512_fmadd_pd(a.v, b.v, c.v)}; }

// Four lanes beside four more, for the paired sections of four channels
// (channel_cascade.hpp): lo in lanes 0-3, hi in lanes 4-7.
inline Zmm8 joinLanes(Ymm4 lo, Ymm4 hi) noexcept { return {halves(lo.v, hi.v)}; }
inline Ymm4 lowLanes(Zmm8 x) noexcept { return {lowHalf(x.v)}; }
inline Ymm4 highLanes(Zmm8 x) noexcept { return {highHalf(x.v)}; }
template <>
struct DoubleOf<Ymm4> {
    using type = Zmm8;
};

}  // namespace
}  // namespace Mivora::detail

#endif
