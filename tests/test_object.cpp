// The filter object: order split and clamping, state operations, read-out.
#include <gtest/gtest.h>

#include <new>

#include "test_support.hpp"

using namespace mivora_test;

namespace {

struct SplitCase {
    int requested, order, even, odd;
};

TEST(Object, OrderSplitAndClampingForEveryEntryPoint) {
    const SplitCase cases[] = {
        {5, 5, 4, 1},  {4, 4, 4, 0},   {3, 3, 2, 1},   {2, 2, 2, 0},    {1, 1, 0, 1},
        {0, 0, 0, 0},  {-1, -1, 0, -1}, {-2, -2, -2, 0}, {-3, -3, -2, -1}, {-5, -5, -4, -1},
        {6, 5, 4, 1},  {8, 5, 4, 1},   {1 << 30, 5, 4, 1}, {-6, -5, -4, -1}, {INT32_MIN, -5, -4, -1},
    };
    for (const SplitCase& c : cases) {
        SCOPED_TRACE(c.requested);
        IirProcess byCtor(c.requested);
        IirProcess byAllocCtor(nullptr, c.requested);
        IirProcess bySet;
        bySet.setOrder(c.requested);
        for (const IirProcess* f : {&byCtor, &byAllocCtor, &bySet}) {
            EXPECT_EQ(f->getOrder(), c.order);
            EXPECT_EQ(f->getEvenOrder(), c.even);
            EXPECT_EQ(f->getOddOrder(), c.odd);
        }
    }
}

TEST(Object, ConstructionZeroesEverythingAndStoresTheAllocator) {
    auto* alloc = reinterpret_cast<Mivora::VqMemAlloc*>(0x1000);
    IirProcess withAlloc(alloc);
    IirProcess withBoth(alloc, 3);
    IirProcess plain;
    EXPECT_EQ(withAlloc.getMemAlloc(), alloc);
    EXPECT_EQ(withBoth.getMemAlloc(), alloc);
    EXPECT_EQ(plain.getMemAlloc(), nullptr);
    EXPECT_EQ(plain.getOrder(), 2);
    EXPECT_EQ(withAlloc.getOrder(), 2);
    // Order 5 reads every coefficient, first-order ones included.
    IirProcess five(5);
    for (double c : coefs(five)) EXPECT_EQ(c, 0.0);
    for (double s : state(five)) EXPECT_EQ(s, 0.0);
    EXPECT_EQ(five.cal(1.0), 0.0);
}

TEST(Object, WorksPlacedInCallerMemory) {
    alignas(IirProcess) unsigned char storage[512];
    ASSERT_LE(IirProcess::CalculateWorkSize(), sizeof storage);
    EXPECT_EQ(IirProcess::CalculateWorkSize(), sizeof(IirProcess));
    IirProcess* f = new (storage) IirProcess(4);
    EXPECT_EQ(f->getOrder(), 4);
    f->setCoefPDFPQ(1000.0, 48000.0, 6.0, 1.0);
    EXPECT_NEAR(f->power(1000.0, 48000.0), 6.0, 1e-9);
    f->~IirProcess();
}

TEST(Object, SetOrderNeverClears) {
    IirProcess f;
    setSection(f, 0, 1, 2, 3, 4, 5);
    setSection(f, 1, 6, 7, 8, 9, 10);
    setFirstOrder(f, 11, 12, 13);
    f.setDelay(0.5);
    for (int order : {0, -3, 1, 5}) f.setOrder(order);
    const std::vector<double> expected = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
    EXPECT_EQ(coefs(f), expected);
    EXPECT_EQ(state(f)[0], 0.5);
}

TEST(Object, ClearAndClearDelayTouchOnlyWhatTheyName) {
    IirProcess f(5);
    setSection(f, 0, 1, 2, 3, 4, 5);
    setSection(f, 1, 6, 7, 8, 9, 10);
    setFirstOrder(f, 11, 12, 13);
    f.setDelay(2.0);

    IirProcess cleared = f;
    cleared.clear();
    EXPECT_EQ(coefs(cleared), (std::vector<double>{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 11, 12, 13}));
    EXPECT_EQ(state(cleared), (std::vector<double>{0, 0, 0, 0, 0, 0, 0, 0, 2, 2}));

    IirProcess delayCleared = f;
    delayCleared.clearDelay();
    EXPECT_EQ(coefs(delayCleared), coefs(f));
    EXPECT_EQ(state(delayCleared), std::vector<double>(10, 0.0));
}

TEST(Object, SetDelayFillsRunningSectionsAndTheFirstOrderState) {
    struct Case {
        int order;
        std::vector<double> expected;
    };
    const Case cases[] = {
        {2, {7, 7, 7, 7, 0, 0, 0, 0, 7, 7}},
        {5, {7, 7, 7, 7, 7, 7, 7, 7, 7, 7}},
        {1, {0, 0, 0, 0, 0, 0, 0, 0, 7, 7}},
        {-4, {0, 0, 0, 0, 0, 0, 0, 0, 7, 7}},
    };
    for (const Case& c : cases) {
        IirProcess f(c.order);
        f.setDelay(7.0);
        EXPECT_EQ(state(f), c.expected) << "order " << c.order;
    }
}

TEST(Object, GetCoefWritesExactlyTheRunningSections) {
    constexpr double U = 12345.0;  // untouched marker
    struct Case {
        int order;
        std::vector<double> expected;
    };
    const Case cases[] = {
        {0, {0, 0, 0, 0, 0, U, U, U, U, U, U, U, U}},
        {1, {11, 12, 13, 0, 0, U, U, U, U, U, U, U, U}},
        {2, {1, 2, 3, 4, 5, U, U, U, U, U, U, U, U}},
        {3, {1, 2, 3, 4, 5, 11, 12, 13, U, U, U, U, U}},
        {4, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, U, U, U}},
        {5, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}},
        {-2, {U, U, U, U, U, U, U, U, U, U, U, U, U}},
        {-3, {11, 12, 13, U, U, U, U, U, U, U, U, U, U}},
        {9, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}},
    };
    for (const Case& c : cases) {
        IirProcess f(c.order);
        setSection(f, 0, 1, 2, 3, 4, 5);
        setSection(f, 1, 6, 7, 8, 9, 10);
        setFirstOrder(f, 11, 12, 13);
        // Guard entries past the documented maximum.
        std::vector<double> out(IirProcess::maxCoefCount + 4, U);
        f.getCoef(out.data());
        std::vector<double> expected = c.expected;
        expected.resize(out.size(), U);
        EXPECT_EQ(out, expected) << "order " << c.order;
    }
}

TEST(Object, DesignAtAnotherOrderClearsSecondOrderPartsOnly) {
    IirProcess f(5);
    setSection(f, 1, 6, 7, 8, 9, 10);
    setFirstOrder(f, 11, 12, 13);
    f.setDelay(3.0);
    f.setCoefPDFPQ(1000.0, 48000.0, 3.0, 1.0);  // order 2
    EXPECT_EQ(f.getOrder(), 2);
    EXPECT_EQ(state(f), (std::vector<double>{0, 0, 0, 0, 0, 0, 0, 0, 3, 3}));
    f.setOrder(5);
    const std::vector<double> c = coefs(f);
    EXPECT_EQ(std::vector<double>(c.begin() + 5, c.begin() + 10), std::vector<double>(5, 0.0));
    EXPECT_EQ(std::vector<double>(c.begin() + 10, c.end()), (std::vector<double>{11, 12, 13}));
}

}  // namespace
