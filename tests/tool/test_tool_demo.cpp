// `mivora demo` leaves a page whose every plot and sound is there to open.
#include "tool_test_support.hpp"

#include <gtest/gtest.h>

#include <regex>
#include <set>

TEST(ToolDemo, WritesPlotsSoundsAndAnIndexThatShowsThem) {
    const std::string dir = tool_test::scratchDir("demo") + "/gallery";  // created by the tool
    const tool_test::Run run = tool_test::runTool({"demo", "--out", dir});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find(dir + "/index.html"), std::string::npos) << run.out;

    const std::string index = tool_test::readText(dir + "/index.html");
    const std::regex reference("src=\"([^\"]+)\"");
    std::set<std::string> plots, sounds;
    for (std::sregex_iterator it(index.begin(), index.end(), reference), end; it != end; ++it) {
        const std::string file = (*it)[1];
        (file.size() > 4 && file.substr(file.size() - 4) == ".svg" ? plots : sounds).insert(file);
    }
    // Peaking, shelves, the cut and band families, all-pass: a dozen or more plots.
    EXPECT_GE(plots.size(), 12u);
    EXPECT_GE(sounds.size(), 2u);

    // Reading a file the page names fails the test if the file is missing.
    for (const std::string& plot : plots) {
        const std::string svg = tool_test::readText(dir + "/" + plot);
        EXPECT_NE(svg.find("<polyline"), std::string::npos) << plot;
        EXPECT_NE(svg.find("</svg>"), std::string::npos) << plot;
    }
    for (const std::string& sound : sounds)
        EXPECT_GT(tool_test::readAudio(dir + "/" + sound).samples.size(), 48000u) << sound;
    // Nothing else: no temporaries left behind.
    EXPECT_EQ(tool_test::filesIn(dir).size(), plots.size() + sounds.size() + 1);
}
