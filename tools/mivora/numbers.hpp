// Reading option values and writing numbers back out.
#ifndef MIVORA_TOOL_NUMBERS_HPP
#define MIVORA_TOOL_NUMBERS_HPP

#include <string>

namespace mivora_tool {

// The whole text as a finite double; throws UsageError naming the option.
double parseNumber(const std::string& option, const std::string& text);
// The whole text as an integer in [lo, hi]; throws UsageError naming the option.
long parseWholeNumber(const std::string& option, const std::string& text, long lo, long hi);

// Seventeen significant digits: reads back to the same double.
std::string exactNumber(double v);
// The fewest digits that still read back to the same double ("0.5", "8000").
std::string shortNumber(double v);

}  // namespace mivora_tool

#endif
