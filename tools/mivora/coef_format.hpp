// Coefficients of a designed filter in the forms people paste elsewhere.
#ifndef MIVORA_TOOL_COEF_FORMAT_HPP
#define MIVORA_TOOL_COEF_FORMAT_HPP

#include "command_line.hpp"
#include "sections.hpp"

#include <string>

namespace mivora_tool {

// Every number with seventeen significant digits, so it reads back exactly.
// All forms but sos keep the stored sign convention (feedback added); sos
// rows are the common [b0 b1 b2 1 -a1 -a2], a first-order section padded
// with zeros.
std::string formatCoefficients(const Design& design, const Sections& sections, CoefFormat format);

}  // namespace mivora_tool

#endif
