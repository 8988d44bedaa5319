// Two lanes of doubles that take the same operation at once. The two-section
// kernel keeps both second-order sections in one pair (block_kernels.hpp).
// Each lane sees exactly the scalar operation, so results do not depend on
// which pair type runs.
//
// A pair type provides set/lo/hi, mul and mulAdd (found by overload), and:
//   load2(in) = (in[0], in[1]) widened
//   loadPair(in, older0, older1, a, b): a = (in[0], older0.lo),
//                                       b = (in[1], older1.lo)
//   shift(older, newer) = (older.hi, newer.lo)
//   highs(a, b) = (a.hi, b.hi)
//   storePair(out, z): out[0] = float(z.lo), out[1] = float(z.hi)
#ifndef MIVORA_LANE_PAIR_HPP
#define MIVORA_LANE_PAIR_HPP

#include <cmath>

namespace Mivora::detail {
namespace {  // internal linkage: see section_kernels.hpp

// Two plain doubles: the portable pair, for any target.
struct ScalarPair {
    double l, h;

    static ScalarPair set(double lo, double hi) noexcept { return {lo, hi}; }
    double lo() const noexcept { return l; }
    double hi() const noexcept { return h; }

    static ScalarPair load2(const float* in) noexcept {
        return {static_cast<double>(in[0]), static_cast<double>(in[1])};
    }
    static void loadPair(const float* in, ScalarPair older0, ScalarPair older1,
                         ScalarPair& a, ScalarPair& b) noexcept {
        a = {static_cast<double>(in[0]), older0.l};
        b = {static_cast<double>(in[1]), older1.l};
    }
    static ScalarPair shift(ScalarPair older, ScalarPair newer) noexcept { return {older.h, newer.l}; }
    static ScalarPair highs(ScalarPair a, ScalarPair b) noexcept { return {a.h, b.h}; }
    static void storePair(float* out, ScalarPair z) noexcept {
        out[0] = static_cast<float>(z.l);
        out[1] = static_cast<float>(z.h);
    }
};

inline ScalarPair mul(ScalarPair a, ScalarPair b) noexcept { return {a.l * b.l, a.h * b.h}; }
inline ScalarPair mulAdd(ScalarPair a, ScalarPair b, ScalarPair c) noexcept {
    return {std::fma(a.l, b.l, c.l), std::fma(a.h, b.h, c.h)};
}

}  // namespace
}  // namespace Mivora::detail

#endif
