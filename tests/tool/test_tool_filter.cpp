// `mivora filter` gives, sample for sample, what doProcess gives on the same
// data (each channel through its own filter, state carried across blocks),
// in the container the output's name (or --format) names, keeping the input's
// sample format where that container holds it.
#include "tool_test_support.hpp"

#include <mivora/IirProcess.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

using Mivora::IirProcess;

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
// its own object a sample at a time (any blocking gives the same bits).
std::vector<float> expectedOutput(const tool_test::Audio& in, void (*design)(IirProcess&, double)) {
    std::vector<float> out = in.samples;
    for (std::size_t c = 0; c < static_cast<std::size_t>(in.channels); ++c) {
        IirProcess f;
        design(f, in.sampleRate);
        for (std::size_t i = c; i < out.size(); i += static_cast<std::size_t>(in.channels))
            f.doProcess(&out[i], &out[i], 1);
    }
    return out;
}

// Integer output, read back as float: the float result scaled by `steps` per
// full scale, rounded to nearest, clipped, scaled back.
std::vector<float> quantised(const std::vector<float>& samples, double steps) {
    std::vector<float> out;
    for (float v : samples)
        out.push_back(static_cast<float>(std::clamp(std::nearbyint(v * steps), -steps, steps - 1.0) / steps));
    return out;
}

}  // namespace

TEST(ToolFilter, OutputEqualsDoProcessPerChannelInTheContainerNamed) {
    struct Case {
        int channels, rate, in;  // the input WAV's layout and sample format
        std::string design;      // after `mivora filter`
        std::string out;         // --out's value, then any further options
        int expected;            // the output's container and sample format
        void (*expectedDesign)(IirProcess&, double);
    };
    const int pcm16 = SF_FORMAT_PCM_16, pcm24 = SF_FORMAT_PCM_24, float32 = SF_FORMAT_FLOAT;
    const int wav = SF_FORMAT_WAV, flac = SF_FORMAT_FLAC;
    void (*const lp)(IirProcess&, double) = [](IirProcess& f, double fs) { f.setCoefLPF(2, 1000, fs); };
    const Case cases[] = {
        // Not the tool's 48 kHz default: the design must follow the file.
        {2, 44100, wav | pcm16, "peak --freq 1000 --gain 12 --q 0.5", "out.wav", wav | pcm16,
         [](IirProcess& f, double fs) { f.setCoefPDFPQ(1000, fs, 12, 0.5); }},
        {2, 44100, wav | float32, "bandpass --type icheby --order 2 --low 300 --high 4000", "out.wav", wav | float32,
         [](IirProcess& f, double fs) { f.setCoefBPFIChev(2, 300, 4000, 0, fs); }},
        // More channels than one IirChannels holds.
        {18, 48000, wav | float32, "peak --freq 300 --gain -6 --q 2", "out.wav", wav | float32,
         [](IirProcess& f, double fs) { f.setCoefPDFPQ(300, fs, -6, 2); }},
        // 5 kHz is above this file's fs/2, but fine at the rate given.
        {1, 8000, wav | float32, "lowpass --freq 5000 --fs 48000", "out.wav", wav | float32,
         [](IirProcess& f, double) { f.setCoefLPF(2, 5000, 48000); }},
        {2, 48000, wav | pcm16, "lowpass --freq 1000", "out.flac", flac | pcm16, lp},
        // No float in FLAC: the deepest PCM it holds.
        {2, 48000, wav | float32, "lowpass --freq 1000", "out.flac", flac | pcm24, lp},
        {2, 48000, wav | pcm24, "lowpass --freq 1000", "OUT.AIFF", SF_FORMAT_AIFF | pcm24, lp},
        {2, 48000, wav | float32, "lowpass --freq 1000", "out.caf", SF_FORMAT_CAF | float32, lp},
        {2, 48000, wav | pcm16, "lowpass --freq 1000", "out.ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS, lp},
        {2, 48000, wav | pcm16, "lowpass --freq 1000", "out.opus", SF_FORMAT_OGG | SF_FORMAT_OPUS, lp},
        {2, 48000, wav | pcm16, "lowpass --freq 1000", "out.mp3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III, lp},
        {2, 48000, wav | float32, "lowpass --freq 1000", "no-extension", wav | float32, lp},
        {2, 48000, wav | pcm16, "lowpass --freq 1000", "out.bin --format flac", flac | pcm16, lp},
        {2, 48000, wav | pcm16, "lowpass --freq 1000", "out.flac --format w64 --float", SF_FORMAT_W64 | float32, lp},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE("case " + std::to_string(&c - cases) + ": " + c.design + " --out " + c.out);
        const std::string dir = tool_test::scratchDir("filter");
        const std::string outName = c.out.substr(0, c.out.find(' '));
        // 10000 frames span three of the tool's blocks.
        tool_test::writeAudio(dir + "/in.wav", {c.channels, c.rate, c.in, noise(10000u * c.channels, 7u)});
        const tool_test::Run run = tool_test::runWords("filter " + c.design + " --in in.wav --out " + c.out, dir);
        SF_INFO wanted{0, c.rate, c.channels, c.expected, 0, 0};
        if (!sf_format_check(&wanted)) {  // a libsndfile built without this codec
            tool_test::expectRefused(run, "cannot write " + outName);
            EXPECT_EQ(tool_test::filesIn(dir), std::vector<std::string>{"in.wav"});
            continue;
        }
        ASSERT_EQ(run.exitCode, 0) << run.err;

        const tool_test::Audio in = tool_test::readAudio(dir + "/in.wav");
        const tool_test::Audio out = tool_test::readAudio(dir + "/" + outName);
        EXPECT_EQ(out.format & (SF_FORMAT_TYPEMASK | SF_FORMAT_SUBMASK), c.expected);
        EXPECT_EQ(std::make_pair(out.channels, out.sampleRate), std::make_pair(c.channels, c.rate));
        const std::vector<float> expected = expectedOutput(in, c.expectedDesign);
        const int sub = c.expected & SF_FORMAT_SUBMASK;
        if (sub == float32)
            EXPECT_EQ(out.samples, expected);
        else if (sub == pcm16 || sub == pcm24)
            EXPECT_EQ(out.samples, quantised(expected, sub == pcm16 ? 0x1p15 : 0x1p23));
        else  // a lossy codec: its bits are its own
            EXPECT_EQ(out.samples.size(), expected.size());
    }
}
