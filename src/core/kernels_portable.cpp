// The kernels built for the target's baseline: the fallback on every CPU, and
// the only path on targets without a specialised build. Where the baseline
// has no fused multiply-add instruction, std::fma is the C library's exact
// one: slower, same results.
#include "block_kernels.hpp"
#include "lane_pair.hpp"

namespace Mivora::detail::portable {

void processBlock(const StageView& v, const float* in, float* out, unsigned int count) noexcept {
    runBlock<ScalarPair>(v, in, out, count);
}

double processSample(double* delay, const double* coef, double* delay1st, const double* coef1st, int sections,
                     bool first, double x) noexcept {
    return runSample(delay, coef, delay1st, coef1st, sections, first, x);
}

}  // namespace Mivora::detail::portable
