// Power gain and phase of the filter held now, evaluated on the unit circle.
// Read-only: the state plays no part.
#include <mivora/IirProcess.h>

#include <cmath>

#include "analysis/complex_ops.hpp"

#include "design/section_math.hpp"
#include "math/cr_math.hpp"

namespace Mivora {

namespace {

using detail::Complex;

// z^-1 = e^(-jw) at the query frequency.
Complex unitDelay(double freq, double fs) noexcept {
    const double w = (freq * design::kTwoPi) / fs;
    const math::SinCos sc = math::sincos(w);
    return Complex{sc.cos, -sc.sin};
}

// B/A formed as B*conj(A) over the real |A|^2, not a library division.
Complex quotient(Complex b, Complex a) noexcept {
    const Complex n = b * conj(a);
    const Complex d = a * conj(a);
    return Complex{n.re / d.re, n.im / d.re};
}

// Factor of one stored second-order section (feedback sign as stored).
Complex sectionFactor(const double* c, Complex w) noexcept {
    const Complex a = (1.0 - c[3] * w) - (c[4] * w) * w;
    const Complex b = (c[0] + c[1] * w) + (c[2] * w) * w;
    return quotient(b, a);
}

Complex firstOrderFactor(const double* c, Complex w) noexcept {
    const Complex a = 1.0 - c[2] * w;
    const Complex b = c[0] + c[1] * w;
    return quotient(b, a);
}

// Product of the running second-order sections' factors, left to right.
Complex sectionsProduct(const double* coef, int evenOrder, Complex w) noexcept {
    Complex h{1.0, 0.0};
    for (int k = 0; k < evenOrder / 2; ++k) h = h * sectionFactor(coef + 5 * k, w);
    return h;
}

}  // namespace

double IirProcess::power(double freq, double fs) const noexcept {
    const Complex w = unitDelay(freq, fs);
    Complex h = sectionsProduct(coef, evenOrder, w);
    if (oddOrder != 0) h = h * firstOrderFactor(coef1st, w);
    const double p = std::fma(h.re, h.re, h.im * h.im);
    if (p > 0.0 || std::isnan(p)) return 10.0 * math::log10(p);
    return -100.0;
}

double IirProcess::phase(double freq, double fs) const noexcept {
    // The first-order section is left out of the phase.
    const Complex h = sectionsProduct(coef, evenOrder, unitDelay(freq, fs));
    return math::atan2(h.im, h.re);
}

}  // namespace Mivora
