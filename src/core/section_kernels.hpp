// Per-sample arithmetic of the two section kinds. The evaluation order is
// fixed so that every build gives the same bits: the b1 product is rounded,
// then each further product is added by one fused multiply-add.
#ifndef MIVORA_SECTION_KERNELS_HPP
#define MIVORA_SECTION_KERNELS_HPP

#include <cmath>

namespace Mivora::detail {

struct Biquad {
    double b0, b1, b2, a1, a2;
    double x1, x2, y1, y2;

    void load(const double* c, const double* s) noexcept {
        b0 = c[0]; b1 = c[1]; b2 = c[2]; a1 = c[3]; a2 = c[4];
        x1 = s[0]; x2 = s[1]; y1 = s[2]; y2 = s[3];
    }
    void store(double* s) const noexcept {
        s[0] = x1; s[1] = x2; s[2] = y1; s[3] = y2;
    }
    double step(double x) noexcept {
        double y = b1 * x1;
        y = std::fma(b0, x, y);
        y = std::fma(b2, x2, y);
        y = std::fma(a1, y1, y);
        y = std::fma(a2, y2, y);
        x2 = x1; x1 = x;
        y2 = y1; y1 = y;
        return y;
    }
};

struct FirstOrder {
    double b0, b1, a1;
    double x1, y1;

    void load(const double* c, const double* s) noexcept {
        b0 = c[0]; b1 = c[1]; a1 = c[2];
        x1 = s[0]; y1 = s[1];
    }
    void store(double* s) const noexcept {
        s[0] = x1; s[1] = y1;
    }
    double step(double x) noexcept {
        double y = b1 * x1;
        y = std::fma(b0, x, y);
        y = std::fma(a1, y1, y);
        x1 = x; y1 = y;
        return y;
    }
};

}  // namespace Mivora::detail

#endif
