// Per-sample arithmetic of the two section kinds. The evaluation order is
// fixed so that every build gives the same bits: the b1 product is rounded,
// then each further product is added by one fused multiply-add.
//
// The formulas are templates over the number type so that one scalar double
// and a pair of lanes (lane_pair.hpp) run literally the same expression: the
// lanes of a pair then hold exactly the values the scalar code would.
#ifndef MIVORA_SECTION_KERNELS_HPP
#define MIVORA_SECTION_KERNELS_HPP

#include <cmath>

// Forces inlining where the kernels' state must stay in registers across a
// call: a step left out of line keeps its state in memory, and the store and
// reload join the feedback chain.
#if defined(__GNUC__)
#define MIVORA_KERNEL_INLINE inline __attribute__((always_inline))
#else
#define MIVORA_KERNEL_INLINE inline
#endif

// Keeps a block loop in a function of its own: inlined into a dispatcher
// with many others, it shares one register allocation and stack frame with
// them, and its loop slows.
#if defined(__GNUC__)
#define MIVORA_KERNEL_OUTLINE __attribute__((noinline))
#else
#define MIVORA_KERNEL_OUTLINE
#endif

namespace Mivora::detail {

// Each kernel translation unit is compiled for its own instruction set, so
// everything here has internal linkage: a shared inline copy would let the
// linker keep whichever instance it met first, possibly one built with
// instructions the running CPU lacks.
namespace {

// Which of the six stage sets runs: 0 to 2 second-order sections, with or
// without the first-order section.
inline int stageSet(int sections, bool first) noexcept {
    return (sections <= 0 ? 0 : sections == 1 ? 2 : 4) + (first ? 1 : 0);
}

inline double mul(double a, double b) noexcept { return a * b; }
inline double mulAdd(double a, double b, double c) noexcept { return std::fma(a, b, c); }

template <class T>
struct SectionCoefs {
    T b0, b1, b2, a1, a2;
};

template <class T>
struct FirstOrderCoefs {
    T b0, b1, a1;
};

// y = b0*x + b1*x1 + b2*x2 + a1*y1 + a2*y2, grouped exactly so.
template <class T>
MIVORA_KERNEL_INLINE T sectionOut(const SectionCoefs<T>& c, T x, T x1, T x2, T y1, T y2) noexcept {
    T y = mul(c.b1, x1);
    y = mulAdd(c.b0, x, y);
    y = mulAdd(c.b2, x2, y);
    y = mulAdd(c.a1, y1, y);
    return mulAdd(c.a2, y2, y);
}

// y = b0*x + b1*x1 + a1*y1, grouped exactly so.
template <class T>
MIVORA_KERNEL_INLINE T firstOrderOut(const FirstOrderCoefs<T>& c, T x, T x1, T y1) noexcept {
    T y = mul(c.b1, x1);
    y = mulAdd(c.b0, x, y);
    return mulAdd(c.a1, y1, y);
}

// One second-order section with its state, for code that holds it in locals.
struct Biquad {
    SectionCoefs<double> c;
    double x1, x2, y1, y2;

    Biquad(const double* coef, const double* s) noexcept
        : c{coef[0], coef[1], coef[2], coef[3], coef[4]}, x1(s[0]), x2(s[1]), y1(s[2]), y2(s[3]) {}

    void store(double* s) const noexcept {
        s[0] = x1; s[1] = x2; s[2] = y1; s[3] = y2;
    }
    double step(double x) noexcept {
        const double y = sectionOut(c, x, x1, x2, y1, y2);
        x2 = x1; x1 = x;
        y2 = y1; y1 = y;
        return y;
    }
};

struct FirstOrder {
    FirstOrderCoefs<double> c;
    double x1, y1;

    FirstOrder(const double* coef, const double* s) noexcept
        : c{coef[0], coef[1], coef[2]}, x1(s[0]), y1(s[1]) {}

    void store(double* s) const noexcept {
        s[0] = x1; s[1] = y1;
    }
    double step(double x) noexcept {
        const double y = firstOrderOut(c, x, x1, y1);
        x1 = x; y1 = y;
        return y;
    }
};

}  // namespace
}  // namespace Mivora::detail

#endif
