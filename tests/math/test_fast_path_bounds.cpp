// The fast paths' stated error bounds, measured against MPFR at 200 bits:
// the rounding tests are only as sound as these bounds, and a violation
// here shows long before it turns into a misrounded result (which needs
// the violation to meet an argument near a midpoint).
#include <gtest/gtest.h>

#include <cmath>

#include "accuracy_harness.hpp"
#include "exp_log_fast.hpp"

namespace mivora_math_test {
namespace {

namespace d = Mivora::math::detail;
namespace dd = Mivora::math::dd;

// log2 of |(v * 2^n) / exact - 1|, with exact = f(x) (or f(x) for a
// double-double x) computed by MPFR.
double log2RelError(dd::DD v, int n, mpfr_srcptr exact) {
    mpfr_t a, b;
    mpfr_inits2(200, a, b, static_cast<mpfr_ptr>(nullptr));
    mpfr_set_d(a, v.hi, MPFR_RNDN);
    mpfr_add_d(a, a, v.lo, MPFR_RNDN);
    mpfr_mul_2si(a, a, n, MPFR_RNDN);
    mpfr_div(b, a, exact, MPFR_RNDN);
    mpfr_sub_ui(b, b, 1, MPFR_RNDN);
    const double e = mpfr_zero_p(b) ? -1000.0 : std::log2(std::fabs(mpfr_get_d(b, MPFR_RNDN)));
    mpfr_clears(a, b, static_cast<mpfr_ptr>(nullptr));
    return e;
}

double worstOver(const Draw& draw, double (*error)(double)) {
    Rng rng(seed());
    double worst = -1000.0;
    for (std::uint64_t i = 0; i < samplesPerFunction(); ++i) worst = std::max(worst, error(draw(rng)));
    return worst;
}

double expCoreError(double x) {
    mpfr_t e;
    mpfr_init2(e, 200);
    mpfr_set_d(e, x, MPFR_RNDN);
    mpfr_exp(e, e, MPFR_RNDN);
    const d::ExpParts p = d::expCore(x, 0.0);
    const double r = log2RelError(p.v, p.n, e);
    mpfr_clear(e);
    return r;
}

double logCoreError(double x) {
    int ex;
    double m;
    d::splitPositive(x, &ex, &m);
    mpfr_t e;
    mpfr_init2(e, 200);
    mpfr_set_d(e, x, MPFR_RNDN);
    mpfr_log(e, e, MPFR_RNDN);
    const double r = log2RelError(d::logCore(ex, m), 0, e);
    mpfr_clear(e);
    return r;
}

TEST(FastPathBounds, ExpWithinTwoToMinus68) {
    for (const Draw& draw : {uniform(-745.0, 709.7), uniform(-0.01, 0.01), uniform(-20.0, 20.0)})
        EXPECT_LT(worstOver(draw, expCoreError), -68.2);
}

TEST(FastPathBounds, LogWithinTwoToMinus73AndAHalf) {
    const Draw positiveAny = [](Rng& r) { return std::fabs(anyFinite()(r)); };
    for (const Draw& draw : {positiveAny, uniform(0.99, 1.01), uniform(1.0 - 0x1p-8, 1.0 + 0x1p-8), uniform(1.0, 1e6)})
        EXPECT_LT(worstOver(draw, logCoreError), -73.5);
}

}  // namespace
}  // namespace mivora_math_test
