// Bit-for-bit comparison of Mivora::math against MPFR, table-driven: each
// function is a row naming our function, MPFR's, and how to draw inputs.
// MIVORA_MATH_SAMPLES sets the random inputs per function (default 100000),
// MIVORA_MATH_SEED the seed (default fixed, so every run checks the same),
// MIVORA_MATH_HARD_SHARE how many times fewer near-midpoint inputs (400).
#ifndef MIVORA_ACCURACY_HARNESS_HPP
#define MIVORA_ACCURACY_HARNESS_HPP

#include <mpfr.h>

#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace mivora_math_test {

using Rng = std::mt19937_64;
using Draw = std::function<double(Rng&)>;
using Draw2 = std::function<std::pair<double, double>(Rng&)>;
using Mpfr1 = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);
using Mpfr2 = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, mpfr_rnd_t);

// One function: ours, MPFR's, and how to draw its inputs (In is a double,
// or a pair for a function of two arguments).
template <class In, class Fn, class Ref>
struct FunctionRow {
    std::string name;
    Fn ours;
    Ref reference;
    std::vector<std::function<In(Rng&)>> draws;     // the random inputs are shared among these
    std::vector<In> specials;                       // checked in addition
    std::vector<std::function<In(Rng&)>> hard;   // 1/400 as many again (slow draws, e.g. nearMidpoint)
};
using UnaryRow = FunctionRow<double, std::function<double(double)>, Mpfr1>;
using BinaryRow = FunctionRow<std::pair<double, double>, std::function<double(double, double)>, Mpfr2>;

// Input generators.
Draw uniform(double lo, double hi);          // uniform in [lo, hi]
Draw logUniform(double lo, double hi);       // 0 < lo < hi: uniform exponent
Draw anyFinite();                            // random bits, every finite double
Draw signedAnyFinite(double maxAbs);         // random bits with |x| <= maxAbs
Draw2 pairOf(Draw x, Draw y);                // (x, y), x drawn first
// Arguments whose result lies within 2^-(53+bits) relative of a rounding
// boundary (a midpoint between doubles), found by filtering draws of `from`
// with MPFR: they drive the slow paths.
Draw nearMidpoint(Mpfr1 f, Draw from, int bits);
Draw2 nearMidpoint(Mpfr2 f, Draw2 from, int bits);

// Special values every unary function sees: zeros, infinities, NaN, the
// extremes of the subnormal and normal ranges, 1, -1.
std::vector<double> commonSpecials();

std::uint64_t samplesPerFunction();
std::uint64_t hardInputs();  // near-midpoint inputs per row: samples / MIVORA_MATH_HARD_SHARE (400)
std::uint64_t seed();

// The correctly rounded double of f(x) (or f(x, y)), by MPFR with the
// double format's exponent range and subnormals.
double reference(Mpfr1 f, double x);
double reference(Mpfr2 f, std::pair<double, double> xy);
bool sameBits(double a, double b);  // NaNs match any NaN

// a followed by b: rows of two families, special values of two kinds.
template <class T>
std::vector<T> joined(std::vector<T> a, const std::vector<T>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// The row's function from the portable build, when the row checks one of
// the entry points (empty otherwise): the entry points may run the FMA3
// build, and both must give the same bits.
std::function<double(double)> portableUnary(const std::string& name);
std::function<double(double, double)> portableBinary(const std::string& name);

// Rows of each family.
std::vector<UnaryRow> expLogUnaryRows();
std::vector<BinaryRow> expLogBinaryRows();
std::vector<UnaryRow> trigUnaryRows();
std::vector<BinaryRow> trigBinaryRows();

}  // namespace mivora_math_test

#endif
