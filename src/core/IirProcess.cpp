// The object: construction, order bookkeeping, state operations, read-out.
#include <mivora/IirProcess.h>

#include <algorithm>

#include "design/cascade.hpp"

namespace Mivora {

namespace {

template <std::size_t N>
void zero(double (&a)[N]) noexcept {
    std::fill(a, a + N, 0.0);
}

}  // namespace

IirProcess::IirProcess() noexcept : IirProcess(nullptr, 2) {}

IirProcess::IirProcess(VqMemAlloc* alloc) noexcept : IirProcess(alloc, 2) {}

IirProcess::IirProcess(int n) noexcept : IirProcess(nullptr, n) {}

IirProcess::IirProcess(VqMemAlloc* alloc, int n) noexcept
    : delay{}, coef{}, delay1st{}, coef1st{}, evenOrder(0), oddOrder(0), order(0), memAlloc(alloc) {
    // coef1st is zeroed too: an odd order processed before any design then
    // outputs silence instead of reading garbage.
    setOrder(n);
}

std::size_t IirProcess::CalculateWorkSize() noexcept { return sizeof(IirProcess); }

int IirProcess::clampOrder(int n) noexcept { return std::clamp(n, -maxOrder, maxOrder); }

void IirProcess::setOrder(int n) noexcept {
    n = clampOrder(n);
    // Round toward zero to even: clear the low bit of the magnitude.
    evenOrder = n >= 0 ? (n & ~1) : -((-n) & ~1);
    oddOrder = n - evenOrder;
    order = n;
}

void IirProcess::changeOrder(int n) noexcept {
    n = clampOrder(n);
    if (order == n) return;
    setOrder(n);
    clear();
}

void IirProcess::clear() noexcept {
    zero(delay);
    zero(coef);
}

void IirProcess::clearDelay() noexcept {
    zero(delay);
    zero(delay1st);
}

void IirProcess::setDelay(double value) noexcept {
    if (evenOrder >= 1) std::fill(delay, delay + 2 * evenOrder, value);
    delay1st[0] = value;
    delay1st[1] = value;
}

void IirProcess::getCoef(double* coefOut) const noexcept {
    int p = 0;
    if (evenOrder == 0) {
        std::fill(coefOut, coefOut + 5, 0.0);
    } else if (evenOrder >= 2) {
        p = 5 * (evenOrder / 2);
        std::copy(coef, coef + p, coefOut);
    }
    if (oddOrder != 0) std::copy(coef1st, coef1st + 3, coefOut + p);
}

void IirProcess::getDelay(double* stateOut) const noexcept {
    std::copy(delay, delay + 8, stateOut);
    std::copy(delay1st, delay1st + 2, stateOut + 8);
}

void IirProcess::writeSection(int k, const double* c) noexcept {
    std::copy(c, c + 5, coef + 5 * k);
}

void IirProcess::writeSection(int k, double b0, double b1, double b2, double a1, double a2) noexcept {
    double* c = coef + 5 * k;
    c[0] = b0;
    c[1] = b1;
    c[2] = b2;
    c[3] = a1;
    c[4] = a2;
}

void IirProcess::writeFirstOrder(double b0, double b1, double a1) noexcept {
    coef1st[0] = b0;
    coef1st[1] = b1;
    coef1st[2] = a1;
}

void IirProcess::applyDesign(const design::Cascade& c) noexcept {
    changeOrder(c.order);
    for (int k = 0; k < c.sections; ++k) writeSection(k, c.section[k]);
    if (c.firstOrder) writeFirstOrder(c.first[0], c.first[1], c.first[2]);
}

}  // namespace Mivora
