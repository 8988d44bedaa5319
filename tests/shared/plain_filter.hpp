// The per-sample difference equations read from their definition, on arrays
// laid out as the object's: b1*x1 rounded, then b0*x, b2*x2, a1*y1, a2*y2 each
// added by one fused multiply-add; feedback added. The tests compare the
// library with it bit for bit; the benchmarks time it as the straightforward
// loop (step is forced inline there so it takes the caller's FMA code).
#ifndef MIVORA_PLAIN_FILTER_HPP
#define MIVORA_PLAIN_FILTER_HPP

#include <mivora/IirProcess.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#if defined(__GNUC__)
#define MIVORA_PLAIN_INLINE inline __attribute__((always_inline))
#else
#define MIVORA_PLAIN_INLINE inline
#endif

namespace mivora_test {

struct PlainFilter {
    double delay[8];
    double coef[10];
    double delay1st[2];
    double coef1st[3];
    int sections;
    bool first;

    MIVORA_PLAIN_INLINE double step(double x) noexcept {
        for (int k = 0; k < sections; ++k) {
            const double* c = coef + 5 * k;
            double* s = delay + 4 * k;  // x1 x2 y1 y2
            double y = c[1] * s[0];
            y = std::fma(c[0], x, y);
            y = std::fma(c[2], s[1], y);
            y = std::fma(c[3], s[2], y);
            y = std::fma(c[4], s[3], y);
            s[1] = s[0];
            s[0] = x;
            s[3] = s[2];
            s[2] = y;
            x = y;
        }
        if (first) {
            double y = coef1st[1] * delay1st[0];
            y = std::fma(coef1st[0], x, y);
            y = std::fma(coef1st[2], delay1st[1], y);
            delay1st[0] = x;
            delay1st[1] = y;
            x = y;
        }
        return x;
    }
    // The state as getDelay gives it: section 0, section 1, first order.
    std::vector<double> stateValues() const {
        std::vector<double> s(delay, delay + 8);
        s.insert(s.end(), delay1st, delay1st + 2);
        return s;
    }
};

// The stages an object runs, with its coefficients and its whole state.
inline PlainFilter plainCopy(const Mivora::IirProcess& f) {
    PlainFilter p{};
    p.sections = f.getEvenOrder() >= 2 ? f.getEvenOrder() / 2 : 0;
    p.first = f.getOddOrder() != 0;
    double c[Mivora::IirProcess::maxCoefCount] = {};
    f.getCoef(c);
    std::copy_n(c, 5 * p.sections, p.coef);
    if (p.first) std::copy_n(c + 5 * p.sections, 3, p.coef1st);
    double s[10];
    f.getDelay(s);
    std::copy_n(s, 8, p.delay);
    std::copy_n(s + 8, 2, p.delay1st);
    return p;
}

// Equal bits, except that any NaN matches any NaN: which operand's payload an
// operation passes on is the instruction's business, not the filter's.
inline bool sameBits(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

// Deterministic noise in [-1, 1).
inline std::vector<float> noise(std::size_t n, unsigned seed) {
    std::mt19937 rng(seed);
    std::uniform_real_distribution<float> u(-1.0f, 1.0f);
    std::vector<float> v(n);
    for (float& x : v) x = u(rng);
    return v;
}

}  // namespace mivora_test

#endif
