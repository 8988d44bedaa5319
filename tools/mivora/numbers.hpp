// Reading option values, writing numbers back out, and the tool's one pi.
#ifndef MIVORA_TOOL_NUMBERS_HPP
#define MIVORA_TOOL_NUMBERS_HPP

#include <string>

namespace mivora_tool {

// The double nearest pi, for the tool's own signals and plot axes (the tool
// sees only the public header, so it cannot share the library's).
inline constexpr double kPi = 3.141592653589793;

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
