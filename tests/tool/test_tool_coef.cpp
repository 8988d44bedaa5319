// `mivora coef` prints exactly what the library's getCoef holds after the
// one call each friendly name stands for, in every output format.
#include "tool_test_support.hpp"

#include <mivora/IirProcess.h>

#include <gtest/gtest.h>

#include <cstdio>

using Mivora::IirProcess;
using tool_test::numberRows;
using tool_test::runWords;

namespace {

struct Case {
    const char* words;  // after `mivora coef`
    void (*design)(IirProcess&);
};

// One case per library design. Distinct values everywhere, so an argument
// handed to the wrong parameter changes the coefficients. Negative values are
// spelt every way users type them: "--gain -5", "--gain=-4", before the name.
#define CALL(call) [](IirProcess& f) { f.call; }
const Case kCases[] = {
    {"peak --freq 1200 --gain 7 --q 0.8", CALL(setCoefPDFPQ(1200, 48000, 7, 0.8))},
    {"peak --variant cq --freq 900 --gain -5 --q 2 --fs 44100", CALL(setCoefPDFCQ(900, 44100, -5, 2))},
    {"lowshelf --order 1 --variant A --freq 250 --gain 6", CALL(setCoefLOWS_A(250, 6, 48000))},
    {"lowshelf --freq 260 --gain=-4", CALL(setCoefLOWS_B(260, -4, 48000))},
    {"lowshelf --order 2 --variant A --freq 270 --gain 5", CALL(setCoefLOWS_2A(270, 5, 48000))},
    {"lowshelf --order 2 --variant B --freq 280 --gain -3 --fs 96000", CALL(setCoefLOWS_2B(280, -3, 96000))},
    {"lowshelf --order 2 --variant A --damping 2 --freq 290 --gain 4", CALL(setCoefLOWS_PM_2A(290, 4, 48000))},
    {"lowshelf --order 2 --damping 2 --freq 300 --gain 8", CALL(setCoefLOWS_PM_2B(300, 8, 48000))},
    {"lowshelf --freq 310 --gain 9 --weight 0.3 --level -2", CALL(setCoefLowShelf_C(48000, 310, 9, 0.3, -2))},
    {"lowshelf --order 2 --freq 320 --gain -7 --weight 0.6", CALL(setCoefLowShelf_2C(48000, 320, -7, 0.6, 0))},
    {"highshelf --order 1 --variant A --freq 3100 --gain 6", CALL(setCoefHIGS_A(3100, 6, 48000))},
    {"--gain -6 highshelf --freq 3200", CALL(setCoefHIGS_B(3200, -6, 48000))},
    {"highshelf --order 2 --variant A --freq 3300 --gain 2", CALL(setCoefHIGS_2A(3300, 2, 48000))},
    {"highshelf --order 2 --freq 3400 --gain 3", CALL(setCoefHIGS_2B(3400, 3, 48000))},
    {"highshelf --order 2 --variant A --damping 2 --freq 3500 --gain -8", CALL(setCoefHIGS_PM_2A(3500, -8, 48000))},
    {"highshelf --order 2 --damping 2 --freq 3600 --gain 10", CALL(setCoefHIGS_PM_2B(3600, 10, 48000))},
    {"highshelf --freq 3700 --gain 5 --level -100", CALL(setCoefHiShelf_C(48000, 3700, 5, 1, -100))},
    {"highshelf --order 2 --freq 3800 --gain 4 --weight 0.25 --level -6 --fs 44100", CALL(setCoefHiShelf_2C(44100, 3800, 4, 0.25, -6))},
    {"lowpass --order 5 --freq 7000", CALL(setCoefLPF(5, 7000, 48000))},
    {"lowpass --type cheby --order 3 --freq 6000 --ripple 0.5", CALL(setCoefLPFChev(3, 6000, 0.5, 48000))},
    {"lowpass --type icheby --order 4 --freq 5000 --stop-level 360", CALL(setCoefLPFIChev(4, 5000, 360, 48000))},
    {"lowpass --type q --freq 4000 --q 3", CALL(setCoefLPFQfct(4000, 3, 48000))},
    {"highpass --order 1 --freq 80", CALL(setCoefHPF(1, 80, 48000))},
    {"highpass --type cheby --order 5 --freq 90 --ripple 2", CALL(setCoefHPFChev(5, 90, 2, 48000))},
    {"highpass --type icheby --order 3 --freq 100 --stop-level 400 --fs 44100", CALL(setCoefHPFIChev(3, 100, 400, 44100))},
    {"highpass --type q --freq 110 --q 0.6", CALL(setCoefHPFQfct(110, 0.6, 48000))},
    {"bandpass --type q --freq 1500 --q 4", CALL(setCoefBPFQfct(1500, 4, 48000))},
    {"bandpass --type q0 --freq 1600 --q 5", CALL(setCoefBPF_Q(1600, 5, 48000))},
    {"bandpass --order 2 --low 400 --high 2500", CALL(setCoefBPF(2, 400, 2500, 48000))},
    {"bandpass --type cheby --order 1 --low 410 --high 2600 --ripple 0.3", CALL(setCoefBPFChev(1, 410, 2600, 0.3, 48000))},
    {"bandpass --type icheby --order 2 --low 420 --high 2700 --stop-level 300", CALL(setCoefBPFIChev(2, 420, 2700, 300, 48000))},
    {"bandstop --order 1 --low 430 --high 2800", CALL(setCoefBEF(1, 430, 2800, 48000))},
    {"bandstop --type cheby --order 2 --low 440 --high 2900 --ripple 1.5", CALL(setCoefBEFChev(2, 440, 2900, 1.5, 48000))},
    {"bandstop --type icheby --order 2 --low 450 --high 3000 --stop-level 200 --fs 44100", CALL(setCoefBEFIChev(2, 450, 3000, 200, 44100))},
    {"dc-lowpass --freq 12", CALL(setDcfLPF(12, 48000))},
    {"dc-lowpass --alpha 0.01", CALL(setDcfLPF(0.01))},
    {"dc-highpass", CALL(setDcfHPF(10, 48000))},
    {"dc-highpass --alpha 0.02", CALL(setDcfHPF(0.02))},
    {"allpass --order 1 --freq 700", CALL(setAPF1st(700, 48000))},
    {"allpass --freq 800", CALL(setAPF2nd(800, 48000))},
};
#undef CALL

// The running sections as getCoef lays them out, each first-order section
// padded to b0 b1 0 a1 0 as the csv and sos forms show it.
std::vector<std::vector<double>> expectedRows(const Case& c) {
    IirProcess f;
    c.design(f);
    double coef[IirProcess::maxCoefCount];
    f.getCoef(coef);
    std::vector<std::vector<double>> rows;
    const int biquads = f.getEvenOrder() / 2;
    for (int k = 0; k < biquads; ++k) rows.emplace_back(coef + 5 * k, coef + 5 * k + 5);
    if (f.getOddOrder() != 0) {
        const double* p = coef + 5 * biquads;
        rows.push_back({p[0], p[1], 0.0, p[2], 0.0});
    }
    return rows;
}

// csv rows are getCoef's sections; sos rows the same with a0 = 1 and the
// stored feedback negated.
TEST(ToolCoef, EveryDesignPrintsTheLibraryCoefficients) {
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.words);
        const tool_test::Run csv = runWords(std::string("coef ") + c.words + " --format csv");
        const tool_test::Run sos = runWords(std::string("coef ") + c.words + " --format sos");
        ASSERT_EQ(csv.exitCode + sos.exitCode, 0) << csv.err << sos.err;
        const std::vector<std::vector<double>> rows = expectedRows(c);
        EXPECT_EQ(numberRows(csv.out, true), rows);
        std::vector<std::vector<double>> sosRows;
        for (const auto& r : rows) sosRows.push_back({r[0], r[1], r[2], 1.0, -r[3], -r[4]});
        EXPECT_EQ(numberRows(sos.out), sosRows);
    }
}

// text, json and c carry every coefficient at full precision, in getCoef's order.
TEST(ToolCoef, AllFormatsCarryTheSameNumbers) {
    const std::vector<double> coef = expectedRows(kCases[18]).front();  // lowpass --order 5: section 0
    for (const char* format : {"text", "json", "c"}) {
        const tool_test::Run run = runWords(std::string("coef ") + kCases[18].words + " --format " + format);
        ASSERT_EQ(run.exitCode, 0) << run.err;
        std::size_t at = 0;
        for (double v : coef) {
            char buf[40];
            std::snprintf(buf, sizeof buf, "%.17g", v);
            at = run.out.find(buf, at);
            ASSERT_NE(at, std::string::npos) << format << ": " << buf << " missing or out of order in\n" << run.out;
        }
    }
}

}  // namespace
