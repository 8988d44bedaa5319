// Accuracy rows of exp, exp10, log, log10, pow, sinh, cosh.
#include "accuracy_harness.hpp"

namespace mivora_math_test {

std::vector<UnaryRow> expLogUnaryRows() { return {}; }
std::vector<BinaryRow> expLogBinaryRows() { return {}; }

}  // namespace mivora_math_test
