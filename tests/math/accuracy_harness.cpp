// Input generators and the MPFR reference of accuracy_harness.hpp.
#include "accuracy_harness.hpp"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace mivora_math_test {

namespace {

double fromBits(std::uint64_t b) {
    double d;
    std::memcpy(&d, &b, sizeof d);
    return d;
}

std::uint64_t envCount(const char* name, std::uint64_t fallback) {
    const char* v = std::getenv(name);
    if (v == nullptr || *v == '\0') return fallback;
    return std::strtoull(v, nullptr, 10);
}

// Holds an MPFR number in double semantics (53 bits, IEEE exponent range).
struct DoubleContext {
    DoubleContext() {
        mpfr_set_emin(-1073);
        mpfr_set_emax(1024);
    }
};

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

Draw anyFinite() {
    return [](Rng& r) {
        for (;;) {
            const double d = fromBits(r());
            if (std::isfinite(d)) return d;
        }
    };
}

Draw signedAnyFinite(double maxAbs) {
    return [=](Rng& r) {
        for (;;) {
            const double d = fromBits(r());
            if (std::fabs(d) <= maxAbs) return d;
        }
    };
}

Draw ofBoth(Draw a, Draw b) {
    return [=](Rng& r) { return (r() & 1u) ? a(r) : b(r); };
}

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

constexpr int kMaxTries = 1 << 20;

}  // namespace

Draw nearMidpoint(Mpfr1 f, Draw from, int bits) {
    return [=](Rng& r) {
        mpfr_t v, a;
        mpfr_init2(v, 53 + bits + 40);
        mpfr_init2(a, 53);
        double x = 0.0;
        for (int tries = 0; tries < kMaxTries; ++tries) {
            x = from(r);
            mpfr_set_d(a, x, MPFR_RNDN);
            f(v, a, MPFR_RNDN);
            if (nearAMidpoint(v, bits)) break;
        }
        mpfr_clears(v, a, static_cast<mpfr_ptr>(nullptr));
        return x;
    };
}

Draw2 nearMidpoint(Mpfr2 f, Draw2 from, int bits) {
    return [=](Rng& r) {
        mpfr_t v, a, b;
        mpfr_init2(v, 53 + bits + 40);
        mpfr_inits2(53, a, b, static_cast<mpfr_ptr>(nullptr));
        std::pair<double, double> xy;
        for (int tries = 0; tries < kMaxTries; ++tries) {
            xy = from(r);
            mpfr_set_d(a, xy.first, MPFR_RNDN);
            mpfr_set_d(b, xy.second, MPFR_RNDN);
            f(v, a, b, MPFR_RNDN);
            if (nearAMidpoint(v, bits)) break;
        }
        mpfr_clears(v, a, b, static_cast<mpfr_ptr>(nullptr));
        return xy;
    };
}

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

double reference(Mpfr1 f, double x) {
    static const DoubleContext context;
    mpfr_t a, y;
    mpfr_inits2(53, a, y, static_cast<mpfr_ptr>(nullptr));
    mpfr_set_d(a, x, MPFR_RNDN);
    const int t = f(y, a, MPFR_RNDN);
    mpfr_subnormalize(y, t, MPFR_RNDN);
    const double d = mpfr_get_d(y, MPFR_RNDN);
    mpfr_clears(a, y, static_cast<mpfr_ptr>(nullptr));
    return d;
}

double reference(Mpfr2 f, double x, double y) {
    static const DoubleContext context;
    mpfr_t a, b, z;
    mpfr_inits2(53, a, b, z, static_cast<mpfr_ptr>(nullptr));
    mpfr_set_d(a, x, MPFR_RNDN);
    mpfr_set_d(b, y, MPFR_RNDN);
    const int t = f(z, a, b, MPFR_RNDN);
    mpfr_subnormalize(z, t, MPFR_RNDN);
    const double d = mpfr_get_d(z, MPFR_RNDN);
    mpfr_clears(a, b, z, static_cast<mpfr_ptr>(nullptr));
    return d;
}

bool sameBits(double a, double b) {
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
    return std::memcmp(&a, &b, sizeof a) == 0;
}

}  // namespace mivora_math_test
