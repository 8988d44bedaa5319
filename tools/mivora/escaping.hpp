// Text the tool writes into JSON, HTML and SVG by hand.
#ifndef MIVORA_TOOL_ESCAPING_HPP
#define MIVORA_TOOL_ESCAPING_HPP

#include <string>

namespace mivora_tool {

std::string jsonString(const std::string& s);
// Seventeen digits; null for values JSON cannot hold (NaN, infinities).
std::string jsonNumber(double v);
// The same escaping suits HTML and SVG text.
std::string xmlEscaped(const std::string& s);

}  // namespace mivora_tool

#endif
