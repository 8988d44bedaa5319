// Bad invocations and broken sound files: each gets one line on stderr, exit
// status 2, and leaves the directory as it was: no output, no temporary,
// nothing overwritten. Help and version, by contrast, succeed.
#include "tool_test_support.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>

namespace {

// A PCM WAV file: a 44-byte header declaring dataBytes, then `audioBytes` of silence.
std::string wav(std::uint32_t channels, std::uint32_t rate, std::uint32_t bits, std::uint32_t dataBytes,
                std::uint32_t audioBytes) {
    std::string h;
    auto put = [&h](const char* tag, std::initializer_list<std::pair<std::uint32_t, int>> fields) {
        h += tag;
        for (auto [v, bytes] : fields)
            for (int i = 0; i < bytes; ++i) h.push_back(static_cast<char>((v >> (8 * i)) & 0xffu));
    };
    const std::uint32_t blockAlign = channels * bits / 8;
    put("RIFF", {{36 + dataBytes, 4}});
    put("WAVEfmt ", {{16, 4}, {1, 2}, {channels, 2}, {rate, 4}, {rate * blockAlign, 4}, {blockAlign, 2}, {bits, 2}});
    put("data", {{dataBytes, 4}});
    return h + std::string(audioBytes, '\0');
}

// Broken files, each given as --in to `filter peak --gain 3 --freq 1000`,
// with the tool's own reason where it has one (else the file library's).
struct BadFile {
    std::string name, bytes, reason;
};
std::vector<BadFile> badFiles() {
    return {
        {"empty.wav", "", ""},
        {"no-channels.wav", wav(0, 8000, 16, 1600, 1600), ""},
        {"65535-channels.wav", wav(65535, 8000, 8, 65535 * 4, 65535 * 4), ""},
        {"rate-0.wav", wav(1, 0, 16, 1600, 1600), ""},
        // Headers that promise more audio than follows; the second ends inside a sample.
        {"promises-2GB.wav", wav(1, 8000, 16, 0x7ffffff0u, 1600), "the file is truncated"},
        {"cut-short.wav", wav(1, 8000, 16, 1600, 1599), "the file is truncated"},
    };
}

struct Case {
    std::vector<std::string> args;
    std::string message;  // part of the one line the user reads
};

std::vector<Case> cases() {
    std::vector<Case> cases = {
        {{}, "no command given"},
        // What the user typed is quoted with its control characters escaped, so
        // the message stays one line and cannot drive the terminal.
        {{"frob\nnicate\x1b[2J"}, "unknown command 'frob\\nnicate\\x1b[2J'"},
        {{"coef", "peak", "--gain", "3\t4"}, "'3\\t4' is not a number"},
        {{"list", "wobble"}, "unknown design 'wobble'"},
        {{"coef", "peak", "--gain", "3", "--frq", "100"}, "unknown option --frq"},
        {{"coef", "peak", "--gain", "3", "stray"}, "unexpected argument 'stray'"},
        {{"coef", "peak", "--gain"}, "--gain"},
        {{"coef", "peak", "--gain", "nan"}, "not a finite number"},
        {{"coef", "peak", "--gain", "1e308"}, "not finite"},
        {{"coef", "peak"}, "needs --gain"},
        {{"coef", "peak", "--gain", "3", "--freq", "24000"}, "--freq must be below fs/2 = 24000 Hz"},
        {{"coef", "peak", "--gain", "3", "--freq", "0"}, "--freq must be above 0"},
        {{"coef", "peak", "--gain", "3", "--fs", "0"}, "--fs must be a positive sampling frequency"},
        {{"coef", "bandpass", "--low", "2000", "--high", "500"}, "--low must be below --high"},
        {{"coef", "lowpass", "--order", "6"}, "--order must be a whole number from 1 to 5"},
        {{"coef", "bandstop", "--order", "3"}, "--order must be a whole number from 1 to 2"},
        {{"coef", "lowpass", "--ripple", "1"}, "--ripple does not apply to lowpass --type butter"},
        {{"coef", "lowpass", "--type", "elliptic"}, "--type must be one of"},
        {{"coef", "lowpass", "--type", "cheby", "--ripple", "0"}, "--ripple must be above 0"},
        {{"coef", "lowpass", "--type", "icheby", "--stop-level", "960"}, "--stop-level must be below 960"},
        {{"coef", "dc-lowpass", "--alpha", "2"}, "--alpha must be between 0 and 2"},
        {{"coef", "dc-lowpass", "--alpha", "0.1", "--freq", "10"}, "--freq does not apply to dc-lowpass with --alpha"},
        {{"coef", "peak", "--gain", "3", "--format", "xml"}, "--format must be one of"},
        {{"response", "peak", "--gain", "3", "--from", "0"}, "--from and --to"},
        {{"response", "peak", "--gain", "3", "--to", "30000"}, "--from and --to"},
        {{"response", "peak", "--gain", "3", "--points", "1"}, "--points 1 needs --from equal to --to"},
        {{"response", "peak", "--gain", "3", "--from", "900", "--to", "900", "--points", "2"}, "--points must be 1"},
        {{"response", "peak", "--gain", "3", "--at", "900", "--points", "2"}, "--at lists the frequencies itself"},
        {{"response", "peak", "--gain", "3", "--at", "900,24001"}, "--at frequencies must lie in 0 to fs/2"},
        {{"response", "peak", "--gain", "3", "--svg", "missing/plot.svg"}, "cannot write missing/plot.svg"},
        {{"filter", "peak", "--gain", "3", "--in", "in.wav"}, "--out"},
        {{"filter", "peak", "--gain", "3", "--in", "absent.wav", "--out", "out.wav"}, "cannot read absent.wav"},
        {{"filter", "peak", "--gain", "3", "--in", "in.wav", "--out", "in.wav"}, "--out must differ from --in"},
        {{"filter", "peak", "--gain", "3", "--in", "in.wav", "--out", "missing/out.wav"}, "cannot write missing/out.wav"},
        {{"filter", "peak", "--gain", "3", "--in", "in.wav", "--out", "subdir"}, "cannot write subdir"},
        {{"filter", "peak", "--gain", "3", "--in", "in.wav", "--out", "out.xyz"}, "extension .xyz names no format"},
        {{"filter", "peak", "--gain", "3", "--in", "in.wav", "--out", "o.wav", "--format", "doc"}, "--format doc names"},
        {{"filter", "peak", "--gain", "3", "--in", "in.wav", "--out", "out.flac", "--float"}, "cannot hold float"},
        // The file is at 8 kHz: 5 kHz lies above its fs/2, and old.wav must survive.
        {{"filter", "peak", "--gain", "3", "--freq", "5000", "--in", "in.wav", "--out", "old.wav"},
         "below fs/2 = 4000 Hz"},
        // The design is checked before any file is opened.
        {{"filter", "peak", "--in", "absent.wav", "--out", "out.wav"}, "needs --gain"},
    };
    for (const BadFile& f : badFiles())
        cases.push_back({{"filter", "peak", "--gain", "3", "--freq", "1000", "--in", f.name, "--out", "out.wav"},
                         "cannot read " + f.name + ": " + f.reason});
    return cases;
}

}  // namespace

TEST(ToolErrors, BadInvocationsAndFilesExitTwoWithOneLineAndNoOutput) {
    const std::string dir = tool_test::scratchDir("errors");
    // The broken files' intact counterpart: the cases that get past reading it
    // show that the others fail for what they break.
    tool_test::writeText(dir + "/in.wav", wav(1, 8000, 16, 1600, 1600));
    tool_test::writeText(dir + "/old.wav", "an older file that must stay as it is\n");
    std::filesystem::create_directory(dir + "/subdir");
    for (const BadFile& f : badFiles()) tool_test::writeText(dir + "/" + f.name, f.bytes);
    const std::vector<std::string> before = tool_test::filesIn(dir);

    for (const Case& c : cases()) {
        std::string shown;
        for (const std::string& a : c.args) shown += " " + a;
        SCOPED_TRACE("mivora" + shown);
        tool_test::expectRefused(tool_test::runTool(c.args, dir), c.message);
        EXPECT_EQ(tool_test::filesIn(dir), before);
    }
    EXPECT_EQ(tool_test::readText(dir + "/old.wav"), "an older file that must stay as it is\n");
    EXPECT_TRUE(tool_test::filesIn(dir + "/subdir").empty());
}

TEST(ToolErrors, HelpAndVersionPrintAndSucceed) {
    // Each with a word its text must hold; a command's help lists its design options.
    const std::vector<std::pair<std::string, std::string>> calls{
        {"--help", "filter"}, {"--version", "."}, {"coef --help", "--stop-level"}};
    for (const auto& [words, expected] : calls) {
        const tool_test::Run run = tool_test::runWords(words);
        EXPECT_EQ(run.exitCode, 0) << words;
        EXPECT_EQ(run.err, "");
        EXPECT_NE(run.out.find(expected), std::string::npos) << words << ": " << run.out;
    }
}
