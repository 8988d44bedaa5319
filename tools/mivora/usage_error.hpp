// The one error the tool reports to its user: a single line, exit status 2.
#ifndef MIVORA_TOOL_USAGE_ERROR_HPP
#define MIVORA_TOOL_USAGE_ERROR_HPP

#include <stdexcept>
#include <string>

namespace mivora_tool {

// Bad input of any kind: options, values, files. The library never refuses
// anything, so this is where a user hears that a request makes no sense.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(const std::string& message) : std::runtime_error(message) {}
};

inline constexpr int kUsageExit = 2;

}  // namespace mivora_tool

#endif
