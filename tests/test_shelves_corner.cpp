// Shelves with a placed corner: where freq lands in the transition, how the
// placement meets the plain variants, silent levels, and that only section
// 0's coefficients change.
#include <gtest/gtest.h>

#include <algorithm>

#include "test_shelves_support.hpp"

using namespace mivora_test;

namespace {

using Corner = void (IirProcess::*)(double, double, double, double, double);
using Shelf = void (IirProcess::*)(double, double, double);

struct CornerShelf {
    const char* name;
    Corner design;
    Shelf variantA, variantB;
    ShelfKind flatSide;  // variant B of the same shelf
};
constexpr double kSqrt2 = 1.4142135623730951;
const CornerShelf kCorners[] = {
    {"LowShelf_C", &IirProcess::setCoefLowShelf_C, &IirProcess::setCoefLOWS_A, &IirProcess::setCoefLOWS_B,
     {false, true, 0.0}},
    {"HiShelf_C", &IirProcess::setCoefHiShelf_C, &IirProcess::setCoefHIGS_A, &IirProcess::setCoefHIGS_B,
     {true, true, 0.0}},
    {"LowShelf_2C", &IirProcess::setCoefLowShelf_2C, &IirProcess::setCoefLOWS_2A, &IirProcess::setCoefLOWS_2B,
     {false, true, kSqrt2}},
    {"HiShelf_2C", &IirProcess::setCoefHiShelf_2C, &IirProcess::setCoefHIGS_2A, &IirProcess::setCoefHIGS_2B,
     {true, true, kSqrt2}},
};

std::vector<double> placed(Corner d, double fs, double freq, double gainDb, double weight, double levelDb) {
    IirProcess f;
    (f.*d)(fs, freq, gainDb, weight, levelDb);
    return section0(f);
}
std::vector<double> plain(Shelf d, double freq, double gainDb, double fs) {
    IirProcess f;
    (f.*d)(freq, gainDb, fs);
    return section0(f);
}
void expectLastBitsEqual(const std::vector<double>& got, const std::vector<double>& want) {
    for (int i = 0; i < 5; ++i)
        EXPECT_NEAR(got[i], want[i], 1e-13 * std::max(1.0, std::fabs(want[i]))) << "[" << i << "]";
}

TEST(CornerShelves, WeightZeroIsVariantAAndWeightOneAtZeroDbIsVariantB) {
    const double fs = 48000.0;
    for (const CornerShelf& s : kCorners) {
        for (double gain : {-30.0, -6.0, 0.5, 12.0, 40.0}) {
            for (double freq : {60.0, 2000.0, 17000.0}) {
                SCOPED_TRACE(::testing::Message() << s.name << " g=" << gain << " f=" << freq);
                const std::vector<double> a = plain(s.variantA, freq, gain, fs);
                for (double level : {-100.0, -20.0, 0.0, 9.0})
                    expectLastBitsEqual(placed(s.design, fs, freq, gain, 0.0, level), a);
                expectLastBitsEqual(placed(s.design, fs, freq, gain, 1.0, std::fabs(gain)), a);
                expectLastBitsEqual(placed(s.design, fs, freq, gain, 1.0, 0.0), plain(s.variantB, freq, gain, fs));
            }
        }
    }
}

TEST(CornerShelves, FreqLandsWhereWeightAndLevelPlaceIt) {
    const double fs = 44100.0;
    const double t = std::tan(kPi * 1500.0 / fs);
    for (const CornerShelf& s : kCorners) {
        // Decibels per decade of the straight-line transition, halved for the
        // corner factor of a second-order shelf.
        const double perDecade = s.flatSide.damping == 0.0 ? 20.0 : 40.0;
        for (double gain : {-18.0, 6.0, 24.0}) {
            for (double weight : {-0.5, 0.25, 0.5, 1.0, 1.5}) {
                for (double level : {-12.0, 0.0, 9.0}) {
                    SCOPED_TRACE(::testing::Message() << s.name << " g=" << gain << " w=" << weight << " l=" << level);
                    IirProcess f;
                    (f.*s.design)(fs, 1500.0, gain, weight, level);
                    // The flat-side corner sits this many dB-on-the-line away from freq.
                    const double offset = (1.0 - weight) * std::fabs(gain) + weight * level;
                    const double corner = t * std::pow(10.0, (s.flatSide.high ? -offset : offset) / perDecade);
                    for (double x : logFrequencies(fs, 40)) {
                        const std::complex<double> want = shelfAt(s.flatSide, gain, corner, x, fs);
                        EXPECT_TRUE(closeRelative(responseOf(f, x, fs).h, want, 1e-9)) << x;
                    }
                }
            }
            // Halfway between the corners the shelf is halfway in dB.
            IirProcess f;
            (f.*s.design)(fs, 1500.0, gain, 0.5, 0.0);
            EXPECT_NEAR(f.power(1500.0, fs), gain / 2, 1e-9) << s.name;
        }
    }
}

TEST(CornerShelves, WorkedValuesAtAQuarterOfTheSamplingRate) {
    const double four = 20.0 * std::log10(4.0);
    const double expected[4][2][5] = {
        {{2, 2.0 / 3, 0, 1.0 / 3, 0}, {0.5, -1.0 / 6, 0, -1.0 / 3, 0}},
        {{2, -2.0 / 3, 0, -1.0 / 3, 0}, {0.5, 1.0 / 6, 0, 1.0 / 3, 0}},
        {{2, 0.8, 0.4, 0.4, -0.2}, {0.5, -0.2, 0.1, -0.4, -0.2}},
        {{2, -0.8, 0.4, -0.4, -0.2}, {0.5, 0.2, 0.1, 0.4, -0.2}},
    };
    for (int d = 0; d < 4; ++d) {
        for (int cut = 0; cut < 2; ++cut) {
            const std::vector<double> k = placed(kCorners[d].design, 4000.0, 1000.0, cut ? -four : four, 0.5, 0.0);
            for (int i = 0; i < 5; ++i) EXPECT_NEAR(k[i], expected[d][cut][i], 1e-12) << kCorners[d].name << cut << i;
        }
    }
}

TEST(CornerShelves, MinusHundredDbIsSilence) {
    // A high shelf cut to nothing holds its output at weight < 1 and becomes
    // a first-order low-pass at weight 1.
    const Corner hi = &IirProcess::setCoefHiShelf_C;
    EXPECT_EQ(placed(hi, 4000.0, 1000.0, -100.0, 0.5, 0.0), (std::vector<double>{0, 0, 0, 1, 0}));
    const std::vector<double> lowPass = placed(hi, 4000.0, 1000.0, -100.0, 1.0, 0.0);
    for (int i = 0; i < 5; ++i) EXPECT_NEAR(lowPass[i], (i < 2 ? 0.5 : 0.0), 1e-12);

    // A silent level at a positive weight sends the corner to 0 (low shelves:
    // poles and zeros cancel on z = 1) or next to fs/2 (high shelves: poles
    // next to z = -1, still finite).
    for (double gain : {-9.0, 9.0}) {
        EXPECT_EQ(placed(&IirProcess::setCoefLowShelf_C, 48000.0, 1000.0, gain, 0.5, -100.0),
                  (std::vector<double>{1, -1, 0, 1, 0}));
        EXPECT_EQ(placed(&IirProcess::setCoefLowShelf_2C, 48000.0, 1000.0, gain, 0.5, -100.0),
                  (std::vector<double>{1, -2, 1, 2, -1}));
        EXPECT_NEAR(placed(hi, 48000.0, 1000.0, gain, 0.5, -100.0)[3], -1.0, 1e-9);
        const std::vector<double> hi2 = placed(&IirProcess::setCoefHiShelf_2C, 48000.0, 1000.0, gain, 0.5, -100.0);
        EXPECT_NEAR(hi2[3], -2.0, 1e-9);
        EXPECT_NEAR(hi2[4], -1.0, 1e-9);
    }
}

TEST(CornerShelves, OnlySectionZeroCoefficientsChange) {
    for (const CornerShelf& s : kCorners) {
        IirProcess f(5);
        setSection(f, 1, 0.6, 0.7, 0.8, 0.1, -0.2);
        setFirstOrder(f, 0.5, 0.25, 0.125);
        for (double x : {0.5, -0.25, 1.0}) f.cal(x);
        const std::vector<double> before = coefs(f);
        const std::vector<double> running = state(f);
        (f.*s.design)(48000.0, 1000.0, 6.0, 0.3, -3.0);
        EXPECT_EQ(f.getOrder(), 5) << s.name;
        EXPECT_EQ(state(f), running) << s.name;
        std::vector<double> want = placed(s.design, 48000.0, 1000.0, 6.0, 0.3, -3.0);
        want.insert(want.end(), before.begin() + 5, before.end());
        EXPECT_EQ(coefs(f), want) << s.name;
    }
}

}  // namespace
