// The band transformations, in closed form and one factor at a time: a
// low-pass prototype factor to its two band factors, a prototype zero pair to
// its two band zero pairs, and the bilinear step of band sections.
#include <mivora/IirProcess.h>

#include <cmath>

#include "../bilinear.hpp"
#include "band_pass_section.hpp"

namespace Mivora {

// Each prototype root p goes to the two roots of u^2 - p*B*u + 1 = 0 (u = s/w0).
// The complex square root this needs is taken in real arithmetic: f is the
// magnitude of its imaginary part, g that of its real part.
void IirProcess::BpfCoefTrans(double lin, double cst, double wLow, double wHigh,
                              double* lin1, double* cst1, double* lin2, double* cst2) noexcept {
    const double w0 = std::sqrt(wLow * wHigh);
    const double b = (wHigh - wLow) / w0;
    const double a = (b * lin) * 0.5;
    const double c = (std::sqrt(4.0 * cst - lin * lin) * b) * 0.5;
    const double e = (4.0 - a * a) + c * c;
    const double f = std::sqrt(e * 0.5 + std::sqrt((c * (a * a)) * c + (e * e) * 0.25));
    const double g = (a * c) / f;
    const double w0Squared = w0 * w0;
    *lin1 = w0 * (a + g);
    *cst1 = (w0Squared * ((a + g) * (a + g) + (c + f) * (c + f))) * 0.25;
    *lin2 = w0 * (a - g);
    *cst2 = (w0Squared * ((a - g) * (a - g) + (c - f) * (c - f))) * 0.25;
}

// The zeros +-j*sqrt(zero) land at +-j*BW*m and +-j*BW*l. v is sqrt(zero) in
// exact arithmetic; it is formed from p so that m and l stay consistent.
void IirProcess::BuboCoefTrans(double wLow, double wHigh, double zero, double* zeroHigh, double* zeroLow) noexcept {
    const double r = (wLow * wHigh) / ((wHigh - wLow) * (wHigh - wLow));
    const double p = r * 2.0 + zero;
    const double u = std::sqrt(r * 2.0 + p);
    const double v = std::sqrt(p - r * 2.0);
    const double m = (u + v) * 0.5;
    const double l = (u - v) * 0.5;
    *zeroHigh = ((m * wLow) * wHigh) / l;
    *zeroLow = ((l * wLow) * wHigh) / m;
}

void IirProcess::BpfCoefToZet(double lin, double cst, double* coefOut) noexcept {
    design::writeBandPassSection(1.0, design::bilinearDenominator(lin, cst), coefOut);
}

void IirProcess::BefCoefToZet(double lin, double cst, double zero, double* coefOut) noexcept {
    const design::BilinearDenominator den = design::bilinearDenominator(lin, cst);
    coefOut[0] = (zero + 1.0) / den.d;
    coefOut[1] = ((1.0 - zero) * (-2.0)) / den.d;
    coefOut[2] = (zero + 1.0) / den.d;
    coefOut[3] = den.a1;
    coefOut[4] = den.a2;
}

}  // namespace Mivora
