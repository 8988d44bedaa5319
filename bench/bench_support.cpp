#include "bench_support.hpp"

#include <algorithm>
#include <array>
#include <random>

#include "test_support.hpp"

namespace mivora_bench {

namespace {

// Section 0's coefficients of a peaking design.
void peakingSection(double freq, double gainDb, double q, double* c) {
    IirProcess p;
    p.setCoefPDFPQ(freq, 48000.0, gainDb, q);
    double all[IirProcess::maxCoefCount];
    p.getCoef(all);
    std::copy(all, all + 5, c);
}

}  // namespace

IirProcess busyFilter(int order) {
    std::array<double, 13> c{};
    peakingSection(1000.0, 6.0, 1.0, c.data());
    peakingSection(5000.0, -4.0, 2.0, c.data() + 5);
    c[10] = 0.3;  // one-pole low-pass b0, b1, a1: unity at DC
    c[11] = 0.3;
    c[12] = 0.4;
    return mivora_test::holding(order, c);
}

std::vector<float> noise(std::size_t n, unsigned seed) {
    std::mt19937 rng(seed);
    std::uniform_real_distribution<float> u(-1.0f, 1.0f);
    std::vector<float> v(n);
    for (float& x : v) x = u(rng);
    return v;
}

PlainFilter plainCopy(const IirProcess& f) {
    PlainFilter p{};
    p.sections = f.getEvenOrder() >= 2 ? f.getEvenOrder() / 2 : 0;
    p.first = f.getOddOrder() != 0;
    double c[IirProcess::maxCoefCount] = {};
    f.getCoef(c);
    for (int i = 0; i < 5 * p.sections; ++i) p.coef[i] = c[i];
    if (p.first)
        for (int i = 0; i < 3; ++i) p.coef1st[i] = c[5 * p.sections + i];
    return p;
}

}  // namespace mivora_bench
