// The filter object: order split and clamping, state operations, read-out, and
// the order reset every design performs before it writes its sections.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>
#include <numeric>

#include "test_support.hpp"

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
    alignas(IirProcess) unsigned char storage[512];
    ASSERT_EQ(IirProcess::CalculateWorkSize(), sizeof(IirProcess));
    ASSERT_LE(sizeof(IirProcess), sizeof storage);
    std::memset(storage, 0xA5, sizeof storage);
    auto* alloc = reinterpret_cast<Mivora::VqMemAlloc*>(0x1000);
    const IirProcess* five = new (storage) IirProcess(alloc, 5);  // order 5 reads every coefficient
    EXPECT_EQ(five->getMemAlloc(), alloc);
    EXPECT_EQ(coefs(*five), std::vector<double>(13, 0.0));
    EXPECT_EQ(state(*five), std::vector<double>(10, 0.0));
    IirProcess withAlloc(alloc), plain;
    EXPECT_TRUE(withAlloc.getMemAlloc() == alloc && withAlloc.getOrder() == 2 && plain.getMemAlloc() == nullptr);
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

TEST(Object, SetDelayFillsRunningSectionsAndTheFirstOrderState) {
    const std::pair<int, std::vector<double>> cases[] = {
        {2, {7, 7, 7, 7, 0, 0, 0, 0, 7, 7}},
        {5, {7, 7, 7, 7, 7, 7, 7, 7, 7, 7}},
        {1, {0, 0, 0, 0, 0, 0, 0, 0, 7, 7}},
        {-4, {0, 0, 0, 0, 0, 0, 0, 0, 7, 7}},
    };
    for (const auto& [order, expected] : cases) {
        IirProcess f(order);
        f.setDelay(7.0);
        EXPECT_EQ(state(f), expected) << "order " << order;
    }
}

TEST(Object, GetCoefWritesExactlyTheRunningSections) {
    constexpr double U = 12345.0;  // untouched marker
    const std::pair<int, std::vector<double>> cases[] = {
        {0, {0, 0, 0, 0, 0}},
        {1, {11, 12, 13, 0, 0}},
        {2, {1, 2, 3, 4, 5}},
        {3, {1, 2, 3, 4, 5, 11, 12, 13}},
        {4, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}},
        {5, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}},
        {-2, {}},
        {-3, {11, 12, 13}},
        {9, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}},
    };
    for (const auto& [order, written] : cases) {
        std::vector<double> out(IirProcess::maxCoefCount + 4, U);  // guard entries past the maximum
        marked(order).getCoef(out.data());
        std::vector<double> expected = written;
        expected.resize(out.size(), U);
        EXPECT_EQ(out, expected) << "order " << order;
    }
}

// Every design with the order it builds; K marks the corner shelves, which
// perform no reset and write section 0 alone.
constexpr int K = INT_MIN;
struct Design {
    const char* call;
    void (*apply)(IirProcess&);
    int order;
};
#define D(order, call) Design{MIVORA_CALL(call), order}
const Design kDesigns[] = {
    D(2, setCoefPDFPQ(1e3, 48e3, 6, 1)), D(2, setCoefPDFCQ(1e3, 48e3, -6, 1)), D(2, setCoef(1e3, 48e3, 6, 1)),
    D(2, setCoefLOWS_A(1e3, 6, 48e3)), D(2, setCoefLOWS_B(1e3, -6, 48e3)), D(2, setCoefHIGS_A(1e3, 6, 48e3)),
    D(2, setCoefHIGS_B(1e3, -6, 48e3)), D(2, setCoefLOWS(1e3, 6, 48e3)), D(2, setCoefHIGS(1e3, 6, 48e3, 0)),
    D(2, setCoefLOWS_2A(1e3, 6, 48e3)), D(2, setCoefLOWS_2B(1e3, -6, 48e3)), D(2, setCoefHIGS_2A(1e3, 6, 48e3)),
    D(2, setCoefHIGS_2B(1e3, -6, 48e3)), D(2, setCoefLOWS_PM_2A(1e3, 6, 48e3)),
    D(2, setCoefLOWS_PM_2B(1e3, -6, 48e3)), D(2, setCoefHIGS_PM_2A(1e3, 6, 48e3)),
    D(2, setCoefHIGS_PM_2B(1e3, -6, 48e3)), D(2, setCoefLOWS_2(1e3, 6, 48e3, 1)), D(2, setCoefHIGS_2(1e3, 6, 48e3)),
    D(K, setCoefLowShelf_C(48e3, 1e3, 6, 0.3, -3)), D(K, setCoefHiShelf_C(48e3, 1e3, 6, 0.3, -3)),
    D(K, setCoefLowShelf_2C(48e3, 1e3, 6, 0.3, -3)), D(K, setCoefHiShelf_2C(48e3, 1e3, 6, 0.3, -3)),
    D(3, setCoefHPF(3, 1e3, 48e3)), D(5, setCoefLPF(5, 1e3, 48e3)), D(2, setCoefHPF(1e3, 48e3)),
    D(2, setCoefLPF(1e3, 48e3)), D(0, setCoefHPF(0, 1e3, 48e3)), D(-3, setCoefLPF(-3, 1e3, 48e3)),
    D(5, setCoefHPF(8, 1e3, 48e3)), D(-4, setCoefLPF(-4, 1e3, 48e3)), D(3, setCoefHPFChev(3, 1e3, 1, 48e3)),
    D(4, setCoefLPFChev(4, 1e3, 1, 48e3)), D(4, setCoefHPFIChev(4, 1e3, 400, 48e3)),
    D(3, setCoefLPFIChev(3, 1e3, 400, 48e3)), D(2, setCoefHPFQfct(1e3, 0.7, 48e3)),
    D(2, setCoefLPFQfct(1e3, 0.7, 48e3)), D(2, setCoefBPFQfct(1e3, 2, 48e3)), D(2, setCoefBPF_Q(1e3, 2, 48e3)),
    D(2, setCoefBPF(1, 5e2, 2e3, 48e3)), D(4, setCoefBEF(2, 5e2, 2e3, 48e3)), D(4, setCoefBPF(3, 5e2, 2e3, 48e3)),
    D(0, setCoefBEF(0, 5e2, 2e3, 48e3)), D(4, setCoefBPFChev(2, 5e2, 2e3, 1, 48e3)),
    D(2, setCoefBEFChev(1, 5e2, 2e3, 1, 48e3)), D(2, setCoefBPFIChev(1, 5e2, 2e3, 400, 48e3)),
    D(4, setCoefBEFIChev(2, 5e2, 2e3, 400, 48e3)), D(1, setDcfLPF(300, 48e3)), D(1, setDcfLPF(0.2)),
    D(1, setDcfHPF(10, 48e3)), D(1, setDcfHPF(0.01)), D(2, setAPF1st(700, 48e3)), D(2, setAPF2nd(700, 48e3)),
};
#undef D

// At the order the object holds a design keeps all state (a retune without a
// click); at another it zeroes the second-order state and coefficients. It
// writes the sections its order runs and nothing else; the first-order state
// is never cleared.
TEST(Object, DesignsResetTheOrderAndWriteOnlyTheirSections) {
    IirProcess marks;
    std::vector<double> before = raw(marks);
    std::iota(before.begin(), before.end(), 1.0);
    for (const Design& d : kDesigns) {
        for (int start : {-5, 0, 1, 2, 3, 4, 5}) {
            SCOPED_TRACE(::testing::Message() << d.call << " from order " << start);
            IirProcess f(start), want(start);
            setRaw(f, before);
            d.apply(f);
            const bool resets = d.order != K;
            EXPECT_EQ(f.getOrder(), resets ? d.order : start);
            // Expected: the marks, second-order state and coefficients zeroed
            // by a reset, then the sections the design writes as it wrote them.
            setRaw(want, before);
            auto [delay, delayCount] = field(want, kDelayField);
            auto [coef, coefCount] = field(want, kCoefField);
            if (resets && d.order != start) std::fill_n(delay, delayCount, 0.0), std::fill_n(coef, coefCount, 0.0);
            const int sections = resets ? std::max(d.order, 0) / 2 : 1;
            std::copy_n(field(f, kCoefField).first, 5 * sections, coef);
            if (resets && d.order % 2 != 0) std::copy_n(field(f, kCoef1stField).first, 3, field(want, kCoef1stField).first);
            EXPECT_EQ(raw(f), raw(want));
        }
    }
}

}  // namespace
