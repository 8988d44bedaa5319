// Broken sound files given to `mivora filter`: empty, cut short anywhere,
// corrupt headers, impossible channel counts and rates. Each must end with
// one line on stderr and exit status 2, and leave no output file behind.
#include "tool_test_support.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

void put(std::string& s, std::uint32_t v, int bytes) {
    for (int i = 0; i < bytes; ++i) s.push_back(static_cast<char>((v >> (8 * i)) & 0xffu));
}

// A 44-byte PCM WAV header declaring dataBytes of audio.
std::string wavHeader(std::uint32_t channels, std::uint32_t rate, std::uint32_t bits, std::uint32_t dataBytes) {
    const std::uint32_t blockAlign = channels * bits / 8;
    std::string h = "RIFF";
    put(h, 36 + dataBytes, 4);
    h += "WAVEfmt ";
    put(h, 16, 4);
    put(h, 1, 2);  // PCM
    put(h, channels, 2);
    put(h, rate, 4);
    put(h, rate * blockAlign, 4);
    put(h, blockAlign, 2);
    put(h, bits, 2);
    h += "data";
    put(h, dataBytes, 4);
    return h;
}

// A header with as much (silent) audio as it declares.
std::string wav(std::uint32_t channels, std::uint32_t rate, std::uint32_t bits, std::uint32_t dataBytes) {
    return wavHeader(channels, rate, bits, dataBytes) + std::string(dataBytes, '\0');
}

struct Case {
    const char* name;
    std::string bytes;
    const char* message;  // part of the line the user reads
};

std::vector<Case> badFiles() {
    const std::string good = wav(1, 8000, 16, 1600);
    std::vector<Case> cases = {
        {"empty.wav", "", "cannot read empty.wav"},
        {"no-data-chunk.wav", "RIFF\x24\x00\x00\x00WAVE" + std::string(100, '\xff'), "cannot read no-data-chunk.wav"},
        {"no-channels.wav", wav(0, 8000, 16, 1600), "cannot read no-channels.wav"},
        {"65535-channels.wav", wav(65535, 8000, 8, 65535 * 4), "cannot read 65535-channels.wav"},
        {"rate-0.wav", wav(1, 0, 16, 1600), "cannot read rate-0.wav"},
        {"bits-0.wav", wav(1, 8000, 0, 1600), "cannot read bits-0.wav"},
        {"promises-2GB.wav", wavHeader(1, 8000, 16, 0x7ffffff0u) + std::string(1600, '\0'), "truncated"},
    };
    // The good file cut short at every kind of place: inside the RIFF
    // header, the fmt chunk, the data chunk header, the samples.
    for (std::size_t cut : {4u, 12u, 20u, 36u, 40u, 44u, 45u, 844u, 1643u})
        cases.push_back({"cut.wav", good.substr(0, cut), "cannot read cut.wav"});
    return cases;
}

TEST(ToolBadAudio, BrokenFilesExitTwoWithOneLineAndNoOutput) {
    const std::string dir = tool_test::scratchDir("bad-audio");
    for (const Case& c : badFiles()) {
        SCOPED_TRACE(testing::Message() << c.name << " (" << c.bytes.size() << " bytes)");
        tool_test::writeText(dir + "/" + c.name, c.bytes);
        const std::vector<std::string> before = tool_test::filesIn(dir);
        const tool_test::Run run = tool_test::runTool(
            {"filter", "peak", "--gain", "3", "--freq", "1000", "--in", c.name, "--out", "out.wav"}, dir);
        tool_test::expectRefused(run, c.message);
        EXPECT_EQ(tool_test::filesIn(dir), before);
    }
}

TEST(ToolBadAudio, TheIntactFileAndManyChannelsAreAccepted) {
    // The counterpart of the cases above, so they fail for the fault they
    // name: the same header with all its audio, and 1024 channels (the most
    // the file library reads) are filtered.
    const std::string dir = tool_test::scratchDir("good-audio");
    tool_test::writeText(dir + "/good.wav", wav(1, 8000, 16, 1600));
    tool_test::writeText(dir + "/1024-channels.wav", wav(1024, 8000, 16, 1024 * 2 * 4));
    for (const char* name : {"good.wav", "1024-channels.wav"}) {
        SCOPED_TRACE(name);
        const tool_test::Run run = tool_test::runTool(
            {"filter", "peak", "--gain", "3", "--freq", "1000", "--in", name, "--out", "out.wav"}, dir);
        EXPECT_EQ(run.exitCode, 0) << run.err;
        const tool_test::Audio out = tool_test::readAudio(dir + "/out.wav");
        EXPECT_EQ(out.samples.size(), name == std::string("good.wav") ? 800u : 1024u * 4u);
    }
}

}  // namespace
