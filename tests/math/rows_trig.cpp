// Accuracy rows of the trigonometric functions (sin, cos, sincos, tan, atan,
// atan2), and of their 320-bit slow paths on their own (random arguments
// rarely reach them through the functions); see accuracy_harness.hpp.
#include <cmath>
#include <limits>

#include "accuracy_harness.hpp"
#include "cr_math.hpp"
#include "trig_slow.hpp"

namespace mivora_math_test {

namespace {

namespace m = Mivora::math;
namespace t = Mivora::math::trig;

constexpr double kPi = 3.141592653589793;

// What the designs take the tangent, sine and cosine of: (freq pi)/fs.
Draw audioAngle() {
    return [](Rng& r) {
        static const double rates[] = {8000.0, 44100.0, 48000.0, 96000.0, 192000.0};
        const double fs = rates[r() % 5];
        const double freq = std::uniform_real_distribution<double>(0.0, fs / 2)(r);
        return (freq * kPi) / fs;
    };
}

Draw negated(Draw d) {
    return [=](Rng& r) { return -d(r); };
}

// Arguments any size, near multiples of pi/2, in the designs' range.
std::vector<Draw> angleDraws() {
    return {anyFinite(), uniform(0.0, kPi), audioAngle(), signedAnyFinite(1e6), uniform(-100.0, 100.0),
            logUniform(0x1p27, 1e300), negated(logUniform(0x1p-30, 0x1p27))};
}

std::vector<double> angleSpecials() {
    std::vector<double> v = commonSpecials();
    for (int k = 1; k <= 16; ++k) v.push_back(k * 1.5707963267948966);  // nearest doubles to k pi/2
    // The double nearest a multiple of pi/2 (|r| about 2^-61), the edges of
    // the tiny-argument shortcuts and of the two reductions.
    for (double x : {0x1.6ac5b262ca1ffp+849, 0x1p-26, 0x1.fffffffffffffp-27, 0x1p-27, 0x1.fffffffffffffp-28, 0x1p27,
                     0x1.fffffffffffffp+26, 0x1p54, 1e22, 0.7853981633974483, 0.7853981633974484})
        v.insert(v.end(), {x, -x});
    return v;
}

}  // namespace

std::vector<UnaryRow> trigUnaryRows() {
    const std::vector<Draw> angles = angleDraws();
    const std::vector<double> edges = angleSpecials();
    std::vector<double> atanEdges = commonSpecials();
    for (double x : {0x1p53, 0x1.fffffffffffffp52, 0x1p-27, 0x1.fffffffffffffp-28, 1.0 / 128, 1e6})
        atanEdges.insert(atanEdges.end(), {x, -x});
    const std::vector<Draw> atanDraws = {anyFinite(), uniform(0.0, 1e6), uniform(-1.0, 1.0),
                                         logUniform(0x1p-30, 0x1p56)};
    const std::vector<Draw> slowDraws = {uniform(-10.0, 10.0), logUniform(0x1p-27, 1e300)};
    return {
        {"sin", m::sin, mpfr_sin, angles, edges, {nearMidpoint(mpfr_sin, uniform(-10.0, 10.0), 10)}},
        {"cos", m::cos, mpfr_cos, angles, edges, {nearMidpoint(mpfr_cos, uniform(-10.0, 10.0), 10)}},
        {"sincos_sin", [](double x) { return m::sincos(x).sin; }, mpfr_sin, angles, edges, {}},
        {"sincos_cos", [](double x) { return m::sincos(x).cos; }, mpfr_cos, angles, edges, {}},
        {"tan", m::tan, mpfr_tan, angles, edges, {nearMidpoint(mpfr_tan, audioAngle(), 10)}},
        {"atan", m::atan, mpfr_atan, atanDraws, atanEdges, {nearMidpoint(mpfr_atan, uniform(0.0, 1e3), 10)}},
        // The slow paths alone (arguments |x| >= 2^-27 finite).
        {"sin_accurate", [](double x) { return t::slowTrig(x, t::TrigKind::Sin); }, mpfr_sin, slowDraws, {}, {}},
        {"cos_accurate", [](double x) { return t::slowTrig(x, t::TrigKind::Cos); }, mpfr_cos, slowDraws, {}, {}},
        {"tan_accurate", [](double x) { return t::slowTrig(x, t::TrigKind::Tan); }, mpfr_tan, slowDraws, {}, {}},
    };
}

std::vector<BinaryRow> trigBinaryRows() {
    // Every pairing of zeros, infinities, NaN, tiny and huge values, and
    // results exactly halfway between two subnormals before the -u^3/3.
    std::vector<std::pair<double, double>> specials;
    const double tiny = std::numeric_limits<double>::denorm_min(), big = std::numeric_limits<double>::max();
    const double inf = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
    const double values[] = {0.0, -0.0, 1.0, -1.0, tiny, -tiny, big, -big, inf, -inf, nan, 3.0, -0.5};
    for (double y : values)
        for (double x : values) specials.emplace_back(y, x);
    for (double x : {2.0, 4.0, 0x1.8p1})
        for (double y : {3 * tiny, -3 * tiny, 5 * tiny, 0x1.8p-1021}) specials.emplace_back(y, x);
    const Draw2 any = pairOf(anyFinite(), anyFinite());
    const Draw2 unit = pairOf(uniform(-1.0, 1.0), uniform(-1.0, 1.0));
    const Draw2 magnitudes = pairOf(signedAnyFinite(1e30), signedAnyFinite(1e30));
    return {
        {"atan2", m::atan2, mpfr_atan2, {any, unit, magnitudes, pairOf(uniform(-1e3, 1e3), uniform(-10.0, 10.0))},
         specials, {nearMidpoint(mpfr_atan2, unit, 10)}},
        {"atan2_accurate", [](double y, double x) { return t::slowAtan2(y, x); }, mpfr_atan2, {any, unit}, {}, {}},
    };
}

}  // namespace mivora_math_test
