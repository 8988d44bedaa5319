// The complex arithmetic of the response queries, written out in double
// operations so that every compiler, optimisation level and runtime gives
// the same bits. The groupings are those std::complex<double> gives in an
// optimised build (a real scalar scales both parts, real + z adds to the real
// part alone, real - z is -z + real). Left to std::complex, a product whose
// parts both come out NaN would go to a runtime helper (__muldc3) built
// differently per target, and standard libraries differ in whether they
// recover infinities there at all. Internal to the library.
#ifndef MIVORA_COMPLEX_OPS_HPP
#define MIVORA_COMPLEX_OPS_HPP

#include <cmath>

namespace Mivora::detail {

struct Complex {
    double re;
    double im;
};

inline Complex operator+(Complex a, Complex b) noexcept { return {a.re + b.re, a.im + b.im}; }
inline Complex operator-(Complex a, Complex b) noexcept { return {a.re - b.re, a.im - b.im}; }
inline Complex operator*(double s, Complex z) noexcept { return {z.re * s, z.im * s}; }
inline Complex operator+(double s, Complex z) noexcept { return {z.re + s, z.im}; }
inline Complex operator-(double s, Complex z) noexcept { return {-z.re + s, -z.im}; }
inline Complex conj(Complex z) noexcept { return {z.re, -z.im}; }

// (ac - bd) + i(ad + bc). When both parts come out NaN, infinite operands
// (or overflowed products) are recovered as C's Annex G asks: an infinite
// factor counts as a unit in its direction, a NaN part beside it as +0 (not
// its sign, which differs between CPUs), and the result is infinite.
inline Complex operator*(Complex z, Complex w) noexcept {
    double a = z.re, b = z.im, c = w.re, d = w.im;
    const double ac = a * c, bd = b * d, ad = a * d, bc = b * c;
    const Complex p{ac - bd, ad + bc};
    if (!(std::isnan(p.re) && std::isnan(p.im))) return p;
    const auto unit = [](double x) { return std::copysign(std::isinf(x) ? 1.0 : 0.0, x); };
    const auto noNaN = [](double& x) {
        if (std::isnan(x)) x = 0.0;
    };
    bool recalc = false;
    if (std::isinf(a) || std::isinf(b)) {
        a = unit(a);
        b = unit(b);
        noNaN(c);
        noNaN(d);
        recalc = true;
    }
    if (std::isinf(c) || std::isinf(d)) {
        c = unit(c);
        d = unit(d);
        noNaN(a);
        noNaN(b);
        recalc = true;
    }
    if (!recalc && (std::isinf(ac) || std::isinf(bd) || std::isinf(ad) || std::isinf(bc))) {
        noNaN(a);
        noNaN(b);
        noNaN(c);
        noNaN(d);
        recalc = true;
    }
    if (!recalc) return p;
    return {HUGE_VAL * (a * c - b * d), HUGE_VAL * (a * d + b * c)};
}

}  // namespace Mivora::detail

#endif
