// The command line as data: parseCommandLine turns argv into one Invocation
// or into what to print and the exit status. It never prints, exits or
// touches files, so tests and fuzzers can drive it directly.
#ifndef MIVORA_TOOL_COMMAND_LINE_HPP
#define MIVORA_TOOL_COMMAND_LINE_HPP

#include "design.hpp"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace mivora_tool {

enum class CoefFormat { Text, Json, Csv, C, Sos };
enum class TableFormat { Text, Json, Csv };

struct ListCommand {
    std::string family;  // empty: every design
};

struct CoefCommand {
    Design design;
    CoefFormat format = CoefFormat::Text;
};

struct ResponseCommand {
    Design design;
    // The frequencies: `at` when given, else `points` log-spaced from `from`
    // to `to` (one point when from == to).
    std::vector<double> at;
    double from = 0.0;
    double to = 0.0;
    int points = 0;
    std::optional<TableFormat> format;  // with --svg the table is printed only when asked for
    std::string svgPath;                // empty: no plot
};

struct FilterCommand {
    DesignRequest request;      // resolved once the input's rate is known
    std::optional<double> fs;   // overrides the input's rate
    std::string inPath;
    std::string outPath;
    std::string container;  // --format; empty: the one outPath's extension names
    bool asFloat = false;
};

struct DemoCommand {
    std::string outDir;
};

using Invocation = std::variant<ListCommand, CoefCommand, ResponseCommand, FilterCommand, DemoCommand>;

struct ParseResult {
    std::optional<Invocation> invocation;  // empty: print and exit with exitCode
    int exitCode = 0;
    std::string output;  // help or version text, for stdout
    std::string error;   // one line, for stderr
};

ParseResult parseCommandLine(int argc, const char* const* argv);

}  // namespace mivora_tool

#endif
