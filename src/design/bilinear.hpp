// The bilinear step s = (1 - z^-1)/(1 + z^-1) (pre-warped axis, no 2/T) that
// every section transform shares: the denominator s^2 + lin*s + cst becomes
// D, a1, a2 with the feedback signs as stored. The groupings are kept for
// exact results.
#ifndef MIVORA_BILINEAR_HPP
#define MIVORA_BILINEAR_HPP

namespace Mivora::design {

struct BilinearDenominator {
    double d;   // (lin + 1) + cst: every coefficient of the section is divided by it
    double a1;  // ((1 - cst) + (1 - cst)) / d
    double a2;  // -((1 - lin) + cst) / d
};

inline BilinearDenominator bilinearDenominator(double lin, double cst) noexcept {
    const double d = (lin + 1.0) + cst;
    return {d, ((1.0 - cst) + (1.0 - cst)) / d, -((1.0 - lin) + cst) / d};
}

}  // namespace Mivora::design

#endif
