// Response plots of designs: what `response --svg` and the demo draw.
#ifndef MIVORA_TOOL_RESPONSE_PLOT_HPP
#define MIVORA_TOOL_RESPONSE_PLOT_HPP

#include "design.hpp"
#include "svg_plot.hpp"

#include <string>
#include <utility>
#include <vector>

namespace mivora_tool {

struct FrequencyRange {
    double from;
    double to;
    int points;
};

// One curve per (legend, design); the small print says what the phase covers
// when a design runs a first-order section, and the rate used.
Plot responsePlot(const std::string& title, const std::string& subtitle,
                  const std::vector<std::pair<std::string, Design>>& curves, const FrequencyRange& range);

}  // namespace mivora_tool

#endif
