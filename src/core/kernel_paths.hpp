// The processing kernels come in more than one build (paths) of the same
// source; which one runs is decided per call from the CPU's features. Every
// path gives identical results, so the choice only affects speed.
//
// Internal to the library (and its tests, which force each path).
#ifndef MIVORA_KERNEL_PATHS_HPP
#define MIVORA_KERNEL_PATHS_HPP

namespace Mivora::detail {

// The stages one call runs, over the object's own storage.
struct StageView {
    double* delay;          // 4 per second-order section: x1 x2 y1 y2
    const double* coef;     // 5 per second-order section: b0 b1 b2 a1 a2
    double* delay1st;       // x1 y1
    const double* coef1st;  // b0 b1 a1
    int sections;           // second-order sections that run: 0, 1 or 2
    bool first;             // whether the first-order section runs after them
};

namespace {  // each translation unit its own copy: see section_kernels.hpp

// Second-order sections that an order runs: order/2 rounded toward zero,
// none below 2, at most the two the object holds. Written as a sum of
// comparisons so that it compiles without branches.
constexpr int runningSections(int order) noexcept { return (order >= 2 ? 1 : 0) + (order >= 4 ? 1 : 0); }

}  // namespace

enum class Path {
    portable,  // plain C++, built for the baseline of the target
    x86Fma,    // x86-64 build using FMA3 instructions
};

inline constexpr Path allPaths[] = {Path::portable, Path::x86Fma};

// Built into this library and supported by the CPU it runs on.
bool pathAvailable(Path path) noexcept;
// The path doProcess and cal use.
Path fastestPath() noexcept;

// Run a block / one sample on the given path, which must be available
// (pathAvailable): the CPU is asked once per call, by fastestPath, and not
// again here. sections must lie in [0, 2].
void processBlock(Path path, const StageView& v, const float* in, float* out, unsigned int count) noexcept;
double processSample(Path path, const StageView& v, double x) noexcept;

// Entry points of each build of the kernels (kernels_*.cpp). The
// single-sample one takes the view's fields as separate arguments: they then
// travel in registers, and a call costs no round trip through memory.
namespace portable {
void processBlock(const StageView& v, const float* in, float* out, unsigned int count) noexcept;
double processSample(double* delay, const double* coef, double* delay1st, const double* coef1st, int sections,
                     bool first, double x) noexcept;
}  // namespace portable
namespace x86fma {
void processBlock(const StageView& v, const float* in, float* out, unsigned int count) noexcept;
double processSample(double* delay, const double* coef, double* delay1st, const double* coef1st, int sections,
                     bool first, double x) noexcept;
}  // namespace x86fma

}  // namespace Mivora::detail

#endif
