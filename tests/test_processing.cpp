// Sample processing against a plain reading of the per-sample difference
// equations: identical outputs and final state, bit for bit, on every build of
// the kernels this machine can run, for every stage set, odd block sizes,
// streams cut into uneven blocks, in place and out of place; then the object's
// entry points: which stages its order runs, cal against doProcess.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <numeric>
#include <random>

#include "kernel_paths.hpp"
#include "plain_filter.hpp"
#include "test_support.hpp"

using namespace mivora_test;
using Mivora::detail::Path;
using Mivora::detail::StageView;

namespace {

StageView view(PlainFilter& f) { return {f.delay, f.coef, f.delay1st, f.coef1st, f.sections, f.first}; }

// An object of the order given holding stable sections, with a busy state.
IirProcess randomObject(std::mt19937& rng, int order) {
    IirProcess f = holding(order, randomStableCoefs(rng));
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    for (Field k : {kDelayField, kDelay1stField})
        std::generate_n(field(f, k).first, field(f, k).second, [&] { return u(rng); });
    return f;
}

// A build with the FMA3 kernels must use them exactly where the CPU can:
// otherwise every result would still be right, only slow.
TEST(Processing, FmaKernelsRunWhereTheCpuHasFma) {
#if defined(MIVORA_TEST_X86_FMA_KERNELS_BUILT)
    const bool cpuHasFma = __builtin_cpu_supports("fma");
    EXPECT_EQ(Mivora::detail::pathAvailable(Path::x86Fma), cpuHasFma);
    EXPECT_EQ(Mivora::detail::fastestPath(), cpuHasFma ? Path::x86Fma : Path::portable);
#else
    GTEST_SKIP() << "this build has the portable kernels only";
#endif
}

// body(path, filter, rng) for every available path and every stage set
// (orders 0 to 5: 0 to 2 sections, with or without the first-order one).
template <class Body>
void forEachPathAndStageSet(unsigned seed, Body body) {
    std::mt19937 rng(seed);
    for (Path path : Mivora::detail::allPaths)
        for (int order = 0; order < 6 && Mivora::detail::pathAvailable(path); ++order) {
            SCOPED_TRACE(::testing::Message() << "path " << static_cast<int>(path) << ", order " << order);
            body(path, plainCopy(randomObject(rng, order)), rng);
        }
}

// The kernels on `in` cut into `cuts` (one block if none) against the plain
// equations on a copy of `fast`: outputs, the untouched input when out of
// place, and the final state must all be identical.
void expectKernelsMatchPlain(Path path, PlainFilter fast, const std::vector<float>& in, bool inPlace,
                             std::vector<unsigned> cuts = {}) {
    PlainFilter plain = fast;
    std::vector<float> want(in.size());
    for (std::size_t i = 0; i < in.size(); ++i) want[i] = static_cast<float>(plain.step(static_cast<double>(in[i])));
    if (cuts.empty()) cuts = {static_cast<unsigned>(in.size())};
    std::vector<float> src = in, dst(in.size(), -7.0f);
    std::size_t pos = 0;
    for (unsigned n : cuts) {
        Mivora::detail::processBlock(path, view(fast), src.data() + pos, (inPlace ? src : dst).data() + pos, n);
        pos += n;
    }
    expectIdentical(inPlace ? src : dst, want, "output");
    if (!inPlace) expectIdentical(src, in, "input");
    expectIdentical(fast.stateValues(), plain.stateValues(), "state");
}

// Stream cuts: single samples, odd sizes around the unrolled and paired
// kernels' steps and thresholds, and long blocks.
const std::vector<unsigned> streamCuts[] = {
    {1, 2, 3, 5, 7}, {15, 16, 17, 18, 19}, {20, 21, 22, 23, 63}, {64, 65, 255, 1001}, {4096},
};

TEST(Processing, EveryPathMatchesThePlainEquations) {
    forEachPathAndStageSet(20240611, [](Path path, const PlainFilter& f, std::mt19937& rng) {
        for (const std::vector<unsigned>& cuts : streamCuts)
            for (bool inPlace : {false, true}) {
                SCOPED_TRACE(::testing::Message() << (inPlace ? "in place" : "separate arrays") << ", cut " << cuts[0]);
                const unsigned total = std::accumulate(cuts.begin(), cuts.end(), 0u);
                expectKernelsMatchPlain(path, f, noise(total, rng()), inPlace, cuts);
            }
        // Sample by sample.
        PlainFilter fast = f, plain = f;
        std::vector<double> got, want;
        for (float x : noise(50, rng())) {
            got.push_back(Mivora::detail::processSample(path, view(fast), x * 3.0));
            want.push_back(plain.step(x * 3.0));
        }
        expectIdentical(got, want, "single samples");
        expectIdentical(fast.stateValues(), plain.stateValues(), "state after single samples");
    });
}

// Values that take unusual routes through the arithmetic: signed zeros,
// subnormals on the way in and out, results beyond the float range,
// infinities and NaN, fed to every stage set on every path. Then a silent
// stream from a silent state, with coefficient signs chosen so that every
// product is a zero of the input's sign: the sum of -0.0s stays -0.0 only if
// no step turns a zero's sign (the kernels form some rounded products other
// than by a plain multiply).
TEST(Processing, SpecialValuesTakeTheSameCourseOnEveryPath) {
    const std::vector<float> pieces[] = {
        {-0.0f, -0.0f, 0.0f, -0.0f}, {FLT_TRUE_MIN, -FLT_TRUE_MIN, 3 * FLT_TRUE_MIN, 1e-40f, -1e-39f},
        {FLT_MAX, FLT_MAX, -FLT_MAX, 1.0f, FLT_MAX}, {INFINITY, 0.0f, -INFINITY, 1.0f}, {NAN, 0.0f, 1.0f},
    };
    forEachPathAndStageSet(5, [&](Path path, const PlainFilter& random, std::mt19937& rng) {
        // Gains that push results out of range and back into subnormals.
        for (double scale : {1.0, 1e30, 1e-300}) {
            SCOPED_TRACE(::testing::Message() << "scale " << scale);
            PlainFilter f = random;
            for (double& c : f.coef) c *= scale;
            for (double& c : f.coef1st) c *= scale;
            // Each special value inside an otherwise ordinary block long
            // enough for the paired kernel.
            std::vector<float> in = noise(40, rng());
            for (const std::vector<float>& p : pieces) in.insert(in.end() - 20, p.begin(), p.end());
            expectKernelsMatchPlain(path, f, in, true);
        }
        for (float zero : {0.0f, -0.0f}) {
            SCOPED_TRACE(::testing::Message() << "silence of " << (std::signbit(zero) ? "-0" : "+0"));
            PlainFilter f = random;
            std::fill(std::begin(f.delay), std::end(f.delay), zero);
            std::fill(std::begin(f.delay1st), std::end(f.delay1st), zero);
            for (double& c : f.coef) c = std::fabs(c);
            for (double& c : f.coef1st) c = std::fabs(c);
            expectKernelsMatchPlain(path, f, std::vector<float>(37, zero), true);
        }
    });
}

// The object's own entry points, whichever path they pick, at every order:
// the stages that run follow from the order; doProcess in any block split,
// in place or not, and cal sample by sample give the same bits.
TEST(Processing, EntryPointsMatchThePlainEquationsAtEveryOrder) {
    std::mt19937 rng(99);
    for (int order = -7; order <= 7; ++order) {
        SCOPED_TRACE(::testing::Message() << "order " << order);
        IirProcess f = randomObject(rng, order);
        PlainFilter plain = plainCopy(f);
        IirProcess single = f, inPlace = f;

        const std::vector<float> in = noise(1001, rng());
        std::vector<float> want(in.size()), out(in.size()), pieces = in, src = in;
        for (std::size_t i = 0; i < in.size(); ++i) want[i] = static_cast<float>(plain.step(in[i]));
        f.doProcess(src.data(), out.data(), static_cast<unsigned>(in.size()));
        std::size_t pos = 0;
        for (unsigned n : {0u, 1u, 2u, 63u, 64u, 65u, 300u, 506u}) {
            inPlace.doProcess(pieces.data() + pos, pieces.data() + pos, n);
            pos += n;
        }
        inPlace.doProcess(nullptr, nullptr, 0);  // a count of 0 reads and writes nothing
        std::vector<float> bySample;
        for (float x : in) bySample.push_back(static_cast<float>(single.cal(static_cast<double>(x))));
        expectIdentical(out, want, "doProcess");
        expectIdentical(src, in, "input");
        expectIdentical(pieces, want, "split in place");
        expectIdentical(bySample, want, "cal");
        // The plain filter leaves the state of stages that do not run as
        // planted, so this also checks that they keep theirs.
        for (const IirProcess* g : {&f, &inPlace, &single}) expectIdentical(state(*g), plain.stateValues(), "state");
        // cal(int) is cal of the exact double.
        for (int x : {3, -7, 2147483647, -2147483647 - 1}) EXPECT_EQ(single.cal(x), f.cal(static_cast<double>(x)));
    }
}

// Distinct pure gains per stage make the output name the stages that ran.
TEST(Processing, CalWithOrderArgumentChoosesSecondOrderSections) {
    const int cases[][3] = {{4, 2, 2}, {4, 4, 6}, {2, 4, 6}, {4, 0, 1}, {4, 1, 1}, {0, 4, 1},  // object order,
                            {1, 4, 5}, {5, 2, 10}, {-2, 4, 6}, {4, 99, 6}, {4, -99, 1}};  // argument, gain
    for (const auto& c : cases) {
        IirProcess f = holding(c[0], {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 5, 0, 0});
        EXPECT_EQ(f.cal(c[1], 1.5), 1.5 * c[2]) << c[0] << "/" << c[1];
    }
}

}  // namespace
