// Filtering a sound file: every channel through the same design, block by
// block, the channels processed together.
#ifndef MIVORA_TOOL_AUDIO_FILTER_HPP
#define MIVORA_TOOL_AUDIO_FILTER_HPP

#include "design.hpp"

#include <optional>
#include <string>

namespace mivora_tool {

struct FilterJob {
    DesignRequest request;
    std::optional<double> fs;  // the design's rate; default: the input's
    std::string inPath;
    std::string outPath;
    bool asFloat = false;
    bool showProgress = false;  // a bar on a terminal, for long files
    std::string container;      // --format; empty: outPath's extension names it
};

// Writes outPath whole or not at all, in the container its extension (or
// container) names; returns the design as resolved against the rate used.
// Throws UsageError for any bad input.
Design filterFile(const FilterJob& job);

}  // namespace mivora_tool

#endif
