#include "bench_support.hpp"

#include <random>

#include "test_support.hpp"

namespace mivora_bench {

namespace {

void peakingSection(double freq, double gainDb, double q, double* c) {
    IirProcess p;
    p.setCoefPDFPQ(freq, 48000.0, gainDb, q);
    double all[IirProcess::maxCoefCount];
    p.getCoef(all);
    for (int i = 0; i < 5; ++i) c[i] = all[i];
}

}  // namespace

IirProcess busyFilter(int order) {
    double s0[5], s1[5];
    peakingSection(1000.0, 6.0, 1.0, s0);
    peakingSection(5000.0, -4.0, 2.0, s1);
    IirProcess f(order);
    mivora_test::setSection(f, 0, s0[0], s0[1], s0[2], s0[3], s0[4]);
    mivora_test::setSection(f, 1, s1[0], s1[1], s1[2], s1[3], s1[4]);
    mivora_test::setFirstOrder(f, 0.3, 0.3, 0.4);  // one-pole low-pass, unity at DC
    return f;
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
