// power() and phase() against an independent evaluation of the held filter.
#include <gtest/gtest.h>

#include "test_support.hpp"

using namespace mivora_test;

namespace {

IirProcess sample(int order) { return holding(order, {0.3, -0.2, 0.1, 1.1, -0.5, 0.7, 0.4, -0.2, -0.3, -0.2, 0.6, 0.3, 0.4}); }

TEST(Response, MatchesIndependentEvaluationAtEveryOrder) {
    const double fs = 48000.0;
    std::vector<double> freqs = logFrequencies(fs, 97);
    freqs.insert(freqs.end(), {0.0, fs / 2});
    for (int order = -5; order <= 5; ++order) {
        IirProcess f = sample(order);
        for (double freq : freqs) {
            EXPECT_NEAR(f.power(freq, fs), db(responseOf(f, freq, fs)), 1e-12) << order << " @ " << freq;
            // Phase covers the second-order sections only.
            IirProcess evenOnly = f;
            evenOnly.setOrder(f.getEvenOrder());
            const double expectedPhase = std::arg(responseOf(evenOnly, freq, fs));
            const double diff = std::remainder(f.phase(freq, fs) - expectedPhase, 2 * kPi);
            EXPECT_NEAR(diff, 0.0, 1e-9) << order << " @ " << freq;
            EXPECT_LE(std::fabs(f.phase(freq, fs)), kPi);
        }
    }
}

TEST(Response, AnExactZeroReadsMinusOneHundredDecibels) {
    IirProcess fresh;  // all coefficients zero
    IirProcess zeroAtDc = holding(2, {1.0, -1.0, 0.0, 0.5, 0.0});  // numerator 1 - z^-1
    for (double freq : {0.0, 100.0, 23999.0}) EXPECT_EQ(fresh.power(freq, 48000.0), -100.0);
    EXPECT_EQ(zeroAtDc.power(0.0, 48000.0), -100.0);
}

}  // namespace
