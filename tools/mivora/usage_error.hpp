// What the tool reports to its user: one line, and an exit status.
#ifndef MIVORA_TOOL_USAGE_ERROR_HPP
#define MIVORA_TOOL_USAGE_ERROR_HPP

#include <cstdio>
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

// Messages quote what the user typed. Control characters in it (a newline in
// a file name, a terminal escape) are shown as \n, \r, \t or \xHH, so that
// a message stays one line and cannot drive the terminal.
inline std::string oneLine(const std::string& text) {
    std::string out;
    for (const char c : text) {
        const auto u = static_cast<unsigned char>(c);
        if (c == '\n') {
            out += "\\n";
        } else if (c == '\r') {
            out += "\\r";
        } else if (c == '\t') {
            out += "\\t";
        } else if (u < 0x20 || u == 0x7f) {
            char hex[5];
            std::snprintf(hex, sizeof hex, "\\x%02x", static_cast<unsigned>(u));
            out += hex;
        } else {
            out += c;
        }
    }
    return out;
}

// Ctrl-C or a termination request during a long run: the run unwinds so no
// partial output is left, and exits as an interrupted program does.
class Interrupted : public std::runtime_error {
public:
    Interrupted() : std::runtime_error("interrupted; no output written") {}
};

inline constexpr int kInterruptedExit = 130;

}  // namespace mivora_tool

#endif
