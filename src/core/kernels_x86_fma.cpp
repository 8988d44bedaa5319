// The kernels built for x86-64 with FMA3 (this file alone gets -mfma), used
// when the CPU has it. Without hardware FMA, std::fma is a library call per
// multiply-add; here it is one instruction.
//
// Nothing with external linkage may be defined here but the two entry
// points: any other function would be shared with the portable build under
// the same name, and might be the copy the portable path ends up calling on
// a CPU without FMA. A test checks this object's exported symbols.
#include "block_kernels.hpp"
#include "lane_pair_x86.hpp"

namespace Mivora::detail::x86fma {

void processBlock(const StageView& v, const float* in, float* out, unsigned int count) noexcept {
    runBlock<SsePair>(v, in, out, count);
}

double processSample(double* delay, const double* coef, double* delay1st, const double* coef1st, int sections,
                     bool first, double x) noexcept {
    return runSample(delay, coef, delay1st, coef1st, sections, first, x);
}

}  // namespace Mivora::detail::x86fma
