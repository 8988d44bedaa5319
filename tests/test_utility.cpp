// DC filters and all-pass sections: coefficient forms, edge levels, flatness
// and phase, worked values.
#include <gtest/gtest.h>

#include "test_support.hpp"

using namespace mivora_test;

namespace {

using ByAlpha = void (IirProcess::*)(double);
using ByCorner = void (IirProcess::*)(double, double);

// The three first-order coefficients an order-1 object reads out.
std::vector<double> firstOrder(const IirProcess& f) {
    const std::vector<double> c = coefs(f);
    return {c[0], c[1], c[2]};
}

const struct DcFilter {
    const char* name;
    ByAlpha byAlpha;
    ByCorner byCorner;
    bool passesDc;
    // b0 b1 a1 for a given alpha, and the gain magnitude at fs/2.
    std::vector<double> (*expected)(double);
    double (*nyquistGain)(double);
} kDcFilters[] = {
    {"LPF", &IirProcess::setDcfLPF, &IirProcess::setDcfLPF, true,
     [](double a) { return std::vector<double>{a, 0.0, 1.0 - a}; }, [](double a) { return a / (2.0 - a); }},
    {"HPF", &IirProcess::setDcfHPF, &IirProcess::setDcfHPF, false,
     [](double a) { return std::vector<double>{1.0 - a / 2.0, a / 2.0 - 1.0, 1.0 - a / 2.0}; },
     [](double a) { return (2.0 - a) / (2.0 - a / 2.0); }},
};

TEST(DcFilters, CornerFormIsTheCoefficientFormOfOneMinusThePole) {
    for (const DcFilter& d : kDcFilters)
        for (double freq : {0.0, 1.0, 20.0, 440.0, 5000.0, 23999.0}) {
            IirProcess f;
            (f.*d.byCorner)(freq, 48000.0);
            const std::vector<double> got = firstOrder(f), want = d.expected(-std::expm1(-2.0 * kPi * freq / 48000.0));
            for (int i = 0; i < 3; ++i) EXPECT_NEAR(got[i], want[i], 1e-15) << d.name << " f=" << freq << " [" << i << "]";
        }
}

TEST(DcFilters, CoefficientFormAndGainAtDcAndHalfTheSamplingRate) {
    const double fs = 48000.0;
    for (const DcFilter& d : kDcFilters)
        for (double alpha : {0.001, 0.05, 0.5, 1.0, 1.5}) {
            SCOPED_TRACE(::testing::Message() << d.name << " alpha=" << alpha);
            IirProcess f;
            (f.*d.byAlpha)(alpha);
            EXPECT_EQ(firstOrder(f), d.expected(alpha));
            // The DC cut's zero at DC is exact.
            EXPECT_NEAR(f.power(0.0, fs), d.passesDc ? 0.0 : -100.0, d.passesDc ? 1e-9 : 0.0);
            EXPECT_NEAR(f.power(fs / 2, fs), 20.0 * std::log10(d.nyquistGain(alpha)), 1e-9);
        }
}

TEST(AllPass, FlatEverywhereWithTheStatedPhaseAtFreq) {
    const double fs = 48000.0;
    const struct {
        const char* name;
        ByCorner design;
        double phaseAtFreq;  // compared by magnitude: +-pi are the same turn
    } kinds[] = {{"1st", &IirProcess::setAPF1st, kPi / 2}, {"2nd", &IirProcess::setAPF2nd, kPi}};
    std::vector<double> grid = logFrequencies(fs, 300);
    grid.insert(grid.end(), {0.0, fs / 2});
    for (const auto& k : kinds)
        for (double freq : {20.0, 440.0, 6000.0, 12000.0, 20000.0}) {
            SCOPED_TRACE(::testing::Message() << k.name << " f=" << freq);
            IirProcess f;
            (f.*k.design)(freq, fs);
            for (double g : grid) EXPECT_NEAR(responseOf(f, g, fs).mag(), 1.0, 1e-10) << g;
            const double phase = std::arg(responseOf(f, freq, fs).h);
            EXPECT_NEAR(std::fabs(phase), k.phaseAtFreq, 1e-9);
            if (k.phaseAtFreq < kPi) {
                EXPECT_LT(phase, 0.0);  // a lag, not a lead
            }
            EXPECT_NEAR(f.phase(0.0, fs), 0.0, 1e-12);
        }
}

TEST(AllPass, TheSecondOrderWidthIsTheFirstOrderCoefficient) {
    // The second-order width coefficient a (its a2) is the first-order k (its b0).
    for (double freq : {50.0, 1000.0, 9000.0, 21000.0}) {
        IirProcess first, second;
        first.setAPF1st(freq, 48000.0);
        second.setAPF2nd(freq, 48000.0);
        EXPECT_NEAR(coefs(second)[4], coefs(first)[0], 1e-13) << freq;
    }
}

const Worked kWorked[] = {
    {MIVORA_CALL(setDcfLPF(0, 44100)), {0, 0, 1}, 0.0},  // holds its last output
    {MIVORA_CALL(setDcfHPF(0, 44100)), {1, -1, 1}, 0.0},
    {MIVORA_CALL(setDcfLPF(1.0)), {1, 0, 0}, 0.0},  // plain pass-through
    {MIVORA_CALL(setDcfHPF(1.0)), {0.5, -0.5, 0.5}, 0.0},
    {MIVORA_CALL(setAPF1st(0, 48000)), {-1, 1, 0, 1, 0}, 0.0},  // k = -1
};
TEST(Utility, WorkedValues) {
    for (const Worked& w : kWorked) expectWorked(w);
}

}  // namespace
