// Unsigned fixed point with one integer word and kFracWords fraction words
// (320 bits), for the slow paths of the trigonometric functions: their
// arguments and results lie in [0, 2^64), so fixed point suffices, and every
// operation below truncates by at most one unit of 2^-320.
#ifndef MIVORA_TRIG_FIXED_HPP
#define MIVORA_TRIG_FIXED_HPP

#include <cstdint>
#include <cstring>

#include "trig_tables.hpp"

namespace Mivora::math::trig {

inline constexpr int kWords = kFracWords + 1;

// Value = sum of w[i] * 2^(-64 i): w[0] is the integer part.
struct Fixed {
    std::uint64_t w[kWords];
};

namespace {  // internal linkage: see entry_points_x86_fma.cpp

// Full 64 x 64 -> 128-bit product.
inline void mul64(std::uint64_t a, std::uint64_t b, std::uint64_t& hi, std::uint64_t& lo) noexcept {
#if defined(__SIZEOF_INT128__)
    __extension__ typedef unsigned __int128 u128;  // NOLINT(modernize-use-using): needs __extension__
    const u128 p = static_cast<u128>(a) * b;
    hi = static_cast<std::uint64_t>(p >> 64);
    lo = static_cast<std::uint64_t>(p);
#else
    const std::uint64_t a0 = a & 0xffffffffu, a1 = a >> 32, b0 = b & 0xffffffffu, b1 = b >> 32;
    const std::uint64_t p00 = a0 * b0, p01 = a0 * b1, p10 = a1 * b0, p11 = a1 * b1;
    const std::uint64_t mid = (p00 >> 32) + (p01 & 0xffffffffu) + (p10 & 0xffffffffu);
    lo = (mid << 32) | (p00 & 0xffffffffu);
    hi = p11 + (p01 >> 32) + (p10 >> 32) + (mid >> 32);
#endif
}

inline Fixed fixedFrom(const std::uint64_t (&words)[kWords]) noexcept {
    Fixed r{};
    std::memcpy(r.w, words, sizeof r.w);
    return r;
}

inline Fixed fixedInt(std::uint64_t n) noexcept {
    Fixed r{};
    r.w[0] = n;
    return r;
}

inline bool fixedIsZero(const Fixed& a) noexcept {
    for (int i = 0; i < kWords; ++i)
        if (a.w[i] != 0) return false;
    return true;
}

inline bool fixedLess(const Fixed& a, const Fixed& b) noexcept {
    for (int i = 0; i < kWords; ++i)
        if (a.w[i] != b.w[i]) return a.w[i] < b.w[i];
    return false;
}

inline Fixed fixedAdd(const Fixed& a, const Fixed& b) noexcept {
    Fixed r{};
    std::uint64_t carry = 0;
    for (int i = kWords - 1; i >= 0; --i) {
        const std::uint64_t s = a.w[i] + b.w[i];
        const std::uint64_t c1 = s < a.w[i];
        r.w[i] = s + carry;
        carry = c1 | (r.w[i] < s);
    }
    return r;
}

// a - b for a >= b.
inline Fixed fixedSub(const Fixed& a, const Fixed& b) noexcept {
    Fixed r{};
    std::uint64_t borrow = 0;
    for (int i = kWords - 1; i >= 0; --i) {
        const std::uint64_t d = a.w[i] - b.w[i];
        const std::uint64_t b1 = a.w[i] < b.w[i];
        r.w[i] = d - borrow;
        borrow = b1 | (d < borrow);
    }
    return r;
}

// |a - b| and whether a < b.
inline Fixed fixedAbsDiff(const Fixed& a, const Fixed& b, bool& negative) noexcept {
    negative = fixedLess(a, b);
    return negative ? fixedSub(b, a) : fixedSub(a, b);
}

// a * b truncated to the format (the product's integer part must fit a word).
inline Fixed fixedMul(const Fixed& a, const Fixed& b) noexcept {
    std::uint64_t acc[2 * kWords] = {};
    for (int i = kWords - 1; i >= 0; --i) {
        if (a.w[i] == 0) continue;
        std::uint64_t carry = 0;
        for (int j = kWords - 1; j >= 0; --j) {
            std::uint64_t hi = 0, lo = 0;
            mul64(a.w[i], b.w[j], hi, lo);
            std::uint64_t& slot = acc[i + j + 1];
            lo += carry;
            hi += lo < carry;
            slot += lo;
            hi += slot < lo;
            carry = hi;
        }
        acc[i] += carry;
    }
    Fixed r{};
    for (int i = 0; i < kWords; ++i) r.w[i] = acc[i + 1];
    return r;
}

inline Fixed fixedMulSmall(const Fixed& a, std::uint64_t m) noexcept {
    Fixed r{};
    std::uint64_t carry = 0;
    for (int i = kWords - 1; i >= 0; --i) {
        std::uint64_t hi = 0, lo = 0;
        mul64(a.w[i], m, hi, lo);
        lo += carry;
        hi += lo < carry;
        r.w[i] = lo;
        carry = hi;
    }
    return r;
}

// a / d for 0 < d < 2^32, truncated.
inline Fixed fixedDivSmall(const Fixed& a, std::uint32_t d) noexcept {
    Fixed r{};
    std::uint64_t rem = 0;
    for (int i = 0; i < kWords; ++i) {
        const std::uint64_t hi = (rem << 32) | (a.w[i] >> 32);
        const std::uint64_t qh = hi / d;
        rem = hi % d;
        const std::uint64_t lo = (rem << 32) | (a.w[i] & 0xffffffffu);
        const std::uint64_t ql = lo / d;
        rem = lo % d;
        r.w[i] = (qh << 32) | ql;
    }
    return r;
}

inline Fixed fixedShiftRight(const Fixed& a, int n) noexcept {
    Fixed r{};
    if (n >= 64 * kWords) return r;
    const int words = n / 64, bits = n % 64;
    for (int i = kWords - 1; i >= words; --i) {
        const int src = i - words;
        std::uint64_t v = a.w[src] >> bits;
        if (bits != 0 && src > 0) v |= a.w[src - 1] << (64 - bits);
        r.w[i] = v;
    }
    return r;
}

// Shift left; the bits shifted out of the integer word must be zero.
inline Fixed fixedShiftLeft(const Fixed& a, int n) noexcept {
    Fixed r{};
    if (n >= 64 * kWords) return r;
    const int words = n / 64, bits = n % 64;
    for (int i = 0; i + words < kWords; ++i) {
        const int src = i + words;
        std::uint64_t v = a.w[src] << bits;
        if (bits != 0 && src + 1 < kWords) v |= a.w[src + 1] >> (64 - bits);
        r.w[i] = v;
    }
    return r;
}

// Index of the highest set bit counted from the least significant bit of
// w[kWords-1] (0 .. 64 kWords - 1); -1 for zero.
inline int fixedTopBit(const Fixed& a) noexcept {
    for (int i = 0; i < kWords; ++i) {
        if (a.w[i] == 0) continue;
        int b = 63;
        while (((a.w[i] >> b) & 1u) == 0) --b;
        return 64 * (kWords - 1 - i) + b;
    }
    return -1;
}

inline bool fixedBit(const Fixed& a, int pos) noexcept {
    return ((a.w[kWords - 1 - pos / 64] >> (pos % 64)) & 1u) != 0;
}

// m * 2^e exactly for 0 <= m < 2^53 (bits below 2^-320 are dropped).
inline Fixed fixedFromScaled(std::uint64_t m, int e) noexcept {
    Fixed r{};
    int pos = e + 64 * kFracWords;  // bit position of m's least significant bit
    if (pos < 0) {
        if (-pos >= 64) return r;
        m >>= -pos;
        pos = 0;
    }
    const int word = kWords - 1 - pos / 64, bits = pos % 64;
    r.w[word] = m << bits;
    if (bits != 0 && word > 0) r.w[word - 1] = m >> (64 - bits);
    return r;
}

// The double nearest to a * 2^scale (ties to even), negated when asked;
// handles subnormal results. a must not be zero.
inline double fixedToDouble(const Fixed& a, int scale, bool negative) noexcept {
    const int top = fixedTopBit(a);
    // Value = 2^(top - 64 kFracWords + scale) * 1.xxx
    const int exponent = top - 64 * kFracWords + scale;
    int keep = 53;
    if (exponent < -1022) keep = 53 - (-1022 - exponent);
    std::uint64_t m = 0;
    bool roundBit = false, sticky = false;
    if (keep >= 1) {
        for (int i = 0; i < keep; ++i) m = (m << 1) | (fixedBit(a, top - i) ? 1u : 0u);
        const int rpos = top - keep;
        if (rpos >= 0) {
            roundBit = fixedBit(a, rpos);
            for (int p = rpos - 1; p >= 0 && !sticky; --p) sticky = fixedBit(a, p);
        }
    } else if (keep == 0) {
        roundBit = true;
        for (int p = top - 1; p >= 0 && !sticky; --p) sticky = fixedBit(a, p);
    } else {
        sticky = true;
    }
    if (roundBit && (sticky || (m & 1u))) ++m;
    // m * 2^(exponent - keep + 1), exact: m has at most 54 bits.
    int e = exponent - keep + 1;
    double r = static_cast<double>(m);
    // Scale by powers of two in steps that stay exact.
    while (e > 0) {
        const int s = e > 1000 ? 1000 : e;
        std::uint64_t bits = static_cast<std::uint64_t>(1023 + s) << 52;
        double f = 0.0;
        std::memcpy(&f, &bits, sizeof f);
        r *= f;
        e -= s;
    }
    while (e < 0) {
        // Keep the intermediate normal until the last step, which is exact
        // because m was already cut to the subnormal precision.
        const int s = e < -1000 ? -1000 : e;
        std::uint64_t bits = static_cast<std::uint64_t>(1023 + s) << 52;
        double f = 0.0;
        std::memcpy(&f, &bits, sizeof f);
        r *= f;
        e -= s;
    }
    return negative ? -r : r;
}

// 1/d for d in [1, 2): Newton's iteration z <- z (2 - d z) from the double
// reciprocal; the error squares each step (2^-52, 2^-103, 2^-205) and then
// stays at a few units of 2^-320 from truncation.
inline Fixed fixedReciprocal(const Fixed& d) noexcept {
    // Leading 53 bits of d as a double in [1, 2).
    const double dh = static_cast<double>(d.w[1] >> 11) * 0x1p-53 + 1.0;
    const double z0 = 1.0 / dh;
    std::uint64_t zb = 0;
    std::memcpy(&zb, &z0, sizeof zb);
    const int ze = static_cast<int>((zb >> 52) & 0x7ff) - 1075;
    Fixed z = fixedFromScaled((zb & ((std::uint64_t{1} << 52) - 1)) | (std::uint64_t{1} << 52), ze);
    const Fixed two = fixedInt(2);
    for (int i = 0; i < 4; ++i) z = fixedMul(z, fixedSub(two, fixedMul(d, z)));
    return z;
}

}  // namespace

}  // namespace Mivora::math::trig

#endif
