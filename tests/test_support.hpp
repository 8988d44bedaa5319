// Helpers shared by the tests: an independent response evaluation, the analogue prototypes the cut and band
// designs follow, and one checker for worked coefficient rows.
#ifndef MIVORA_TEST_SUPPORT_HPP
#define MIVORA_TEST_SUPPORT_HPP

#include <gtest/gtest.h>
#include <mivora/IirProcess.h>

#include <array>
#include <cmath>
#include <complex>
#include <cstring>
#include <vector>

#include "iir_process_access.hpp"

namespace mivora_test {

using Mivora::IirProcess;
inline constexpr double kPi = 3.14159265358979323846;

inline std::vector<double> state(const IirProcess& f) {
    std::vector<double> s(10);
    f.getDelay(s.data());
    return s;
}
inline std::vector<double> coefs(const IirProcess& f) {
    std::vector<double> c(IirProcess::maxCoefCount, 12345.0);
    f.getCoef(c.data());
    return c;
}
inline std::vector<double> section0(const IirProcess& f) {
    const std::vector<double> c = coefs(f);
    return {c.begin(), c.begin() + 5};
}

// |H|^2 in dB and arg H of coefficient rows in the stored convention,
// evaluated with textbook complex arithmetic (division, polar form), as an
// independent check of the library's own evaluation.
struct Response {
    std::complex<double> h{1.0, 0.0};
    double db() const { return 10.0 * std::log10(std::norm(h)); }
    double mag() const { return std::abs(h); }
};
inline std::complex<double> sectionH(const double* c, double freq, double fs) {
    const std::complex<double> z1 = std::polar(1.0, -2.0 * kPi * freq / fs);
    return (c[0] + c[1] * z1 + c[2] * z1 * z1) / (1.0 - c[3] * z1 - c[4] * z1 * z1);
}
// Response of the filter an object holds, from its read-out coefficients.
inline Response responseOf(const IirProcess& f, double freq, double fs) {
    const std::vector<double> c = coefs(f);
    Response r;
    const int sections = f.getEvenOrder() >= 2 ? f.getEvenOrder() / 2 : 0;
    for (int k = 0; k < sections; ++k) r.h *= sectionH(&c[5 * k], freq, fs);
    if (f.getOddOrder() != 0) {
        const double* b = &c[5 * sections];
        const std::complex<double> z1 = std::polar(1.0, -2.0 * kPi * freq / fs);
        r.h *= (b[0] + b[1] * z1) / (1.0 - b[2] * z1);
    }
    return r;
}
inline bool closeRelative(std::complex<double> got, std::complex<double> want, double tol) {
    return std::abs(got - want) <= tol * std::abs(want);
}

// Logarithmically spaced frequencies strictly inside (0, fs/2).
inline std::vector<double> logFrequencies(double fs, int n) {
    std::vector<double> out;
    const double lo = std::log(fs * 1e-4);
    const double hi = std::log(fs * 0.4999);
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

// A design call with its source text, for tables: {MIVORA_CALL(setCoefHPF(3, 1e3, 48e3)), ...}.
#define MIVORA_CALL(call) #call, [](::Mivora::IirProcess& f) { f.call; }

// A worked row: the coefficients getCoef reads out after the call on a fresh
// object, to within tol, or to -tol significant digits when tol is negative.
struct Worked {
    const char* call;
    void (*design)(IirProcess&);
    std::vector<double> coefs;
    double tol;
};
inline void expectWorked(const Worked& w) {
    IirProcess f;
    w.design(f);
    const std::vector<double> got = coefs(f);
    for (std::size_t i = 0; i < w.coefs.size(); ++i) {
        const double want = w.coefs[i];
        double tol = w.tol;
        if (tol < 0.0) tol = want == 0.0 ? 0.0 : 0.5 * std::pow(10.0, std::floor(std::log10(std::fabs(want))) + 1.0 + tol);
        EXPECT_NEAR(got[i], want, tol) << w.call << " [" << i << "]";
    }
}

}  // namespace mivora_test

#endif
