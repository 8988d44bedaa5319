// Peaking EQ band: the bilinear transform of (s^2 + (p/t)s + 1)/(s^2 + (d/t)s + 1)
// with the centre frequency pre-warped to t. The two designs differ only in
// which quadratic carries the given Q.
#include <mivora/IirProcess.h>

#include "../section_math.hpp"
#include "bilinear_terms.hpp"

namespace Mivora {

namespace {

enum class QOn { Poles, Zeros };

// Fills c with section 0 of a peaking band; false (c untouched) for a NaN gain.
// Poles: the given q is the boost's pole Q and the other quadratic has Q = q/A.
// Zeros: the given q is the boost's zero Q and the other has Q = A*q.
// A cut swaps numerator and denominator terms, so it is the boost's inverse.
bool peakCoefficients(QOn given, double freq, double fs, double gainDb, double q, double* c) noexcept {
    const double a = design::dbToLinearMagnitude(gainDb);
    const double t = design::prewarp(freq, fs);
    const bool boost = gainDb >= 0.0;
    if (!boost && !(gainDb < 0.0)) return false;

    const double plain = t / q;
    const double shaped = given == QOn::Poles ? (t * a) / q : (t / q) / a;
    double p = 0.0;
    double d = 0.0;
    if (given == QOn::Poles) {
        p = boost ? shaped : plain;
        d = boost ? plain : shaped;
    } else {
        p = boost ? plain : shaped;
        d = boost ? shaped : plain;
    }

    const double tt = t * t;
    const design::eq::Quadratic num = design::eq::quadratic(p, tt);
    const design::eq::Quadratic den = design::eq::quadratic(d, tt);
    c[0] = num.x0 / den.x0;
    c[1] = (num.x1 * (-2.0)) / den.x0;
    c[2] = num.x2 / den.x0;
    c[3] = (den.x1 + den.x1) / den.x0;
    // -x2 rather than x2neg: an exact zero a2 keeps the sign the band defines.
    c[4] = -den.x2 / den.x0;
    return true;
}

}  // namespace

void IirProcess::setCoefPDFPQ(double freq, double fs, double gainDb, double q) noexcept {
    changeOrder(2);
    double c[5];
    if (peakCoefficients(QOn::Poles, freq, fs, gainDb, q, c)) writeSection(0, c);
}

void IirProcess::setCoefPDFCQ(double freq, double fs, double gainDb, double q) noexcept {
    changeOrder(2);
    double c[5];
    if (peakCoefficients(QOn::Zeros, freq, fs, gainDb, q, c)) writeSection(0, c);
}

void IirProcess::setCoef(double freq, double fs, double gainDb, double q) noexcept {
    setCoefPDFPQ(freq, fs, gainDb, q);
}

}  // namespace Mivora
