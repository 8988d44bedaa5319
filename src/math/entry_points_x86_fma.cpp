// The correctly rounded functions built for x86-64 with FMA3 (this file alone
// gets -mfma among the mathematics sources), called by entry_points.cpp when
// the CPU has it.
//
// Nothing with external linkage may be defined here but the entry points in
// Mivora::math::x86fma: every helper the implementations use has internal
// linkage, so no copy built for FMA3 can stand in for the portable one. A
// test checks this object's exported code.
#include "entry_points.hpp"

#include "atan_impl.hpp"
#include "exp_log_impl.hpp"
#include "hyperbolic_impl.hpp"
#include "pow_impl.hpp"
#include "sin_cos_tan_impl.hpp"

namespace Mivora::math::x86fma {

#define MIVORA_MATH_ENTRY(R, name, params, args, family) \
    R name params noexcept { return impl::family::name args; }
MIVORA_MATH_FUNCTIONS(MIVORA_MATH_ENTRY)
#undef MIVORA_MATH_ENTRY

}  // namespace Mivora::math::x86fma
