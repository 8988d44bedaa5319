// The command line in-process: option spellings users type parse alike, and
// help and version succeed.
#include "command_line.hpp"

#include <gtest/gtest.h>


using namespace mivora_tool;

namespace {

ParseResult parse(std::vector<const char*> words) {
    words.insert(words.begin(), "mivora");
    return parseCommandLine(static_cast<int>(words.size()), words.data());
}

}  // namespace

TEST(CommandLine, NegativeValuesParseInEitherSpelling) {
    for (const auto& words : {std::vector<const char*>{"coef", "lowshelf", "--gain", "-4.5"},
                              std::vector<const char*>{"coef", "lowshelf", "--gain=-4.5"},
                              std::vector<const char*>{"coef", "--gain", "-4.5", "lowshelf"}}) {
        const ParseResult r = parse(words);
        ASSERT_TRUE(r.invocation) << r.error;
        const Design& d = std::get<CoefCommand>(*r.invocation).design;
        EXPECT_EQ(d.values, (std::vector<double>{1000.0, -4.5}));
        EXPECT_EQ(d.call(), "setCoefLOWS_B(1000, -4.5, 48000)");
    }
}

TEST(CommandLine, HelpAndVersionPrintAndSucceed) {
    for (const auto& words : {std::vector<const char*>{"--help"}, std::vector<const char*>{"coef", "--help"},
                              std::vector<const char*>{"--version"}}) {
        const ParseResult r = parse(words);
        EXPECT_TRUE(!r.invocation && r.exitCode == 0 && !r.output.empty() && r.error.empty());
    }
    EXPECT_NE(parse({"coef", "--help"}).output.find("--stop-level"), std::string::npos);
}
