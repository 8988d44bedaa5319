// Every elementary function of Mivora::math, bit for bit against MPFR's
// correctly rounded result: each row's special values, then random inputs
// from its generators, then its hard draws. Zero mismatches allowed.
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

// The row's function from the portable build, or its own when it has none.
std::function<double(double)> portableOf(const UnaryRow& row) {
    auto f = portableUnary(row.name);
    return f ? f : row.ours;
}
std::function<double(double, double)> portableOf(const BinaryRow& row) {
    auto f = portableBinary(row.name);
    return f ? f : row.ours;
}
double call(const std::function<double(double)>& f, double x) { return f(x); }
double call(const std::function<double(double, double)>& f, std::pair<double, double> xy) {
    return f(xy.first, xy.second);
}
std::string arguments(double x) { return hex(x); }
std::string arguments(std::pair<double, double> xy) { return hex(xy.first) + ", " + hex(xy.second); }

constexpr int kReportedMismatches = 10;

}  // namespace

// Rows print as their names in test listings, test names and failures.
template <class In, class Fn, class Ref>
void PrintTo(const FunctionRow<In, Fn, Ref>& row, std::ostream* os) {
    *os << row.name;
}

namespace {

class Unary : public testing::TestWithParam<UnaryRow> {};
class Binary : public testing::TestWithParam<BinaryRow> {};

// Checks the row's specials, its random draws and its hard draws, one input
// at a time (long runs draw 10^8 and more).
template <class Row>
void expectBitForBit(const Row& row) {
    int mismatches = 0;
    const auto portable = portableOf(row);
    const auto check = [&](const auto& in) {
        const double got = call(row.ours, in), want = reference(row.reference, in), alt = call(portable, in);
        if (sameBits(got, want) && sameBits(alt, want)) return;
        if (++mismatches <= kReportedMismatches)
            ADD_FAILURE() << row.name << "(" << arguments(in) << ") = " << hex(got) << " (portable build "
                          << hex(alt) << "), correctly rounded " << hex(want);
    };
    Rng rng(seed());
    for (const auto& in : row.specials) check(in);
    const std::uint64_t n = samplesPerFunction();
    for (std::uint64_t i = 0; i < n; ++i) check(row.draws[i % row.draws.size()](rng));
    const std::uint64_t nHard = row.hard.empty() ? 0 : hardInputs();
    for (std::uint64_t i = 0; i < nHard; ++i) check(row.hard[i % row.hard.size()](rng));
    EXPECT_EQ(mismatches, 0) << "of " << row.specials.size() + n + nHard << " inputs";
}

TEST_P(Unary, MatchesMpfrBitForBit) { expectBitForBit(GetParam()); }
TEST_P(Binary, MatchesMpfrBitForBit) { expectBitForBit(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Math, Unary, testing::ValuesIn(joined(expLogUnaryRows(), trigUnaryRows())),
                         testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Math, Binary, testing::ValuesIn(joined(expLogBinaryRows(), trigBinaryRows())),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace mivora_math_test
