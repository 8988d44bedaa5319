// Every elementary function of Mivora::math, bit for bit against MPFR's
// correctly rounded result: random inputs from each row's generators, then
// the row's special values. Zero mismatches allowed.
#include <gtest/gtest.h>

#include <cstdio>
#include <ostream>

#include "accuracy_harness.hpp"

namespace mivora_math_test {
namespace {

std::string hex(double d) {
    char buf[40];
    std::snprintf(buf, sizeof buf, "%a", d);
    return buf;
}

template <class Row>
std::vector<Row> joined(std::vector<Row> a, const std::vector<Row>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

template <class Row>
std::string rowName(const testing::TestParamInfo<Row>& info) { return info.param.name; }

constexpr int kReportedMismatches = 10;

}  // namespace

// Rows print as their names in test listings and failures.
void PrintTo(const UnaryRow& row, std::ostream* os) { *os << row.name; }
void PrintTo(const BinaryRow& row, std::ostream* os) { *os << row.name; }

namespace {

class Unary : public testing::TestWithParam<UnaryRow> {};
class Binary : public testing::TestWithParam<BinaryRow> {};

// Runs check on the row's specials, its random draws and its hard draws,
// one input at a time (long runs draw 10^8 and more); returns the count.
template <class Input, class Draws, class Check>
std::uint64_t forEachInput(const std::vector<Input>& specials, const Draws& draws, const Draws& hard, Check check) {
    Rng rng(seed());
    for (const Input& in : specials) check(in);
    const std::uint64_t n = samplesPerFunction();
    for (std::uint64_t i = 0; i < n; ++i) check(draws[i % draws.size()](rng));
    const std::uint64_t nHard = hard.empty() ? 0 : n / kHardShare;
    for (std::uint64_t i = 0; i < nHard; ++i) check(hard[i % hard.size()](rng));
    return specials.size() + n + nHard;
}

TEST_P(Unary, MatchesMpfrBitForBit) {
    const UnaryRow& row = GetParam();
    int mismatches = 0;
    const std::uint64_t count = forEachInput(row.specials, row.draws, row.hard, [&](double x) {
        const double got = row.ours(x), want = reference(row.reference, x);
        if (sameBits(got, want)) return;
        if (++mismatches <= kReportedMismatches)
            ADD_FAILURE() << row.name << "(" << hex(x) << ") = " << hex(got) << ", correctly rounded " << hex(want);
    });
    EXPECT_EQ(mismatches, 0) << "of " << count << " inputs";
}

TEST_P(Binary, MatchesMpfrBitForBit) {
    const BinaryRow& row = GetParam();
    int mismatches = 0;
    const std::uint64_t count = forEachInput(row.specials, row.draws, row.hard, [&](std::pair<double, double> in) {
        const auto [x, y] = in;
        const double got = row.ours(x, y), want = reference(row.reference, x, y);
        if (sameBits(got, want)) return;
        if (++mismatches <= kReportedMismatches)
            ADD_FAILURE() << row.name << "(" << hex(x) << ", " << hex(y) << ") = " << hex(got)
                          << ", correctly rounded " << hex(want);
    });
    EXPECT_EQ(mismatches, 0) << "of " << count << " inputs";
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Unary);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Binary);
INSTANTIATE_TEST_SUITE_P(Math, Unary, testing::ValuesIn(joined(expLogUnaryRows(), trigUnaryRows())),
                         rowName<UnaryRow>);
INSTANTIATE_TEST_SUITE_P(Math, Binary, testing::ValuesIn(joined(expLogBinaryRows(), trigBinaryRows())),
                         rowName<BinaryRow>);

}  // namespace
}  // namespace mivora_math_test
