// The demo's index page: every plot and sound with the command behind it.
#ifndef MIVORA_TOOL_DEMO_INDEX_HPP
#define MIVORA_TOOL_DEMO_INDEX_HPP

#include <string>
#include <vector>

namespace mivora_tool {

struct IndexEntry {
    std::string file;   // relative to the page
    std::string title;
    std::vector<std::string> commands;
};

std::string renderIndexPage(const std::vector<IndexEntry>& plots, const std::string& sweepFile,
                            const std::vector<IndexEntry>& sounds);

}  // namespace mivora_tool

#endif
