// The filter object: order split and clamping, state operations, read-out, and
// the order reset every design performs before it writes its sections.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>
#include <numeric>
#include <tuple>

#include "operation_table.hpp"
#include "test_support.hpp"
#include "typical_driver.hpp"

using namespace mivora_test;

namespace {

// Coefficients 1..5 in section 0, 6..10 in section 1, 11..13 first-order.
IirProcess marked(int order) { return holding(order, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}); }

TEST(Object, OrderSplitAndClampingForEveryEntryPoint) {
    const int cases[][4] = {  // requested, order, even, odd
        {5, 5, 4, 1},  {4, 4, 4, 0},   {3, 3, 2, 1},    {2, 2, 2, 0},      {1, 1, 0, 1},
        {0, 0, 0, 0},  {-1, -1, 0, -1}, {-2, -2, -2, 0}, {-3, -3, -2, -1}, {-5, -5, -4, -1},
        {6, 5, 4, 1},  {8, 5, 4, 1},   {1 << 30, 5, 4, 1}, {-6, -5, -4, -1}, {INT_MIN, -5, -4, -1},
    };
    for (const auto& c : cases) {
        IirProcess byCtor(c[0]), byAllocCtor(nullptr, c[0]), bySet;
        bySet.setOrder(c[0]);
        for (const IirProcess* f : {&byCtor, &byAllocCtor, &bySet})
            EXPECT_TRUE(f->getOrder() == c[1] && f->getEvenOrder() == c[2] && f->getOddOrder() == c[3]) << c[0];
    }
}

// Placed in caller memory full of garbage, so that the zeroing shows.
TEST(Object, ConstructionInCallerMemoryZeroesEverythingAndStoresTheAllocator) {
    alignas(IirProcess) unsigned char storage[sizeof(IirProcess)];
    ASSERT_EQ(IirProcess::CalculateWorkSize(), sizeof(IirProcess));
    std::memset(storage, 0xA5, sizeof storage);
    auto* alloc = reinterpret_cast<Mivora::VqMemAlloc*>(0x1000);
    const IirProcess* five = new (storage) IirProcess(alloc, 5);
    EXPECT_EQ(five->getMemAlloc(), alloc);
    EXPECT_EQ(raw(*five), std::vector<double>(raw(*five).size(), 0.0));  // every double, read out or not
    IirProcess withAlloc(alloc), plain;
    EXPECT_TRUE(withAlloc.getMemAlloc() == alloc && withAlloc.getOrder() == 2);
    EXPECT_TRUE(plain.getMemAlloc() == nullptr && plain.getOrder() == 2);
}

TEST(Object, SetOrderClearAndClearDelayTouchOnlyWhatTheyName) {
    IirProcess f = marked(5);
    f.setDelay(2.0);
    const std::vector<double> all = coefs(f);

    IirProcess reordered = f;
    for (int order : {0, -3, 1, 5}) reordered.setOrder(order);
    EXPECT_EQ(raw(reordered), raw(f));

    IirProcess cleared = f;
    cleared.clear();
    EXPECT_EQ(coefs(cleared), (std::vector<double>{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 11, 12, 13}));
    EXPECT_EQ(state(cleared), (std::vector<double>{0, 0, 0, 0, 0, 0, 0, 0, 2, 2}));

    IirProcess delayCleared = f;
    delayCleared.clearDelay();
    EXPECT_EQ(coefs(delayCleared), all);
    EXPECT_EQ(state(delayCleared), std::vector<double>(10, 0.0));
}

// At each order, getCoef writes exactly the running sections (five zeros at
// even order 0, the first-order three after the sections at odd orders) and
// nothing past them; setDelay fills the running sections' state and always
// the first-order state.
TEST(Object, GetCoefAndSetDelayCoverExactlyTheRunningSections) {
    constexpr double U = 12345.0;  // untouched marker
    const std::tuple<int, Values, Values> cases[] = {  // order, getCoef, state after setDelay(7)
        {0, {0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 0, 0, 0, 7, 7}},
        {1, {11, 12, 13, 0, 0}, {0, 0, 0, 0, 0, 0, 0, 0, 7, 7}},
        {2, {1, 2, 3, 4, 5}, {7, 7, 7, 7, 0, 0, 0, 0, 7, 7}},
        {3, {1, 2, 3, 4, 5, 11, 12, 13}, {7, 7, 7, 7, 0, 0, 0, 0, 7, 7}},
        {4, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, {7, 7, 7, 7, 7, 7, 7, 7, 7, 7}},
        {5, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}, {7, 7, 7, 7, 7, 7, 7, 7, 7, 7}},
        {-2, {}, {0, 0, 0, 0, 0, 0, 0, 0, 7, 7}},
        {-3, {11, 12, 13}, {0, 0, 0, 0, 0, 0, 0, 0, 7, 7}},
    };
    for (const auto& [order, written, filled] : cases) {
        IirProcess f = marked(order);
        std::vector<double> out(IirProcess::maxCoefCount + 4, U);  // guard entries past the maximum
        f.getCoef(out.data());
        std::vector<double> expected = written;
        expected.resize(out.size(), U);
        EXPECT_EQ(out, expected) << "order " << order;
        f.setDelay(7.0);
        EXPECT_EQ(state(f), filled) << "order " << order;
    }
}

// Every design of the operation table, with several argument sets, from every
// order: at the order the object holds a design keeps all state (a retune
// without a click); at another it zeroes the second-order state and
// coefficients. It writes the sections its new order runs (the first-order
// one only at odd orders) and nothing else; the first-order state is never
// cleared. The corner shelves perform no reset and write section 0 alone.
TEST(Object, DesignsResetTheOrderAndWriteOnlyTheirSections) {
    TypicalDriver driver;
    IirProcess marks;
    std::vector<double> before = raw(marks);
    std::iota(before.begin(), before.end(), 1.0);
    for (int round = 0; round < 6; ++round)
        for (const Operation<TypicalDriver>& op : kOperations<TypicalDriver>)
            for (int start = -5; start <= 5 && op.kind == Kind::Design; ++start) {
                SCOPED_TRACE(::testing::Message() << op.name << " round " << round << " from order " << start);
                IirProcess f(start), want(start);
                setRaw(f, before);
                op.run(f, driver);
                const bool corner = op.mayChange == kCoef2;
                const int order = f.getOrder();
                EXPECT_TRUE(!corner || order == start);
                setRaw(want, before);
                for (Field k : {kDelayField, kCoefField})
                    if (order != start) std::fill_n(field(want, k).first, field(want, k).second, 0.0);
                std::copy_n(field(f, kCoefField).first, corner ? 5 : 5 * (std::max(order, 0) / 2), field(want, kCoefField).first);
                if (!corner && order % 2 != 0) std::copy_n(field(f, kCoef1stField).first, 3, field(want, kCoef1stField).first);
                EXPECT_EQ(raw(f), raw(want));
            }
}

}  // namespace
