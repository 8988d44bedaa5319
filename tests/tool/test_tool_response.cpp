// `mivora response` reports what the filter says of itself: power() and
// phase() at log-spaced or chosen frequencies, as a table or a plot.
#include "tool_test_support.hpp"

#include <mivora/IirProcess.h>

#include <gtest/gtest.h>

#include <cmath>

using Mivora::IirProcess;

namespace {

// `points` frequencies from `from` to `to`, evenly spaced in log frequency
// (pow gives the ends exactly).
std::vector<double> logGrid(double from, double to, int points) {
    std::vector<double> freqs;
    for (int i = 0; i < points; ++i) freqs.push_back(from * std::pow(to / from, i / (points - 1.0)));
    return freqs;
}

}  // namespace

TEST(ToolResponse, TableEqualsPowerAndPhaseAtTheFrequenciesAsked) {
    IirProcess peak, lowpass;
    peak.setCoefPDFPQ(2000, 48000, -9, 3);
    lowpass.setCoefLPFIChev(5, 3000, 0, 32000);
    const std::string peakWords = "peak --freq 2000 --gain -9 --q 3";
    struct Case {
        std::string words;  // after `mivora response`
        const IirProcess* filter;
        double fs;
        std::vector<double> freqs;
    };
    const Case cases[] = {
        {peakWords + " --from 20 --to 20000 --points 13", &peak, 48000, logGrid(20, 20000, 13)},
        {peakWords + " --at 1000,2000,0,24000", &peak, 48000, {1000, 2000, 0, 24000}},
        {peakWords + " --from 1000 --to 1000", &peak, 48000, {1000}},
        {peakWords + " --from 1500 --to 1500 --points 1", &peak, 48000, {1500}},
        // Defaults: from 10 Hz to fs/2.
        {"lowpass --type icheby --order 5 --freq 3000 --fs 32000 --points 9", &lowpass, 32000, logGrid(10, 16000, 9)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.words);
        const tool_test::Run run =
        tool_test::runWords("response " + c.words + " --format csv");
        ASSERT_EQ(run.exitCode, 0) << run.err;

        const auto rows = tool_test::numberRows(run.out);
        ASSERT_EQ(rows.size(), c.freqs.size());
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const double freq = rows[i][0];
            // Interior points as log spacing puts them; the ends exactly as asked.
            const bool end = i == 0 || i + 1 == rows.size();
            EXPECT_NEAR(freq, c.freqs[i], end ? 0.0 : 1e-12 * c.freqs[i]);
            EXPECT_EQ(rows[i], (std::vector<double>{freq, c.filter->power(freq, c.fs), c.filter->phase(freq, c.fs)}));
        }
    }
}

TEST(ToolResponse, SvgPlotIsWrittenAndNamesTheDesign) {
    const std::string dir = tool_test::scratchDir("response-svg");
    const tool_test::Run run =
        tool_test::runWords("response highpass --type cheby --order 3 --freq 150 --svg hp.svg", dir);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(tool_test::filesIn(dir), std::vector<std::string>{"hp.svg"});
    const std::string svg = tool_test::readText(dir + "/hp.svg");
    EXPECT_EQ(svg.rfind("<?xml", 0), 0u);
    EXPECT_NE(svg.find("<title>highpass --type cheby --order 3 --freq 150</title>"), std::string::npos);
    EXPECT_NE(svg.find("setCoefHPFChev(3, 150, 1, 48000)"), std::string::npos);
    // Both panels carry a curve: magnitude and phase.
    EXPECT_NE(svg.find("url(#mag)"), std::string::npos);
    EXPECT_NE(svg.find("url(#phase)"), std::string::npos);
}
