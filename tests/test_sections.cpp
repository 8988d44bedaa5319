// The single-section designs (peaking, shelves, Q sections, all-pass and DC
// filters) against the analogue or one-pole filter each stands for, with the
// identities and the degenerate arguments the header documents.
#include <gtest/gtest.h>

#include "test_support.hpp"

using namespace mivora_test;

namespace {

// A low shelf of variant A boosts by (s + A)/(s + 1), or (s^2 + k*sqrt(A)*s +
// A)/(s^2 + k*s + 1) at second order. Variant B is the same shelf with both
// corners moved down by A (first order) or sqrt(A), a high shelf is the low
// shelf at 1/s, and a cut is the reciprocal of the boost.
struct ShelfKind {
    bool high, variantB;
    double damping;  // 0 for a first-order shelf
};
Complex shelf(ShelfKind kind, double gainDb, Complex s) {
    const double a = std::pow(10.0, std::fabs(gainDb) / 20.0), r = std::sqrt(a), k = kind.damping;
    if (kind.high) s = 1.0 / s;
    if (kind.variantB) s *= k == 0.0 ? a : r;
    const Complex h = k == 0.0 ? (s + a) / (s + 1.0) : (s * s + k * r * s + a) / (s * s + k * s + 1.0);
    return gainDb >= 0.0 ? h : 1.0 / h;
}
// The peaking bell: q is the pole Q of a PQ boost (the zero Q of a CQ boost),
// the other quadratic has q/A (PQ) or A*q (CQ); a cut is the boost inverted.
Complex bell(bool cq, double gainDb, double q, Complex s) {
    const double a = std::pow(10.0, std::fabs(gainDb) / 20.0);
    const double num = cq ? 1.0 / q : a / q, den = cq ? 1.0 / (a * q) : 1.0 / q;
    const Complex h = (s * s + num * s + 1.0) / (s * s + den * s + 1.0);
    return gainDb >= 0.0 ? h : 1.0 / h;
}
constexpr double kSqrt2 = 1.4142135623730951;

// design(f, freq, fs, g, q) and the model H(s) it follows, with s = j at freq;
// g is a gain in dB (or unused), q a Q (or unused).
struct Model {
    const char* name;
    void (*design)(IirProcess&, double, double, double, double);
    Complex (*h)(double g, double q, Complex s);
};
#define DESIGN(call) [](IirProcess& f, double freq, double fs, double g, double q) { (void)g, (void)q, f.call; }
#define SHELF(name, high, b, k) \
    {#name, DESIGN(setCoef##name(freq, g, fs)), [](double g, double, Complex s) { return shelf({high, b, k}, g, s); }}
const Model kModels[] = {
    {"PDFPQ", DESIGN(setCoefPDFPQ(freq, fs, g, q)), [](double g, double q, Complex s) { return bell(false, g, q, s); }},
    {"setCoef", DESIGN(setCoef(freq, fs, g, q)), [](double g, double q, Complex s) { return bell(false, g, q, s); }},
    {"PDFCQ", DESIGN(setCoefPDFCQ(freq, fs, g, q)), [](double g, double q, Complex s) { return bell(true, g, q, s); }},
    SHELF(LOWS_A, false, false, 0.0), SHELF(LOWS_B, false, true, 0.0), SHELF(HIGS_A, true, false, 0.0),
    SHELF(HIGS_B, true, true, 0.0), SHELF(LOWS_2A, false, false, kSqrt2), SHELF(LOWS_2B, false, true, kSqrt2),
    SHELF(HIGS_2A, true, false, kSqrt2), SHELF(HIGS_2B, true, true, kSqrt2),
    // Damping 2: the first-order shelf at half the gain, squared.
    SHELF(LOWS_PM_2A, false, false, 2.0), SHELF(LOWS_PM_2B, false, true, 2.0), SHELF(HIGS_PM_2A, true, false, 2.0),
    SHELF(HIGS_PM_2B, true, true, 2.0),
    {"HPFQfct", DESIGN(setCoefHPFQfct(freq, q, fs)), [](double, double q, Complex s) { return s * s / (s * s + s / q + 1.0); }},
    {"LPFQfct", DESIGN(setCoefLPFQfct(freq, q, fs)), [](double, double q, Complex s) { return 1.0 / (s * s + s / q + 1.0); }},
    {"BPFQfct", DESIGN(setCoefBPFQfct(freq, q, fs)), [](double, double q, Complex s) { return s / (s * s + s / q + 1.0); }},
    {"BPF_Q", DESIGN(setCoefBPF_Q(freq, q, fs)), [](double, double q, Complex s) { return s / q / (s * s + s / q + 1.0); }},
    {"APF1st", DESIGN(setAPF1st(freq, fs)), [](double, double, Complex s) { return (1.0 - s) / (1.0 + s); }},
};
#undef SHELF

TEST(Sections, FollowTheirAnalogueModels) {
    const double fs = 48000.0;
    // 0 dB (and -0 dB) must pass the signal: the models give exactly 1 there.
    const std::pair<double, double> args[] = {{-24, 0.5}, {-6, 2}, {-0.5, 40}, {0, 0.9},
                                              {-0.0, 0.9}, {0.5, 0.707}, {9, 10}, {30, 0.3}};
    for (const Model& m : kModels)
        for (auto [g, q] : args)
            for (double freq : {40.0, 1000.0, 15000.0}) {
                SCOPED_TRACE(::testing::Message() << m.name << " g=" << g << " q=" << q << " f=" << freq);
                IirProcess f;
                m.design(f, freq, fs, g, q);
                for (double x : logFrequencies(fs, 60))
                    EXPECT_TRUE(closeRelative(responseOf(f, x, fs), m.h(g, q, sAt(x, fs, freq)), 1e-9)) << x;
            }
}

// A peaking design given a NaN gain writes nothing (what NaN arguments give
// otherwise, the golden values pin).
TEST(Sections, NanGainLeavesAPeakAsItWas) {
    IirProcess kept;
    kept.setCoefPDFPQ(1000.0, 48000.0, 6.0, 1.0);
    const Values before = coefs(kept);
    kept.setCoefPDFCQ(500.0, 48000.0, std::nan(""), 1.0);
    EXPECT_EQ(coefs(kept), before);
}

// A corner shelf is the flat-side (variant B) shelf with its corner placed
// where (1 - weight)*|gain| + weight*level dB on the straight-line response
// falls at freq: weight 0 is variant A, weight 1 at level 0 variant B.
TEST(Sections, CornerShelvesPlaceTheirCorner) {
    using Corner = void (IirProcess::*)(double, double, double, double, double);
    const std::pair<Corner, ShelfKind> corners[] = {  // each design and its flat-side shelf
        {&IirProcess::setCoefLowShelf_C, {false, true, 0.0}}, {&IirProcess::setCoefHiShelf_C, {true, true, 0.0}},
        {&IirProcess::setCoefLowShelf_2C, {false, true, kSqrt2}}, {&IirProcess::setCoefHiShelf_2C, {true, true, kSqrt2}}};
    const double fs = 44100.0, freq = 1500.0;
    for (const auto& [design, flatSide] : corners)
        for (double gain : {-18.0, 6.0, 24.0})
            for (double weight : {-0.5, 0.0, 0.5, 1.0, 1.5})
                for (double level : {-12.0, 0.0, 9.0}) {
                    SCOPED_TRACE(::testing::Message() << "high=" << flatSide.high << " k=" << flatSide.damping << " g=" << gain
                                                      << " w=" << weight << " l=" << level);
                    IirProcess f;
                    (f.*design)(fs, freq, gain, weight, level);
                    // Decibels per decade of the transition, doubled at second order.
                    const double offset = (1.0 - weight) * std::fabs(gain) + weight * level;
                    const double perDecade = flatSide.damping == 0.0 ? 20.0 : 40.0;
                    const double corner = std::pow(10.0, (flatSide.high ? -offset : offset) / perDecade);
                    for (double x : logFrequencies(fs, 40))
                        EXPECT_TRUE(closeRelative(responseOf(f, x, fs), shelf(flatSide, gain, sAt(x, fs, freq) / corner), 1e-9)) << x;
                }
}

// The one-pole DC filters, with alpha = 1 - exp(-2 pi freq/fs) in the corner
// form: the DC-tracking low-pass is a/(1 - (1 - a)/z), the DC cut
// g (1 - 1/z)/(1 - g/z) with g = 1 - a/2.
TEST(Sections, DcFiltersAreTheirOnePoleFilters) {
    const double fs = 48000.0;
    // {freq, 0} designs by the corner, {0, alpha} by alpha.
    const std::pair<double, double> args[] = {{1, 0}, {20, 0}, {440, 0}, {5000, 0}, {23999, 0},
                                              {0, 1.0}, {0, 0.5}, {0, 0.05}, {0, 0.001}};
    for (bool cut : {false, true})
        for (auto [freq, alpha] : args) {
            IirProcess f;
            const double a = freq > 0 ? -std::expm1(-2.0 * kPi * freq / fs) : alpha, g = 1.0 - a / 2.0;
            if (freq > 0) cut ? f.setDcfHPF(freq, fs) : f.setDcfLPF(freq, fs);
            else cut ? f.setDcfHPF(alpha) : f.setDcfLPF(alpha);
            ASSERT_EQ(f.getOrder(), 1);
            for (double x : logFrequencies(fs, 30)) {
                const Complex z1 = std::polar(1.0, -2.0 * kPi * x / fs);
                const Complex want = cut ? g * (1.0 - z1) / (1.0 - g * z1) : a / (1.0 - (1.0 - a) * z1);
                EXPECT_TRUE(closeRelative(responseOf(f, x, fs), want, 1e-9)) << cut << " " << freq << " @ " << x;
            }
            EXPECT_TRUE(!cut || f.power(0.0, fs) == -100.0);  // an exact zero at DC
        }
}

// The second-order all-pass is the bilinear image of (s^2 - d*s + 1)/(s^2 + d*s + 1)
// with d = 1 + t^2, t = tan(pi freq/fs): flat, phase +-pi at freq, and a width
// that follows freq.
TEST(Sections, SecondOrderAllPassIsItsAnalogueAllPass) {
    const double fs = 48000.0;
    for (double freq : {20.0, 440.0, 6000.0, 20000.0}) {
        IirProcess f;
        f.setAPF2nd(freq, fs);
        const double d = 1.0 + std::pow(std::tan(kPi * freq / fs), 2);
        for (double x : logFrequencies(fs, 100)) {
            const Complex s = sAt(x, fs, freq);
            EXPECT_TRUE(closeRelative(responseOf(f, x, fs), (s * s - d * s + 1.0) / (s * s + d * s + 1.0), 1e-9)) << x;
        }
    }
}

}  // namespace
