// First- and second-order shelves: the response each promises, the entry
// points that select them, worked values, and what a design does to the order.
#include <gtest/gtest.h>

#include "test_shelves_support.hpp"

using namespace mivora_test;

namespace {

using Shelf = void (IirProcess::*)(double, double, double);
using Selector = void (IirProcess::*)(double, double, double, short);

struct NamedShelf {
    const char* name;
    Shelf design;
    ShelfKind kind;
};
constexpr double kSqrt2 = 1.4142135623730951;
const NamedShelf kShelves[] = {
    {"LOWS_A", &IirProcess::setCoefLOWS_A, {false, false, 0.0}},
    {"LOWS_B", &IirProcess::setCoefLOWS_B, {false, true, 0.0}},
    {"HIGS_A", &IirProcess::setCoefHIGS_A, {true, false, 0.0}},
    {"HIGS_B", &IirProcess::setCoefHIGS_B, {true, true, 0.0}},
    {"LOWS_2A", &IirProcess::setCoefLOWS_2A, {false, false, kSqrt2}},
    {"LOWS_2B", &IirProcess::setCoefLOWS_2B, {false, true, kSqrt2}},
    {"HIGS_2A", &IirProcess::setCoefHIGS_2A, {true, false, kSqrt2}},
    {"HIGS_2B", &IirProcess::setCoefHIGS_2B, {true, true, kSqrt2}},
    {"LOWS_PM_2A", &IirProcess::setCoefLOWS_PM_2A, {false, false, 2.0}},
    {"LOWS_PM_2B", &IirProcess::setCoefLOWS_PM_2B, {false, true, 2.0}},
    {"HIGS_PM_2A", &IirProcess::setCoefHIGS_PM_2A, {true, false, 2.0}},
    {"HIGS_PM_2B", &IirProcess::setCoefHIGS_PM_2B, {true, true, 2.0}},
};

IirProcess designed(Shelf d, double freq, double gainDb, double fs) {
    IirProcess f;
    (f.*d)(freq, gainDb, fs);
    return f;
}

TEST(Shelves, FollowTheirAnalogueShelfWithTheGainAtTheRightEnd) {
    const double fs = 48000.0;
    for (const NamedShelf& s : kShelves) {
        for (double gain : {-24.0, -6.0, -0.5, 0.5, 9.0, 30.0}) {
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
    }
}

TEST(Shelves, ZeroGainPassesTheSignalUnchanged) {
    for (const NamedShelf& s : kShelves) {
        for (double zero : {0.0, -0.0}) {
            IirProcess f = designed(s.design, 3000.0, zero, 44100.0);
            const std::vector<double> c = section0(f);
            EXPECT_TRUE(c[0] == 1.0 && c[1] == -c[3] && c[2] == -c[4]) << s.name << " " << zero;
            for (double x : {1.0, -0.5, 0.25, 0.0, 0.75}) EXPECT_NEAR(f.cal(x), x, 1e-12) << s.name;
        }
    }
}

TEST(Shelves, SelectorsPickTheVariant) {
    struct Family {
        Shelf plain;
        Selector typed;
        Shelf a, b;
    };
    const Family families[] = {
        {&IirProcess::setCoefLOWS, &IirProcess::setCoefLOWS, &IirProcess::setCoefLOWS_A, &IirProcess::setCoefLOWS_B},
        {&IirProcess::setCoefHIGS, &IirProcess::setCoefHIGS, &IirProcess::setCoefHIGS_A, &IirProcess::setCoefHIGS_B},
        {&IirProcess::setCoefLOWS_2, &IirProcess::setCoefLOWS_2, &IirProcess::setCoefLOWS_2A,
         &IirProcess::setCoefLOWS_2B},
        {&IirProcess::setCoefHIGS_2, &IirProcess::setCoefHIGS_2, &IirProcess::setCoefHIGS_2A,
         &IirProcess::setCoefHIGS_2B},
    };
    for (const Family& fam : families) {
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
}

TEST(Shelves, DoubleRootShelvesAreFirstOrderShelvesSquaredAtHalfTheGain) {
    const Shelf pairs[][2] = {
        {&IirProcess::setCoefLOWS_PM_2A, &IirProcess::setCoefLOWS_A},
        {&IirProcess::setCoefLOWS_PM_2B, &IirProcess::setCoefLOWS_B},
        {&IirProcess::setCoefHIGS_PM_2A, &IirProcess::setCoefHIGS_A},
        {&IirProcess::setCoefHIGS_PM_2B, &IirProcess::setCoefHIGS_B},
    };
    const double fs = 96000.0;
    for (const auto& pair : pairs) {
        for (double gain : {-20.0, -3.0, 10.0, 36.0}) {
            const IirProcess squared = designed(pair[0], 2500.0, gain, fs);
            const IirProcess half = designed(pair[1], 2500.0, gain / 2, fs);
            for (double x : logFrequencies(fs, 50)) {
                const std::complex<double> h = responseOf(half, x, fs).h;
                EXPECT_TRUE(closeRelative(responseOf(squared, x, fs).h, h * h, 1e-12)) << gain << " @ " << x;
            }
        }
    }
}

TEST(Shelves, WorkedValuesAtAQuarterOfTheSamplingRate) {
    const double two = 20.0 * std::log10(2.0);
    const double four = 20.0 * std::log10(4.0);
    struct Case {
        Shelf design;
        double gain;
        double c[5];
        double tol;  // the exact fractions, or six decimals
    };
    const Case cases[] = {
        {&IirProcess::setCoefLOWS_A, two, {1.5, 0.5, 0, 0, 0}, 1e-12},
        {&IirProcess::setCoefLOWS_B, two, {4.0 / 3, 0, 0, 1.0 / 3, 0}, 1e-12},
        {&IirProcess::setCoefHIGS_A, two, {1.5, -0.5, 0, 0, 0}, 1e-12},
        {&IirProcess::setCoefHIGS_B, two, {4.0 / 3, 0, 0, -1.0 / 3, 0}, 1e-12},
        {&IirProcess::setCoefLOWS_A, -two, {2.0 / 3, 0, 0, -1.0 / 3, 0}, 1e-12},
        {&IirProcess::setCoefLOWS_B, -two, {0.75, -0.25, 0, 0, 0}, 1e-12},
        {&IirProcess::setCoefHIGS_A, -two, {2.0 / 3, 0, 0, 1.0 / 3, 0}, 1e-12},
        {&IirProcess::setCoefHIGS_B, -two, {0.75, 0.25, 0, 0, 0}, 1e-12},
        {&IirProcess::setCoefLOWS_PM_2A, four, {2.25, 1.5, 0.25, 0, 0}, 1e-12},
        {&IirProcess::setCoefLOWS_PM_2B, four, {16.0 / 9, 0, 0, 2.0 / 3, -1.0 / 9}, 1e-12},
        {&IirProcess::setCoefHIGS_PM_2A, four, {2.25, -1.5, 0.25, 0, 0}, 1e-12},
        {&IirProcess::setCoefHIGS_PM_2B, four, {16.0 / 9, 0, 0, -2.0 / 3, -1.0 / 9}, 1e-12},
        {&IirProcess::setCoefLOWS_PM_2A, -four, {4.0 / 9, 0, 0, -2.0 / 3, -1.0 / 9}, 1e-12},
        {&IirProcess::setCoefLOWS_PM_2B, -four, {0.5625, -0.375, 0.0625, 0, 0}, 1e-12},
        {&IirProcess::setCoefHIGS_PM_2A, -four, {4.0 / 9, 0, 0, 2.0 / 3, -1.0 / 9}, 1e-12},
        {&IirProcess::setCoefHIGS_PM_2B, -four, {0.5625, 0.375, 0.0625, 0, 0}, 1e-12},
        {&IirProcess::setCoefLOWS_2A, four, {2.292893, 1.757359, 0.636039, 0, -0.171573}, 1e-6},
        {&IirProcess::setCoefLOWS_2B, four, {1.744521, 0, 0.299312, 0.766437, -0.277396}, 1e-6},
        {&IirProcess::setCoefHIGS_2A, four, {2.292893, -1.757359, 0.636039, 0, -0.171573}, 1e-6},
        {&IirProcess::setCoefHIGS_2B, four, {1.744521, 0, 0.299312, -0.766437, -0.277396}, 1e-6},
        {&IirProcess::setCoefLOWS_2A, -four, {0.436130, 0, 0.074828, -0.766437, -0.277396}, 1e-6},
        {&IirProcess::setCoefLOWS_2B, -four, {0.573223, -0.439340, 0.159010, 0, -0.171573}, 1e-6},
        {&IirProcess::setCoefHIGS_2A, -four, {0.436130, 0, 0.074828, 0.766437, -0.277396}, 1e-6},
        {&IirProcess::setCoefHIGS_2B, -four, {0.573223, 0.439340, 0.159010, 0, -0.171573}, 1e-6},
    };
    for (const Case& c : cases) {
        const std::vector<double> k = section0(designed(c.design, 1000.0, c.gain, 4000.0));
        for (int i = 0; i < 5; ++i) EXPECT_NEAR(k[i], c.c[i], c.tol) << "row " << (&c - cases) << " [" << i << "]";
    }
}

TEST(Shelves, ResetToOrderTwoOnlyWhenTheOrderDiffers) {
    for (const NamedShelf& s : kShelves) {
        IirProcess f(5);
        setSection(f, 1, 6, 7, 8, 9, 10);
        setFirstOrder(f, 0.5, 0.25, 0.125);
        f.setDelay(1.0);
        (f.*s.design)(1000.0, 6.0, 48000.0);
        EXPECT_EQ(f.getOrder(), 2) << s.name;
        EXPECT_EQ(state(f), (std::vector<double>{0, 0, 0, 0, 0, 0, 0, 0, 1, 1})) << s.name;
        // A running shelf is retuned without clearing its memory.
        for (double x : {0.5, -0.25, 1.0}) f.cal(x);
        const std::vector<double> running = state(f);
        (f.*s.design)(2000.0, -3.0, 48000.0);
        EXPECT_EQ(state(f), running) << s.name;
        f.setOrder(5);
        const std::vector<double> all = coefs(f);
        EXPECT_EQ(std::vector<double>(all.begin() + 5, all.end()),
                  (std::vector<double>{0, 0, 0, 0, 0, 0.5, 0.25, 0.125})) << s.name;
    }
}

TEST(Shelves, DegenerateArgumentsGiveDefinedSections) {
    // freq = 0 leaves the constant gain the shelf has there over a pole on z = 1.
    const double a = std::pow(10.0, 6.0 / 20.0);
    EXPECT_EQ(section0(designed(&IirProcess::setCoefLOWS_A, 0.0, 6.0, 48000.0)), (std::vector<double>{1, -1, 0, 1, 0}));
    EXPECT_EQ(section0(designed(&IirProcess::setCoefHIGS_A, 0.0, 6.0, 48000.0)), (std::vector<double>{a, -a, 0, 1, 0}));
    EXPECT_EQ(section0(designed(&IirProcess::setCoefHIGS_2A, 0.0, 6.0, 48000.0)),
              (std::vector<double>{a, -2 * a, a, 2, -1}));
    for (const NamedShelf& s : kShelves) {
        const std::vector<double> nanGain = section0(designed(s.design, 1000.0, std::nan(""), 48000.0));
        const std::vector<double> fsZero = section0(designed(s.design, 1000.0, 6.0, 0.0));
        EXPECT_TRUE(std::isnan(nanGain[0]) && std::isnan(nanGain[1]) && std::isnan(fsZero[0])) << s.name;
    }
}

}  // namespace
