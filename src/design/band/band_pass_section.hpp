// The one band-pass section shape: gain*s/(s^2 + lin*s + cst) through the
// bilinear transform. BpfCoefToZet and the Q band-pass designs both write it.
#ifndef MIVORA_BAND_PASS_SECTION_HPP
#define MIVORA_BAND_PASS_SECTION_HPP

#include "../bilinear.hpp"

namespace Mivora::design {

// b0 = gain/d and b2 = (-gain)/d, so b2 is exactly -b0 and the section has an
// exact zero at DC and at fs/2; b1 is 0.
inline void writeBandPassSection(double gain, const BilinearDenominator& den, double* coefOut) noexcept {
    coefOut[0] = gain / den.d;
    coefOut[1] = 0.0;
    coefOut[2] = (-gain) / den.d;
    coefOut[3] = den.a1;
    coefOut[4] = den.a2;
}

}  // namespace Mivora::design

#endif
