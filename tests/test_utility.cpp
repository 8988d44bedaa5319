// DC filters and all-pass sections: responses, coefficient forms, state rules.
#include <gtest/gtest.h>

#include <functional>

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

struct DcFilter {
    const char* name;
    ByAlpha byAlpha;
    ByCorner byCorner;
    bool passesDc;
    // Expected b0 b1 a1 for a given alpha, and the gain magnitude at fs/2.
    std::function<std::vector<double>(double)> expected;
    std::function<double(double)> nyquistGain;
};
const DcFilter kDcFilters[] = {
    {"LPF", &IirProcess::setDcfLPF, &IirProcess::setDcfLPF, true,
     [](double a) { return std::vector<double>{a, 0.0, 1.0 - a}; },
     [](double a) { return a / (2.0 - a); }},
    {"HPF", &IirProcess::setDcfHPF, &IirProcess::setDcfHPF, false,
     [](double a) { const double g = 1.0 - a / 2.0; return std::vector<double>{g, -g, g}; },
     [](double a) { const double g = 1.0 - a / 2.0; return 2.0 * g / (1.0 + g); }},
};

TEST(DcFilters, CornerFormIsTheCoefficientFormOfOneMinusThePole) {
    const double fs = 48000.0;
    for (const DcFilter& d : kDcFilters) {
        for (double freq : {0.0, 1.0, 20.0, 440.0, 5000.0, 23999.0}) {
            SCOPED_TRACE(::testing::Message() << d.name << " f=" << freq);
            const double alpha = -std::expm1(-2.0 * kPi * freq / fs);
            IirProcess byCorner(3), byAlpha(-2);
            (byCorner.*d.byCorner)(freq, fs);
            (byAlpha.*d.byAlpha)(alpha);
            for (const IirProcess* f : {&byCorner, &byAlpha}) {
                EXPECT_EQ(f->getOrder(), 1);
                EXPECT_EQ(f->getEvenOrder(), 0);
                EXPECT_EQ(f->getOddOrder(), 1);
            }
            const std::vector<double> got = firstOrder(byCorner);
            const std::vector<double> want = d.expected(alpha);
            for (int i = 0; i < 3; ++i) EXPECT_NEAR(got[i], want[i], 1e-15);
        }
    }
}

TEST(DcFilters, WorkedCoefficients) {
    IirProcess lpfZero, hpfZero, lpfOne, hpfOne;
    lpfZero.setDcfLPF(0.0, 44100.0);  // holds its last output
    hpfZero.setDcfHPF(0.0, 44100.0);
    lpfOne.setDcfLPF(1.0);            // plain pass-through
    hpfOne.setDcfHPF(1.0);
    EXPECT_EQ(firstOrder(lpfZero), (std::vector<double>{0.0, 0.0, 1.0}));
    EXPECT_EQ(firstOrder(hpfZero), (std::vector<double>{1.0, -1.0, 1.0}));
    EXPECT_EQ(firstOrder(lpfOne), (std::vector<double>{1.0, 0.0, 0.0}));
    EXPECT_EQ(firstOrder(hpfOne), (std::vector<double>{0.5, -0.5, 0.5}));
}

TEST(DcFilters, GainAtDcAndHalfTheSamplingRate) {
    const double fs = 48000.0;
    for (const DcFilter& d : kDcFilters) {
        for (double alpha : {0.001, 0.05, 0.5, 1.0, 1.5}) {
            SCOPED_TRACE(::testing::Message() << d.name << " alpha=" << alpha);
            IirProcess f;
            (f.*d.byAlpha)(alpha);
            if (d.passesDc) {
                EXPECT_NEAR(f.power(0.0, fs), 0.0, 1e-9);
            } else {
                EXPECT_EQ(f.power(0.0, fs), -100.0);  // the zero at DC is exact
            }
            const double nyquistDb = 20.0 * std::log10(d.nyquistGain(alpha));
            EXPECT_NEAR(f.power(fs / 2, fs), nyquistDb, 1e-9);
            EXPECT_NEAR(responseOf(f, fs / 2, fs).db(), nyquistDb, 1e-9);
            EXPECT_EQ(f.phase(1000.0, fs), 0.0);  // order 1 has no second-order section

            // A constant input settles to itself through the tracker, to 0 through the cut.
            double y = 0.0;
            for (int n = 0; n < 40000; ++n) y = f.cal(0.75);
            EXPECT_NEAR(y, d.passesDc ? 0.75 : 0.0, 1e-6);
        }
    }
}

TEST(AllPass, FlatEverywhereWithTheStatedPhaseAtFreq) {
    const double fs = 48000.0;
    struct Kind {
        const char* name;
        ByCorner design;
        double phaseAtFreq;  // compared by magnitude: +-pi are the same turn
    };
    const Kind kinds[] = {{"1st", &IirProcess::setAPF1st, kPi / 2}, {"2nd", &IirProcess::setAPF2nd, kPi}};
    std::vector<double> grid = logFrequencies(fs, 300);
    grid.push_back(0.0);
    grid.push_back(fs / 2);
    for (const Kind& k : kinds) {
        for (double freq : {20.0, 440.0, 6000.0, 12000.0, 20000.0}) {
            SCOPED_TRACE(::testing::Message() << k.name << " f=" << freq);
            IirProcess f(5);
            (f.*k.design)(freq, fs);
            EXPECT_EQ(f.getOrder(), 2);
            EXPECT_EQ(f.getEvenOrder(), 2);
            EXPECT_EQ(f.getOddOrder(), 0);
            for (double g : grid) {
                EXPECT_NEAR(f.power(g, fs), 0.0, 1e-9) << g;
                EXPECT_NEAR(responseOf(f, g, fs).mag(), 1.0, 1e-10) << g;
            }
            EXPECT_NEAR(std::fabs(f.phase(freq, fs)), k.phaseAtFreq, 1e-9);
            EXPECT_NEAR(std::fabs(std::arg(responseOf(f, freq, fs).h)), k.phaseAtFreq, 1e-9);
            if (k.phaseAtFreq < kPi) {
                EXPECT_LT(f.phase(freq, fs), 0.0);  // a lag, not a lead
            }
            EXPECT_NEAR(f.phase(0.0, fs), 0.0, 1e-12);

            // Unity gain at every frequency: the impulse response carries unit energy.
            double energy = 0.0;
            for (int n = 0; n < (1 << 15); ++n) {
                const double h = f.cal(n == 0 ? 1.0 : 0.0);
                energy += h * h;
            }
            EXPECT_NEAR(energy, 1.0, 1e-9);
        }
    }
}

TEST(AllPass, WorkedValuesAndTheSharedWidthCoefficient) {
    IirProcess dc;
    dc.setAPF1st(0.0, 48000.0);
    const std::vector<double> c = coefs(dc);
    EXPECT_EQ(std::vector<double>(c.begin(), c.begin() + 5), (std::vector<double>{-1, 1, 0, 1, 0}));

    // The second-order width coefficient a (its a2) is the first-order k (its b0).
    for (double freq : {50.0, 1000.0, 9000.0, 21000.0}) {
        IirProcess first, second;
        first.setAPF1st(freq, 48000.0);
        second.setAPF2nd(freq, 48000.0);
        EXPECT_NEAR(coefs(second)[4], coefs(first)[0], 1e-13) << freq;
    }
}

// Every utility design, with the order it sets.
struct Design {
    const char* name;
    int order;
    std::function<void(IirProcess&)> apply;
};
const Design kDesigns[] = {
    {"DcfLPF(f)", 1, [](IirProcess& f) { f.setDcfLPF(300.0, 48000.0); }},
    {"DcfLPF(a)", 1, [](IirProcess& f) { f.setDcfLPF(0.2); }},
    {"DcfHPF(f)", 1, [](IirProcess& f) { f.setDcfHPF(10.0, 48000.0); }},
    {"DcfHPF(a)", 1, [](IirProcess& f) { f.setDcfHPF(0.01); }},
    {"APF1st", 2, [](IirProcess& f) { f.setAPF1st(700.0, 48000.0); }},
    {"APF2nd", 2, [](IirProcess& f) { f.setAPF2nd(700.0, 48000.0); }},
};

TEST(UtilityState, KeptAtTheSameOrderAndSecondOrderStateClearedOnAChange) {
    for (const Design& d : kDesigns) {
        for (int start : {1, 2, 3, 4, -5}) {
            SCOPED_TRACE(::testing::Message() << d.name << " from order " << start);
            IirProcess f(start);
            setSection(f, 1, 0.1, 0.2, 0.3, 0.4, 0.5);
            f.setDelay(0.5);
            const std::vector<double> before = state(f);
            d.apply(f);
            if (start == d.order) {
                EXPECT_EQ(state(f), before);
            } else {
                std::vector<double> want(10, 0.0);
                want[8] = want[9] = 0.5;  // a design never clears the first-order state
                EXPECT_EQ(state(f), want);
                f.setOrder(4);
                EXPECT_EQ(coefs(f)[5], 0.0);  // section 1 went with the order change
            }
        }
    }
}

TEST(UtilityState, DesignsWriteOnlyTheirOwnSection) {
    // All-pass designs leave the first-order coefficients; DC filters leave section 0.
    IirProcess ap(3);
    setFirstOrder(ap, 0.25, 0.5, 0.125);
    ap.setAPF2nd(1000.0, 48000.0);
    ap.setOrder(3);
    const std::vector<double> c = coefs(ap);
    EXPECT_EQ(std::vector<double>(c.begin() + 5, c.begin() + 8), (std::vector<double>{0.25, 0.5, 0.125}));

    IirProcess dc(1);
    setSection(dc, 0, 1.0, 2.0, 3.0, 4.0, 5.0);
    dc.setDcfHPF(0.3);
    dc.setOrder(3);
    EXPECT_EQ(coefs(dc)[0], 1.0);
}

TEST(UtilityState, ADcFilterContinuesFromTheRunningFirstOrderState) {
    const double fs = 48000.0;
    IirProcess f(3);
    setSection(f, 0, 1.0, 0.0, 0.0, 0.0, 0.0);
    setFirstOrder(f, 0.5, 0.0, 0.5);
    double last = 0.0;
    for (double x : {1.0, 0.4, -0.2, 0.9}) last = f.cal(x);
    f.setDcfLPF(0.0, fs);  // b0 = 0, a1 = 1: holds what the section last gave
    for (double x : {5.0, -3.0}) EXPECT_EQ(f.cal(x), last);

    f.clearDelay();
    EXPECT_EQ(f.cal(5.0), 0.0);  // from rest it holds zero
}

}  // namespace
