// The denominator every second-order section transform shares.
#ifndef MIVORA_BILINEAR_DENOMINATOR_HPP
#define MIVORA_BILINEAR_DENOMINATOR_HPP

namespace Mivora::design {

// s^2 + lin*s + cst under s = (1 - z^-1)/(1 + z^-1), normalised to a leading 1:
// the normaliser d and the feedback coefficients a1, a2 with the stored sign
// (added, not subtracted).
struct BilinearDenominator {
    double d;
    double a1;
    double a2;
};

inline BilinearDenominator bilinearDenominator(double lin, double cst) noexcept {
    const double d = (lin + 1.0) + cst;
    return {d, ((1.0 - cst) + (1.0 - cst)) / d, -((1.0 - lin) + cst) / d};
}

}  // namespace Mivora::design

#endif
