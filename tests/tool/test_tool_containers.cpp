// `mivora filter` writes the container its output's name (or --format) names,
// keeping the input's sample format where that container holds it.
#include "tool_test_support.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <tuple>

namespace {

// Amplitude of the tone at freq in channel 0 over the second half, which
// holds whole cycles of both test tones.
double tone(const tool_test::Audio& a, double freq) {
    const std::size_t n = a.samples.size() / static_cast<std::size_t>(a.channels);
    std::complex<double> sum;
    for (std::size_t i = n / 2; i < n; ++i)
        sum += static_cast<double>(a.samples[i * static_cast<std::size_t>(a.channels)]) *
               std::polar(1.0, -2.0 * M_PI * freq * static_cast<double>(i) / a.sampleRate);
    return std::abs(sum) / (static_cast<double>(n) / 4.0);
}

}  // namespace

TEST(ToolContainers, OutputNameChoosesTheContainerAndKeepsTheSampleFormat) {
    struct Case {
        std::vector<std::string> out;  // --out's value, then any further options
        int in, expected;              // the input's WAV sample format; the output's format
    };
    const Case cases[] = {
        {{"out.wav"}, SF_FORMAT_PCM_24, SF_FORMAT_WAV | SF_FORMAT_PCM_24},
        {{"out.flac"}, SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
        {{"out.flac"}, SF_FORMAT_FLOAT, SF_FORMAT_FLAC | SF_FORMAT_PCM_24},  // no float in FLAC: deepest PCM
        {{"OUT.AIFF"}, SF_FORMAT_PCM_24, SF_FORMAT_AIFF | SF_FORMAT_PCM_24},
        {{"out.caf"}, SF_FORMAT_FLOAT, SF_FORMAT_CAF | SF_FORMAT_FLOAT},
        {{"out.ogg"}, SF_FORMAT_PCM_16, SF_FORMAT_OGG | SF_FORMAT_VORBIS},
        {{"out.opus"}, SF_FORMAT_PCM_16, SF_FORMAT_OGG | SF_FORMAT_OPUS},
        {{"out.mp3"}, SF_FORMAT_PCM_16, SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III},
        {{"no-extension"}, SF_FORMAT_FLOAT, SF_FORMAT_WAV | SF_FORMAT_FLOAT},
        {{"out.bin", "--format", "flac"}, SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
        {{"out.flac", "--format", "w64", "--float"}, SF_FORMAT_PCM_16, SF_FORMAT_W64 | SF_FORMAT_FLOAT},
    };
    std::vector<float> tones;  // 200 Hz and 12 kHz in channel 0, silence in channel 1
    for (int i = 0; i < 24000; ++i) {
        const double t = i / 48000.0;
        tones.push_back(static_cast<float>(0.4 * (std::sin(2.0 * M_PI * 200.0 * t) + std::sin(2.0 * M_PI * 12000.0 * t))));
        tones.push_back(0.0f);
    }
    for (const Case& c : cases) {
        SCOPED_TRACE(c.out.back());
        const std::string dir = tool_test::scratchDir("containers");
        tool_test::writeAudio(dir + "/in.wav", {2, 48000, SF_FORMAT_WAV | c.in, tones});
        std::vector<std::string> args{"filter", "lowpass", "--freq", "1000", "--in", "in.wav", "--out"};
        args.insert(args.end(), c.out.begin(), c.out.end());
        const tool_test::Run run = tool_test::runTool(args, dir);
        SF_INFO wanted{0, 48000, 2, c.expected, 0, 0};
        if (!sf_format_check(&wanted)) {  // a libsndfile built without this codec
            tool_test::expectRefused(run, "cannot write " + c.out[0]);
            EXPECT_EQ(tool_test::filesIn(dir), std::vector<std::string>{"in.wav"});
            continue;
        }
        ASSERT_EQ(run.exitCode, 0) << run.err;
        const tool_test::Audio out = tool_test::readAudio(dir + "/" + c.out[0]);
        EXPECT_EQ(out.format & (SF_FORMAT_TYPEMASK | SF_FORMAT_SUBMASK), c.expected);
        EXPECT_EQ(std::make_tuple(out.channels, out.sampleRate, out.samples.size()), std::make_tuple(2, 48000, 48000u));
        // A second-order low-pass at 1 kHz: 200 Hz passes, 12 kHz is about 43 dB down.
        EXPECT_NEAR(tone(out, 200.0), 0.4, 0.012);
        EXPECT_LT(tone(out, 12000.0), 0.008);
    }
}
