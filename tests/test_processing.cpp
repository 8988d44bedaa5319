// Sample processing: which stages run, and the equivalences a streaming user
// relies on (in place, blocks vs single samples, any block split).
#include <gtest/gtest.h>

#include <random>

#include "plain_filter.hpp"
#include "test_support.hpp"

using namespace mivora_test;

namespace {

// Distinct pure gains per stage make the output name the stages that ran.
IirProcess gainStages(int order) { return holding(order, {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 5, 0, 0}); }

// doProcess runs the same stages: it matches cal at every order below.
TEST(Processing, StagesThatRunFollowTheOrder) {
    const int cases[][2] = {{0, 1}, {1, 5}, {2, 2}, {3, 10}, {4, 6}, {5, 30}, {-1, 5}, {-2, 1}, {-5, 5}, {7, 30}};
    for (const auto& [order, gain] : cases) {
        IirProcess f = gainStages(order);
        for (double x : {1.0, -0.5, 0.25}) EXPECT_EQ(f.cal(x), x * gain) << "order " << order;
    }
}

TEST(Processing, CalWithOrderArgumentChoosesSecondOrderSections) {
    const int cases[][3] = {{4, 2, 2}, {4, 4, 6}, {2, 4, 6}, {4, 0, 1}, {4, 1, 1}, {0, 4, 1},  // object order,
                            {1, 4, 5}, {5, 2, 10}, {-2, 4, 6}, {4, 99, 6}, {4, -99, 1}};  // argument, gain
    for (const auto& c : cases) {
        IirProcess f = gainStages(c[0]);
        EXPECT_EQ(f.cal(c[1], 1.5), 1.5 * c[2]) << c[0] << "/" << c[1];
    }
}

TEST(Processing, FreshObjectOutputsSilenceButRecordsInputsAndZeroCountTouchesNothing) {
    IirProcess f;
    EXPECT_EQ(f.cal(0.75), 0.0);
    EXPECT_EQ(f.cal(3), 0.0);
    float buf[1] = {42.0f};
    f.doProcess(buf, buf, 0);
    f.doProcess(nullptr, nullptr, 0);
    EXPECT_EQ(buf[0], 42.0f);
    EXPECT_EQ(state(f), (std::vector<double>{3, 0.75, 0, 0, 0, 0, 0, 0, 0, 0}));
}

// A busy order-5 filter with non-trivial feedback and state in every stage.
IirProcess busyFilter(int order, unsigned seed) {
    std::mt19937 rng(seed);
    std::uniform_real_distribution<double> u(-0.4, 0.4);
    IirProcess f = holding(order, {1 + u(rng), u(rng), u(rng), 1.2 + u(rng) * 0.1, -0.7 + u(rng) * 0.1,
                                   0.5 + u(rng), u(rng), u(rng), 0.9 + u(rng) * 0.1, -0.5 + u(rng) * 0.1,
                                   0.8 + u(rng), u(rng), 0.6 + u(rng) * 0.1});
    f.setDelay(0.01);
    return f;
}

TEST(Processing, EverySampleFollowsTheFusedChainToTheBit) {
    for (int order = 1; order <= 5; ++order) {
        IirProcess f = busyFilter(order, 9);
        PlainFilter p = plainCopy(f);
        for (float x : noise(300, 1)) ASSERT_EQ(f.cal(static_cast<double>(x)), p.step(x)) << order;
        EXPECT_EQ(state(f), p.stateValues());
    }
}

TEST(Processing, InPlaceSplitBlocksAndCalAllAgree) {
    for (int order = -5; order <= 5; ++order) {
        SCOPED_TRACE(order);
        const std::vector<float> in = noise(1001, 7u + static_cast<unsigned>(order + 5));

        IirProcess separate = busyFilter(order, 3);
        std::vector<float> outSeparate(in.size());
        std::vector<float> inCopy = in;
        separate.doProcess(inCopy.data(), outSeparate.data(), static_cast<unsigned>(in.size()));
        EXPECT_EQ(inCopy, in) << "input array modified";

        // In place, cut into blocks of any size.
        IirProcess split = busyFilter(order, 3);
        std::vector<float> pieces = in;
        std::size_t pos = 0;
        for (std::size_t len : {1u, 2u, 63u, 64u, 65u, 300u, 506u}) {
            split.doProcess(pieces.data() + pos, pieces.data() + pos, static_cast<unsigned>(len));
            pos += len;
        }
        ASSERT_EQ(pos, in.size());
        EXPECT_EQ(pieces, outSeparate);
        EXPECT_EQ(state(split), state(separate));

        IirProcess single = busyFilter(order, 3);
        for (std::size_t i = 0; i < in.size(); ++i)
            EXPECT_EQ(static_cast<float>(single.cal(static_cast<double>(in[i]))), outSeparate[i]) << i;
        EXPECT_EQ(state(single), state(separate));

        // cal(int) is cal of the exact double.
        for (int x : {3, -7, 2147483647, -2147483647 - 1}) EXPECT_EQ(single.cal(x), separate.cal(static_cast<double>(x)));
        EXPECT_EQ(state(single), state(separate));
    }
}

TEST(Processing, NonFiniteSamplesStayUntilTheStateIsReplaced) {
    IirProcess f = busyFilter(2, 5);
    EXPECT_TRUE(std::isnan(f.cal(std::nan(""))));
    EXPECT_TRUE(std::isnan(f.cal(0.0)));
    f.clearDelay();
    EXPECT_EQ(f.cal(0.0), 0.0);
    // Beyond the float range becomes an infinity in the output block.
    IirProcess big = holding(2, {1e300});
    float x = 1.0f;
    big.doProcess(&x, &x, 1);
    EXPECT_TRUE(std::isinf(x));
}

}  // namespace
