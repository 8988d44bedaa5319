// `mivora response` reports what the filter says of itself: power() and
// phase() at log-spaced frequencies, as a table or a plot.
#include "tool_test_support.hpp"

#include <mivora/IirProcess.h>

#include <gtest/gtest.h>

#include <cmath>

using Mivora::IirProcess;
using tool_test::numberRows;
using tool_test::runTool;

TEST(ToolResponse, TableEqualsPowerAndPhaseOnALogGrid) {
    struct Case {
        std::vector<std::string> args;
        double fs, from, to;
        int points;
        void (*design)(IirProcess&);
    };
    const Case cases[] = {
        {{"peak", "--freq", "2000", "--gain", "-9", "--q", "3", "--from", "20", "--to", "20000", "--points", "13"},
         48000, 20, 20000, 13, [](IirProcess& f) { f.setCoefPDFPQ(2000, 48000, -9, 3); }},
        {{"lowpass", "--type", "icheby", "--order", "5", "--freq", "3000", "--fs", "32000", "--points", "9"},
         32000, 10, 16000, 9, [](IirProcess& f) { f.setCoefLPFIChev(5, 3000, 0, 32000); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args[0]);
        std::vector<std::string> args{"response"};
        args.insert(args.end(), c.args.begin(), c.args.end());
        args.insert(args.end(), {"--format", "csv"});
        const tool_test::Run run = runTool(args);
        ASSERT_EQ(run.exitCode, 0) << run.err;

        IirProcess f;
        c.design(f);
        const auto rows = numberRows(run.out);
        ASSERT_EQ(rows.size(), static_cast<std::size_t>(c.points));
        EXPECT_EQ(rows.front()[0], c.from);
        EXPECT_EQ(rows.back()[0], c.to);
        const double step = std::log(c.to / c.from) / (c.points - 1);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            ASSERT_EQ(rows[i].size(), 3u);
            const double freq = rows[i][0];
            EXPECT_NEAR(std::log(freq / c.from), step * static_cast<double>(i), 1e-12);
            EXPECT_EQ(rows[i][1], f.power(freq, c.fs)) << freq;
            EXPECT_EQ(rows[i][2], f.phase(freq, c.fs)) << freq;
        }
    }
}

TEST(ToolResponse, SvgPlotIsWrittenAndNamesTheDesign) {
    const std::string dir = tool_test::scratchDir("response-svg");
    const tool_test::Run run =
        runTool({"response", "highpass", "--type", "cheby", "--order", "3", "--freq", "150", "--svg", "hp.svg"}, dir);
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

TEST(ToolResponse, ChosenFrequenciesAndASingleOne) {
    IirProcess f;
    f.setCoefPDFPQ(1000, 48000, 6, 2);
    for (const auto& [range, freqs] : std::vector<std::pair<std::vector<std::string>, std::vector<double>>>{
             {{"--at", "1000,2000,0,24000"}, {1000, 2000, 0, 24000}},
             {{"--from", "1000", "--to", "1000"}, {1000}},
             {{"--from", "1500", "--to", "1500", "--points", "1"}, {1500}}}) {
        std::vector<std::string> args{"response", "peak", "--freq", "1000", "--gain", "6", "--q", "2", "--format", "csv"};
        args.insert(args.end(), range.begin(), range.end());
        const tool_test::Run run = runTool(args);
        ASSERT_EQ(run.exitCode, 0) << run.err;
        std::vector<std::vector<double>> want;
        for (double x : freqs) want.push_back({x, f.power(x, 48000), f.phase(x, 48000)});
        EXPECT_EQ(numberRows(run.out), want);
    }
}
