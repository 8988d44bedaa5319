// Accuracy rows of the trigonometric functions (sin, cos, sincos, tan, atan,
// atan2); see accuracy_harness.hpp.
#include "accuracy_harness.hpp"

namespace mivora_math_test {

std::vector<UnaryRow> trigUnaryRows() { return {}; }
std::vector<BinaryRow> trigBinaryRows() { return {}; }

}  // namespace mivora_math_test
