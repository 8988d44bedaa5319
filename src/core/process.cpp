// The hot path: doProcess and the cal family.
#include <mivora/IirProcess.h>

#include "section_kernels.hpp"

namespace Mivora {

namespace {

using detail::Biquad;
using detail::FirstOrder;

// One block with the stage set fixed at compile time; the state lives in
// locals for the whole block and goes back to the object at the end.
template <int Sections, bool WithFirst>
void runBlock(const float* in, float* out, unsigned int count,
              double* delay, const double* coef, double* delay1st, const double* coef1st) noexcept {
    Biquad s0{}, s1{};
    FirstOrder f{};
    if constexpr (Sections >= 1) s0.load(coef, delay);
    if constexpr (Sections >= 2) s1.load(coef + 5, delay + 4);
    if constexpr (WithFirst) f.load(coef1st, delay1st);

    for (unsigned int i = 0; i < count; ++i) {
        double y = static_cast<double>(in[i]);
        if constexpr (Sections >= 1) y = s0.step(y);
        if constexpr (Sections >= 2) y = s1.step(y);
        if constexpr (WithFirst) y = f.step(y);
        out[i] = static_cast<float>(y);
    }

    if constexpr (Sections >= 1) s0.store(delay);
    if constexpr (Sections >= 2) s1.store(delay + 4);
    if constexpr (WithFirst) f.store(delay1st);
}

int runningSections(int evenOrder) noexcept { return evenOrder >= 2 ? evenOrder / 2 : 0; }

}  // namespace

void IirProcess::doProcess(float* in, float* out, unsigned int count) noexcept {
    if (count == 0) return;
    const bool first = oddOrder != 0;
    switch (runningSections(evenOrder) * 2 + (first ? 1 : 0)) {
        case 0: runBlock<0, false>(in, out, count, delay, coef, delay1st, coef1st); break;
        case 1: runBlock<0, true>(in, out, count, delay, coef, delay1st, coef1st); break;
        case 2: runBlock<1, false>(in, out, count, delay, coef, delay1st, coef1st); break;
        case 3: runBlock<1, true>(in, out, count, delay, coef, delay1st, coef1st); break;
        case 4: runBlock<2, false>(in, out, count, delay, coef, delay1st, coef1st); break;
        default: runBlock<2, true>(in, out, count, delay, coef, delay1st, coef1st); break;
    }
}

double IirProcess::cal(int orderArg, double x) noexcept {
    const int sections = evenOrder == 0 ? 0 : runningSections(clampOrder(orderArg));
    double y = x;
    for (int k = 0; k < sections; ++k) {
        Biquad s;
        s.load(coef + 5 * k, delay + 4 * k);
        y = s.step(y);
        s.store(delay + 4 * k);
    }
    if (oddOrder != 0) {
        FirstOrder f;
        f.load(coef1st, delay1st);
        y = f.step(y);
        f.store(delay1st);
    }
    return y;
}

double IirProcess::cal(double x) noexcept {
    // evenOrder itself is within [-4, 4]; for evenOrder 0 both rules agree.
    return cal(static_cast<int>(evenOrder), x);
}

double IirProcess::cal(int x) noexcept { return cal(static_cast<double>(x)); }

}  // namespace Mivora
