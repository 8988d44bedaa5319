#include "bench_support.hpp"

#include <algorithm>
#include <array>
#include <memory>
#include <random>

#include "iir_process_access.hpp"

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

LineBuffer::LineBuffer(std::size_t n) : store(n + 16) {
    void* p = store.data();
    std::size_t room = store.size() * sizeof(float);
    start = static_cast<float*>(std::align(64, n * sizeof(float), p, room));
}

IirProcess busyFilter(int order) {
    std::array<double, 13> c{};
    peakingSection(1000.0, 6.0, 1.0, c.data());
    peakingSection(5000.0, -4.0, 2.0, c.data() + 5);
    c[10] = 0.3;  // one-pole low-pass b0, b1, a1: unity at DC
    c[11] = 0.3;
    c[12] = 0.4;
    return mivora_test::holding(order, c);
}

}  // namespace mivora_bench
