// The band transformations against the algebra they stand for.
#include <gtest/gtest.h>

#include "test_support.hpp"

using namespace mivora_test;

namespace {

// Pre-warped edges: fs/8..fs/4, 500..2000 Hz at 48 kHz, very wide, very narrow.
const double kEdges[][2] = {{std::tan(kPi / 8), 1.0}, {0.0655, 0.2679}, {0.002, 3.5}, {0.2, 0.2001}};

bool near(double got, double want, double relTol) { return std::fabs(got - want) <= relTol * std::fabs(want); }

TEST(BandTransforms, BandImagesMultiplyOutToTheMappedPrototype) {
    const double factors[][2] = {{std::sqrt(2.0), 1.0}, {0.5489, 1.1025}, {0.05, 0.9}, {1.9, 1.0}, {0.7, 3.0}};
    for (const auto& e : kEdges) {
        const double bw = e[1] - e[0], w2 = e[0] * e[1];
        for (const auto& pf : factors) {
            const double lin = pf[0], cst = pf[1];
            SCOPED_TRACE(::testing::Message() << lin << " " << cst << " w=" << e[0] << ".." << e[1]);
            double lin1 = 0, cst1 = 0, lin2 = 0, cst2 = 0;
            IirProcess::BpfCoefTrans(lin, cst, e[0], e[1], &lin1, &cst1, &lin2, &cst2);
            // (s^2 + lin1 s + cst1)(s^2 + lin2 s + cst2)
            //   = (s^2 + W2)^2 + lin BW s (s^2 + W2) + cst BW^2 s^2, term by term.
            EXPECT_TRUE(near(lin1 + lin2, lin * bw, 1e-12));
            EXPECT_TRUE(near(cst1 + cst2 + lin1 * lin2, 2.0 * w2 + cst * bw * bw, 1e-12));
            EXPECT_TRUE(near(lin1 * cst2 + lin2 * cst1, lin * bw * w2, 1e-11));
            EXPECT_TRUE(near(cst1 * cst2, w2 * w2, 1e-12));
            // Upper pole pair first; both stable.
            EXPECT_TRUE(cst1 > w2 && w2 > cst2 && lin1 > 0.0 && lin2 > 0.0);
        }
        for (double zero : {0.5, 2.0, 40.0}) {
            double high = 0, low = 0;
            IirProcess::BuboCoefTrans(e[0], e[1], zero, &high, &low);
            // (s^2 + high)(s^2 + low) = (s^2 + W2)^2 + zero BW^2 s^2. l = (u - v)/2
            // cancels when zero*BW^2 dwarfs W2, so the sum is the looser term.
            EXPECT_TRUE(near(high * low, w2 * w2, 1e-12)) << zero;
            EXPECT_TRUE(near(high + low, 2.0 * w2 + zero * bw * bw, 1e-10)) << zero;
            EXPECT_TRUE(near(std::sqrt(high) - std::sqrt(low), bw * std::sqrt(zero), 1e-9)) << zero;
        }
    }
}

// On the pre-warped axis the digital response at f is the analogue one at
// s = j tan(pi f / fs).
TEST(BandTransforms, SectionsAreBilinearImagesOfTheirAnalogueSections) {
    const double fs = 48000.0;
    const double sections[][3] = {{0.3, 0.1, 0.1}, {1.414, 1.0, 0.5}, {0.01, 0.25, 0.3}, {2.5, 4.0, 9.0}};
    for (const auto& s : sections) {
        const double lin = s[0], cst = s[1], zero = s[2];
        double bp[5], be[5];
        IirProcess::BpfCoefToZet(lin, cst, bp);
        IirProcess::BefCoefToZet(lin, cst, zero, be);
        for (double freq : logFrequencies(fs, 151)) {
            const std::complex<double> sj(0.0, std::tan(kPi * freq / fs));
            const std::complex<double> den = sj * sj + lin * sj + cst;
            EXPECT_LT(std::abs(sectionH(bp, freq, fs) - sj / den), 1e-12 * (std::abs(sj / den) + 1e-3)) << freq;
            const std::complex<double> wantBe = (sj * sj + zero) / den;
            EXPECT_LT(std::abs(sectionH(be, freq, fs) - wantBe), 1e-12 * (std::abs(wantBe) + 1e-3)) << freq;
        }
        // Exact zeros at DC and fs/2 for the band-pass; gain 1 at fs/2 for the band-eliminate.
        EXPECT_EQ(bp[1], 0.0);
        EXPECT_EQ(bp[2], -bp[0]);
        EXPECT_NEAR(std::abs(sectionH(be, fs / 2, fs)), 1.0, 1e-12);
    }
}

}  // namespace
