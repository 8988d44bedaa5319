// 256-bit floating point for the accurate paths; see wide_float.hpp.
#include "wide_float.hpp"

#include <cmath>
#include <cstring>

namespace Mivora::math::wide {

namespace {

using u64 = std::uint64_t;
constexpr int kMaxLimbs = 2 * kLimbs;

// hi:lo = a * b.
#if defined(__SIZEOF_INT128__)
using u128 = __uint128_t;
void mul64(u64 a, u64 b, u64& hi, u64& lo) noexcept {
    const u128 p = static_cast<u128>(a) * b;
    hi = static_cast<u64>(p >> 64);
    lo = static_cast<u64>(p);
}
#else
void mul64(u64 a, u64 b, u64& hi, u64& lo) noexcept {
    const u64 a0 = a & 0xffffffffu, a1 = a >> 32;
    const u64 b0 = b & 0xffffffffu, b1 = b >> 32;
    const u64 p00 = a0 * b0, p01 = a0 * b1, p10 = a1 * b0, p11 = a1 * b1;
    const u64 mid = (p00 >> 32) + (p01 & 0xffffffffu) + (p10 & 0xffffffffu);
    lo = (mid << 32) | (p00 & 0xffffffffu);
    hi = p11 + (p01 >> 32) + (p10 >> 32) + (mid >> 32);
}
#endif

int leadingZeros(u64 v) noexcept {
    int n = 0;
    for (int s = 32; s > 0; s >>= 1) {
        if ((v >> (64 - s)) == 0) {
            n += s;
            v <<= s;
        }
    }
    return n;
}

// Value (-1)^neg * (L / 2^(64 n)) * 2^exp from n limbs, most significant
// first; normalised and truncated to kLimbs limbs.
Wide pack(bool negative, int exp, const u64* limbs, int n) noexcept {
    Wide r;
    int first = 0;
    while (first < n && limbs[first] == 0) ++first;
    if (first == n) return r;  // +0
    r.neg = negative;
    const int lz = leadingZeros(limbs[first]);
    r.exp = exp - 64 * first - lz;
    for (int i = 0; i < kLimbs; ++i) {
        const int j = first + i;
        const u64 cur = j < n ? limbs[j] : 0;
        const u64 next = j + 1 < n ? limbs[j + 1] : 0;
        r.m[i] = lz == 0 ? cur : (cur << lz) | (next >> (64 - lz));
    }
    return r;
}

// dst[0..n) = src (kLimbs limbs) shifted right by d bits, zero filled.
void shiftedRight(const u64* src, int d, u64* dst, int n) noexcept {
    const int q = d / 64, s = d % 64;
    for (int i = 0; i < n; ++i) {
        const int j = i - q;  // source limb whose high part lands in dst[i]
        const u64 cur = (j >= 0 && j < kLimbs) ? src[j] : 0;
        const u64 prev = (j - 1 >= 0 && j - 1 < kLimbs) ? src[j - 1] : 0;
        dst[i] = s == 0 ? cur : (cur >> s) | (prev << (64 - s));
    }
}

// Magnitude comparison of two non-zero normalised numbers.
int compareMagnitude(const Wide& a, const Wide& b) noexcept {
    if (a.exp != b.exp) return a.exp > b.exp ? 1 : -1;
    for (int i = 0; i < kLimbs; ++i)
        if (a.m[i] != b.m[i]) return a.m[i] > b.m[i] ? 1 : -1;
    return 0;
}

// Bit i of the mantissa, counted from the top (0 = most significant).
int bitAt(const Wide& a, int i) noexcept {
    if (i < 0 || i >= 64 * kLimbs) return 0;
    return static_cast<int>((a.m[i / 64] >> (63 - i % 64)) & 1u);
}

// Whether any mantissa bit from position i (from the top) on is set.
bool anyFrom(const Wide& a, int i) noexcept {
    if (i <= 0) return !isZero(a);
    if (i >= 64 * kLimbs) return false;
    const int limb = i / 64, s = i % 64;
    if (s != 0 && (a.m[limb] << s) != 0) return true;
    if (s == 0 && a.m[limb] != 0) return true;
    for (int k = limb + 1; k < kLimbs; ++k)
        if (a.m[k] != 0) return true;
    return false;
}

}  // namespace

bool isZero(const Wide& a) noexcept { return a.m[0] == 0; }

Wide fromDouble(double x) noexcept {
    u64 bits = 0;
    std::memcpy(&bits, &x, sizeof bits);
    const bool negative = (bits >> 63) != 0;
    const int biased = static_cast<int>((bits >> 52) & 0x7ff);
    u64 mant = bits & ((u64{1} << 52) - 1);
    int e = -1074;  // x = mant * 2^e; subnormal as it stands
    if (biased != 0) {
        mant |= u64{1} << 52;
        e = biased - 1075;
    }
    // mant / 2^64 * 2^(e + 64)
    const u64 limb[1] = {mant};
    return pack(negative, e + 64, limb, 1);
}

Wide fromInt(std::int64_t v) noexcept {
    const bool negative = v < 0;
    const u64 bits = static_cast<u64>(v);
    const u64 mag = negative ? ~bits + 1u : bits;  // two's complement magnitude
    const u64 limb[1] = {mag};
    return pack(negative, 64, limb, 1);
}

Wide neg(Wide a) noexcept {
    a.neg = !a.neg;
    return a;
}

Wide abs(Wide a) noexcept {
    a.neg = false;
    return a;
}

Wide ldexp(Wide a, int k) noexcept {
    if (!isZero(a)) a.exp += k;
    return a;
}

Wide add(const Wide& a, const Wide& b) noexcept {
    if (isZero(a)) return b;
    if (isZero(b)) return a;
    const bool swap = compareMagnitude(a, b) < 0;
    const Wide& big = swap ? b : a;
    const Wide& small = swap ? a : b;
    constexpr int n = kLimbs + 2;  // two guard limbs
    u64 x[n] = {}, y[n];
    for (int i = 0; i < kLimbs; ++i) x[i] = big.m[i];
    shiftedRight(small.m, big.exp - small.exp, y, n);
    u64 r[n + 1];
    if (big.neg == small.neg) {
        u64 carry = 0;
        for (int i = n - 1; i >= 0; --i) {
            const u64 s = x[i] + y[i];
            const u64 c1 = s < x[i];
            r[i + 1] = s + carry;
            carry = c1 | (r[i + 1] < s);
        }
        r[0] = carry;
        return pack(big.neg, big.exp + 64, r, n + 1);
    }
    u64 borrow = 0;
    for (int i = n - 1; i >= 0; --i) {
        const u64 d = x[i] - y[i];
        const u64 b1 = x[i] < y[i];
        r[i] = d - borrow;
        borrow = b1 | (d < borrow);
    }
    return pack(big.neg, big.exp, r, n);  // an exact zero comes out as +0
}

Wide sub(const Wide& a, const Wide& b) noexcept { return add(a, neg(b)); }

Wide mul(const Wide& a, const Wide& b) noexcept {
    if (isZero(a) || isZero(b)) return Wide{};
    u64 p[kMaxLimbs] = {};
    for (int i = kLimbs - 1; i >= 0; --i) {
        u64 carry = 0;
        for (int j = kLimbs - 1; j >= 0; --j) {
            u64 hi = 0, lo = 0;
            mul64(a.m[i], b.m[j], hi, lo);
            u64& slot = p[i + j + 1];
            lo += carry;
            hi += lo < carry;
            slot += lo;
            hi += slot < lo;
            carry = hi;
        }
        p[i] = carry;
    }
    return pack(a.neg != b.neg, a.exp + b.exp, p, kMaxLimbs);
}

Wide mulSmall(const Wide& a, std::uint32_t k) noexcept {
    u64 r[kLimbs + 1];
    u64 carry = 0;
    for (int i = kLimbs - 1; i >= 0; --i) {
        u64 hi = 0, lo = 0;
        mul64(a.m[i], k, hi, lo);
        lo += carry;
        hi += lo < carry;
        r[i + 1] = lo;
        carry = hi;
    }
    r[0] = carry;
    return pack(a.neg, a.exp + 64, r, kLimbs + 1);
}

Wide divSmall(const Wide& a, std::uint32_t k) noexcept {
    constexpr int n = kLimbs + 2;  // extra quotient limbs keep 256 bits
    u64 q[n];
    u64 rem = 0;  // < k < 2^32
    for (int i = 0; i < n; ++i) {
        const u64 limb = i < kLimbs ? a.m[i] : 0;
        const u64 hiPart = (rem << 32) | (limb >> 32);
        const u64 qh = hiPart / k;
        rem = hiPart % k;
        const u64 loPart = (rem << 32) | (limb & 0xffffffffu);
        const u64 ql = loPart / k;
        rem = loPart % k;
        q[i] = (qh << 32) | ql;
    }
    return pack(a.neg, a.exp, q, n);
}

Wide div(const Wide& a, const Wide& b) noexcept {
    // Reciprocal of b' = |b| * 2^-exp in [1/2, 1) by Newton's iteration
    // y <- y + y (1 - b' y), which doubles the correct bits each step:
    // 53 -> 106 -> 212 -> beyond 256 (then truncation bounds the error).
    Wide bn = b;
    bn.neg = false;
    bn.exp = 0;
    const double top = std::ldexp(static_cast<double>(bn.m[0] >> 11), -53);
    Wide y = fromDouble(1.0 / top);
    const Wide one = fromInt(1);
    for (int it = 0; it < 4; ++it) y = add(y, mul(y, sub(one, mul(bn, y))));
    y.exp -= b.exp;
    y.neg = b.neg;
    return mul(a, y);
}

int compare(const Wide& a, const Wide& b) noexcept {
    const bool za = isZero(a), zb = isZero(b);
    if (za && zb) return 0;
    if (za) return b.neg ? 1 : -1;
    if (zb) return a.neg ? -1 : 1;
    if (a.neg != b.neg) return a.neg ? -1 : 1;
    const int c = compareMagnitude(a, b);
    return a.neg ? -c : c;
}

double toDouble(const Wide& a) noexcept {
    if (isZero(a)) return a.neg ? -0.0 : 0.0;
    // |a| in [2^(exp-1), 2^exp): 53 bits when normal, fewer below 2^-1022.
    if (a.exp > 1024) return a.neg ? -HUGE_VAL : HUGE_VAL;
    int p = a.exp - 1 >= -1022 ? 53 : a.exp + 1074;
    u64 q = 0;
    for (int i = 0; i < p; ++i) q = (q << 1) | static_cast<u64>(bitAt(a, i));
    const int roundBit = p >= 0 ? bitAt(a, p) : 0;
    const bool sticky = anyFrom(a, p + 1);
    if (roundBit && (sticky || (q & 1u))) ++q;
    if (p < 0) p = 0;
    // q * 2^(exp - p): exact or overflowing, since exp - p >= -1074.
    const double r = std::ldexp(static_cast<double>(q), a.exp - p);
    return a.neg ? -r : r;
}

double approx(const Wide& a) noexcept {
    if (isZero(a)) return 0.0;
    const double r = std::ldexp(static_cast<double>(a.m[0]), a.exp - 64);
    return a.neg ? -r : r;
}

std::int64_t nearestInt(const Wide& a) noexcept {
    if (isZero(a) || a.exp < 0) return 0;
    // Integer part: the top exp bits; then the half bit.
    u64 v = a.exp == 0 ? 0 : a.m[0] >> (64 - a.exp);
    v += static_cast<u64>(bitAt(a, a.exp));
    const auto s = static_cast<std::int64_t>(v);
    return a.neg ? -s : s;
}

}  // namespace Mivora::math::wide
