// The hot path: doProcess and the cal family, and the choice of which build
// of the kernels runs them.
#include <mivora/IirProcess.h>

#include "kernel_paths.hpp"

namespace Mivora {

namespace detail {

namespace {

// Whether this CPU (and its OS, which must save the AVX registers) runs the
// FMA3 build. The flags come from the compiler runtime's CPU probe, filled in
// by a constructor before ordinary static initialisers run; should anything
// call in even earlier, the flags read as absent and the portable path, which
// gives the same results, runs instead.
bool cpuRunsX86Fma() noexcept {
#if defined(MIVORA_HAVE_X86_FMA_KERNELS)
    return __builtin_cpu_supports("fma");
#else
    return false;
#endif
}

}  // namespace

bool pathAvailable(Path path) noexcept {
    switch (path) {
        case Path::portable: return true;
        case Path::x86Fma: return cpuRunsX86Fma();
    }
    return false;
}

Path fastestPath() noexcept { return cpuRunsX86Fma() ? Path::x86Fma : Path::portable; }

void processBlock(Path path, const StageView& v, const float* in, float* out, unsigned int count) noexcept {
#if defined(MIVORA_HAVE_X86_FMA_KERNELS)
    if (path == Path::x86Fma) return x86fma::processBlock(v, in, out, count);
#endif
    (void)path;
    portable::processBlock(v, in, out, count);
}

double processSample(Path path, const StageView& v, double x) noexcept {
#if defined(MIVORA_HAVE_X86_FMA_KERNELS)
    if (path == Path::x86Fma)
        return x86fma::processSample(v.delay, v.coef, v.delay1st, v.coef1st, v.sections, v.first, x);
#endif
    (void)path;
    return portable::processSample(v.delay, v.coef, v.delay1st, v.coef1st, v.sections, v.first, x);
}

}  // namespace detail

void IirProcess::doProcess(float* in, float* out, unsigned int count) noexcept {
    if (count == 0) return;
    const detail::StageView v{delay, coef, delay1st, coef1st, detail::runningSections(evenOrder), oddOrder != 0};
    detail::processBlock(detail::fastestPath(), v, in, out, count);
}

// The cal family calls the kernel directly with its arguments in registers:
// one sample is cheap enough that the way in shows in its cost.
double IirProcess::cal(int orderArg, double x) noexcept {
    // The argument picks the sections (clamped to the capacity); an object
    // whose evenOrder is 0 runs none whatever the argument says.
    const int sections = evenOrder == 0 ? 0 : detail::runningSections(orderArg);
    const detail::StageView v{delay, coef, delay1st, coef1st, sections, oddOrder != 0};
    return detail::processSample(detail::fastestPath(), v, x);
}

double IirProcess::cal(double x) noexcept {
    // evenOrder itself is within [-4, 4]; for evenOrder 0 both rules agree.
    const detail::StageView v{delay, coef, delay1st, coef1st, detail::runningSections(evenOrder), oddOrder != 0};
    return detail::processSample(detail::fastestPath(), v, x);
}

double IirProcess::cal(int x) noexcept { return cal(static_cast<double>(x)); }

}  // namespace Mivora
