// What each subcommand does once its command line is understood. Each
// writes its results to `out` and throws UsageError for bad input.
#ifndef MIVORA_TOOL_COMMANDS_HPP
#define MIVORA_TOOL_COMMANDS_HPP

#include "command_line.hpp"

#include <ostream>

namespace mivora_tool {

void runList(const ListCommand& command, std::ostream& out);
void runCoef(const CoefCommand& command, std::ostream& out);
void runResponse(const ResponseCommand& command, std::ostream& out);
void runFilter(const FilterCommand& command, std::ostream& out);
void runDemo(const DemoCommand& command, std::ostream& out);

}  // namespace mivora_tool

#endif
