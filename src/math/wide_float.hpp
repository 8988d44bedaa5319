// A 256-bit binary floating-point number for the slow, accurate paths of the
// correctly rounded functions: the few arguments whose double-double result
// is too close to a rounding boundary to decide.
//
// Value = (-1)^neg * 0.m * 2^exp, where m is a 256-bit integer held most
// significant limb first with its top bit set (normalised); zero has m == 0
// (and exp, neg ignored except that toDouble keeps the sign of zero).
// The exponent is an int, so intermediate values far outside the double
// range are fine.
//
// Every operation truncates its exact result to 256 bits (toward zero), so
// each of add, sub, mul, mulSmall, divSmall has a relative error below
// 2^-254 (for add/sub of opposite signs: relative to the larger operand);
// div below 2^-250. toDouble is the one correctly rounded step: round to
// nearest, ties to even, with the subnormal range, underflow to zero and
// overflow to infinity as IEEE 754 gives them.
//
// Plain integer code: no floating-point state, no allocation, thread-safe.
#ifndef MIVORA_WIDE_FLOAT_HPP
#define MIVORA_WIDE_FLOAT_HPP

#include <cstdint>

namespace Mivora::math::wide {

constexpr int kLimbs = 4;  // 4 x 64 = 256 bits of mantissa

struct Wide {
    bool neg = false;
    int exp = 0;
    std::uint64_t m[kLimbs] = {0, 0, 0, 0};
};

bool isZero(const Wide& a) noexcept;

// Exact conversions.
Wide fromDouble(double x) noexcept;  // finite x
Wide fromInt(std::int64_t v) noexcept;

Wide neg(Wide a) noexcept;
Wide abs(Wide a) noexcept;
Wide ldexp(Wide a, int k) noexcept;  // a * 2^k, exact

Wide add(const Wide& a, const Wide& b) noexcept;
Wide sub(const Wide& a, const Wide& b) noexcept;
Wide mul(const Wide& a, const Wide& b) noexcept;
Wide mulSmall(const Wide& a, std::uint32_t k) noexcept;
Wide divSmall(const Wide& a, std::uint32_t k) noexcept;  // k != 0
Wide div(const Wide& a, const Wide& b) noexcept;         // b != 0

// -1, 0, +1 as a < b, a == b, a > b.
int compare(const Wide& a, const Wide& b) noexcept;

// The double nearest to a (ties to even), with IEEE subnormals, underflow
// and overflow.
double toDouble(const Wide& a) noexcept;

// A double close to a (a few ulps), for starting values and decisions
// that tolerate that.
double approx(const Wide& a) noexcept;

// Nearest integer to a (ties away from zero); |a| < 2^62.
std::int64_t nearestInt(const Wide& a) noexcept;

}  // namespace Mivora::math::wide

#endif
