// Accuracy rows of exp, exp10, log, log10, pow, sinh, cosh, and of the
// 256-bit accurate paths on their own (they decide the hard cases, which
// random arguments rarely reach through the functions).
#include <cmath>
#include <limits>

#include "accuracy_harness.hpp"
#include "cr_math.hpp"
#include "exp_log_slow.hpp"
#include "exp_log_tables.hpp"

namespace mivora_math_test {

namespace {

namespace m = Mivora::math;
namespace d = Mivora::math::detail;
namespace w = Mivora::math::wide;

// Subnormal and normal magnitudes alike.
Draw positiveAny() {
    return [](Rng& r) { return std::fabs(anyFinite()(r)); };
}

std::vector<double> integers(int lo, int hi) {
    std::vector<double> v;
    for (int i = lo; i <= hi; ++i) v.push_back(i);
    return v;
}

std::vector<double> powersOfTen() {
    std::vector<double> v;
    for (int k = -30; k <= 30; ++k) v.push_back(std::stod("1e" + std::to_string(k)));
    return v;
}

// y with |y log x| below 760 for the drawn x: results across the whole
// range without most of them overflowing.
Draw2 powInRange() {
    return [](Rng& r) {
        const double x = std::fabs(anyFinite()(r));
        const double y = std::uniform_real_distribution<double>(-760.0, 760.0)(r) / std::fabs(std::log(x));
        return std::make_pair(x, y);
    };
}

// x^y exactly b 2^q with b odd of 54 bits: midpoints between doubles,
// from g^c with g odd and y = c / 2^k (x = g^(2^k)), scaled by powers of
// two that the exponent keeps exact.
Draw2 exactMidpoints() {
    struct Kind {
        double gLo, gHi;
        int c, k;
    };
    static const Kind kinds[] = {{208065, 262143, 3, 0}, {1552, 1782, 5, 0}, {1552, 1782, 5, 1},
                                 {1552, 1782, 5, 2}, {190, 209, 7, 0}, {190, 209, 7, 1}};
    return [](Rng& r) {
        const Kind& kd = kinds[r() % 6];
        auto g = static_cast<std::uint64_t>(std::uniform_real_distribution<double>(kd.gLo, kd.gHi)(r)) | 1u;
        double x = static_cast<double>(g);
        for (int i = 0; i < kd.k; ++i) x *= x;  // g^(2^k) < 2^53: exact
        const int shift = static_cast<int>(r() % 200) - 100;  // x 2^(shift 2^k), result 2^(shift c)
        x = std::ldexp(x, shift * (1 << kd.k));
        const double y = std::ldexp(static_cast<double>(kd.c), -kd.k);
        return std::make_pair((r() & 1u) && kd.k == 0 ? -x : x, y);
    };
}

double exp10Accurate(double x) {
    return w::toDouble(d::wideExp(w::mul(w::fromDouble(x), Mivora::math::tables::kWideLn10)));
}

}  // namespace

std::vector<UnaryRow> expLogUnaryRows() {
    const double tiny = std::numeric_limits<double>::denorm_min();
    std::vector<double> expEdges =
        joined(commonSpecials(), {709.782712893384, 709.7827128933841, -708.3964185322641, -708.39641853226420,
                                  -745.1332191019411, -745.1332191019412, -744.44007192138122, 0x1p-54, -0x1p-54,
                                  0x1p-53, 1e-300});
    std::vector<double> exp10Edges = joined(joined(commonSpecials(), integers(-330, 330)),
                                            {308.25471555991675, 308.2547155599168, -307.65265556858878, -323.60724622,
                                             -323.30621622, 0x1p-56, 0x1p-55});
    std::vector<double> logEdges = joined(joined(commonSpecials(), powersOfTen()),
                                          {tiny, 3 * tiny, 0x1p-1022, 0x1p1023, 10.0, 100.0, 2.718281828459045});
    const Draw nearOne = uniform(0.99, 1.01);
    const std::vector<Draw> logDraws = {positiveAny(), uniform(1.0, 1e6), nearOne, logUniform(tiny, 0x1p-1022)};
    const std::vector<Draw> hyperbolicDraws = {uniform(0.0, 20.0), uniform(-1.0, 1.0), signedAnyFinite(800.0),
                                               uniform(-711.0, 711.0), logUniform(0x1p-30, 0x1p-20)};
    const std::vector<double> hyperbolicEdges =
        joined(commonSpecials(), {0x1p-26, 0.5, 40.0, 710.4758600739439, 710.475860073944, 709.7});
    const std::vector<Draw> hyperbolicSlow = {uniform(0x1p-26, 1.0), uniform(0.0, 710.0)};
    return {
        {"exp", m::exp, mpfr_exp,
         {signedAnyFinite(800.0), uniform(-745.2, 709.8), uniform(-1.0, 1.0), uniform(0.0, 20.0),
          signedAnyFinite(1e-3)},
         expEdges, {nearMidpoint(mpfr_exp, uniform(-700.0, 700.0), 10)}},
        {"exp10", m::exp10, mpfr_exp10,
         {uniform(-10.0, 10.0), signedAnyFinite(400.0), uniform(-324.0, 308.3), uniform(-2.0, 2.0)},
         exp10Edges, {nearMidpoint(mpfr_exp10, uniform(-300.0, 300.0), 10)}},
        {"log", m::log, mpfr_log, logDraws, logEdges, {nearMidpoint(mpfr_log, positiveAny(), 10)}},
        {"log10", m::log10, mpfr_log10, logDraws, logEdges, {nearMidpoint(mpfr_log10, positiveAny(), 10)}},
        {"sinh", m::sinh, mpfr_sinh, hyperbolicDraws, hyperbolicEdges,
         {nearMidpoint(mpfr_sinh, uniform(-20.0, 20.0), 10)}},
        {"cosh", m::cosh, mpfr_cosh, hyperbolicDraws, hyperbolicEdges,
         {nearMidpoint(mpfr_cosh, uniform(-20.0, 20.0), 10)}},
        // The accurate paths alone.
        {"sinh_accurate", [](double x) { return d::hyperbolicAccurate(x, true); }, mpfr_sinh, hyperbolicSlow, {}, {}},
        {"cosh_accurate", [](double x) { return d::hyperbolicAccurate(x, false); }, mpfr_cosh, hyperbolicSlow, {}, {}},
        {"exp_accurate", [](double x) { return w::toDouble(d::wideExp(w::fromDouble(x))); }, mpfr_exp,
         {uniform(-745.0, 709.7), uniform(-1.0, 1.0)}, {}, {}},
        {"exp10_accurate", exp10Accurate, mpfr_exp10, {uniform(-323.0, 308.0)}, {}, {}},
        {"log_accurate", [](double x) { return w::toDouble(d::wideLog(x)); }, mpfr_log,
         {positiveAny(), nearOne}, {}, {}},
    };
}

std::vector<BinaryRow> expLogBinaryRows() {
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double tiny = std::numeric_limits<double>::denorm_min();
    std::vector<std::pair<double, double>> specials;
    const double xs[] = {0.0, -0.0, inf, -inf, nan, 1.0, -1.0, 0.5, -0.5, 2.0, -2.0, tiny, -tiny, 1e308, -1e308};
    const double ys[] = {0.0, -0.0, inf, -inf, nan, 1.0, -1.0, 2.0, -2.0, 3.0, -3.0, 0.5, -0.5, 1.5, 1e300, -1e300,
                         0x1p53 + 2, 0x1p52 + 1, -(0x1p52 + 1)};
    for (double x : xs)
        for (double y : ys) specials.emplace_back(x, y);
    // Exact results and exact midpoints.
    specials.insert(specials.end(), {{4.0, 0.5}, {9.0, 1.5}, {16.0, 0.25}, {4096.0, 0.25}, {0x1p-1000, 1.07},
                                     {2.0, -1074.0}, {2.0, -1075.0}, {0.5, 1075.0}, {0x1p-43, 25.0}, {0x1p-537, 2.0},
                                     {3.0, 34.0}, {-3.0, 33.0}, {10.0, 22.0}, {10.0, 23.0}, {10.0, -5.0}, {1e-3, 3.0},
                                     {0x1p-1022, 0.5}, {tiny, 0.5}, {tiny, -1.0}, {1e154, 2.0}, {1.0000001, 7e9},
                                     {-1.0000000000000002, 0x1p52 + 1}, {-0.9999999999999999, 0x1p52 + 1}});
    const Draw2 design = pairOf(uniform(0.0, 100.0), uniform(-1.0, 1.0));
    auto ten = [](Rng&) { return 10.0; };
    return {
        {"pow", m::pow, mpfr_pow,
         {design, pairOf(ten, uniform(-10.0, 10.0)), powInRange(), pairOf(anyFinite(), anyFinite()),
          pairOf(uniform(-10.0, 0.0), [](Rng& r) { return static_cast<double>(static_cast<int>(r() % 81) - 40); }),
          pairOf(uniform(1.0 - 1e-6, 1.0 + 1e-6), uniform(-1e8, 1e8)), pairOf(positiveAny(), uniform(-3.0, 3.0))},
         specials, {exactMidpoints(), nearMidpoint(mpfr_pow, design, 10), nearMidpoint(mpfr_pow, powInRange(), 10)}},
        {"pow_accurate", d::powAccurate, mpfr_pow, {design, powInRange()}, {}, {}},
    };
}

}  // namespace mivora_math_test
