// Butterworth, Chebyshev and inverse Chebyshev band-pass and band-eliminate
// filters: responses against the closed-form prototype magnitudes, worked
// coefficients, pole sharing, clamping and state.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "test_support.hpp"

using namespace mivora_test;

namespace {

enum class Family { Butterworth, Chebyshev, InverseChebyshev };

struct BandDesign {
    const char* name;
    Family family;
    bool pass;
};
const BandDesign kBPF{"BPF", Family::Butterworth, true}, kBEF{"BEF", Family::Butterworth, false};
const BandDesign kBPFChev{"BPFChev", Family::Chebyshev, true}, kBEFChev{"BEFChev", Family::Chebyshev, false};
const BandDesign kBPFIChev{"BPFIChev", Family::InverseChebyshev, true};
const BandDesign kBEFIChev{"BEFIChev", Family::InverseChebyshev, false};
const BandDesign kDesigns[] = {kBPF, kBEF, kBPFChev, kBEFChev, kBPFIChev, kBEFIChev};

constexpr double kRipple = 1.0;       // dB
constexpr double kStopLevel = 400.0;  // As = 56 dB
constexpr double kAs = 56.0;

// shape: the ripple (Chebyshev) or the stop level (inverse Chebyshev); < 0 picks the default.
void apply(IirProcess& f, const BandDesign& d, int n, double lo, double hi, double fs, double shape = -1.0) {
    if (shape < 0.0) shape = d.family == Family::Chebyshev ? kRipple : kStopLevel;
    switch (d.family) {
        case Family::Butterworth:
            d.pass ? f.setCoefBPF(n, lo, hi, fs) : f.setCoefBEF(n, lo, hi, fs);
            break;
        case Family::Chebyshev:
            d.pass ? f.setCoefBPFChev(n, lo, hi, shape, fs) : f.setCoefBEFChev(n, lo, hi, shape, fs);
            break;
        case Family::InverseChebyshev:
            d.pass ? f.setCoefBPFIChev(n, lo, hi, shape, fs) : f.setCoefBEFIChev(n, lo, hi, shape, fs);
            break;
    }
}

IirProcess designed(const BandDesign& d, int n, double lo, double hi, double fs) {
    IirProcess f;
    apply(f, d, n, lo, hi, fs);
    return f;
}

double chebyshevT(int n, double x) { return n == 1 ? x : 2.0 * x * x - 1.0; }

// |H|^2 of the ideal band filter at f: the low-pass prototype's magnitude at
// w = (x^2 - W2)/(BW x), x = tan(pi f/fs), for a band-pass, at 1/w for a
// band-eliminate.
double idealPower(const BandDesign& d, int n, double lo, double hi, double fs, double f) {
    const double wl = std::tan(kPi * lo / fs), wh = std::tan(kPi * hi / fs);
    const double x = std::tan(kPi * f / fs);
    double w = (x * x - wl * wh) / ((wh - wl) * x);
    if (!d.pass) w = 1.0 / w;
    if (d.family == Family::Butterworth) return 1.0 / (1.0 + std::pow(w * w, n));
    if (d.family == Family::Chebyshev) {
        const double t = chebyshevT(n, w);
        return 1.0 / (1.0 + (std::pow(10.0, kRipple / 10.0) - 1.0) * t * t);
    }
    const double t = chebyshevT(n, 1.0 / w);
    const double u = t * t / (std::pow(10.0, kAs / 10.0) - 1.0);
    return std::isinf(u) ? 1.0 : u / (1.0 + u);
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

TEST(BandFilters, WorkedCoefficientsAtAnEighthAndAQuarterOfFs) {
    struct Case {
        BandDesign d;
        int n;
        double c[10];
    };
    const Case cases[] = {
        {kBPF, 1, {0.2929, 0, -0.2929, 0.5858, -0.4142}},
        {kBPF, 2, {0.1460, 0, -0.1460, 0.1665, -0.5348, 0.6689, 0, -0.6689, 1.052, -0.6232}},
        {kBEF, 1, {0.7071, -0.5858, 0.7071, 0.5858, -0.4142}},
        {kBEF, 2, {0.6015, -0.4983, 0.6015, 0.1665, -0.5348, 0.9460, -0.7837, 0.9460, 1.052, -0.6232}},
        {kBPFChev, 1, {0.4487, 0, -0.4487, 0.4567, -0.1025}},
        {kBPFChev, 2, {0.1416, 0, -0.1416, 0.0543, -0.6256, 0.7242, 0, -0.7242, 1.183, -0.7141}},
        {kBEFChev, 1, {0.8259, -0.6842, 0.8259, 0.6842, -0.6518}},
        {kBEFChev, 2, {0.5572, -0.4616, 0.5572, 0.1172, -0.6510, 1.020, -0.8451, 1.020, 1.157, -0.7281}},
        {kBPFIChev, 1, {0.0006561, 0, -0.0006561, 0.8279, -0.9987}},
        {kBPFIChev, 2, {0.002608, 0.0008537, 0.002608, 0.7851, -0.9673, 0.7898, -1.233, 0.7898, 0.8444, -0.9678}},
        {kBEFIChev, 1, {0.003812, -0.003158, 0.003812, 0.003158, 0.9924}},
        {kBEFIChev, 2, {0.01437, -0.00355, 0.01437, -1.731, -0.7636, 1.153, -1.475, 1.153, 1.888, -0.8940}},
    };
    for (const Case& c : cases) {
        const std::vector<double> k = coefs(designed(c.d, c.n, 1000.0, 2000.0, 8000.0));
        for (int i = 0; i < 5 * c.n; ++i) {
            // Four significant digits.
            const double tol = c.c[i] == 0.0 ? 0.0 : 5e-4 * std::pow(10.0, std::floor(std::log10(std::fabs(c.c[i]))));
            EXPECT_NEAR(k[i], c.c[i], tol) << c.d.name << " n=" << c.n << " [" << i << "]";
        }
    }
}

// With cst = 1 the inverted Butterworth factor is the factor itself, so the
// band-eliminate filter has the band-pass poles bit for bit; the Chebyshev
// families invert a factor that is not self-reciprocal.
TEST(BandFilters, OnlyButterworthBandEliminateSharesThePassPoles) {
    const BandDesign pairs[][2] = {{kBPF, kBEF}, {kBPFChev, kBEFChev}, {kBPFIChev, kBEFIChev}};
    for (const auto& pair : pairs) {
        for (int n : {1, 2}) {
            const std::vector<double> p = coefs(designed(pair[0], n, 700.0, 3000.0, 44100.0));
            const std::vector<double> e = coefs(designed(pair[1], n, 700.0, 3000.0, 44100.0));
            double largest = 0.0;
            for (int i : {3, 4, 8, 9}) largest = i < 5 * n ? std::max(largest, std::fabs(p[i] - e[i])) : largest;
            if (pair[0].family == Family::Butterworth) {
                EXPECT_EQ(largest, 0.0) << n;
            } else {
                EXPECT_GT(largest, 1e-2) << pair[0].name << " n=" << n;
            }
        }
    }
}

TEST(BandFilters, ProtoOrderIsClampedAndNothingPastTheSectionsIsWritten) {
    for (const BandDesign& d : kDesigns) {
        SCOPED_TRACE(d.name);
        const std::vector<double> two = coefs(designed(d, 2, 300.0, 900.0, 48000.0));
        for (int n : {3, 4, 1000, INT_MAX}) {
            IirProcess f;
            setFirstOrder(f, 0.25, 0.5, 0.75);
            f.setDelay(2.0);
            apply(f, d, n, 300.0, 900.0, 48000.0);
            EXPECT_EQ(f.getOrder(), 4);
            EXPECT_EQ(coefs(f), two);
            // The first-order section's storage follows the two sections.
            EXPECT_EQ(state(f)[8], 2.0);
            EXPECT_EQ(state(f)[9], 2.0);
            f.setOrder(5);
            EXPECT_EQ(coefs(f)[10], 0.25);
            EXPECT_EQ(coefs(f)[12], 0.75);
        }
        for (int n : {0, -1, INT_MIN}) {
            IirProcess f(4);
            apply(f, d, n, 300.0, 900.0, 48000.0);
            EXPECT_EQ(f.getOrder(), 0);
            for (double x : {1.0, -0.5, 0.25}) EXPECT_EQ(f.cal(x), x);
        }
    }
}

TEST(BandFilters, RedesignAtTheSameProtoOrderKeepsStateAndAnotherClearsIt) {
    for (const BandDesign& first : kDesigns) {
        for (const BandDesign& next : kDesigns) {
            for (int n : {1, 2}) {
                SCOPED_TRACE(::testing::Message() << first.name << " -> " << next.name << " n=" << n);
                IirProcess f;
                apply(f, first, n, 500.0, 2000.0, 48000.0);
                f.setDelay(0.5);
                for (double x : {1.0, -0.5, 0.25}) f.cal(x);
                const std::vector<double> running = state(f);
                apply(f, next, n, 800.0, 5000.0, 48000.0, next.family == Family::Chebyshev ? 0.5 : 200.0);
                EXPECT_EQ(state(f), running);
                apply(f, next, 3 - n, 800.0, 5000.0, 48000.0);
                EXPECT_EQ(state(f), (std::vector<double>{0, 0, 0, 0, 0, 0, 0, 0, 0.5, 0.5}));
            }
        }
    }
}

}  // namespace
