// The fast paths' stated error bounds (exp_log_fast.hpp, trig_fast.hpp,
// trig_reduce.hpp), measured against MPFR: the rounding tests are only as
// sound as these bounds, and a violation shows here long before it meets an
// argument close enough to a midpoint to be misrounded.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "accuracy_harness.hpp"
#include "exp_log_fast.hpp"
#include "trig_fast.hpp"
#include "trig_reduce.hpp"

namespace mivora_math_test {
namespace {

namespace d = Mivora::math::detail;
namespace t = Mivora::math::trig;
using Mivora::math::dd::DD;

constexpr mpfr_prec_t kPrec = 200;  // far past every bound; pi/2 for the reduction takes more

// log2 |v 2^scale - exact|, relative to |exact| unless asked for the absolute error.
double log2Error(DD v, int scale, mpfr_srcptr exact, bool relative = true) {
    mpfr_t a;
    mpfr_init2(a, kPrec);
    mpfr_set_d(a, v.hi, MPFR_RNDN);
    mpfr_add_d(a, a, v.lo, MPFR_RNDN);
    mpfr_mul_2si(a, a, scale, MPFR_RNDN);
    mpfr_sub(a, a, exact, MPFR_RNDN);
    if (relative) mpfr_div(a, a, exact, MPFR_RNDN);
    const double e = mpfr_zero_p(a) ? -1000.0 : std::log2(std::fabs(mpfr_get_d(a, MPFR_RNDN)));
    mpfr_clear(a);
    return e;
}

// f(x) with MPFR, then the relative error of v 2^scale against it.
double errorOf(DD v, Mpfr1 f, double x, int scale = 0) {
    mpfr_t a, r;
    mpfr_inits2(kPrec, a, r, static_cast<mpfr_ptr>(nullptr));
    mpfr_set_d(a, x, MPFR_RNDN);
    f(r, a, MPFR_RNDN);
    const double e = log2Error(v, scale, r);
    mpfr_clears(a, r, static_cast<mpfr_ptr>(nullptr));
    return e;
}

double expCore(double x) {
    const d::ExpParts p = d::expCore(x, 0.0);
    return errorOf(p.v, mpfr_exp, x, p.n);
}

double logCore(double x) {
    int ex;
    double m;
    d::splitPositive(x, &ex, &m);
    return errorOf(d::logCore(ex, m), mpfr_log, x);
}

// Both from one call: the wanted flags only gate independent branches.
double sinCosCore(double r) {
    DD s{}, c{};
    t::sinCosOfReduced({r, 0.0}, true, true, s, c);
    return std::max(errorOf(s, mpfr_sin, r), errorOf(c, mpfr_cos, r));
}

// sin r / cos r and cos r / sin r, as tan uses them in even and odd quadrants.
double tanCore(double r) {
    DD s{}, c{};
    t::sinCosOfReduced({r, 0.0}, true, true, s, c);
    return std::max(errorOf(t::quotient(s, c), mpfr_tan, r), errorOf(t::quotient(c, s), mpfr_cot, r));
}

double atanCore(double u) { return errorOf(t::atanQuotient(u, 1.0, {0.0, 0.0}, 1.0), mpfr_atan, u); }

// Absolute error of r = x - k pi/2 (and the quadrant k mod 4).
double reduction(double x) {
    mpfr_t a, halfPi, r;
    mpfr_inits2(1400, a, halfPi, static_cast<mpfr_ptr>(nullptr));  // pi/2 to well past 2^1024 / 2^-200
    mpfr_init2(r, kPrec);
    mpfr_const_pi(halfPi, MPFR_RNDN);
    mpfr_div_2ui(halfPi, halfPi, 1, MPFR_RNDN);
    mpfr_set_d(a, x, MPFR_RNDN);
    long k = 0;
    mpfr_remquo(r, &k, a, halfPi, MPFR_RNDN);
    const t::ReducedFast got = t::reduceFast(x);
    const double e = (got.quadrant == static_cast<int>(k & 3)) ? log2Error(got.r, 0, r, false) : 0.0;
    mpfr_clears(a, halfPi, r, static_cast<mpfr_ptr>(nullptr));
    return e;
}

struct BoundRow {
    const char* name;
    std::vector<Draw> draws;  // taken in turn
    double (*log2Err)(double);
    double bound;  // log2 of the bound stated where the code is
    double share;  // of samplesPerFunction(): the cheap cores get more, the costly reduction less
};

TEST(FastPathBounds, ErrorsStayWithinTheirStatedBounds) {
    const Draw quarter = uniform(-0.7853981633974483, 0.7853981633974483);
    const Draw positiveAny = [](Rng& r) { return std::fabs(anyFinite()(r)); };
    const std::vector<BoundRow> rows = {
        {"exp core", {uniform(-745.0, 709.7), uniform(-0.01, 0.01), uniform(-20.0, 20.0)}, expCore, -68.2, 3.0},
        {"log core", {positiveAny, uniform(0.99, 1.01), uniform(1.0 - 0x1p-8, 1.0 + 0x1p-8), uniform(1.0, 1e6)},
         logCore, -73.5, 4.0},
        {"sin r, cos r", {quarter, logUniform(0x1p-30, 0x1p-8)}, sinCosCore, -70.0, 0.25},
        {"tan r, cot r", {quarter, logUniform(0x1p-25, 0x1p-8)}, tanCore, -69.0, 0.25},
        {"atan u", {uniform(0.0, 1.0), logUniform(0x1p-30, 0x1p-7)}, atanCore, -71.5, 0.25},
        // Absolute; arguments of every size, both reductions.
        {"reduction", {uniform(0.8, 1e3), logUniform(1.0, 0x1p27), logUniform(0x1p27, 1e300)}, reduction, -103.0,
         0.25},
    };
    for (const BoundRow& row : rows) {
        Rng rng(seed());
        const auto n = static_cast<std::uint64_t>(row.share * static_cast<double>(samplesPerFunction()));
        double worst = -1000.0;
        for (std::uint64_t i = 0; i < n; ++i)
            worst = std::max(worst, row.log2Err(row.draws[i % row.draws.size()](rng)));
        EXPECT_LE(worst, row.bound) << row.name << ": largest error 2^" << worst;
    }
}

}  // namespace
}  // namespace mivora_math_test
