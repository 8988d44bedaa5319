// Shelves of first and second order and with a placed corner: the analogue
// shelf each follows, the entry points that select variants, where a placed
// corner lands, worked values and degenerate arguments.
#include <gtest/gtest.h>

#include <algorithm>

#include "test_support.hpp"

using namespace mivora_test;

namespace {

// A low shelf of variant A boosts by (s + A)/(s + 1), or (s^2 + k*sqrt(A)*s +
// A)/(s^2 + k*s + 1) at second order. Variant B is the same shelf with both
// corners moved down by A (first order) or sqrt(A), a high shelf is the low
// shelf at 1/s, and a cut is the reciprocal of the boost. s = j at the corner.
struct ShelfKind {
    bool high;
    bool variantB;
    double damping;  // 0 for a first-order shelf
};
std::complex<double> analogueShelf(const ShelfKind& kind, double gainDb, std::complex<double> s) {
    const double a = std::pow(10.0, std::fabs(gainDb) / 20.0), r = std::sqrt(a), k = kind.damping;
    if (kind.high) s = 1.0 / s;
    if (kind.variantB) s *= k == 0.0 ? a : r;
    const std::complex<double> h = k == 0.0 ? (s + a) / (s + 1.0) : (s * s + k * r * s + a) / (s * s + k * s + 1.0);
    return gainDb >= 0.0 ? h : 1.0 / h;
}
// The analogue shelf with its corner at the pre-warped value `corner`.
std::complex<double> shelfAt(const ShelfKind& kind, double gainDb, double corner, double freq, double fs) {
    return analogueShelf(kind, gainDb, {0.0, std::tan(kPi * freq / fs) / corner});
}

using Shelf = void (IirProcess::*)(double, double, double);
using Selector = void (IirProcess::*)(double, double, double, short);
using Corner = void (IirProcess::*)(double, double, double, double, double);
constexpr double kSqrt2 = 1.4142135623730951;

const struct NamedShelf {
    const char* name;
    Shelf design;
    ShelfKind kind;
} kShelves[] = {
    {"LOWS_A", &IirProcess::setCoefLOWS_A, {false, false, 0.0}},
    {"LOWS_B", &IirProcess::setCoefLOWS_B, {false, true, 0.0}},
    {"HIGS_A", &IirProcess::setCoefHIGS_A, {true, false, 0.0}},
    {"HIGS_B", &IirProcess::setCoefHIGS_B, {true, true, 0.0}},
    {"LOWS_2A", &IirProcess::setCoefLOWS_2A, {false, false, kSqrt2}},
    {"LOWS_2B", &IirProcess::setCoefLOWS_2B, {false, true, kSqrt2}},
    {"HIGS_2A", &IirProcess::setCoefHIGS_2A, {true, false, kSqrt2}},
    {"HIGS_2B", &IirProcess::setCoefHIGS_2B, {true, true, kSqrt2}},
    // Damping 2: the first-order shelf at half the gain, squared.
    {"LOWS_PM_2A", &IirProcess::setCoefLOWS_PM_2A, {false, false, 2.0}},
    {"LOWS_PM_2B", &IirProcess::setCoefLOWS_PM_2B, {false, true, 2.0}},
    {"HIGS_PM_2A", &IirProcess::setCoefHIGS_PM_2A, {true, false, 2.0}},
    {"HIGS_PM_2B", &IirProcess::setCoefHIGS_PM_2B, {true, true, 2.0}},
};
// Each corner shelf with the plain variants it meets and its flat-side kind.
const struct CornerShelf {
    const char* name;
    Corner design;
    Shelf variantA, variantB;
    ShelfKind flatSide;
} kCorners[] = {
    {"LowShelf_C", &IirProcess::setCoefLowShelf_C, &IirProcess::setCoefLOWS_A, &IirProcess::setCoefLOWS_B, {false, true, 0.0}},
    {"HiShelf_C", &IirProcess::setCoefHiShelf_C, &IirProcess::setCoefHIGS_A, &IirProcess::setCoefHIGS_B, {true, true, 0.0}},
    {"LowShelf_2C", &IirProcess::setCoefLowShelf_2C, &IirProcess::setCoefLOWS_2A, &IirProcess::setCoefLOWS_2B, {false, true, kSqrt2}},
    {"HiShelf_2C", &IirProcess::setCoefHiShelf_2C, &IirProcess::setCoefHIGS_2A, &IirProcess::setCoefHIGS_2B, {true, true, kSqrt2}},
};

IirProcess designed(Shelf d, double freq, double gainDb, double fs) {
    IirProcess f;
    (f.*d)(freq, gainDb, fs);
    return f;
}
std::vector<double> placed(Corner d, double fs, double freq, double gainDb, double weight, double levelDb) {
    IirProcess f;
    (f.*d)(fs, freq, gainDb, weight, levelDb);
    return section0(f);
}

TEST(Shelves, FollowTheirAnalogueShelfWithTheGainAtTheRightEnd) {
    const double fs = 48000.0;
    for (const NamedShelf& s : kShelves)
        for (double gain : {-24.0, -6.0, -0.5, 0.5, 9.0, 30.0})
            for (double freq : {40.0, 1000.0, 15000.0}) {
                SCOPED_TRACE(::testing::Message() << s.name << " g=" << gain << " f=" << freq);
                const IirProcess f = designed(s.design, freq, gain, fs);
                const IirProcess inverse = designed(s.design, freq, -gain, fs);
                const double corner = std::tan(kPi * freq / fs);
                for (double x : logFrequencies(fs, 60)) {
                    const std::complex<double> h = responseOf(f, x, fs).h;
                    EXPECT_TRUE(closeRelative(h, shelfAt(s.kind, gain, corner, x, fs), 1e-9)) << x;
                    EXPECT_TRUE(closeRelative(h * responseOf(inverse, x, fs).h, 1.0, 1e-9)) << x;
                }
                EXPECT_NEAR(f.power(0.0, fs), s.kind.high ? 0.0 : gain, 1e-7);
                EXPECT_NEAR(f.power(fs / 2, fs), s.kind.high ? gain : 0.0, 1e-7);
            }
}

// 0 dB (and -0 dB) passes the signal unchanged; a NaN gain or fs = 0 give NaN.
TEST(Shelves, ZeroGainPassesTheSignalAndNanGainOrZeroRateGiveNan) {
    for (const NamedShelf& s : kShelves) {
        for (double zero : {0.0, -0.0}) {
            IirProcess f = designed(s.design, 3000.0, zero, 44100.0);
            const std::vector<double> c = section0(f);
            EXPECT_TRUE(c[0] == 1.0 && c[1] == -c[3] && c[2] == -c[4]) << s.name << " " << zero;
            for (double x : {1.0, -0.5, 0.25, 0.0, 0.75}) EXPECT_NEAR(f.cal(x), x, 1e-12) << s.name;
        }
        const std::vector<double> nanGain = section0(designed(s.design, 1000.0, std::nan(""), 48000.0));
        const std::vector<double> fsZero = section0(designed(s.design, 1000.0, 6.0, 0.0));
        EXPECT_TRUE(std::isnan(nanGain[0]) && std::isnan(nanGain[1]) && std::isnan(fsZero[0])) << s.name;
    }
}

TEST(Shelves, SelectorsPickTheVariant) {
    const struct {
        Shelf plain;
        Selector typed;
        Shelf a, b;
    } families[] = {
        {&IirProcess::setCoefLOWS, &IirProcess::setCoefLOWS, &IirProcess::setCoefLOWS_A, &IirProcess::setCoefLOWS_B},
        {&IirProcess::setCoefHIGS, &IirProcess::setCoefHIGS, &IirProcess::setCoefHIGS_A, &IirProcess::setCoefHIGS_B},
        {&IirProcess::setCoefLOWS_2, &IirProcess::setCoefLOWS_2, &IirProcess::setCoefLOWS_2A, &IirProcess::setCoefLOWS_2B},
        {&IirProcess::setCoefHIGS_2, &IirProcess::setCoefHIGS_2, &IirProcess::setCoefHIGS_2A, &IirProcess::setCoefHIGS_2B},
    };
    for (const auto& fam : families)
        for (double gain : {-7.0, 11.0}) {
            const std::vector<double> a = coefs(designed(fam.a, 900.0, gain, 48000.0));
            const std::vector<double> b = coefs(designed(fam.b, 900.0, gain, 48000.0));
            ASSERT_NE(a, b);
            EXPECT_EQ(coefs(designed(fam.plain, 900.0, gain, 48000.0)), b);
            for (short type : {1, 0, 2, -1, 32767}) {
                IirProcess f;
                (f.*fam.typed)(900.0, gain, 48000.0, type);
                EXPECT_EQ(coefs(f), type == 1 ? b : a) << type;
            }
        }
}

void expectLastBitsEqual(const std::vector<double>& got, const std::vector<double>& want) {
    for (int i = 0; i < 5; ++i)
        EXPECT_NEAR(got[i], want[i], 1e-13 * std::max(1.0, std::fabs(want[i]))) << "[" << i << "]";
}

TEST(CornerShelves, WeightZeroIsVariantAAndWeightOneAtZeroDbIsVariantB) {
    const double fs = 48000.0;
    for (const CornerShelf& s : kCorners)
        for (double gain : {-30.0, -6.0, 0.5, 12.0, 40.0})
            for (double freq : {60.0, 2000.0, 17000.0}) {
                SCOPED_TRACE(::testing::Message() << s.name << " g=" << gain << " f=" << freq);
                const std::vector<double> a = section0(designed(s.variantA, freq, gain, fs));
                for (double level : {-100.0, -20.0, 0.0, 9.0})
                    expectLastBitsEqual(placed(s.design, fs, freq, gain, 0.0, level), a);
                expectLastBitsEqual(placed(s.design, fs, freq, gain, 1.0, std::fabs(gain)), a);
                expectLastBitsEqual(placed(s.design, fs, freq, gain, 1.0, 0.0), section0(designed(s.variantB, freq, gain, fs)));
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
            for (double weight : {-0.5, 0.25, 0.5, 1.0, 1.5})
                for (double level : {-12.0, 0.0, 9.0}) {
                    SCOPED_TRACE(::testing::Message() << s.name << " g=" << gain << " w=" << weight << " l=" << level);
                    IirProcess f;
                    (f.*s.design)(fs, 1500.0, gain, weight, level);
                    // The flat-side corner sits this many dB-on-the-line away from freq.
                    const double offset = (1.0 - weight) * std::fabs(gain) + weight * level;
                    const double corner = t * std::pow(10.0, (s.flatSide.high ? -offset : offset) / perDecade);
                    for (double x : logFrequencies(fs, 40))
                        EXPECT_TRUE(closeRelative(responseOf(f, x, fs).h, shelfAt(s.flatSide, gain, corner, x, fs), 1e-9)) << x;
                }
            // Halfway between the corners the shelf is halfway in dB.
            IirProcess f;
            (f.*s.design)(fs, 1500.0, gain, 0.5, 0.0);
            EXPECT_NEAR(f.power(1500.0, fs), gain / 2, 1e-9) << s.name;
        }
    }
}

// A quarter of the sampling rate (t is 1 to the last bit), A = 2 or 4: exact
// fractions; then the degenerate corners at freq 0 and the silent levels of
// the placed shelves.
const double kTwo = 20.0 * std::log10(2.0), kFour = 20.0 * std::log10(4.0), kA6 = std::pow(10.0, 6.0 / 20.0);
const Worked kWorked[] = {
    {MIVORA_CALL(setCoefLOWS_A(1000, kTwo, 4000)), {1.5, 0.5, 0, 0, 0}, 1e-12},
    {MIVORA_CALL(setCoefLOWS_B(1000, kTwo, 4000)), {4.0 / 3, 0, 0, 1.0 / 3, 0}, 1e-12},
    {MIVORA_CALL(setCoefHIGS_A(1000, kTwo, 4000)), {1.5, -0.5, 0, 0, 0}, 1e-12},
    {MIVORA_CALL(setCoefHIGS_B(1000, kTwo, 4000)), {4.0 / 3, 0, 0, -1.0 / 3, 0}, 1e-12},
    {MIVORA_CALL(setCoefLOWS_A(1000, -kTwo, 4000)), {2.0 / 3, 0, 0, -1.0 / 3, 0}, 1e-12},
    {MIVORA_CALL(setCoefLOWS_B(1000, -kTwo, 4000)), {0.75, -0.25, 0, 0, 0}, 1e-12},
    {MIVORA_CALL(setCoefHIGS_A(1000, -kTwo, 4000)), {2.0 / 3, 0, 0, 1.0 / 3, 0}, 1e-12},
    {MIVORA_CALL(setCoefHIGS_B(1000, -kTwo, 4000)), {0.75, 0.25, 0, 0, 0}, 1e-12},
    {MIVORA_CALL(setCoefLOWS_PM_2A(1000, kFour, 4000)), {2.25, 1.5, 0.25, 0, 0}, 1e-12},
    {MIVORA_CALL(setCoefLOWS_PM_2B(1000, kFour, 4000)), {16.0 / 9, 0, 0, 2.0 / 3, -1.0 / 9}, 1e-12},
    {MIVORA_CALL(setCoefHIGS_PM_2A(1000, kFour, 4000)), {2.25, -1.5, 0.25, 0, 0}, 1e-12},
    {MIVORA_CALL(setCoefHIGS_PM_2B(1000, kFour, 4000)), {16.0 / 9, 0, 0, -2.0 / 3, -1.0 / 9}, 1e-12},
    {MIVORA_CALL(setCoefLOWS_PM_2A(1000, -kFour, 4000)), {4.0 / 9, 0, 0, -2.0 / 3, -1.0 / 9}, 1e-12},
    {MIVORA_CALL(setCoefLOWS_PM_2B(1000, -kFour, 4000)), {0.5625, -0.375, 0.0625, 0, 0}, 1e-12},
    {MIVORA_CALL(setCoefHIGS_PM_2A(1000, -kFour, 4000)), {4.0 / 9, 0, 0, 2.0 / 3, -1.0 / 9}, 1e-12},
    {MIVORA_CALL(setCoefHIGS_PM_2B(1000, -kFour, 4000)), {0.5625, 0.375, 0.0625, 0, 0}, 1e-12},
    {MIVORA_CALL(setCoefLowShelf_C(4000, 1000, kFour, 0.5, 0)), {2, 2.0 / 3, 0, 1.0 / 3, 0}, 1e-12},
    {MIVORA_CALL(setCoefLowShelf_C(4000, 1000, -kFour, 0.5, 0)), {0.5, -1.0 / 6, 0, -1.0 / 3, 0}, 1e-12},
    {MIVORA_CALL(setCoefHiShelf_C(4000, 1000, kFour, 0.5, 0)), {2, -2.0 / 3, 0, -1.0 / 3, 0}, 1e-12},
    {MIVORA_CALL(setCoefHiShelf_C(4000, 1000, -kFour, 0.5, 0)), {0.5, 1.0 / 6, 0, 1.0 / 3, 0}, 1e-12},
    {MIVORA_CALL(setCoefLowShelf_2C(4000, 1000, kFour, 0.5, 0)), {2, 0.8, 0.4, 0.4, -0.2}, 1e-12},
    {MIVORA_CALL(setCoefLowShelf_2C(4000, 1000, -kFour, 0.5, 0)), {0.5, -0.2, 0.1, -0.4, -0.2}, 1e-12},
    {MIVORA_CALL(setCoefHiShelf_2C(4000, 1000, kFour, 0.5, 0)), {2, -0.8, 0.4, -0.4, -0.2}, 1e-12},
    {MIVORA_CALL(setCoefHiShelf_2C(4000, 1000, -kFour, 0.5, 0)), {0.5, 0.2, 0.1, 0.4, -0.2}, 1e-12},
    // freq 0: the constant gain the shelf has there, over a pole on z = 1.
    {MIVORA_CALL(setCoefLOWS_A(0, 6, 48000)), {1, -1, 0, 1, 0}, 0.0},
    {MIVORA_CALL(setCoefHIGS_A(0, 6, 48000)), {kA6, -kA6, 0, 1, 0}, 0.0},
    {MIVORA_CALL(setCoefHIGS_2A(0, 6, 48000)), {kA6, -2 * kA6, kA6, 2, -1}, 0.0},
    // -100 dB is silence: a high shelf cut to nothing holds its output at
    // weight < 1 and is a first-order low-pass at weight 1; a silent level
    // sends a low shelf's corner to 0, where poles and zeros cancel on z = 1.
    {MIVORA_CALL(setCoefHiShelf_C(4000, 1000, -100, 0.5, 0)), {0, 0, 0, 1, 0}, 0.0},
    {MIVORA_CALL(setCoefHiShelf_C(4000, 1000, -100, 1, 0)), {0.5, 0.5, 0, 0, 0}, 1e-12},
    {MIVORA_CALL(setCoefLowShelf_C(48000, 1000, 9, 0.5, -100)), {1, -1, 0, 1, 0}, 0.0},
    {MIVORA_CALL(setCoefLowShelf_C(48000, 1000, -9, 0.5, -100)), {1, -1, 0, 1, 0}, 0.0},
    {MIVORA_CALL(setCoefLowShelf_2C(48000, 1000, 9, 0.5, -100)), {1, -2, 1, 2, -1}, 0.0},
    {MIVORA_CALL(setCoefLowShelf_2C(48000, 1000, -9, 0.5, -100)), {1, -2, 1, 2, -1}, 0.0},
};
TEST(Shelves, WorkedValues) {
    for (const Worked& w : kWorked) expectWorked(w);
}

// A silent level sends a high shelf's corner next to fs/2: poles next to
// z = -1, still finite.
TEST(CornerShelves, SilentLevelPutsAHighShelfCornerNextToHalfTheRate) {
    for (double gain : {-9.0, 9.0}) {
        EXPECT_NEAR(placed(&IirProcess::setCoefHiShelf_C, 48000.0, 1000.0, gain, 0.5, -100.0)[3], -1.0, 1e-9);
        const std::vector<double> hi2 = placed(&IirProcess::setCoefHiShelf_2C, 48000.0, 1000.0, gain, 0.5, -100.0);
        EXPECT_NEAR(hi2[3], -2.0, 1e-9);
        EXPECT_NEAR(hi2[4], -1.0, 1e-9);
    }
}

}  // namespace
