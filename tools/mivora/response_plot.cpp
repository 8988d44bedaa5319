#include "response_plot.hpp"

#include "numbers.hpp"
#include "sections.hpp"

#include <limits>

namespace mivora_tool {

Plot responsePlot(const std::string& title, const std::string& subtitle,
                  const std::vector<std::pair<std::string, Design>>& curves, const FrequencyRange& range) {
    Plot plot{title, subtitle, {}, {}};
    bool firstOrder = false;
    double fs = 0.0;
    const std::vector<double> freqs = logSpaced(range.from, range.to, range.points);
    for (const auto& [legend, design] : curves) {
        const Mivora::IirProcess filter = design.build();
        const Sections sections = readSections(filter);
        firstOrder = firstOrder || sections.firstOrder.has_value();
        fs = design.fs;
        PlotCurve curve{legend, sampleResponse(filter, design.fs, freqs)};
        // With no second-order section there is no reported phase to draw.
        if (sections.biquads.empty())
            for (ResponsePoint& p : curve.points) p.phaseRad = std::numeric_limits<double>::quiet_NaN();
        plot.curves.push_back(std::move(curve));
    }
    plot.note = "fs " + shortNumber(fs) + " Hz. Power and phase as the filter reports them";
    plot.note += firstOrder ? "; the phase covers the second-order sections only, not the first-order section." : ".";
    return plot;
}

}  // namespace mivora_tool
