// High-pass and low-pass designs: responses against the textbook closed forms
// (how the gain is spread over the sections, the golden values pin), the
// section transforms, short forms and clamping.
#include <gtest/gtest.h>

#include <functional>
#include <tuple>

#include "test_support.hpp"

using namespace mivora_test;

namespace {

struct CutDesign {
    const char* name;
    Family family;
    bool high;
    std::function<void(IirProcess&, int, double, double, double)> apply;  // order, freq, shape, fs
    double shapes[2];  // ripple dB, or stopLevel; unused by Butterworth
};

const CutDesign kDesigns[] = {
    {"HPF", Family::Butterworth, true, [](IirProcess& f, int n, double fr, double, double fs) { f.setCoefHPF(n, fr, fs); }, {0, 0}},
    {"LPF", Family::Butterworth, false, [](IirProcess& f, int n, double fr, double, double fs) { f.setCoefLPF(n, fr, fs); }, {0, 0}},
    {"HPFChev", Family::Chebyshev, true, &IirProcess::setCoefHPFChev, {1.0, 0.1}},
    {"LPFChev", Family::Chebyshev, false, &IirProcess::setCoefLPFChev, {1.0, 0.1}},
    {"HPFIChev", Family::Inverse, true, &IirProcess::setCoefHPFIChev, {560.0, 360.0}},
    {"LPFIChev", Family::Inverse, false, &IirProcess::setCoefLPFIChev, {560.0, 360.0}},
};

std::vector<double> slice(const std::vector<double>& v, int from, int to) { return {v.begin() + from, v.begin() + to}; }

// Odd orders only match with the first-order pole on the right side of the
// edge, so this also pins the direction of the first-order factor.
TEST(Cut, ResponsesFollowTheClosedForms) {
    const double fs = 48000.0;
    for (const CutDesign& d : kDesigns)
        for (double shape : d.shapes)
            for (int n = 1; n <= 5; ++n)
                for (double freq : {150.0, 3000.0, 14000.0}) {
                    SCOPED_TRACE(::testing::Message() << d.name << " n=" << n << " shape=" << shape << " f=" << freq);
                    IirProcess f;
                    d.apply(f, n, freq, shape, fs);
                    // DC, the edge and fs/2 included: -3 dB, -ripple or -As at the edge; 0 dB or
                    // -ripple (even Chebyshev orders) at the pass-band end.
                    Values freqs = logFrequencies(fs, 300);
                    freqs.insert(freqs.end(), {0.0, freq, fs / 2});
                    const double t = std::tan(kPi * freq / fs);
                    for (double g : freqs) {
                        const double x = d.high ? t / std::tan(kPi * g / fs) : std::tan(kPi * g / fs) / t;
                        const double want = std::sqrt(prototypePower(d.family, n, shape, x));
                        EXPECT_NEAR(std::abs(responseOf(f, g, fs)), want, 1e-8 * want + 1e-12) << g;  // stop bands too
                    }
                }
}

// Each section transform is the bilinear image of its analogue section: H(z)
// on the unit circle equals H(j*tan(pi f/fs)).
TEST(Transforms, SectionsAreBilinearImagesOfTheirAnalogueSections) {
    std::vector<double> grid = logFrequencies(1.0, 40);
    grid.insert(grid.end(), {0.0, 0.5});
    for (double lin : {0.01, 0.3, 1.414, 3.0})
        for (double cst : {0.01, 0.25, 1.0, 9.0})
            for (double zero : {0.0, 0.3, 4.0}) {
                SCOPED_TRACE(::testing::Message() << "lin=" << lin << " cst=" << cst << " zero=" << zero);
                double hp[5], lp[5], ihp[5], ilp[5], bp[5], be[5];
                IirProcess::HpfCoefToZet(lin, cst, hp);
                IirProcess::LpfCoefToZet(lin, cst, lp);
                IirProcess::IChevHpfCoefToZet(lin, cst, zero, ihp);
                IirProcess::IChevLpfCoefToZet(lin, cst, zero, ilp);
                IirProcess::BpfCoefToZet(lin, cst, bp);
                IirProcess::BefCoefToZet(lin, cst, zero, be);
                EXPECT_EQ(std::vector<double>(ihp, ihp + 5), std::vector<double>(ilp, ilp + 5));
                EXPECT_TRUE(zero != 0.0 || std::vector<double>(ihp, ihp + 5) == std::vector<double>(hp, hp + 5));
                EXPECT_TRUE(bp[1] == 0.0 && bp[2] == -bp[0]);  // exact zeros at DC and fs/2
                for (double g : grid) {
                    const Complex s(0.0, std::tan(kPi * g)), den = s * s + lin * s + cst;
                    // {section, its analogue H, the floor of the relative tolerance for |H| near 0}
                    const std::tuple<const double*, Complex, double> cases[] = {
                        {hp, s * s / den, 1.0}, {lp, 1.0 / den, 1.0}, {ihp, (s * s + zero) / den, 1.0},
                        {bp, s / den, 1e-3}, {be, (s * s + zero) / den, zero == 0.0 ? 1.0 : 1e-3}};
                    for (const auto& [c, h, floor] : cases)
                        EXPECT_LT(std::abs(sectionH(c, g, 1.0) - h), 1e-12 * (std::abs(h) + floor)) << g << " H=" << h;
                }
            }
}

// The two-argument forms are order 2; orders beyond the storage are clamped.
TEST(Cut, ShortFormsAndClampedOrdersAgreeBitForBit) {
    IirProcess a, b;
    a.setCoefHPF(1234.0, 48000.0);
    b.setCoefHPF(2, 1234.0, 48000.0);
    EXPECT_EQ(coefs(a), coefs(b));
    a.setCoefLPF(1234.0, 48000.0);
    b.setCoefLPF(2, 1234.0, 48000.0);
    EXPECT_EQ(coefs(a), coefs(b));
    for (const CutDesign& d : kDesigns)
        for (auto [asked, meant] : {std::pair{8, 5}, {1000, 5}, {-9, -5}}) {
            d.apply(a, asked, 900.0, d.shapes[0], 44100.0);
            d.apply(b, meant, 900.0, d.shapes[0], 44100.0);
            EXPECT_EQ(a.getOrder(), meant) << d.name;
            EXPECT_EQ(coefs(a), coefs(b)) << d.name << " " << asked;
        }
    // A negative odd order writes the first-order section alone, as its positive order would.
    a.setCoefHPF(-3, 1000.0, 48000.0);
    b.setCoefHPF(3, 1000.0, 48000.0);
    EXPECT_EQ(slice(coefs(a), 0, 3), slice(coefs(b), 5, 8));
}

}  // namespace
