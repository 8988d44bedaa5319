// Helpers shared by the tests: read-outs, an independent response evaluation,
// and the analogue prototypes the cut and band designs follow.
#ifndef MIVORA_TEST_SUPPORT_HPP
#define MIVORA_TEST_SUPPORT_HPP

#include <gtest/gtest.h>
#include <mivora/IirProcess.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <random>
#include <vector>

#include "iir_process_access.hpp"
#include "plain_filter.hpp"

namespace mivora_test {

using Mivora::IirProcess;
using Values = std::vector<double>;
using Complex = std::complex<double>;
inline constexpr double kPi = 3.14159265358979323846;

inline Values state(const IirProcess& f) {
    Values s(10);
    f.getDelay(s.data());
    return s;
}
inline Values coefs(const IirProcess& f) {
    Values c(IirProcess::maxCoefCount, 12345.0);
    f.getCoef(c.data());
    return c;
}

// Coefficients as getCoef lays them out at order 5: two stable sections (poles
// at radius < 1) with arbitrary zeros, then a stable first-order section.
inline std::array<double, 13> randomStableCoefs(std::mt19937& rng) {
    std::uniform_real_distribution<double> u(-1.0, 1.0), radius(0.2, 0.999), angle(0.0, kPi);
    std::array<double, 13> c{};
    for (int k = 0; k < 2; ++k) {
        const double r = radius(rng), theta = angle(rng);
        const double s[5] = {2 * u(rng), 2 * u(rng), 2 * u(rng), 2 * r * std::cos(theta), -r * r};
        std::copy(s, s + 5, c.begin() + 5 * k);
    }
    c[10] = 2 * u(rng), c[11] = 2 * u(rng), c[12] = 0.99 * u(rng);
    return c;
}

// Equal sizes and equal bits (sameBits) element by element; reports the first difference.
template <class T>
void expectIdentical(const std::vector<T>& got, const std::vector<T>& want, const char* what) {
    ASSERT_EQ(got.size(), want.size());
    for (std::size_t i = 0; i < got.size(); ++i)
        if (!sameBits(got[i], want[i])) {
            ADD_FAILURE() << what << " differs at " << i << ": " << got[i] << " vs " << want[i];
            return;
        }
}

// H at freq of coefficient rows in the stored convention, by textbook complex
// arithmetic (division, polar form): independent of the library's evaluation.
inline Complex sectionH(const double* c, double freq, double fs) {
    const Complex z1 = std::polar(1.0, -2.0 * kPi * freq / fs);
    return (c[0] + c[1] * z1 + c[2] * z1 * z1) / (1.0 - c[3] * z1 - c[4] * z1 * z1);
}
// H of the filter an object holds, from its read-out coefficients.
inline Complex responseOf(const IirProcess& f, double freq, double fs) {
    const Values c = coefs(f);
    const int sections = f.getEvenOrder() >= 2 ? f.getEvenOrder() / 2 : 0;
    Complex h = 1.0;
    for (int k = 0; k < sections; ++k) h *= sectionH(&c[5 * k], freq, fs);
    if (f.getOddOrder() != 0) {
        const double b[5] = {c[5 * sections], c[5 * sections + 1], 0.0, c[5 * sections + 2], 0.0};
        h *= sectionH(b, freq, fs);
    }
    return h;
}
inline double db(Complex h) { return 10.0 * std::log10(std::norm(h)); }
inline bool closeRelative(Complex got, Complex want, double tol) { return std::abs(got - want) <= tol * std::abs(want); }
// The analogue frequency variable at freq for a design pre-warped at corner.
inline Complex sAt(double freq, double fs, double corner) {
    return {0.0, std::tan(kPi * freq / fs) / std::tan(kPi * corner / fs)};
}

// Logarithmically spaced frequencies strictly inside (0, fs/2).
inline Values logFrequencies(double fs, int n) {
    Values out;
    const double lo = std::log(fs * 1e-4), hi = std::log(fs * 0.4999);
    for (int i = 0; i < n; ++i) out.push_back(std::exp(lo + (hi - lo) * i / (n - 1)));
    return out;
}

// |H|^2 of the analogue low-pass prototype of order n at the normalised
// frequency x (edge at 1). shape: the ripple in dB (Chebyshev) or the stop
// level, As = 96 - shape/10 dB (inverse Chebyshev).
enum class Family { Butterworth, Chebyshev, Inverse };
inline double chebyshevT(int n, double x) {
    x = std::fabs(x);  // only T^2 is used
    return x <= 1.0 ? std::cos(n * std::acos(x)) : std::cosh(n * std::acosh(x));
}
inline double prototypePower(Family family, int n, double shape, double x) {
    if (family == Family::Butterworth) return 1.0 / (1.0 + std::pow(x * x, n));
    if (family == Family::Chebyshev)
        return 1.0 / (1.0 + (std::pow(10.0, shape / 10.0) - 1.0) * std::pow(chebyshevT(n, x), 2));
    const double k = std::pow(chebyshevT(n, 1.0 / x), 2) / (std::pow(10.0, (96.0 - shape / 10.0) / 10.0) - 1.0);
    return std::isinf(k) ? 1.0 : k / (1.0 + k);
}

}  // namespace mivora_test

#endif
