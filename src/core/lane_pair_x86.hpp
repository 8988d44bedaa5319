// The lane pair in one 128-bit register, for x86-64 with FMA3. Only the
// translation unit built with -mfma includes this.
#ifndef MIVORA_LANE_PAIR_X86_HPP
#define MIVORA_LANE_PAIR_X86_HPP

#if !defined(__FMA__)
#error "lane_pair_x86.hpp needs a translation unit compiled for FMA3"
#endif

#include <immintrin.h>

namespace Mivora::detail {
namespace {  // internal linkage: see section_kernels.hpp

struct SsePair {
    __m128d v;

    static SsePair set(double lo, double hi) noexcept { return {_mm_set_pd(hi, lo)}; }
    double lo() const noexcept { return _mm_cvtsd_f64(v); }
    double hi() const noexcept { return _mm_cvtsd_f64(_mm_unpackhi_pd(v, v)); }

    static SsePair load2(const float* in) noexcept {
        // Two floats in one 64-bit load, widened together (exact, like the
        // scalar conversion); _mm_loadl_epi64 is an aliasing-safe load.
        return {_mm_cvtps_pd(_mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(in))))};
    }
    static void loadPair(const float* in, SsePair older0, SsePair older1, SsePair& a, SsePair& b) noexcept {
        const __m128d x = load2(in).v;
        a.v = _mm_unpacklo_pd(x, older0.v);
        b.v = _mm_shuffle_pd(x, older1.v, 0b01);
    }
    static SsePair shift(SsePair older, SsePair newer) noexcept { return {_mm_shuffle_pd(older.v, newer.v, 0b01)}; }
    static SsePair highs(SsePair a, SsePair b) noexcept { return {_mm_unpackhi_pd(a.v, b.v)}; }
    static void storePair(float* out, SsePair z) noexcept {
        // Narrowing rounds to nearest, as the scalar conversion does.
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_castps_si128(_mm_cvtpd_ps(z.v)));
    }
};

// The rounded product, formed as a fused multiply-add of -0.0: the same bits
// in every case (adding -0.0 changes no value, zeros' signs included), but
// where the packed multiply slows to a fraction of its speed when an input is
// subnormal, as a decaying filter's state is, the fused form keeps full speed.
inline SsePair mul(SsePair a, SsePair b) noexcept { return {_mm_fmadd_pd(a.v, b.v, _mm_set1_pd(-0.0))}; }
inline SsePair mulAdd(SsePair a, SsePair b, SsePair c) noexcept { return {_mm_fmadd_pd(a.v, b.v, c.v)}; }

}  // namespace
}  // namespace Mivora::detail

#endif
