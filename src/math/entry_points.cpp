// The correctly rounded functions' entry points: each runs the FMA3 build
// when the CPU has it (x86-64) and the portable one otherwise. Both give the
// same bits; the choice moves only speed.
#include "entry_points.hpp"

#include "atan_impl.hpp"
#include "exp_log_impl.hpp"
#include "hyperbolic_impl.hpp"
#include "pow_impl.hpp"
#include "sin_cos_tan_impl.hpp"

namespace Mivora::math {

namespace {

// The flag comes from the compiler runtime's CPU probe (see process.cpp for
// why reading it this early is safe).
bool runsX86Fma() noexcept {
#if defined(MIVORA_HAVE_X86_FMA_MATH)
    return __builtin_cpu_supports("fma");
#else
    return false;
#endif
}

}  // namespace

#if defined(MIVORA_HAVE_X86_FMA_MATH)
#define MIVORA_MATH_ENTRY(R, name, params, args, family)        \
    R name params noexcept {                                    \
        if (runsX86Fma()) return x86fma::name args;             \
        return impl::family::name args;                         \
    }
#else
#define MIVORA_MATH_ENTRY(R, name, params, args, family) \
    R name params noexcept { return impl::family::name args; }
#endif
MIVORA_MATH_FUNCTIONS(MIVORA_MATH_ENTRY)
#undef MIVORA_MATH_ENTRY

}  // namespace Mivora::math
