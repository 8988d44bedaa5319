// Channels processed together against each channel's filter processed alone:
// for random designs and raw coefficients of every order, random channel
// counts, random block cuts, both buffer layouts, in place and not, with
// signed zeros, subnormals, overflow, infinities and NaN in the input, on
// every build of the channel kernels this machine runs and through the
// public class, channel c's output and final state must equal those of a
// lone IirProcess, bit for bit (any NaN matching any NaN).
#include <gtest/gtest.h>
#include <mivora/IirChannels.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <random>
#include <string>

#include "channel_paths.hpp"
#include "plain_filter.hpp"
#include "test_support.hpp"

using namespace mivora_test;
using Mivora::IirChannels;
using Mivora::detail::ChannelPath;
using Mivora::detail::ChannelView;

namespace {

// The kernels reach a record's arrays from its first one.
static_assert(offsetof(PlainFilter, coef) - offsetof(PlainFilter, delay) == ChannelView::coefAt * sizeof(double) &&
                  offsetof(PlainFilter, delay1st) - offsetof(PlainFilter, delay) ==
                      ChannelView::delay1stAt * sizeof(double) &&
                  offsetof(PlainFilter, coef1st) - offsetof(PlainFilter, delay) ==
                      ChannelView::coef1stAt * sizeof(double),
              "a plain filter's arrays side by side, as IirProcess keeps them");

using Rng = std::mt19937;

double uniform(Rng& rng, double lo, double hi) { return std::uniform_real_distribution<double>(lo, hi)(rng); }
int pick(Rng& rng, int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); }

// A filter designed through the public operations (a peaking band, or an
// inverse-Chebyshev high-pass of order 1 to 5, zeros on the unit circle), or,
// half the time, holding raw stable sections at any order (-5..5) scaled
// towards overflow or subnormals. With `order` given, always the latter, at
// that order: channels alike in their stages take the kernels' unmasked
// course.
IirProcess randomFilter(Rng& rng, int order = 6) {
    const double fs = 48000.0, f = uniform(rng, 20.0, 20000.0), g = uniform(rng, -24.0, 24.0);
    const int n = pick(rng, 1, 5);
    IirProcess out;
    switch (order <= 5 ? 2 : pick(rng, 0, 3)) {
        case 0: out.setCoefPDFPQ(f, fs, g, uniform(rng, 0.3, 8.0)); break;
        case 1: out.setCoefHPFIChev(n, f, uniform(rng, 0.0, 500.0), fs); break;
        default: {
            std::array<double, 13> c = randomStableCoefs(rng);
            const double scale = std::array<double, 4>{1.0, 1.0, 1e30, 1e-300}[pick(rng, 0, 3)];
            std::for_each(c.begin(), c.begin() + 12, [scale](double& x) { x *= scale; });
            out = holding(order <= 5 ? order : pick(rng, -5, 5), c);
        }
    }
    // A state of its own: some noise through it.
    std::vector<float> warm = noise(static_cast<std::size_t>(pick(rng, 0, 40)), static_cast<unsigned>(rng()));
    out.doProcess(warm.data(), warm.data(), static_cast<unsigned>(warm.size()));
    return out;
}

// Noise with special values now and then; only finite ones unless
// `poison` (an infinity or NaN stays in a filter's state for good, and a
// channel's every later sample would test nothing else).
std::vector<float> randomInput(Rng& rng, std::size_t n, bool poison) {
    const float specials[] = {0.0f, -0.0f, FLT_TRUE_MIN, -1e-40f, FLT_MAX, -INFINITY, INFINITY, NAN};
    std::vector<float> v = noise(n, static_cast<unsigned>(rng()));
    for (float& x : v)
        if (pick(rng, 0, 199) == 0) x = specials[pick(rng, 0, poison ? 7 : 3)];
    return v;
}

// Block sizes summing to total: single frames, odd sizes, long runs.
std::vector<unsigned> randomCuts(Rng& rng, unsigned total) {
    std::vector<unsigned> cuts;
    for (unsigned left = total; left > 0;) {
        const int n = pick(rng, 0, 2) == 0 ? pick(rng, 1, 9) : pick(rng, 1, 300);
        cuts.push_back(std::min(left, static_cast<unsigned>(n)));
        left -= cuts.back();
    }
    return cuts;
}

// The block [at, at + n) of the planar buffers `io` through a forced kernel
// path over `views`, or through `together` when there is no path: in the
// interleaved or planar layout, in place or into a separate buffer.
void runBlock(const ChannelPath* path, const ChannelView* views, IirChannels& together, bool interleaved, bool inPlace,
              std::vector<std::vector<float>>& io, unsigned at, unsigned n) {
    const int channels = static_cast<int>(io.size());
    if (interleaved) {
        std::vector<float> in(n * io.size()), out(n * io.size(), -7.0f);
        for (int c = 0; c < channels; ++c)
            for (unsigned i = 0; i < n; ++i) in[i * channels + c] = io[c][at + i];
        float* dst = (inPlace ? in : out).data();
        if (path)
            Mivora::detail::processInterleaved(*path, views, channels, in.data(), dst, n);
        else
            together.processInterleaved(in.data(), dst, n);
        for (int c = 0; c < channels; ++c)
            for (unsigned i = 0; i < n; ++i) io[c][at + i] = dst[i * channels + c];
    } else {
        std::vector<std::vector<float>> out(io.size(), std::vector<float>(n, -7.0f));
        std::vector<const float*> in;
        std::vector<float*> dst;
        for (int c = 0; c < channels; ++c) {
            in.push_back(io[c].data() + at);
            dst.push_back(inPlace ? io[c].data() + at : out[c].data());
        }
        if (path)
            Mivora::detail::processPlanar(*path, views, channels, in.data(), dst.data(), n);
        else
            together.processPlanar(in.data(), dst.data(), n);
        if (!inPlace)
            for (int c = 0; c < channels; ++c) std::copy(out[c].begin(), out[c].end(), io[c].begin() + at);
    }
}

TEST(Channels, EveryChannelMatchesALoneFilterBitForBit) {
    Rng rng(20261123);
    std::vector<ChannelPath> paths;
    for (ChannelPath p : Mivora::detail::allChannelPaths)
        if (Mivora::detail::channelPathAvailable(p)) paths.push_back(p);
    ASSERT_FALSE(paths.empty());

    for (int trial = 0; trial < 120; ++trial) {
        // Every third trial, one order for all channels; from the 16th on,
        // often a count that leaves a group of one to four channels.
        const bool alike = trial % 3 == 2;
        const int channels = trial < 16 ? trial + 1
                             : alike    ? std::array<int, 8>{1, 2, 3, 4, 9, 10, 12, pick(rng, 1, 16)}[pick(rng, 0, 7)]
                                        : pick(rng, 1, IirChannels::maxChannels);
        const int order = alike ? pick(rng, 0, 5) : 6;
        const unsigned frames = static_cast<unsigned>(pick(rng, 1, 700));
        std::vector<IirProcess> lone;
        for (int c = 0; c < channels; ++c) lone.push_back(randomFilter(rng, order));
        std::vector<std::vector<float>> input;
        for (int c = 0; c < channels; ++c) input.push_back(randomInput(rng, frames, trial % 2 == 1));
        const std::vector<unsigned> cuts = randomCuts(rng, frames);

        // Each channel alone, in the same blocks.
        std::vector<std::vector<float>> want = input;
        std::vector<IirProcess> alone = lone;
        for (int c = 0; c < channels; ++c)
            for (unsigned at = 0, k = 0; k < cuts.size(); at += cuts[k++])
                alone[c].doProcess(want[c].data() + at, want[c].data() + at, cuts[k]);

        // Every kernel path forced, then the public class (its own path
        // choice, and one channel's shortcut), each in both layouts.
        for (std::size_t way = 0; way <= paths.size(); ++way)
            for (int layout = 0; layout < 4; ++layout) {
                const bool interleaved = layout & 1, inPlace = layout & 2;
                const ChannelPath* path = way < paths.size() ? &paths[way] : nullptr;
                SCOPED_TRACE(::testing::Message()
                             << "trial " << trial << ", " << channels << " channels, "
                             << (path ? "path " + std::to_string(static_cast<int>(*path)) : std::string("IirChannels"))
                             << (interleaved ? ", interleaved" : ", planar") << (inPlace ? ", in place" : ""));
                std::vector<std::vector<float>> got = input;
                IirChannels together(channels);
                for (int c = 0; c < channels; ++c) together.channel(c) = lone[c];
                std::vector<PlainFilter> plain;
                for (const IirProcess& f : lone) plain.push_back(plainCopy(f));
                std::vector<ChannelView> views;
                for (PlainFilter& p : plain) views.push_back({p.delay, 2 * p.sections + (p.first ? 1 : 0)});
                for (unsigned at = 0, k = 0; k < cuts.size(); at += cuts[k++])
                    runBlock(path, views.data(), together, interleaved, inPlace, got, at, cuts[k]);
                for (int c = 0; c < channels; ++c) {
                    SCOPED_TRACE(::testing::Message() << "channel " << c);
                    const std::vector<double> gotState = path ? plain[c].stateValues() : state(together.channel(c));
                    expectIdentical(gotState, state(alone[c]), "state");
                    expectIdentical(got[c], want[c], "output");
                }
                if (HasFailure()) return;  // the first difference says enough
            }
    }
}

}  // namespace
