// Eight channel lanes in one 512-bit register, for x86-64 with AVX-512F.
// Interface: lanes_portable.hpp. Only the AVX-512 build of the channel
// kernels includes this.
#ifndef MIVORA_LANES_AVX512_HPP
#define MIVORA_LANES_AVX512_HPP

#if !defined(__AVX512F__)
#error "lanes_avx512.hpp needs a translation unit compiled for AVX-512F"
#endif

#include <immintrin.h>

#include "lanes_avx.hpp"

namespace Mivora::detail {
namespace {  // internal linkage: see section_kernels.hpp

// Conversions in their zero-masked forms, all lanes selected: the same
// instructions, but GCC 12's plain forms warn about an undefined
// pass-through operand of their own.
inline __m512d widen8(__m256 f) noexcept { return _mm512_maskz_cvtps_pd(0xFF, f); }
inline __m256 narrow8(__m512d d) noexcept { return _mm512_maskz_cvtpd_ps(0xFF, d); }

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
    static void loadTile(const float* const* rows, Zmm8 (&frames)[8]) noexcept {
        __m256 r[8];
        for (int l = 0; l < 8; ++l) r[l] = _mm256_loadu_ps(rows[l]);
        transpose8(r);
        for (int f = 0; f < 8; ++f) frames[f].v = widen8(r[f]);
    }
    static void storeTile(float* const* rows, const Zmm8 (&frames)[8]) noexcept {
        __m256 r[8];
        for (int f = 0; f < 8; ++f) r[f] = narrow8(frames[f].v);
        transpose8(r);
        for (int l = 0; l < 8; ++l) _mm256_storeu_ps(rows[l], r[l]);
    }
};

// The rounded product as a fused multiply-add of -0.0, as in lanes_avx.hpp.
inline Zmm8 mul(Zmm8 a, Zmm8 b) noexcept { return {_mm512_fmadd_pd(a.v, b.v, _mm512_set1_pd(-0.0))}; }
inline Zmm8 mulAdd(Zmm8 a, Zmm8 b, Zmm8 c) noexcept { return {_mm512_fmadd_pd(a.v, b.v, c.v)}; }

}  // namespace
}  // namespace Mivora::detail

#endif
