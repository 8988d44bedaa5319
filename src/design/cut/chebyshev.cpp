// Chebyshev (equiripple pass band) and inverse Chebyshev (equiripple stop
// band) high-pass and low-pass. Both walk the same Chebyshev pole pairs; the
// inverse designs take the reciprocal poles, add a zero pair per section at
// +-i/cos(phi) on the prototype axis, and have no even-order gain step.
#include <mivora/IirProcess.h>

#include <cmath>

#include "math/cr_math.hpp"

#include "../cascade.hpp"
#include "../chebyshev_params.hpp"
#include "../section_math.hpp"
#include "cut_sections.hpp"

namespace Mivora {

namespace {

using design::ChebyshevPair;
using design::cut::Pass;

enum class Kind { Chebyshev, Inverse };

// Analogue factor s^2 + lin*s + cst on the pre-warped axis.
struct Factor {
    double lin;
    double cst;
};

// The pair's factor s^2 - 2*sigma*s + p2 moved to the edge t by s -> s/t.
Factor atEdge(const ChebyshevPair& p, double t) noexcept {
    return {(p.sigma * (-2.0)) * t, (p.p2 * t) * t};
}

// The factor of the reciprocal poles, s^2 - (2*sigma/p2)*s + 1/p2, moved by
// s -> s/t. It is also the pair's own factor under s -> t/s, normalised.
Factor reciprocalAtEdge(const ChebyshevPair& p, double t) noexcept {
    return {((p.sigma * (-2.0)) / p.p2) * t, ((1.0 / p.p2) * t) * t};
}

void chebyshevSection(Pass pass, const ChebyshevPair& p, double t, double* c) noexcept {
    const Factor f = pass == Pass::High ? reciprocalAtEdge(p, t) : atEdge(p, t);
    design::cut::unityCutSection(pass, f.lin, f.cst, c);
}

void inverseChebyshevSection(Pass pass, const ChebyshevPair& p, double t, double* c) noexcept {
    const Factor r = reciprocalAtEdge(p, t);
    const double zero = 1.0 / (p.cosPhi * p.cosPhi);  // prototype zeros at +-i/cos(phi)
    if (pass == Pass::Low) {
        IirProcess::IChevLpfCoefToZet(r.lin, r.cst, (zero * t) * t, c);
        // zero/cst at DC before scaling: g = cst/zero on the prototype axis.
        design::scaleNumerator(c, 1.0 / (zero * p.p2));
    } else {
        // s -> t/s of the reciprocal-pole section; already unity at fs/2.
        const double t2 = t * t;
        IirProcess::IChevHpfCoefToZet(r.lin / (1.0 / p.p2), t2 / (1.0 / p.p2), t2 / zero, c);
    }
}

design::Cascade chebyshevCascade(Kind kind, Pass pass, int requestedOrder, double freq, double epsilon,
                                 double fs) noexcept {
    design::Cascade c(requestedOrder);
    if (c.order == 0) return c;  // nothing to design (and mu would divide by zero)

    const design::ChebyshevPrototype proto = design::chebyshevPrototype(epsilon, c.order);
    const double t = design::prewarp(freq, fs);
    for (int k = 0; k < c.sections; ++k) {
        const ChebyshevPair p = design::chebyshevPair(proto, k);
        if (kind == Kind::Chebyshev)
            chebyshevSection(pass, p, t, c.section[k]);
        else
            inverseChebyshevSection(pass, p, t, c.section[k]);
    }

    // Every section has unity gain at the pass-band end, where an even-order
    // Chebyshev response should sit at the ripple's troughs.
    if (kind == Kind::Chebyshev && c.sections > 0 && !c.firstOrder)
        design::scaleNumerator(c.section[0], design::chebyshevEvenOrderGain(epsilon));

    if (c.firstOrder) {
        // Real pole -sinh(mu); the inverse prototype's is its reciprocal, which
        // swaps whether the high-pass or the low-pass divides by sinh(mu).
        const double sinhMu = math::sinh(proto.mu);
        const bool divide = (pass == Pass::High) == (kind == Kind::Chebyshev);
        design::cut::firstOrderCutSection(pass, divide ? t / sinhMu : t * sinhMu, c.first);
    }
    return c;
}

}  // namespace

void IirProcess::setCoefHPFChev(int order, double freq, double ripple, double fs) noexcept {
    applyDesign(chebyshevCascade(Kind::Chebyshev, Pass::High, order, freq, design::rippleEpsilon(ripple), fs));
}

void IirProcess::setCoefLPFChev(int order, double freq, double ripple, double fs) noexcept {
    applyDesign(chebyshevCascade(Kind::Chebyshev, Pass::Low, order, freq, design::rippleEpsilon(ripple), fs));
}

void IirProcess::setCoefHPFIChev(int order, double freq, double stopLevel, double fs) noexcept {
    applyDesign(chebyshevCascade(Kind::Inverse, Pass::High, order, freq, design::stopEpsilon(stopLevel), fs));
}

void IirProcess::setCoefLPFIChev(int order, double freq, double stopLevel, double fs) noexcept {
    applyDesign(chebyshevCascade(Kind::Inverse, Pass::Low, order, freq, design::stopEpsilon(stopLevel), fs));
}

}  // namespace Mivora
