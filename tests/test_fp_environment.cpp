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
// Switches on flush-to-zero and denormals-are-zero (MXCSR bits 15 and 6) for
// its lifetime and restores the previous modes afterwards.
class FlushToZero {
public:
    FlushToZero() noexcept : saved_(_mm_getcsr()) { _mm_setcsr(saved_ | 0x8040u); }
    ~FlushToZero() { _mm_setcsr(saved_); }
    FlushToZero(const FlushToZero&) = delete;
    FlushToZero& operator=(const FlushToZero&) = delete;

private:
    unsigned int saved_;
};
#define MIVORA_REQUIRE_FTZ_CONTROL() (void)0
#else
struct FlushToZero {};
#define MIVORA_REQUIRE_FTZ_CONTROL() GTEST_SKIP() << "no flush-to-zero control for this architecture in the test"
#endif

template <class T>
bool sameBits(T a, T b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// Equal bits, or a value below the normal range that the mode flushed (to
// zero, or to another value that is itself below the normal range).
template <class T>
bool equalUnlessSubnormal(T reference, T flushed, T smallestNormal) {
    if (sameBits(reference, flushed)) return true;
    return std::fabs(reference) < smallestNormal && std::fabs(flushed) < smallestNormal;
}

// What one design gives: its coefficients, its response at a few points, and
// the output of a noise burst followed by a long silence, in which the state
// decays into the subnormal range.
struct Outcome {
    std::vector<double> coef = std::vector<double>(IirProcess::maxCoefCount, 0.0);
    std::vector<double> response;
    std::vector<float> output;
    std::vector<double> finalState = std::vector<double>(10, 0.0);
};

constexpr unsigned int kBurst = 1024;
constexpr unsigned int kLength = 40000;

std::vector<float> burstThenSilence() {
    std::vector<float> in(kLength, 0.0f);
    std::uint32_t s = 7;
    for (unsigned int i = 0; i < kBurst; ++i) {
        s = s * 1664525u + 1013904223u;
        in[i] = static_cast<float>(static_cast<std::int32_t>(s)) * (1.0f / 2147483648.0f);
    }
    return in;
}

template <class Mode>
Outcome designAndRun(const Operation<TypicalDriver>& design, int round, const std::vector<float>& in) {
    Outcome r;
    r.output = in;
    r.response.reserve(16);
    TypicalDriver driver;
    IirProcess f;
    {
        [[maybe_unused]] Mode mode;
        for (int i = 0; i <= round; ++i) design.run(f, driver);  // later rounds: other parameters
        f.getCoef(r.coef.data());
        for (double freq : {0.0, 50.0, 1000.0, 7000.0, 20000.0, 24000.0}) {
            r.response.push_back(f.power(freq, 48000.0));
            r.response.push_back(f.phase(freq, 48000.0));
        }
        f.doProcess(r.output.data(), r.output.data(), kLength);
        f.getDelay(r.finalState.data());
    }
    return r;
}

struct DefaultMode {};

TEST(FloatingPointEnvironment, DesignsAndProcessingUnderFlushToZero) {
    MIVORA_REQUIRE_FTZ_CONTROL();
    const std::vector<float> in = burstThenSilence();
    int designs = 0;
    long flushedOutputs = 0;
    for (const Operation<TypicalDriver>& op : kOperations<TypicalDriver>) {
        if (op.kind != Kind::Design) continue;
        ++designs;
        for (int round = 0; round < 3; ++round) {
            SCOPED_TRACE(testing::Message() << op.name << ", parameter set " << round);
            const Outcome ref = designAndRun<DefaultMode>(op, round, in);
            const Outcome ftz = designAndRun<FlushToZero>(op, round, in);
            for (std::size_t i = 0; i < ref.coef.size(); ++i)
                EXPECT_TRUE(equalUnlessSubnormal(ref.coef[i], ftz.coef[i], DBL_MIN)) << "coefficient " << i;
            for (std::size_t i = 0; i < ref.response.size(); ++i)
                EXPECT_TRUE(equalUnlessSubnormal(ref.response[i], ftz.response[i], DBL_MIN)) << "response " << i;
            int mismatches = 0;
            for (unsigned int i = 0; i < kLength && mismatches < 3; ++i) {
                if (!sameBits(ref.output[i], ftz.output[i])) ++flushedOutputs;
                if (std::isfinite(ref.output[i])) {
                    EXPECT_TRUE(std::isfinite(ftz.output[i])) << "sample " << i;
                }
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

TEST(FloatingPointEnvironment, DecayDiffersOnlyBelowTheNormalRange) {
    MIVORA_REQUIRE_FTZ_CONTROL();
    // y = 0.5x + 0.5y1: an impulse halves each sample, through the subnormal
    // range (from sample 1022 on) down to zero.
    auto decay = [](IirProcess& f, std::vector<double>& out) {
        f.setDcfLPF(0.5);
        out.push_back(f.cal(1.0));
        for (int i = 0; i < 1100; ++i) out.push_back(f.cal(0.0));
    };
    IirProcess ref, flushed;
    std::vector<double> refOut, ftzOut;
    refOut.reserve(1101);
    ftzOut.reserve(1101);
    decay(ref, refOut);
    {
        [[maybe_unused]] FlushToZero mode;
        decay(flushed, ftzOut);
    }
    int subnormals = 0;
    for (std::size_t i = 0; i < refOut.size(); ++i) {
        if (std::fpclassify(refOut[i]) == FP_SUBNORMAL) {
            ++subnormals;
            EXPECT_EQ(ftzOut[i], 0.0) << i;
        } else {
            EXPECT_TRUE(sameBits(refOut[i], ftzOut[i])) << i;
        }
    }
    EXPECT_EQ(subnormals, 52);
}

}  // namespace
