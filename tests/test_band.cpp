// Band-pass and band-eliminate designs: the Butterworth, Chebyshev and inverse
// Chebyshev band filters against the closed-form prototype magnitudes,
// clamping, and the band transformations against the algebra they stand for.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "test_support.hpp"

using namespace mivora_test;

namespace {

constexpr double kRipple = 1.0;       // dB
constexpr double kStopLevel = 400.0;  // As = 56 dB
#define BAND(call) [](IirProcess& f, int n, double lo, double hi, double fs) { f.call; }
const struct BandDesign {
    const char* name;
    Family family;
    bool pass;
    void (*apply)(IirProcess&, int protoOrder, double lo, double hi, double fs);
} kDesigns[] = {
    {"BPF", Family::Butterworth, true, BAND(setCoefBPF(n, lo, hi, fs))},
    {"BEF", Family::Butterworth, false, BAND(setCoefBEF(n, lo, hi, fs))},
    {"BPFChev", Family::Chebyshev, true, BAND(setCoefBPFChev(n, lo, hi, kRipple, fs))},
    {"BEFChev", Family::Chebyshev, false, BAND(setCoefBEFChev(n, lo, hi, kRipple, fs))},
    {"BPFIChev", Family::Inverse, true, BAND(setCoefBPFIChev(n, lo, hi, kStopLevel, fs))},
    {"BEFIChev", Family::Inverse, false, BAND(setCoefBEFIChev(n, lo, hi, kStopLevel, fs))},
};
#undef BAND
IirProcess designed(const BandDesign& d, int n, double lo, double hi, double fs) {
    IirProcess f;
    d.apply(f, n, lo, hi, fs);
    return f;
}

// |H|^2 of the ideal band filter at f: the low-pass prototype's magnitude at
// w = (x^2 - W2)/(BW x), x = tan(pi f/fs), for a band-pass, at 1/w for a
// band-eliminate.
double idealPower(const BandDesign& d, int n, double lo, double hi, double fs, double f) {
    const double wl = std::tan(kPi * lo / fs), wh = std::tan(kPi * hi / fs);
    const double x = std::tan(kPi * f / fs);
    const double w = (x * x - wl * wh) / ((wh - wl) * x);
    return prototypePower(d.family, n, d.family == Family::Chebyshev ? kRipple : kStopLevel, d.pass ? w : 1.0 / w);
}

// Covers what a user tunes by: -3.01 dB / -ripple / -As at both edges; 0 dB,
// -ripple, -As or a null at the centre and at DC and fs/2 as the order and the
// family say; ripple and stop bands within their bounds in between.
TEST(BandFilters, ResponseIsThePrototypeMagnitudeOnTheBand) {
    const double bands[][3] = {{48000, 500, 2000}, {8000, 1000, 2000}, {44100, 40, 16000}, {48000, 990, 1010}, {96000, 5000, 30000}};
    for (const BandDesign& d : kDesigns)
        for (int n : {1, 2})
            for (const auto& b : bands) {
                const double fs = b[0], lo = b[1], hi = b[2];
                SCOPED_TRACE(::testing::Message() << d.name << " n=" << n << " " << lo << ".." << hi << " @" << fs);
                const IirProcess f = designed(d, n, lo, hi, fs);
                EXPECT_EQ(f.getOrder(), 2 * n);
                std::vector<double> freqs = logFrequencies(fs, 300);
                const double centre = std::atan(std::sqrt(std::tan(kPi * lo / fs) * std::tan(kPi * hi / fs))) * fs / kPi;
                freqs.insert(freqs.end(), {0.0, lo, hi, centre, fs / 2});
                for (double freq : freqs) {
                    const double want = 10.0 * std::log10(idealPower(d, n, lo, hi, fs, freq));
                    if (want > -150.0) {
                        EXPECT_NEAR(f.power(freq, fs), want, 1e-7) << freq;
                    } else {
                        EXPECT_LE(f.power(freq, fs), -100.0) << freq;
                    }
                }
            }
}

TEST(BandFilters, ProtoOrderIsClampedIntoZeroToTwo) {
    for (const BandDesign& d : kDesigns) {
        const std::vector<double> two = coefs(designed(d, 2, 300.0, 900.0, 48000.0));
        for (int n : {3, 4, 1000, INT_MAX}) {
            const IirProcess f = designed(d, n, 300.0, 900.0, 48000.0);
            EXPECT_EQ(f.getOrder(), 4) << d.name << " " << n;
            EXPECT_EQ(coefs(f), two) << d.name << " " << n;
        }
        for (int n : {0, -1, INT_MIN}) {
            IirProcess f = designed(d, n, 300.0, 900.0, 48000.0);
            EXPECT_EQ(f.getOrder(), 0) << d.name << " " << n;
            EXPECT_EQ(f.cal(0.25), 0.25) << d.name << " " << n;
        }
    }
}

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

}  // namespace
