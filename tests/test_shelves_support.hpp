// Shelves as their analogue definitions, for checking designs against: a low
// shelf of variant A boosting by (s + A)/(s + 1), or (s^2 + k*sqrt(A)*s + A)/
// (s^2 + k*s + 1) at second order. Variant B is the same shelf with both
// corners moved down by A (first order) or sqrt(A), a high shelf is the low
// shelf at 1/s, and a cut is the reciprocal of the boost. s = j at the corner.
#ifndef MIVORA_TEST_SHELVES_SUPPORT_HPP
#define MIVORA_TEST_SHELVES_SUPPORT_HPP

#include "test_support.hpp"

namespace mivora_test {

struct ShelfKind {
    bool high;
    bool variantB;
    double damping;  // 0 for a first-order shelf
};

inline std::complex<double> analogueShelf(const ShelfKind& kind, double gainDb, std::complex<double> s) {
    const double a = std::pow(10.0, std::fabs(gainDb) / 20.0);
    const double r = std::sqrt(a);
    const double k = kind.damping;
    if (kind.high) s = 1.0 / s;
    if (kind.variantB) s *= k == 0.0 ? a : r;
    const std::complex<double> h = k == 0.0 ? (s + a) / (s + 1.0) : (s * s + k * r * s + a) / (s * s + k * s + 1.0);
    return gainDb >= 0.0 ? h : 1.0 / h;
}

// The analogue shelf with its corner at the pre-warped value `corner`, as the
// bilinear transform maps it to freq.
inline std::complex<double> shelfAt(const ShelfKind& kind, double gainDb, double corner, double freq, double fs) {
    return analogueShelf(kind, gainDb, {0.0, std::tan(kPi * freq / fs) / corner});
}

inline bool closeRelative(std::complex<double> got, std::complex<double> want, double tol) {
    return std::abs(got - want) <= tol * std::abs(want);
}

inline std::vector<double> section0(const IirProcess& f) {
    const std::vector<double> c = coefs(f);
    return {c.begin(), c.begin() + 5};
}

}  // namespace mivora_test

#endif
