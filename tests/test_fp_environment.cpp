// Audio hosts often run with flush-to-zero and denormals-are-zero switched on.
// The library never changes those modes itself; under them it must still work,
// and give the default-mode results wherever no subnormal number is involved.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <vector>

#include "operation_table.hpp"
#include "plain_filter.hpp"
#include "typical_driver.hpp"

#if defined(__x86_64__) || defined(_M_X64)
#include <xmmintrin.h>
#define MIVORA_HAVE_FTZ_CONTROL 1
#endif

namespace {

using namespace mivora_test;

// Equal bits, or both below the normal range (the mode flushed it).
template <class T>
bool equalUnlessSubnormal(T reference, T flushed, T smallestNormal) {
    return std::memcmp(&reference, &flushed, sizeof(T)) == 0 ||
           (std::fabs(reference) < smallestNormal && std::fabs(flushed) < smallestNormal);
}

// One design's coefficients and response at a few points, then the output of
// a noise burst followed by a long silence in which the state decays into the
// subnormal range, and the final state; under flush-to-zero when asked.
struct Outcome {
    std::vector<double> values = std::vector<double>(IirProcess::maxCoefCount);
    std::vector<float> output;
    double finalState[10] = {};
};
Outcome designAndRun(const Operation<TypicalDriver>& design, int round, const std::vector<float>& in,
                     [[maybe_unused]] bool ftz) {  // (no effect where the test cannot set the mode)
#ifdef MIVORA_HAVE_FTZ_CONTROL
    const unsigned int saved = _mm_getcsr();
    if (ftz) _mm_setcsr(saved | 0x8040u);  // flush-to-zero and denormals-are-zero
#endif
    Outcome r;
    r.output = in;
    TypicalDriver driver;
    IirProcess f;
    for (int i = 0; i <= round; ++i) design.run(f, driver);  // later rounds: other parameters
    f.getCoef(r.values.data());
    for (double freq : {0.0, 50.0, 1000.0, 7000.0, 20000.0, 24000.0})
        r.values.insert(r.values.end(), {f.power(freq, 48000.0), f.phase(freq, 48000.0)});
    f.doProcess(r.output.data(), r.output.data(), static_cast<unsigned>(r.output.size()));
    f.getDelay(r.finalState);
#ifdef MIVORA_HAVE_FTZ_CONTROL
    _mm_setcsr(saved);
#endif
    return r;
}

TEST(FloatingPointEnvironment, DesignsAndProcessingUnderFlushToZero) {
#ifndef MIVORA_HAVE_FTZ_CONTROL
    GTEST_SKIP() << "no flush-to-zero control for this architecture in the test";
#endif
    std::vector<float> in = noise(1024, 7);  // a burst of noise, then silence
    in.resize(40000, 0.0f);
    long flushedOutputs = 0;
    for (const Operation<TypicalDriver>& op : kOperations<TypicalDriver>) {
        if (op.kind != Kind::Design) continue;
        for (int round = 0; round < 3; ++round) {
            SCOPED_TRACE(testing::Message() << op.name << ", parameter set " << round);
            const Outcome ref = designAndRun(op, round, in, false), ftz = designAndRun(op, round, in, true);
            for (std::size_t i = 0; i < ref.values.size(); ++i)
                EXPECT_TRUE(equalUnlessSubnormal(ref.values[i], ftz.values[i], DBL_MIN)) << "coefficient/response " << i;
            for (std::size_t i = 0; i < in.size(); ++i) {
                flushedOutputs += std::memcmp(&ref.output[i], &ftz.output[i], sizeof(float)) != 0;
                ASSERT_TRUE(equalUnlessSubnormal(ref.output[i], ftz.output[i], FLT_MIN))
                    << "sample " << i << ": " << ref.output[i] << " vs " << ftz.output[i];
            }
            // Stable: the silence has decayed the state, and nothing below
            // the normal range remains once it is flushed.
            for (double s : ftz.finalState) EXPECT_TRUE((s == 0.0 || std::fabs(s) >= DBL_MIN) && std::fabs(s) < 1e-3) << s;
        }
    }
    // Only worth something if the mode changed some results.
    EXPECT_GT(flushedOutputs, 0);
}

}  // namespace
