// The elementary functions behind every design and response query, at fixed
// inputs: special values, exact cases, arguments that are hard for argument
// reduction, a spread over the whole exponent range and a dense sample of
// the ranges the designs use. Their bits prove identical mathematics on
// machines where the accuracy test against MPFR cannot run.
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "golden_grid.hpp"
#include "math/cr_math.hpp"

namespace mivora_golden {

namespace {

namespace m = Mivora::math;
using List = std::vector<double>;

const List& specials() {
    static const List s = {
        0.0, -0.0, HUGE_VAL, -HUGE_VAL, std::nan(""), DBL_TRUE_MIN, -DBL_TRUE_MIN, DBL_MIN, -DBL_MIN,
        0x1.fffffffffffffp-1023, DBL_MAX, -DBL_MAX, 1.0, -1.0, 0.5, -0.5, 2.0, 10.0, 0.1, 1e-8, -1e-8,
        1e-300, 0x1p-1000, 0x1p-27, 0x1p-54, 1.0 + DBL_EPSILON, 1.0 - DBL_EPSILON / 2,
        // Near multiples of pi/2 and pi, and huge trigonometric arguments: 1e22,
        // 2^1023, and 6381956970095103 * 2^797, the double closest to a
        // multiple of pi/2 relative to its size.
        0x1.921fb54442d18p+0, 0x1.921fb54442d18p+1, 0x1.921fb54442d18p+2, 0x1.2d97c7f3321d2p+1,
        -0x1.921fb54442d18p+0, 355.0, 103993.0, 1e22, -1e22, 0x1p+1023, 1e300, 0x1.6ac5b262ca1ffp+849,
        // exp and pow limits, log near 1.
        709.782712893384, 709.7827128933841, -745.1332191019411, -745.1332191019412, 308.25471555991675,
        -323.60724533877976, 0.9999999999999999, 1.0000000000000002, 710.4758600739439, -710.4758600739439};
    return s;
}

// Exact cases: powers of ten, integer logs, squares that fit.
List exactCases() {
    List e;
    for (int k = -22; k <= 22; ++k) e.push_back(static_cast<double>(k));
    double p = 1.0;
    for (int k = 0; k <= 22; ++k, p *= 10.0) e.push_back(p);
    return e;
}

// Inputs for a function of one argument: specials, exact cases, 1024 of any
// bit pattern and 1536 spread over [lo, hi], where the designs live.
List oneArgInputs(std::uint64_t seed, double lo, double hi) {
    List in = specials();
    for (double x : exactCases()) in.push_back(x);
    SplitMix r{seed};
    for (int i = 0; i < 1024; ++i) in.push_back(r.anyBits());
    for (int i = 0; i < 1536; ++i) in.push_back(r.uniform(lo, hi));
    return in;
}

struct OneArg {
    const char* group;
    double (*fn)(double) noexcept;
    double lo, hi;  // the range the designs use
};

// Pairs for pow and atan2: specials against specials and exact cases, any
// bit patterns, and a dense sample of [xlo, xhi] x [ylo, yhi].
void walkTwoArg(Recorder& rec, const char* group, double (*fn)(double, double) noexcept, std::uint64_t seed,
                double xlo, double xhi, double ylo, double yhi) {
    List seconds = specials();
    for (double v : exactCases()) seconds.push_back(v);
    seconds.insert(seconds.end(), {0.5, -0.5, 1.0 / 3.0});
    for (double x : specials())
        for (double y : seconds) rec.add(group, Values{x, y}, Values{fn(x, y)});
    SplitMix r{seed};
    for (int i = 0; i < 1024 + 1536; ++i) {
        const double x = i < 1024 ? r.anyBits() : r.uniform(xlo, xhi);
        const double y = i < 1024 ? r.anyBits() : r.uniform(ylo, yhi);
        rec.add(group, Values{x, y}, Values{fn(x, y)});
    }
}

}  // namespace

void walkMathGrid(Recorder& rec) {
    // Dense ranges: angles up to Nyquist (pi/2 for tan, 2 pi for the
    // response), gains in dB / 20 for 10^x, the Chebyshev parameters.
    const OneArg fns[] = {
        {"math tan", m::tan, 0.0, 1.5707963267948966},
        {"math sin", m::sin, -6.283185307179586, 6.283185307179586},
        {"math cos", m::cos, -6.283185307179586, 6.283185307179586},
        {"math exp", m::exp, -20.0, 20.0},
        {"math exp10", m::exp10, -10.0, 10.0},
        {"math log", m::log, 0.0, 100.0},
        {"math log10", m::log10, 0.0, 1e4},
        {"math sinh", m::sinh, -10.0, 10.0},
        {"math cosh", m::cosh, -10.0, 10.0},
        {"math atan", m::atan, -20.0, 20.0},
    };
    std::uint64_t seed = 1;
    for (const OneArg& f : fns)
        for (double x : oneArgInputs(seed++, f.lo, f.hi)) rec.add(f.group, Values{x}, Values{f.fn(x)});
    for (double x : oneArgInputs(seed++, -6.283185307179586, 6.283185307179586)) {
        const m::SinCos sc = m::sincos(x);
        rec.add("math sincos", Values{x}, Values{sc.sin, sc.cos});
    }
    walkTwoArg(rec, "math pow", m::pow, seed++, 0.0, 20.0, -10.0, 10.0);
    walkTwoArg(rec, "math atan2", m::atan2, seed++, -2.0, 2.0, -2.0, 2.0);
}

}  // namespace mivora_golden
