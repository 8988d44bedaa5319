#include "numbers.hpp"

#include "usage_error.hpp"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace mivora_tool {

double parseNumber(const std::string& option, const std::string& text) {
    const char* begin = text.c_str();
    char* end = nullptr;
    errno = 0;
    const double v = std::strtod(begin, &end);
    if (text.empty() || end == begin || *end != '\0')
        throw UsageError("--" + option + ": '" + text + "' is not a number");
    if (!std::isfinite(v)) throw UsageError("--" + option + ": '" + text + "' is not a finite number");
    if (errno == ERANGE) throw UsageError("--" + option + ": '" + text + "' is out of range");
    return v;
}

long parseWholeNumber(const std::string& option, const std::string& text, long lo, long hi) {
    const double v = parseNumber(option, text);
    if (v != std::floor(v) || v < static_cast<double>(lo) || v > static_cast<double>(hi))
        throw UsageError("--" + option + " must be a whole number from " + std::to_string(lo) + " to " +
                         std::to_string(hi) + " (got " + text + ")");
    return static_cast<long>(v);
}

std::string exactNumber(double v) {
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.17g", v);
    return buf;
}

std::string shortNumber(double v) {
    char buf[40];
    for (int digits = 6; digits < 17; ++digits) {
        std::snprintf(buf, sizeof buf, "%.*g", digits, v);
        if (std::strtod(buf, nullptr) == v) return buf;
    }
    return exactNumber(v);
}

}  // namespace mivora_tool
