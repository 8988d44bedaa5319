// `mivora filter` writes the container its output's name (or --format) names,
// with the input's sample format where that container holds it, and the
// audio still filtered once it is read back.
#include "tool_test_support.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>

using tool_test::runTool;

namespace {

constexpr int kRate = 48000;
constexpr int kFrames = 24000;
// Whole cycles over the second half, where the low-pass has settled.
constexpr double kPass = 200.0, kStop = 12000.0;
constexpr double kLevel[] = {0.4, 0.2};  // per channel, each tone

std::vector<float> twoTones() {
    std::vector<float> out;
    for (int i = 0; i < kFrames; ++i) {
        const double t = static_cast<double>(i) / kRate;
        const double x = std::sin(2.0 * M_PI * kPass * t) + std::sin(2.0 * M_PI * kStop * t);
        for (double level : kLevel) out.push_back(static_cast<float>(level * x));
    }
    return out;
}

// Amplitude of the tone at freq in channel c, over the second half.
double toneAmplitude(const tool_test::Audio& a, int c, double freq) {
    const std::size_t frames = a.samples.size() / static_cast<std::size_t>(a.channels);
    std::complex<double> sum;
    for (std::size_t i = frames / 2; i < frames; ++i)
        sum += static_cast<double>(a.samples[i * static_cast<std::size_t>(a.channels) + static_cast<std::size_t>(c)]) *
               std::polar(1.0, -2.0 * M_PI * freq * static_cast<double>(i) / a.sampleRate);
    return 2.0 * std::abs(sum) / static_cast<double>(frames - frames / 2);
}

bool writable(int format) {
    SF_INFO info{};
    info.format = format;
    info.channels = 2;
    info.samplerate = kRate;
    return sf_format_check(&info) != 0;
}

}  // namespace

TEST(ToolContainers, OutputNameChoosesTheContainerAndKeepsTheSampleFormat) {
    struct Case {
        const char* out;
        std::vector<std::string> extra;
        int in;        // WAV sample format of the input
        int expected;  // container | sample format of the output
    };
    const Case cases[] = {
        {"out.wav", {}, SF_FORMAT_PCM_24, SF_FORMAT_WAV | SF_FORMAT_PCM_24},
        {"out.flac", {}, SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
        // FLAC holds no float: the deepest PCM it does.
        {"out.flac", {}, SF_FORMAT_FLOAT, SF_FORMAT_FLAC | SF_FORMAT_PCM_24},
        {"OUT.AIFF", {}, SF_FORMAT_PCM_24, SF_FORMAT_AIFF | SF_FORMAT_PCM_24},
        {"out.caf", {}, SF_FORMAT_FLOAT, SF_FORMAT_CAF | SF_FORMAT_FLOAT},
        {"out.w64", {}, SF_FORMAT_PCM_16, SF_FORMAT_W64 | SF_FORMAT_PCM_16},
        {"out.ogg", {}, SF_FORMAT_PCM_16, SF_FORMAT_OGG | SF_FORMAT_VORBIS},
        {"out.opus", {}, SF_FORMAT_PCM_16, SF_FORMAT_OGG | SF_FORMAT_OPUS},
        {"out.mp3", {}, SF_FORMAT_PCM_16, SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III},
        {"no-extension", {}, SF_FORMAT_FLOAT, SF_FORMAT_WAV | SF_FORMAT_FLOAT},
        {"out.bin", {"--format", "flac"}, SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
        {"out.flac", {"--format", "wav", "--float"}, SF_FORMAT_PCM_16, SF_FORMAT_WAV | SF_FORMAT_FLOAT},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.out + (c.extra.empty() ? "" : " " + c.extra[0] + " " + c.extra[1]));
        const std::string dir = tool_test::scratchDir("containers");
        tool_test::writeAudio(dir + "/in.wav", {2, kRate, SF_FORMAT_WAV | c.in, twoTones()});
        std::vector<std::string> args{"filter", "lowpass", "--freq", "1000", "--in", "in.wav", "--out", c.out};
        args.insert(args.end(), c.extra.begin(), c.extra.end());
        const tool_test::Run run = runTool(args, dir);
        if (!writable(c.expected)) {  // a libsndfile built without this codec
            tool_test::expectRefused(run, "cannot write " + std::string(c.out));
            EXPECT_EQ(tool_test::filesIn(dir), std::vector<std::string>{"in.wav"});
            continue;
        }
        ASSERT_EQ(run.exitCode, 0) << run.err;
        const tool_test::Audio out = tool_test::readAudio(dir + "/" + c.out);
        EXPECT_EQ(out.format & (SF_FORMAT_TYPEMASK | SF_FORMAT_SUBMASK), c.expected);
        EXPECT_EQ(out.channels, 2);
        EXPECT_EQ(out.sampleRate, kRate);
        EXPECT_EQ(out.samples.size(), 2u * kFrames);
        for (int ch = 0; ch < 2; ++ch) {
            // A second-order low-pass at 1 kHz: -0.0 dB at 200 Hz, about -43 dB at 12 kHz.
            EXPECT_NEAR(toneAmplitude(out, ch, kPass) / kLevel[ch], 1.0, 0.03) << ch;
            EXPECT_LT(toneAmplitude(out, ch, kStop) / kLevel[ch], 0.02) << ch;
        }
    }
}
