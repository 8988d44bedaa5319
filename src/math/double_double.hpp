// Double-double arithmetic: a value hi + lo held as two doubles with
// |lo| <= ulp(hi)/2, about 106 bits of precision. The building block of the
// fast paths of the correctly rounded functions.
//
// Every operation relies on round-to-nearest (the default mode). The exact
// product uses std::fma where the target has the instruction, and Dekker's
// splitting otherwise (a call to a software fma costs more); both give the
// same, exact, result, so the bits do not depend on the choice.
// The relative error bounds quoted assume no underflow or overflow: callers
// keep their operands well inside the normal range.
#ifndef MIVORA_DOUBLE_DOUBLE_HPP
#define MIVORA_DOUBLE_DOUBLE_HPP

#include <cmath>

namespace Mivora::math::dd {

struct DD {
    double hi;
    double lo;
};

namespace {  // internal linkage: see entry_points_x86_fma.cpp

// a + b = s + e exactly, for any a, b (Knuth).
inline DD twoSum(double a, double b) noexcept {
    const double s = a + b;
    const double bb = s - a;
    const double e = (a - (s - bb)) + (b - bb);
    return {s, e};
}

// a + b = s + e exactly, when a == 0 or |a| >= |b| (more precisely when the
// exponent of a is not below that of b) (Dekker).
inline DD fastTwoSum(double a, double b) noexcept {
    const double s = a + b;
    const double e = b - (s - a);
    return {s, e};
}

#if defined(__FMA__) || defined(__aarch64__) || defined(_M_ARM64) || defined(__ARM_FEATURE_FMA)
#define MIVORA_DD_HARDWARE_FMA 1
#endif

// a * b = p + e exactly (barring underflow of e, and for Dekker's splitting
// |a|, |b| < 2^995).
inline DD twoProd(double a, double b) noexcept {
    const double p = a * b;
#ifdef MIVORA_DD_HARDWARE_FMA
    return {p, std::fma(a, b, -p)};
#else
    constexpr double kSplit = 134217729.0;  // 2^27 + 1
    const double ca = kSplit * a, cb = kSplit * b;
    const double ah = ca - (ca - a), al = a - ah;
    const double bh = cb - (cb - b), bl = b - bh;
    return {p, ((ah * bh - p) + ah * bl + al * bh) + al * bl};
#endif
}

// Renormalises hi + lo so that hi is the rounded sum; needs |hi| >= |lo|.
inline DD normalize(DD a) noexcept { return fastTwoSum(a.hi, a.lo); }

// (a + b), relative error below 2^-105 (3 * 2^-106) when no cancellation
// beyond that of the high parts; exact high parts in any case.
inline DD add(DD a, DD b) noexcept {
    DD s = twoSum(a.hi, b.hi);
    const DD t = twoSum(a.lo, b.lo);
    s.lo += t.hi;
    s = fastTwoSum(s.hi, s.lo);
    s.lo += t.lo;
    return fastTwoSum(s.hi, s.lo);
}

// (a + b) with b a double.
inline DD add(DD a, double b) noexcept {
    DD s = twoSum(a.hi, b);
    s.lo += a.lo;
    return fastTwoSum(s.hi, s.lo);
}

inline DD neg(DD a) noexcept { return {-a.hi, -a.lo}; }

// a * b, relative error below 2^-102.
inline DD mul(DD a, DD b) noexcept {
    DD p = twoProd(a.hi, b.hi);
    p.lo += a.hi * b.lo + a.lo * b.hi;
    return fastTwoSum(p.hi, p.lo);
}

// a * b with b a double, relative error below 2^-104.
inline DD mul(DD a, double b) noexcept {
    DD p = twoProd(a.hi, b);
    p.lo += a.lo * b;
    return fastTwoSum(p.hi, p.lo);
}

// a * b for two doubles, as a double-double (exact).
inline DD mul(double a, double b) noexcept { return twoProd(a, b); }

// a / b, relative error below 2^-100: one correction step of the quotient
// of the high parts.
inline DD div(DD a, DD b) noexcept {
    const double q1 = a.hi / b.hi;
    // r = a - q1 * b, formed with an exact product.
    const DD p = mul(b, q1);
    const DD r = add(a, neg(p));
    const double q2 = r.hi / b.hi;
    return fastTwoSum(q1, q2);
}

// 1 / b.
inline DD recip(DD b) noexcept { return div(DD{1.0, 0.0}, b); }

// Multiplication by a power of two, exact barring underflow/overflow.
inline DD scale(DD a, double twoPow) noexcept { return {a.hi * twoPow, a.lo * twoPow}; }

// Rounding test: v approximates y with |v - y| < bound * |v.hi|, and
// relErr is at least twice that bound, so that rounding lo +- the margin
// (an error near 2^-106 |v.hi|) cannot shrink it below the bound. When
// both ends of the interval round to the same double, that double is the
// rounding of y (rounding is monotonic); *out receives it and the test
// passes. Results must be normal (no underflow) for the test to hold.
inline bool roundsUnambiguously(DD v, double relErr, double* out) noexcept {
    const double e = relErr * (v.hi < 0 ? -v.hi : v.hi);
    const double a = v.hi + (v.lo - e);
    const double b = v.hi + (v.lo + e);
    if (a != b) return false;
    *out = a;
    return true;
}

}  // namespace

}  // namespace Mivora::math::dd

#endif
