// Input generators and the MPFR reference of accuracy_harness.hpp.
#include "accuracy_harness.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace mivora_math_test {

namespace {

std::uint64_t envCount(const char* name, std::uint64_t fallback) {
    const char* v = std::getenv(name);
    if (v == nullptr || *v == '\0') return fallback;
    return std::strtoull(v, nullptr, 10);
}

}  // namespace

Draw uniform(double lo, double hi) {
    return [=](Rng& r) { return std::uniform_real_distribution<double>(lo, hi)(r); };
}

Draw logUniform(double lo, double hi) {
    return [=](Rng& r) {
        const double e = std::uniform_real_distribution<double>(std::log2(lo), std::log2(hi))(r);
        return std::exp2(e);
    };
}

Draw signedAnyFinite(double maxAbs) {
    return [=](Rng& r) {
        for (;;) {
            const std::uint64_t bits = r();
            double d;
            std::memcpy(&d, &bits, sizeof d);
            if (std::fabs(d) <= maxAbs) return d;
        }
    };
}

Draw anyFinite() { return signedAnyFinite(std::numeric_limits<double>::max()); }

Draw2 pairOf(Draw x, Draw y) {
    return [=](Rng& r) {
        const double a = x(r);
        return std::make_pair(a, y(r));
    };
}

namespace {

// Whether v lies within 2^-(53+bits) relative of a midpoint between doubles.
bool nearAMidpoint(mpfr_srcptr v, int bits) {
    if (!mpfr_number_p(v) || mpfr_zero_p(v)) return false;
    mpfr_t m;
    mpfr_init2(m, 54);
    mpfr_set(m, v, MPFR_RNDN);  // the nearest 54-bit number
    bool near = false;
    if (mpfr_min_prec(m) == 54) {  // a midpoint: 54 significant bits
        mpfr_sub(m, v, m, MPFR_RNDN);
        near = mpfr_zero_p(m) || mpfr_get_exp(m) <= mpfr_get_exp(v) - 53 - bits;
    }
    mpfr_clear(m);
    return near;
}

// f at the input, rounded to v's precision; returns MPFR's ternary value.
int evaluate(mpfr_ptr v, Mpfr1 f, double x) {
    mpfr_t a;
    mpfr_init2(a, 53);
    mpfr_set_d(a, x, MPFR_RNDN);
    const int t = f(v, a, MPFR_RNDN);
    mpfr_clear(a);
    return t;
}

int evaluate(mpfr_ptr v, Mpfr2 f, std::pair<double, double> xy) {
    mpfr_t a, b;
    mpfr_inits2(53, a, b, static_cast<mpfr_ptr>(nullptr));
    mpfr_set_d(a, xy.first, MPFR_RNDN);
    mpfr_set_d(b, xy.second, MPFR_RNDN);
    const int t = f(v, a, b, MPFR_RNDN);
    mpfr_clears(a, b, static_cast<mpfr_ptr>(nullptr));
    return t;
}

constexpr int kMaxTries = 1 << 20;

template <class F, class In>
std::function<In(Rng&)> nearMidpointOf(F f, std::function<In(Rng&)> from, int bits) {
    return [=](Rng& r) {
        mpfr_t v;
        mpfr_init2(v, 53 + bits + 40);
        In in{};
        for (int tries = 0; tries < kMaxTries; ++tries) {
            in = from(r);
            evaluate(v, f, in);
            if (nearAMidpoint(v, bits)) break;
        }
        mpfr_clear(v);
        return in;
    };
}

template <class F, class In>
double correctlyRounded(F f, In in) {
    // MPFR's exponent range made the double format's, once, so that y
    // overflows, underflows and (with mpfr_subnormalize) rounds as a double.
    [[maybe_unused]] static const bool doubleRange = mpfr_set_emin(-1073) == 0 && mpfr_set_emax(1024) == 0;
    mpfr_t y;
    mpfr_init2(y, 53);
    mpfr_subnormalize(y, evaluate(y, f, in), MPFR_RNDN);
    const double d = mpfr_get_d(y, MPFR_RNDN);
    mpfr_clear(y);
    return d;
}

}  // namespace

Draw nearMidpoint(Mpfr1 f, Draw from, int bits) { return nearMidpointOf(f, from, bits); }
Draw2 nearMidpoint(Mpfr2 f, Draw2 from, int bits) { return nearMidpointOf(f, from, bits); }

std::vector<double> commonSpecials() {
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double tiny = std::numeric_limits<double>::denorm_min();
    const double minNormal = std::numeric_limits<double>::min();
    const double big = std::numeric_limits<double>::max();
    std::vector<double> v = {0.0, inf, nan, tiny, minNormal, big, 1.0, 0.5, 2.0,
                             std::nextafter(1.0, 0.0), std::nextafter(1.0, 2.0), minNormal - tiny};
    const std::size_t n = v.size();
    for (std::size_t i = 0; i < n; ++i) v.push_back(-v[i]);
    return v;
}

std::uint64_t samplesPerFunction() { return envCount("MIVORA_MATH_SAMPLES", 100000); }
std::uint64_t seed() { return envCount("MIVORA_MATH_SEED", 20261123); }
std::uint64_t hardInputs() {
    return samplesPerFunction() / std::max<std::uint64_t>(1, envCount("MIVORA_MATH_HARD_SHARE", 400));
}

double reference(Mpfr1 f, double x) { return correctlyRounded(f, x); }
double reference(Mpfr2 f, std::pair<double, double> xy) { return correctlyRounded(f, xy); }

bool sameBits(double a, double b) {
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
    return std::memcmp(&a, &b, sizeof a) == 0;
}

}  // namespace mivora_math_test
