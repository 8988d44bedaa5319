// Peaking EQ: the response a user dials in, identities, and worked values.
#include <gtest/gtest.h>

#include "test_support.hpp"

using namespace mivora_test;

namespace {

using Design = void (IirProcess::*)(double, double, double, double);

struct NamedDesign {
    const char* name;
    Design design;
};
const NamedDesign kDesigns[] = {
    {"PDFPQ", &IirProcess::setCoefPDFPQ},
    {"PDFCQ", &IirProcess::setCoefPDFCQ},
    {"setCoef", &IirProcess::setCoef},
};

IirProcess designed(Design d, double freq, double fs, double gainDb, double q) {
    IirProcess f;
    (f.*d)(freq, fs, gainDb, q);
    return f;
}

TEST(Peaking, CentreGainAndUnityAtBandEnds) {
    const double fs = 48000.0;
    for (const NamedDesign& nd : kDesigns) {
        for (double gain : {-24.0, -12.0, -3.0, 0.5, 6.0, 12.0, 24.0}) {
            for (double q : {0.3, 0.707, 2.0, 10.0}) {
                for (double freq : {30.0, 1000.0, 15000.0}) {
                    SCOPED_TRACE(::testing::Message() << nd.name << " g=" << gain << " q=" << q << " f=" << freq);
                    const IirProcess f = designed(nd.design, freq, fs, gain, q);
                    EXPECT_NEAR(f.power(freq, fs), gain, 1e-9);
                    EXPECT_NEAR(responseOf(f, freq, fs).db(), gain, 1e-9);
                    EXPECT_NEAR(f.power(0.0, fs), 0.0, 1e-9);
                    EXPECT_NEAR(f.power(fs / 2, fs), 0.0, 1e-6);
                    // The response never overshoots the centre gain.
                    for (double g : logFrequencies(fs, 41))
                        EXPECT_LE(std::fabs(f.power(g, fs)), std::fabs(gain) + 1e-9);
                }
            }
        }
    }
}

TEST(Peaking, CutIsTheInverseOfTheBoost) {
    const double fs = 44100.0;
    for (const NamedDesign& nd : kDesigns) {
        for (double gain : {1.0, 9.0, 18.0}) {
            const IirProcess boost = designed(nd.design, 2500.0, fs, gain, 1.4);
            const IirProcess cut = designed(nd.design, 2500.0, fs, -gain, 1.4);
            for (double freq : logFrequencies(fs, 200)) {
                const std::complex<double> product = responseOf(boost, freq, fs).h * responseOf(cut, freq, fs).h;
                EXPECT_NEAR(product.real(), 1.0, 1e-9) << nd.name << " " << freq;
                EXPECT_NEAR(product.imag(), 0.0, 1e-9) << nd.name << " " << freq;
            }
        }
    }
}

TEST(Peaking, ZeroGainIsAnExactIdentity) {
    for (double zero : {0.0, -0.0}) {
        const IirProcess p = designed(&IirProcess::setCoefPDFPQ, 700.0, 48000.0, zero, 0.9);
        const IirProcess c = designed(&IirProcess::setCoefPDFCQ, 700.0, 48000.0, zero, 0.9);
        const std::vector<double> k = coefs(p);
        EXPECT_EQ(k[0], 1.0);
        EXPECT_EQ(k[1], -k[3]);
        EXPECT_EQ(k[2], -k[4]);
        EXPECT_EQ(coefs(c), k);
        IirProcess run = p;
        for (double x : {1.0, -0.3, 0.7, 0.0, 0.25}) EXPECT_NEAR(run.cal(x), x, 1e-12);
    }
}

TEST(Peaking, WorkedValuesAtAQuarterOfTheSamplingRate) {
    const double twice = 20.0 * std::log10(2.0);
    struct Case {
        Design design;
        double gain;
        double b0, b2, a2;
    };
    const Case cases[] = {
        {&IirProcess::setCoefPDFPQ, twice, 4.0 / 3.0, 0.0, -1.0 / 3.0},
        {&IirProcess::setCoefPDFCQ, twice, 1.2, 0.4, -0.6},
        {&IirProcess::setCoefPDFPQ, -twice, 0.75, 0.25, 0.0},
        {&IirProcess::setCoefPDFCQ, -twice, 5.0 / 6.0, 0.5, -1.0 / 3.0},
    };
    for (const Case& c : cases) {
        const std::vector<double> k = coefs(designed(c.design, 1000.0, 4000.0, c.gain, 1.0));
        EXPECT_NEAR(k[0], c.b0, 1e-12);
        EXPECT_NEAR(k[1], 0.0, 1e-15);
        EXPECT_NEAR(k[2], c.b2, 1e-12);
        EXPECT_NEAR(k[3], 0.0, 1e-15);
        EXPECT_NEAR(k[4], c.a2, 1e-12);
    }
}

TEST(Peaking, SetCoefIsSetCoefPDFPQ) {
    for (double gain : {-7.5, 0.0, 3.25, 40.0})
        EXPECT_EQ(coefs(designed(&IirProcess::setCoef, 1234.5, 96000.0, gain, 0.6)),
                  coefs(designed(&IirProcess::setCoefPDFPQ, 1234.5, 96000.0, gain, 0.6)));
}

TEST(Peaking, RetuningKeepsStateAndAnOrderChangeClearsIt) {
    IirProcess f;
    f.setCoefPDFPQ(1000.0, 48000.0, 6.0, 1.0);
    for (double x : {0.5, -0.25, 1.0}) f.cal(x);
    const std::vector<double> running = state(f);
    f.setCoefPDFCQ(2000.0, 48000.0, -3.0, 2.0);
    EXPECT_EQ(state(f), running);

    IirProcess g(4);
    g.setDelay(1.0);
    g.setCoefPDFPQ(1000.0, 48000.0, 6.0, 1.0);
    EXPECT_EQ(state(g), (std::vector<double>{0, 0, 0, 0, 0, 0, 0, 0, 1, 1}));
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
    const std::vector<double> k = coefs(zeroed);
    EXPECT_EQ(std::vector<double>(k.begin(), k.begin() + 5), std::vector<double>(5, 0.0));
}

TEST(Peaking, DegenerateArgumentsAreDefined) {
    const std::vector<double> dc = coefs(designed(&IirProcess::setCoefPDFPQ, 0.0, 48000.0, 6.0, 1.0));
    EXPECT_EQ(std::vector<double>(dc.begin(), dc.begin() + 5), (std::vector<double>{1, -2, 1, 2, -1}));
    const std::vector<double> qZero = coefs(designed(&IirProcess::setCoefPDFPQ, 1000.0, 48000.0, 6.0, 0.0));
    EXPECT_TRUE(std::isnan(qZero[0]) && std::isnan(qZero[2]) && std::isnan(qZero[4]));
    EXPECT_EQ(qZero[1], 0.0);
    const std::vector<double> fsZero = coefs(designed(&IirProcess::setCoefPDFPQ, 1000.0, 0.0, 6.0, 1.0));
    for (int i = 0; i < 5; ++i) EXPECT_TRUE(std::isnan(fsZero[i]));
}

}  // namespace
