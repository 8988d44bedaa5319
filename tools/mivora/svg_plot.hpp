// Response plots as standalone SVG: magnitude above phase over a log
// frequency axis, one or more curves, titled with the design.
#ifndef MIVORA_TOOL_SVG_PLOT_HPP
#define MIVORA_TOOL_SVG_PLOT_HPP

#include "response_table.hpp"

#include <string>
#include <vector>

namespace mivora_tool {

struct PlotCurve {
    std::string legend;  // shown when a plot has more than one curve
    std::vector<ResponsePoint> points;
};

struct Plot {
    std::string title;
    std::string subtitle;
    std::string note;  // small print under the axes
    std::vector<PlotCurve> curves;
};

std::string renderSvg(const Plot& plot);

}  // namespace mivora_tool

#endif
