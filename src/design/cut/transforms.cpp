// The four cut-filter section transforms: one analogue second-order section on
// the pre-warped axis to b0 b1 b2 a1 a2 by s = (1 - z^-1)/(1 + z^-1). All
// share the denominator step; only the numerators differ, and every one of
// them is symmetric (b2 = b0).
#include <mivora/IirProcess.h>

#include "../bilinear.hpp"

namespace Mivora {

namespace {

void symmetricSection(double lin, double cst, double b0Num, double b1Num, double* out) noexcept {
    const design::BilinearDenominator den = design::bilinearDenominator(lin, cst);
    out[0] = b0Num / den.d;
    out[1] = b1Num / den.d;
    out[2] = b0Num / den.d;
    out[3] = den.a1;
    out[4] = den.a2;
}

}  // namespace

void IirProcess::HpfCoefToZet(double lin, double cst, double* coefOut) noexcept {
    symmetricSection(lin, cst, 1.0, -2.0, coefOut);
}

void IirProcess::LpfCoefToZet(double lin, double cst, double* coefOut) noexcept {
    symmetricSection(lin, cst, 1.0, 2.0, coefOut);
}

void IirProcess::IChevHpfCoefToZet(double lin, double cst, double zero, double* coefOut) noexcept {
    symmetricSection(lin, cst, zero + 1.0, (1.0 - zero) * (-2.0), coefOut);
}

void IirProcess::IChevLpfCoefToZet(double lin, double cst, double zero, double* coefOut) noexcept {
    // Doubling and negation are exact, so this b1 equals the high-pass one.
    symmetricSection(lin, cst, zero + 1.0, (zero - 1.0) + (zero - 1.0), coefOut);
}

}  // namespace Mivora
