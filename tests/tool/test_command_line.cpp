// The command line and design table, in-process: every row of the table can
// be reached, and option spellings users type parse alike.
#include "command_line.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

using namespace mivora_tool;

namespace {

ParseResult parse(std::vector<const char*> words) {
    words.insert(words.begin(), "mivora");
    return parseCommandLine(static_cast<int>(words.size()), words.data());
}

// The options that pick `row`, with a plain value for any required one.
DesignRequest requestFor(const DesignRow& row) {
    const Family& family = *findFamily(row.family);
    DesignRequest request{row.family, {}};
    for (const Pin& pin : row.pins) {
        const Selector& s = *findSelector(family, pin.selector);
        if (!s.hidden) request.options.emplace_back(pin.selector, pin.value);
        else if (s.implied && !std::strcmp(pin.value, s.implied))
            request.options.emplace_back(s.impliedBy.front(), "0.5");
    }
    for (const Param& p : row.params)
        if (!p.fallback) request.options.emplace_back(p.option, "1.5");
    return request;
}

}  // namespace

TEST(CommandLine, EveryTableRowIsReachableAndNamesItsOptions) {
    for (const DesignRow& row : designRows()) {
        SCOPED_TRACE(rowLabel(row));
        const Design design = resolveDesign(requestFor(row), 48000.0);
        EXPECT_EQ(design.row, &row);
        // The call's arguments are the row's options plus fs, none missing, none extra.
        std::vector<std::string> expected{"fs"};
        for (const Param& p : row.params) expected.emplace_back(p.option);
        std::vector<std::string> args = callArguments(row);
        args.erase(std::remove(args.begin(), args.end(), "fs"), args.end());
        expected.erase(expected.begin());
        std::sort(args.begin(), args.end());
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(args, expected);
    }
}

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
