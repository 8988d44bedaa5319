// Helpers shared by the tests: raw coefficient access, an independent response
// evaluation, and a plain reading of the per-sample difference equations.
#ifndef MIVORA_TEST_SUPPORT_HPP
#define MIVORA_TEST_SUPPORT_HPP

#include <mivora/IirProcess.h>

#include <cmath>
#include <complex>
#include <cstring>
#include <type_traits>
#include <vector>

namespace mivora_test {

using Mivora::IirProcess;
inline constexpr double kPi = 3.14159265358979323846;

// The object is trivially copyable with its doubles first (delay[8], coef[10],
// delay1st[2], coef1st[3]), so tests may plant coefficients and state byte-wise.
static_assert(std::is_trivially_copyable_v<IirProcess>);
static_assert(std::is_standard_layout_v<IirProcess>);

inline constexpr std::size_t kDelayOffset = 0;
inline constexpr std::size_t kCoefOffset = 8;
inline constexpr std::size_t kDelay1stOffset = 18;
inline constexpr std::size_t kCoef1stOffset = 20;

inline void plant(IirProcess& f, std::size_t firstDouble, const double* v, std::size_t n) {
    std::memcpy(reinterpret_cast<unsigned char*>(&f) + firstDouble * sizeof(double), v, n * sizeof(double));
}
inline void setSection(IirProcess& f, int k, double b0, double b1, double b2, double a1, double a2) {
    const double c[5] = {b0, b1, b2, a1, a2};
    plant(f, kCoefOffset + 5 * static_cast<std::size_t>(k), c, 5);
}
inline void setFirstOrder(IirProcess& f, double b0, double b1, double a1) {
    const double c[3] = {b0, b1, a1};
    plant(f, kCoef1stOffset, c, 3);
}
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
inline std::complex<double> firstOrderH(const double* c, double freq, double fs) {
    const std::complex<double> z1 = std::polar(1.0, -2.0 * kPi * freq / fs);
    return (c[0] + c[1] * z1) / (1.0 - c[2] * z1);
}
// Response of the filter an object holds, from its read-out coefficients.
inline Response responseOf(const IirProcess& f, double freq, double fs) {
    const std::vector<double> c = coefs(f);
    Response r;
    const int sections = f.getEvenOrder() >= 2 ? f.getEvenOrder() / 2 : 0;
    for (int k = 0; k < sections; ++k) r.h *= sectionH(&c[5 * k], freq, fs);
    if (f.getOddOrder() != 0) r.h *= firstOrderH(&c[5 * sections], freq, fs);
    return r;
}

// Logarithmically spaced frequencies strictly inside (0, fs/2).
inline std::vector<double> logFrequencies(double fs, int n) {
    std::vector<double> out;
    const double lo = std::log(fs * 1e-4);
    const double hi = std::log(fs * 0.4999);
    for (int i = 0; i < n; ++i) out.push_back(std::exp(lo + (hi - lo) * i / (n - 1)));
    return out;
}

}  // namespace mivora_test

#endif
