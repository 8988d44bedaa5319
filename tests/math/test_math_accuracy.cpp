// Every elementary function of Mivora::math, bit for bit against MPFR's
// correctly rounded result: random inputs from each row's generators, then
// the row's special values. Zero mismatches allowed.
#include <gtest/gtest.h>

#include <cstdio>

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

class Unary : public testing::TestWithParam<UnaryRow> {};
class Binary : public testing::TestWithParam<BinaryRow> {};

TEST_P(Unary, MatchesMpfrBitForBit) {
    const UnaryRow& row = GetParam();
    Rng rng(seed());
    std::vector<double> inputs = row.specials;
    const std::uint64_t n = samplesPerFunction();
    for (std::uint64_t i = 0; i < n; ++i) inputs.push_back(row.draws[i % row.draws.size()](rng));
    for (std::uint64_t i = 0; !row.hard.empty() && i < n / kHardShare; ++i)
        inputs.push_back(row.hard[i % row.hard.size()](rng));
    int mismatches = 0;
    for (double x : inputs) {
        const double got = row.ours(x), want = reference(row.reference, x);
        if (sameBits(got, want)) continue;
        if (++mismatches <= kReportedMismatches)
            ADD_FAILURE() << row.name << "(" << hex(x) << ") = " << hex(got) << ", correctly rounded " << hex(want);
    }
    EXPECT_EQ(mismatches, 0) << "of " << inputs.size() << " inputs";
}

TEST_P(Binary, MatchesMpfrBitForBit) {
    const BinaryRow& row = GetParam();
    Rng rng(seed());
    std::vector<std::pair<double, double>> inputs = row.specials;
    const std::uint64_t n = samplesPerFunction();
    for (std::uint64_t i = 0; i < n; ++i) inputs.push_back(row.draws[i % row.draws.size()](rng));
    for (std::uint64_t i = 0; !row.hard.empty() && i < n / kHardShare; ++i)
        inputs.push_back(row.hard[i % row.hard.size()](rng));
    int mismatches = 0;
    for (const auto& [x, y] : inputs) {
        const double got = row.ours(x, y), want = reference(row.reference, x, y);
        if (sameBits(got, want)) continue;
        if (++mismatches <= kReportedMismatches)
            ADD_FAILURE() << row.name << "(" << hex(x) << ", " << hex(y) << ") = " << hex(got)
                          << ", correctly rounded " << hex(want);
    }
    EXPECT_EQ(mismatches, 0) << "of " << inputs.size() << " inputs";
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Unary);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(Binary);
INSTANTIATE_TEST_SUITE_P(Math, Unary, testing::ValuesIn(joined(expLogUnaryRows(), trigUnaryRows())),
                         rowName<UnaryRow>);
INSTANTIATE_TEST_SUITE_P(Math, Binary, testing::ValuesIn(joined(expLogBinaryRows(), trigBinaryRows())),
                         rowName<BinaryRow>);

}  // namespace
}  // namespace mivora_math_test
