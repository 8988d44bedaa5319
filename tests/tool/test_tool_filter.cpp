// `mivora filter` gives, sample for sample, what doProcess gives on the same
// data: each channel through its own filter, state carried across blocks.
#include "tool_test_support.hpp"

#include <mivora/IirProcess.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

using Mivora::IirProcess;
using tool_test::runTool;

namespace {

// Deterministic noise near full scale, so a boost also exercises clipping.
std::vector<float> noise(std::size_t n, std::uint32_t seed) {
    std::vector<float> out(n);
    for (float& v : out) {
        seed = seed * 1664525u + 1013904223u;
        v = static_cast<float>(static_cast<double>(seed >> 8) / 8388608.0 - 1.0) * 0.9f;
    }
    return out;
}

// What the tool must produce: the input as read, each channel run through
// its own object in one doProcess call.
std::vector<float> expectedOutput(const tool_test::Audio& in, void (*design)(IirProcess&, double)) {
    const auto channels = static_cast<std::size_t>(in.channels);
    const std::size_t frames = in.samples.size() / channels;
    std::vector<float> out(in.samples.size());
    for (std::size_t c = 0; c < channels; ++c) {
        std::vector<float> channel(frames);
        for (std::size_t i = 0; i < frames; ++i) channel[i] = in.samples[i * channels + c];
        IirProcess f;
        design(f, in.sampleRate);
        f.doProcess(channel.data(), channel.data(), static_cast<unsigned>(frames));
        for (std::size_t i = 0; i < frames; ++i) out[i * channels + c] = channel[i];
    }
    return out;
}

// 16-bit output, read back as float: the float result scaled by 2^15,
// rounded, clipped, scaled back.
std::vector<float> quantised(const std::vector<float>& samples) {
    std::vector<float> out;
    for (float v : samples)
        out.push_back(static_cast<float>(std::clamp(std::lrint(static_cast<double>(v) * 32768.0), -32768L, 32767L)) / 32768.0f);
    return out;
}

}  // namespace

TEST(ToolFilter, OutputEqualsDoProcessPerChannel) {
    struct Case {
        const char* name;
        int channels, rate;
        int format;
        bool asFloat;
        std::vector<std::string> design;
        void (*expected)(IirProcess&, double);
    };
    const int pcm16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    const int float32 = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    const Case cases[] = {
        {"mono-16bit", 1, 44100, pcm16, false, {"peak", "--freq", "1000", "--gain", "12", "--q", "0.5"},
         [](IirProcess& f, double fs) { f.setCoefPDFPQ(1000, fs, 12, 0.5); }},
        {"stereo-16bit", 2, 44100, pcm16, false, {"lowpass", "--type", "cheby", "--order", "5", "--freq", "3000"},
         [](IirProcess& f, double fs) { f.setCoefLPFChev(5, 3000, 1, fs); }},
        {"stereo-float", 2, 44100, float32, false,
         {"bandpass", "--type", "icheby", "--order", "2", "--low", "300", "--high", "4000"},
         [](IirProcess& f, double fs) { f.setCoefBPFIChev(2, 300, 4000, 0, fs); }},
        {"16bit-to-float", 2, 44100, pcm16, true, {"dc-highpass", "--freq", "30"},
         [](IirProcess& f, double fs) { f.setDcfHPF(30, fs); }},
        // 5.1, and more channels than one IirChannels holds.
        {"six-channels", 6, 48000, float32, false, {"highpass", "--order", "4", "--freq", "120"},
         [](IirProcess& f, double fs) { f.setCoefHPF(4, 120, fs); }},
        {"eighteen-channels", 18, 48000, float32, false, {"peak", "--freq", "300", "--gain", "-6", "--q", "2"},
         [](IirProcess& f, double fs) { f.setCoefPDFPQ(300, fs, -6, 2); }},
        // 5 kHz is above this file's fs/2, but fine at the rate given.
        {"fs-override", 1, 8000, float32, false, {"lowpass", "--freq", "5000", "--fs", "48000"},
         [](IirProcess& f, double) { f.setCoefLPF(2, 5000, 48000); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string dir = tool_test::scratchDir(std::string("filter-") + c.name);
        // Not the tool's 48 kHz default: the design must follow the file.
        // 10000 frames span three of the tool's blocks.
        tool_test::writeAudio(dir + "/in.wav", {c.channels, c.rate, c.format, noise(10000u * c.channels, 7u)});
        std::vector<std::string> args{"filter"};
        args.insert(args.end(), c.design.begin(), c.design.end());
        args.insert(args.end(), {"--in", "in.wav", "--out", "out.wav"});
        if (c.asFloat) args.push_back("--float");
        const tool_test::Run run = runTool(args, dir);
        ASSERT_EQ(run.exitCode, 0) << run.err;

        const tool_test::Audio in = tool_test::readAudio(dir + "/in.wav");
        const tool_test::Audio out = tool_test::readAudio(dir + "/out.wav");
        EXPECT_EQ(out.channels, c.channels);
        EXPECT_EQ(out.sampleRate, c.rate);
        EXPECT_EQ(out.format, c.asFloat ? float32 : c.format);
        const std::vector<float> expected = expectedOutput(in, c.expected);
        EXPECT_EQ(out.samples, (out.format & SF_FORMAT_SUBMASK) == SF_FORMAT_FLOAT ? expected : quantised(expected));
    }
}
