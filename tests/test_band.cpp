// Band-pass and band-eliminate designs: the Butterworth, Chebyshev and inverse
// Chebyshev band filters against the closed-form prototype magnitudes (the
// band transformations they are built from included), and clamping.
#include <gtest/gtest.h>

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

// |H| of the ideal band filter at f: the low-pass prototype's magnitude at
// w = (x^2 - W2)/(BW x), x = tan(pi f/fs), for a band-pass, at 1/w for a
// band-eliminate.
double idealMagnitude(const BandDesign& d, int n, double lo, double hi, double fs, double f) {
    const double wl = std::tan(kPi * lo / fs), wh = std::tan(kPi * hi / fs);
    const double x = std::tan(kPi * f / fs);
    const double w = (x * x - wl * wh) / ((wh - wl) * x);
    const double shape = d.family == Family::Chebyshev ? kRipple : kStopLevel;
    return std::sqrt(prototypePower(d.family, n, shape, d.pass ? w : 1.0 / w));
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
                std::vector<double> freqs = logFrequencies(fs, 300);
                const double centre = std::atan(std::sqrt(std::tan(kPi * lo / fs) * std::tan(kPi * hi / fs))) * fs / kPi;
                freqs.insert(freqs.end(), {0.0, lo, hi, centre, fs / 2});
                for (double freq : freqs) {
                    const double want = idealMagnitude(d, n, lo, hi, fs, freq);
                    EXPECT_NEAR(std::abs(responseOf(f, freq, fs)), want, 1e-8 * want + 1e-12) << freq;  // nulls too
                }
            }
}

// Orders above 2 design order 2; 0 and below leave order 0, which passes the signal.
TEST(BandFilters, ProtoOrderIsClampedIntoZeroToTwo) {
    for (const BandDesign& d : kDesigns)
        for (auto [asked, meant] : {std::pair{3, 2}, {4, 2}, {1000, 2}, {INT_MAX, 2}, {0, 0}, {-1, 0}, {INT_MIN, 0}}) {
            IirProcess f = designed(d, asked, 300.0, 900.0, 48000.0);
            EXPECT_EQ(f.getOrder(), 2 * meant) << d.name << " " << asked;
            EXPECT_EQ(coefs(f), coefs(designed(d, meant, 300.0, 900.0, 48000.0))) << d.name << " " << asked;
            EXPECT_TRUE(meant != 0 || f.cal(0.25) == 0.25) << d.name << " " << asked;
        }
}

}  // namespace
