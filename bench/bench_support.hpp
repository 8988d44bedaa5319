// Shared pieces of the benchmarks: the filters measured, their input, and the
// reference loops that the library's figures are compared with.
#ifndef MIVORA_BENCH_SUPPORT_HPP
#define MIVORA_BENCH_SUPPORT_HPP

#include <mivora/IirProcess.h>

#include <cstddef>
#include <vector>

#include "plain_filter.hpp"

namespace mivora_bench {

using Mivora::IirProcess;

// A filter of the given order in which every running stage does real work:
// two peaking sections and a one-pole low-pass, all stable.
IirProcess busyFilter(int order);
// The filter held the plain way (arrays, the formula read literally), and
// deterministic noise in [-1, 1).
using mivora_test::noise;
using mivora_test::plainCopy;
using mivora_test::PlainFilter;

// Room for n floats starting on a cache line, as audio buffers usually do.
// Where a buffer starts moves block-64 figures by up to a tenth: one that
// starts 48 bytes into a line and was just filled by std::copy (whose wide
// stores then straddle lines) delays the first loads of the next block.
class LineBuffer {
public:
    explicit LineBuffer(std::size_t n);
    float* data() noexcept { return start; }

private:
    std::vector<float> store;
    float* start;
};

// Whether the reference loops below can run here (they use FMA3 on x86-64).
bool referenceLoopsRun();

// The straightforward loop: per sample, walk the sections, each reading and
// writing its state in memory.
void straightforwardBlock(PlainFilter& f, const float* in, float* out, unsigned int count);

// The latency bounds: loops whose only carried dependency is the feedback of
// one second-order section, y = fma(a2, y2, fma(a1, y1, acc)), or of a
// first-order one, y = fma(a1, y1, acc), with acc given per sample.
// state holds y1, y2 and is updated.
void boundTwoFma(const double* acc, unsigned int count, double a1, double a2, double* state);
void boundOneFma(const double* acc, unsigned int count, double a1, double* state);

// An out-of-line call shaped like cal(double) that returns its argument:
// the floor under any per-sample call.
double emptyCall(IirProcess* object, double x);

}  // namespace mivora_bench

#endif
