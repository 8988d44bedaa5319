// Peaking EQ: the analogue bell each design follows, identities, worked values
// and degenerate arguments.
#include <gtest/gtest.h>

#include "test_support.hpp"

using namespace mivora_test;

namespace {

using Design = void (IirProcess::*)(double, double, double, double);

IirProcess designed(Design d, double freq, double fs, double gainDb, double q) {
    IirProcess f;
    (f.*d)(freq, fs, gainDb, q);
    return f;
}

// The bell with s = j at freq: the given q is the Q of the poles of a PQ boost
// (the zeros of a CQ boost), the other quadratic has q/A (PQ) or A*q (CQ); a
// cut is the inverse of the boost.
std::complex<double> bell(bool cq, double gainDb, double q, std::complex<double> s) {
    const double a = std::pow(10.0, std::fabs(gainDb) / 20.0);
    const double num = cq ? 1.0 / q : a / q, den = cq ? 1.0 / (a * q) : 1.0 / q;
    const std::complex<double> h = (s * s + num * s + 1.0) / (s * s + den * s + 1.0);
    return gainDb >= 0.0 ? h : 1.0 / h;
}

TEST(Peaking, FollowsTheAnalogueBellWithTheGainAtFreq) {
    const double fs = 48000.0;
    const struct {
        const char* name;
        Design design;
        bool cq;
    } designs[] = {{"PDFPQ", &IirProcess::setCoefPDFPQ, false},
                   {"PDFCQ", &IirProcess::setCoefPDFCQ, true},
                   {"setCoef", &IirProcess::setCoef, false}};
    std::vector<double> grid = logFrequencies(fs, 60);
    grid.insert(grid.end(), {0.0, fs / 2});
    for (const auto& d : designs)
        for (double gain : {-24.0, -12.0, -3.0, 0.5, 6.0, 12.0, 24.0})
            for (double q : {0.3, 0.707, 2.0, 10.0})
                for (double freq : {30.0, 1000.0, 15000.0}) {
                    SCOPED_TRACE(::testing::Message() << d.name << " g=" << gain << " q=" << q << " f=" << freq);
                    const IirProcess f = designed(d.design, freq, fs, gain, q);
                    EXPECT_NEAR(f.power(freq, fs), gain, 1e-9);
                    const double t = std::tan(kPi * freq / fs);
                    for (double x : grid) {
                        const std::complex<double> want = bell(d.cq, gain, q, {0.0, std::tan(kPi * x / fs) / t});
                        EXPECT_TRUE(closeRelative(responseOf(f, x, fs).h, want, 1e-9)) << x;
                    }
                    if (d.design == &IirProcess::setCoef) {
                        EXPECT_EQ(coefs(f), coefs(designed(&IirProcess::setCoefPDFPQ, freq, fs, gain, q)));
                    }
                }
}

TEST(Peaking, ZeroGainIsAnExactIdentity) {
    for (double zero : {0.0, -0.0}) {
        IirProcess p = designed(&IirProcess::setCoefPDFPQ, 700.0, 48000.0, zero, 0.9);
        const std::vector<double> k = coefs(p);
        EXPECT_TRUE(k[0] == 1.0 && k[1] == -k[3] && k[2] == -k[4]);
        EXPECT_EQ(coefs(designed(&IirProcess::setCoefPDFCQ, 700.0, 48000.0, zero, 0.9)), k);
        for (double x : {1.0, -0.3, 0.7, 0.0, 0.25}) EXPECT_NEAR(p.cal(x), x, 1e-12);
    }
}

// A quarter of the sampling rate, q 1, A = 2 or 1/2 (t is 1 to the last bit).
const double kTwice = 20.0 * std::log10(2.0);
const Worked kWorked[] = {
    {MIVORA_CALL(setCoefPDFPQ(1000, 4000, kTwice, 1)), {4.0 / 3, 0, 0, 0, -1.0 / 3}, 1e-15},
    {MIVORA_CALL(setCoefPDFCQ(1000, 4000, kTwice, 1)), {1.2, 0, 0.4, 0, -0.6}, 1e-15},
    {MIVORA_CALL(setCoefPDFPQ(1000, 4000, -kTwice, 1)), {0.75, 0, 0.25, 0, 0}, 1e-15},
    {MIVORA_CALL(setCoefPDFCQ(1000, 4000, -kTwice, 1)), {5.0 / 6, 0, 0.5, 0, -1.0 / 3}, 1e-15},
    {MIVORA_CALL(setCoefPDFPQ(0, 48000, 6, 1)), {1, -2, 1, 2, -1}, 0.0},  // freq 0: (1 - z^-1)^2 over itself
};
TEST(Peaking, WorkedValues) {
    for (const Worked& w : kWorked) expectWorked(w);
}

TEST(Peaking, NanGainWritesNoCoefficient) {
    IirProcess kept;
    kept.setCoefPDFPQ(1000.0, 48000.0, 6.0, 1.0);
    const std::vector<double> before = coefs(kept);
    kept.setCoefPDFPQ(500.0, 48000.0, std::nan(""), 1.0);
    kept.setCoefPDFCQ(500.0, 48000.0, std::nan(""), 1.0);
    EXPECT_EQ(coefs(kept), before);

    IirProcess zeroed(4);
    zeroed.setCoefPDFCQ(500.0, 48000.0, std::nan(""), 1.0);
    EXPECT_EQ(zeroed.getOrder(), 2);
    EXPECT_EQ(section0(zeroed), std::vector<double>(5, 0.0));
}

TEST(Peaking, ZeroQOrSamplingRateGiveNan) {
    const std::vector<double> qZero = section0(designed(&IirProcess::setCoefPDFPQ, 1000.0, 48000.0, 6.0, 0.0));
    EXPECT_TRUE(std::isnan(qZero[0]) && std::isnan(qZero[2]) && std::isnan(qZero[4]));
    EXPECT_EQ(qZero[1], 0.0);
    for (double c : section0(designed(&IirProcess::setCoefPDFPQ, 1000.0, 0.0, 6.0, 1.0))) EXPECT_TRUE(std::isnan(c));
}

}  // namespace
