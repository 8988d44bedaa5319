// The fixed grid of the golden values: every public operation of IirProcess
// over a spread of arguments and edge values, and the elementary functions
// the designs use, at fixed inputs. One walk, shared by the check and by the
// regeneration, hands each case to a Recorder as (group, arguments, results).
#ifndef MIVORA_GOLDEN_GRID_HPP
#define MIVORA_GOLDEN_GRID_HPP

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>

namespace mivora_golden {

// Up to kMaxValues doubles: the arguments or the results of one case.
struct Values {
    static constexpr int kMaxValues = 128;
    double v[kMaxValues];
    int n = 0;
    Values() = default;
    Values(std::initializer_list<double> xs) noexcept {
        for (double x : xs) push(x);
    }
    Values(const double* x, int count) noexcept { push(x, count); }
    void push(double x) noexcept {
        if (n < kMaxValues) v[n++] = x;
    }
    void push(const double* x, int count) noexcept {
        for (int i = 0; i < count; ++i) push(x[i]);
    }
};

// A fixed pseudo-random sequence, identical everywhere (integer arithmetic).
struct SplitMix {
    std::uint64_t s;
    std::uint64_t next() noexcept {
        std::uint64_t z = (s += 0x9e3779b97f4a7c15u);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
        return z ^ (z >> 31);
    }
    // Any bit pattern: every exponent equally likely, NaNs and infinities too.
    double anyBits() noexcept {
        const std::uint64_t b = next();
        double x;
        std::memcpy(&x, &b, sizeof x);
        return x;
    }
    // In [lo, hi), from basic operations only: the same double everywhere.
    double uniform(double lo, double hi) noexcept {
        return lo + (hi - lo) * (static_cast<double>(next() >> 11) * 0x1p-53);
    }
};

class Recorder {
public:
    virtual ~Recorder() = default;
    // One case of a group; groups are named "<operation> <what>".
    virtual void add(const std::string& group, const Values& args, const Values& results) = 0;
};

// IirProcess: designs with their read-out, processing and response; state
// operations; section transforms.
void walkFilterGrid(Recorder& rec);
// Mivora::math, each function at a few thousand fixed inputs.
void walkMathGrid(Recorder& rec);

}  // namespace mivora_golden

#endif
