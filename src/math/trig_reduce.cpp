#include "trig_reduce.hpp"

namespace Mivora::math::trig {
namespace {

// ax * 2/pi modulo 4 (Payne-Hanek) from NW words of 2/pi: the quadrant, and
// the distance to the nearest integer, |y - q| <= 1/2, as NW fraction words
// with its sign. With ax = m 2^e only the bits of 2/pi from 2^(1-e) on can
// reach below 4, so s = max(0, e - 2) leading bits are skipped; the bits
// beyond the NW words change y by less than m 2^(2 - 64 NW) <= 2^(55 - 64 NW).
template <int NW>
void reduceBits(double ax, int& quadrant, bool& negative, std::uint64_t (&frac)[NW]) noexcept {
    std::uint64_t m = 0;
    int e = 0;
    decompose(ax, m, e);
    const int s = e > 2 ? e - 2 : 0;
    const int shift = e - s;  // y = m * F * 2^shift, F = 2/pi without its first s bits
    const int idx = s / 64, b = s % 64;
    std::uint64_t p[NW + 1];
    std::uint64_t carry = 0;
    for (int i = NW - 1; i >= 0; --i) {
        std::uint64_t f = kTwoOverPi[idx + i] << b;
        if (b != 0) f |= kTwoOverPi[idx + i + 1] >> (64 - b);
        std::uint64_t hi = 0, lo = 0;
        mul64(m, f, hi, lo);
        lo += carry;
        hi += lo < carry;
        p[i + 1] = lo;
        carry = hi;
    }
    p[0] = carry;  // integer part, below 2^53
    std::uint64_t integer = 0;
    if (shift >= 0) {
        integer = shift == 0 ? p[0] : (p[0] << shift) | (p[1] >> (64 - shift));
        for (int i = 0; i < NW; ++i) {
            frac[i] = p[i + 1] << shift;
            if (shift != 0 && i + 2 <= NW) frac[i] |= p[i + 2] >> (64 - shift);
        }
    } else {
        const int r = -shift;  // 1 .. 53
        integer = p[0] >> r;
        for (int i = 0; i < NW; ++i) frac[i] = (p[i] << (64 - r)) | (p[i + 1] >> r);
    }
    quadrant = static_cast<int>(integer & 3u);
    negative = (frac[0] >> 63) != 0;
    if (negative) {
        // 1 - frac: two's complement of the fraction words.
        quadrant = (quadrant + 1) & 3;
        std::uint64_t borrow = 0;
        for (int i = NW - 1; i >= 0; --i) {
            const std::uint64_t v = frac[i];
            frac[i] = 0 - v - borrow;
            borrow = (v != 0 || borrow != 0) ? 1 : 0;
        }
    }
}

}  // namespace

// From 2^20: Payne-Hanek with three words of 2/pi: the fraction errs by
// 2^-137, its conversion by 2^-159 and the product with pi/2 by 2^-104 |r|.
ReducedFast reduceFastHuge(double ax) noexcept {
    int q = 0;
    bool negative = false;
    std::uint64_t f[3];
    reduceBits<3>(ax, q, negative, f);
    // f as three exact 53-bit pieces.
    const double c1 = static_cast<double>(f[0] >> 11) * 0x1p-53;
    const double c2 = static_cast<double>(((f[0] & 0x7ffu) << 42) | (f[1] >> 22)) * 0x1p-106;
    const double c3 = static_cast<double>(((f[1] & 0x3fffffu) << 31) | (f[2] >> 33)) * 0x1p-159;
    DD frac = dd::twoSum(c1, c2);
    frac = dd::fastTwoSum(frac.hi, frac.lo + c3);
    DD r = dd::mul(frac, DD{kPiOver2Hi, kPiOver2Lo});
    if (negative) r = dd::neg(r);
    return {q, r};
}

ReducedWide reduceWide(double ax) noexcept {
    ReducedWide out{0, false, {}};
    if (ax < 0x1.921fb54442d18p-1) {  // below pi/4: no reduction
        std::uint64_t m = 0;
        int e = 0;
        decompose(ax, m, e);
        out.r = fixedFromScaled(m, e);
        return out;
    }
    std::uint64_t f[kFracWords + 2];
    reduceBits<kFracWords + 2>(ax, out.quadrant, out.negative, f);
    Fixed frac{};
    for (int i = 0; i < kFracWords; ++i) frac.w[i + 1] = f[i];
    out.r = fixedMul(frac, fixedFrom(kFixedPiOver2));
    return out;
}

}  // namespace Mivora::math::trig
