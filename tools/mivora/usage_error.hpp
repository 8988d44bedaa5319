// What the tool reports to its user: one line, and an exit status.
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

// Ctrl-C or a termination request during a long run: the run unwinds so no
// partial output is left, and exits as an interrupted program does.
class Interrupted : public std::runtime_error {
public:
    Interrupted() : std::runtime_error("interrupted; no output written") {}
};

inline constexpr int kInterruptedExit = 130;

}  // namespace mivora_tool

#endif
