// Second-order band-pass from a centre frequency and a Q: where the peak and
// the half-power points land, how the two designs relate, and the state rule.
#include <gtest/gtest.h>

#include "test_support.hpp"

using namespace mivora_test;

namespace {

IirProcess designed(void (IirProcess::*d)(double, double, double), double freq, double q, double fs) {
    IirProcess f;
    (f.*d)(freq, q, fs);
    return f;
}

// Half-power points from x+ - x- = t/q and x+ * x- = t^2, x = tan(pi f/fs).
void halfPowerPoints(double freq, double q, double fs, double* low, double* high) {
    const double t = std::tan(kPi * freq / fs);
    const double xLow = std::sqrt(t * t / (4.0 * q * q) + t * t) - t / (2.0 * q);
    *low = std::atan(xLow) * fs / kPi;
    *high = std::atan(xLow + t / q) * fs / kPi;
}

TEST(BandQ, PeakAndHalfPowerPointsFollowQ) {
    double low = 0, high = 0;
    halfPowerPoints(1000.0, 2.0, 48000.0, &low, &high);
    EXPECT_NEAR(low, 781.21, 0.005);
    EXPECT_NEAR(high, 1279.61, 0.005);
    const double fs = 48000.0;
    for (double q : {0.5, 0.707, 2.0, 8.0, 40.0}) {
        for (double freq : {60.0, 1000.0, 9000.0, 20000.0}) {
            SCOPED_TRACE(::testing::Message() << "q=" << q << " f=" << freq);
            const IirProcess tall = designed(&IirProcess::setCoefBPFQfct, freq, q, fs);
            const IirProcess unity = designed(&IirProcess::setCoefBPF_Q, freq, q, fs);
            halfPowerPoints(freq, q, fs, &low, &high);
            for (const IirProcess* p : {&tall, &unity}) {
                const IirProcess& f = *p;
                const double peakDb = p == &tall ? 20.0 * std::log10(q) : 0.0;
                EXPECT_NEAR(f.power(freq, fs), peakDb, 1e-9);
                EXPECT_NEAR(f.power(low, fs), peakDb - 10.0 * std::log10(2.0), 1e-8);
                EXPECT_NEAR(f.power(high, fs), peakDb - 10.0 * std::log10(2.0), 1e-8);
                for (double g : logFrequencies(fs, 101)) EXPECT_LE(f.power(g, fs), peakDb + 1e-9) << g;
                // b2 = -b0 and b1 = 0 exactly: true zeros at DC and fs/2.
                EXPECT_EQ(coefs(f)[1], 0.0);
                EXPECT_EQ(coefs(f)[2], -coefs(f)[0]);
            }
            // Same poles; the unity design's numerator is the other's over q.
            EXPECT_DOUBLE_EQ(coefs(unity)[0], coefs(tall)[0] / q);
            EXPECT_EQ(coefs(unity)[3], coefs(tall)[3]);
            EXPECT_EQ(coefs(unity)[4], coefs(tall)[4]);
        }
    }
}

TEST(BandQ, WorkedValues) {
    // A quarter of fs with q 2 (t is 1 to rounding); and DC, where the section
    // degenerates to (0, 0, -0) over (2, -1).
    const struct {
        void (IirProcess::*design)(double, double, double);
        double freq, b0, a1, a2;
    } cases[] = {{&IirProcess::setCoefBPFQfct, 12000.0, 0.4, 0.0, -0.6},
                 {&IirProcess::setCoefBPF_Q, 12000.0, 0.2, 0.0, -0.6},
                 {&IirProcess::setCoefBPFQfct, 0.0, 0.0, 2.0, -1.0},
                 {&IirProcess::setCoefBPF_Q, 0.0, 0.0, 2.0, -1.0}};
    for (const auto& c : cases) {
        const std::vector<double> k = coefs(designed(c.design, c.freq, 2.0, 48000.0));
        EXPECT_NEAR(k[0], c.b0, 1e-15);
        EXPECT_NEAR(k[3], c.a1, 1e-15);
        EXPECT_NEAR(k[4], c.a2, 1e-15);
    }
}

TEST(BandQ, RetuningKeepsStateAndAnOrderChangeClearsIt) {
    for (auto design : {&IirProcess::setCoefBPFQfct, &IirProcess::setCoefBPF_Q}) {
        IirProcess f;
        (f.*design)(1000.0, 2.0, 48000.0);
        for (double x : {0.5, -0.25, 1.0, 0.125}) f.cal(x);
        const std::vector<double> running = state(f);
        (f.*design)(3000.0, 0.5, 48000.0);
        EXPECT_EQ(state(f), running);

        IirProcess g(4);
        g.setDelay(1.0);
        (g.*design)(1000.0, 2.0, 48000.0);
        EXPECT_EQ(g.getOrder(), 2);
        EXPECT_EQ(g.getEvenOrder(), 2);
        EXPECT_EQ(state(g), (std::vector<double>{0, 0, 0, 0, 0, 0, 0, 0, 1, 1}));
    }
}

}  // namespace
