// Band-pass and band-eliminate designs: the second-order band-pass from a Q,
// the Butterworth, Chebyshev and inverse Chebyshev band filters against the
// closed-form prototype magnitudes, worked coefficients, clamping, and the band
// transformations against the algebra they stand for.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "test_support.hpp"

using namespace mivora_test;

namespace {

IirProcess designedQ(void (IirProcess::*d)(double, double, double), double freq, double q, double fs) {
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
            const IirProcess tall = designedQ(&IirProcess::setCoefBPFQfct, freq, q, fs);
            const IirProcess unity = designedQ(&IirProcess::setCoefBPF_Q, freq, q, fs);
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

// A quarter of fs with q 2 (t is 1 to rounding); and DC, where the section
// degenerates to (0, 0, -0) over (2, -1).
const Worked kWorkedQ[] = {
    {MIVORA_CALL(setCoefBPFQfct(12000, 2, 48000)), {0.4, 0, -0.4, 0, -0.6}, 1e-15},
    {MIVORA_CALL(setCoefBPF_Q(12000, 2, 48000)), {0.2, 0, -0.2, 0, -0.6}, 1e-15},
    {MIVORA_CALL(setCoefBPFQfct(0, 2, 48000)), {0, 0, 0, 2, -1}, 1e-15},
    {MIVORA_CALL(setCoefBPF_Q(0, 2, 48000)), {0, 0, 0, 2, -1}, 1e-15},
};
TEST(BandQ, WorkedValues) {
    for (const Worked& w : kWorkedQ) expectWorked(w);
}

struct BandDesign {
    const char* name;
    Family family;
    bool pass;
};
const BandDesign kDesigns[] = {{"BPF", Family::Butterworth, true},   {"BEF", Family::Butterworth, false},
                               {"BPFChev", Family::Chebyshev, true}, {"BEFChev", Family::Chebyshev, false},
                               {"BPFIChev", Family::Inverse, true},  {"BEFIChev", Family::Inverse, false}};
constexpr double kRipple = 1.0;       // dB
constexpr double kStopLevel = 400.0;  // As = 56 dB

IirProcess designed(const BandDesign& d, int n, double lo, double hi, double fs) {
    IirProcess f;
    switch (d.family) {
        case Family::Butterworth:
            d.pass ? f.setCoefBPF(n, lo, hi, fs) : f.setCoefBEF(n, lo, hi, fs);
            break;
        case Family::Chebyshev:
            d.pass ? f.setCoefBPFChev(n, lo, hi, kRipple, fs) : f.setCoefBEFChev(n, lo, hi, kRipple, fs);
            break;
        case Family::Inverse:
            d.pass ? f.setCoefBPFIChev(n, lo, hi, kStopLevel, fs) : f.setCoefBEFIChev(n, lo, hi, kStopLevel, fs);
            break;
    }
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
    const double bands[][3] = {{48000, 500, 2000},  {8000, 1000, 2000},   {44100, 40, 16000},
                               {48000, 990, 1010},  {96000, 5000, 30000}};
    for (const BandDesign& d : kDesigns) {
        for (int n : {1, 2}) {
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
    }
}

// An eighth and a quarter of fs, to four significant digits.
const Worked kWorked[] = {
    {MIVORA_CALL(setCoefBPF(1, 1000, 2000, 8000)), {0.2929, 0, -0.2929, 0.5858, -0.4142}, -4},
    {MIVORA_CALL(setCoefBPF(2, 1000, 2000, 8000)), {0.1460, 0, -0.1460, 0.1665, -0.5348, 0.6689, 0, -0.6689, 1.052, -0.6232}, -4},
    {MIVORA_CALL(setCoefBEF(1, 1000, 2000, 8000)), {0.7071, -0.5858, 0.7071, 0.5858, -0.4142}, -4},
    {MIVORA_CALL(setCoefBEF(2, 1000, 2000, 8000)), {0.6015, -0.4983, 0.6015, 0.1665, -0.5348, 0.9460, -0.7837, 0.9460, 1.052, -0.6232}, -4},
    {MIVORA_CALL(setCoefBPFChev(1, 1000, 2000, 1, 8000)), {0.4487, 0, -0.4487, 0.4567, -0.1025}, -4},
    {MIVORA_CALL(setCoefBPFChev(2, 1000, 2000, 1, 8000)), {0.1416, 0, -0.1416, 0.0543, -0.6256, 0.7242, 0, -0.7242, 1.183, -0.7141}, -4},
    {MIVORA_CALL(setCoefBEFChev(1, 1000, 2000, 1, 8000)), {0.8259, -0.6842, 0.8259, 0.6842, -0.6518}, -4},
    {MIVORA_CALL(setCoefBEFChev(2, 1000, 2000, 1, 8000)), {0.5572, -0.4616, 0.5572, 0.1172, -0.6510, 1.020, -0.8451, 1.020, 1.157, -0.7281}, -4},
    {MIVORA_CALL(setCoefBPFIChev(1, 1000, 2000, 400, 8000)), {0.0006561, 0, -0.0006561, 0.8279, -0.9987}, -4},
    {MIVORA_CALL(setCoefBPFIChev(2, 1000, 2000, 400, 8000)), {0.002608, 0.0008537, 0.002608, 0.7851, -0.9673, 0.7898, -1.233, 0.7898, 0.8444, -0.9678}, -4},
    {MIVORA_CALL(setCoefBEFIChev(1, 1000, 2000, 400, 8000)), {0.003812, -0.003158, 0.003812, 0.003158, 0.9924}, -4},
    {MIVORA_CALL(setCoefBEFIChev(2, 1000, 2000, 400, 8000)), {0.01437, -0.00355, 0.01437, -1.731, -0.7636, 1.153, -1.475, 1.153, 1.888, -0.8940}, -4},
};
TEST(BandFilters, WorkedValues) {
    for (const Worked& w : kWorked) expectWorked(w);
}

// With cst = 1 the inverted Butterworth factor is the factor itself, so the
// band-eliminate filter has the band-pass poles bit for bit.
TEST(BandFilters, ButterworthBandEliminateSharesThePassPoles) {
    for (int n : {1, 2}) {
        const std::vector<double> p = coefs(designed(kDesigns[0], n, 700.0, 3000.0, 44100.0));
        const std::vector<double> e = coefs(designed(kDesigns[1], n, 700.0, 3000.0, 44100.0));
        for (int i : {3, 4, 8, 9})
            if (i < 5 * n) {
                EXPECT_EQ(p[i], e[i]) << n << " [" << i << "]";
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
