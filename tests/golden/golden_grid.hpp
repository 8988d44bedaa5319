// The fixed grid of the golden values: every public operation of IirProcess
// over a spread of arguments and edge values, and the elementary functions
// the designs use, at fixed inputs. One walk, shared by the check and by the
// regeneration, hands each case to a Recorder as (group, arguments, results).
#ifndef MIVORA_GOLDEN_GRID_HPP
#define MIVORA_GOLDEN_GRID_HPP

#include <cstddef>
#include <string>

namespace mivora_golden {

// Up to kMaxValues doubles: the arguments or the results of one case.
struct Values {
    static constexpr int kMaxValues = 128;
    double v[kMaxValues];
    int n = 0;
    void push(double x) noexcept {
        if (n < kMaxValues) v[n++] = x;
    }
    void push(const double* x, int count) noexcept {
        for (int i = 0; i < count; ++i) push(x[i]);
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
