// The kernels built for the target's baseline: the fallback on every CPU, and
// the only path on targets without a specialised build. Where the baseline
// has no fused multiply-add instruction, std::fma is the C library's exact
// one: slower, same results.
#include "block_kernels.hpp"
#include "lane_pair.hpp"

namespace Mivora::detail::portable {

MIVORA_DEFINE_KERNEL_ENTRY_POINTS(ScalarPair)

}  // namespace Mivora::detail::portable
