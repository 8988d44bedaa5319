// Audio hosts often run with flush-to-zero and denormals-are-zero switched on.
// The library never changes those modes itself; under them it must still work,
// and give the default-mode results wherever no subnormal number is involved.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "operation_table.hpp"
#include "typical_driver.hpp"

#if defined(__x86_64__) || defined(_M_X64)
#include <xmmintrin.h>
#define MIVORA_HAVE_FTZ_CONTROL 1
#endif

namespace {

using namespace mivora_test;

#ifdef MIVORA_HAVE_FTZ_CONTROL
// Flush-to-zero and denormals-are-zero (MXCSR bits 15 and 6) for its lifetime.
struct FlushToZero {
    unsigned int saved = _mm_getcsr();
    FlushToZero() noexcept { _mm_setcsr(saved | 0x8040u); }
    ~FlushToZero() { _mm_setcsr(saved); }
};
#else
struct FlushToZero {};
#endif
struct DefaultMode {};

// Equal bits, or a value below the normal range that the mode flushed (to
// zero, or to another value that is itself below the normal range).
template <class T>
bool equalUnlessSubnormal(T reference, T flushed, T smallestNormal) {
    return std::memcmp(&reference, &flushed, sizeof(T)) == 0 ||
           (std::fabs(reference) < smallestNormal && std::fabs(flushed) < smallestNormal);
}

// What one design gives: its coefficients and response at a few points, then
// the output of a noise burst followed by a long silence, in which the state
// decays into the subnormal range, and the final state.
struct Outcome {
    std::vector<double> values;
    std::vector<float> output;
    double finalState[10] = {};
};

template <class Mode>
Outcome designAndRun(const Operation<TypicalDriver>& design, int round, const std::vector<float>& in) {
    Outcome r{std::vector<double>(IirProcess::maxCoefCount), in};
    TypicalDriver driver;
    IirProcess f;
    [[maybe_unused]] Mode mode;
    for (int i = 0; i <= round; ++i) design.run(f, driver);  // later rounds: other parameters
    f.getCoef(r.values.data());
    for (double freq : {0.0, 50.0, 1000.0, 7000.0, 20000.0, 24000.0}) {
        r.values.push_back(f.power(freq, 48000.0));
        r.values.push_back(f.phase(freq, 48000.0));
    }
    f.doProcess(r.output.data(), r.output.data(), static_cast<unsigned>(r.output.size()));
    f.getDelay(r.finalState);
    return r;
}

TEST(FloatingPointEnvironment, DesignsAndProcessingUnderFlushToZero) {
#ifndef MIVORA_HAVE_FTZ_CONTROL
    GTEST_SKIP() << "no flush-to-zero control for this architecture in the test";
#endif
    std::vector<float> in(40000, 0.0f);  // a burst of 1024 noise samples, then silence
    std::uint32_t seed = 7;
    for (unsigned int i = 0; i < 1024; ++i) {
        seed = seed * 1664525u + 1013904223u;
        in[i] = static_cast<float>(static_cast<std::int32_t>(seed)) * (1.0f / 2147483648.0f);
    }
    int designs = 0;
    long flushedOutputs = 0;
    for (const Operation<TypicalDriver>& op : kOperations<TypicalDriver>) {
        if (op.kind != Kind::Design) continue;
        ++designs;
        for (int round = 0; round < 3; ++round) {
            SCOPED_TRACE(testing::Message() << op.name << ", parameter set " << round);
            const Outcome ref = designAndRun<DefaultMode>(op, round, in);
            const Outcome ftz = designAndRun<FlushToZero>(op, round, in);
            for (std::size_t i = 0; i < ref.values.size(); ++i)
                EXPECT_TRUE(equalUnlessSubnormal(ref.values[i], ftz.values[i], DBL_MIN)) << "coefficient/response " << i;
            int mismatches = 0;
            for (std::size_t i = 0; i < in.size() && mismatches < 3; ++i) {
                flushedOutputs += std::memcmp(&ref.output[i], &ftz.output[i], sizeof(float)) != 0;
                EXPECT_TRUE(!std::isfinite(ref.output[i]) || std::isfinite(ftz.output[i])) << "sample " << i;
                if (!equalUnlessSubnormal(ref.output[i], ftz.output[i], FLT_MIN)) {
                    ++mismatches;
                    ADD_FAILURE() << "sample " << i << ": " << ref.output[i] << " vs " << ftz.output[i];
                }
            }
            // Stable: the silence has decayed the state, and nothing remains
            // below the normal range once it is flushed.
            for (double s : ftz.finalState) {
                EXPECT_TRUE(s == 0.0 || std::fabs(s) >= DBL_MIN) << s;
                EXPECT_LT(std::fabs(s), 1e-3);
            }
        }
    }
    EXPECT_GE(designs, 1);
    // The comparison above is only worth something if the mode changed some
    // results: the decays reach the subnormal range and get flushed.
    EXPECT_GT(flushedOutputs, 0);
}

}  // namespace
