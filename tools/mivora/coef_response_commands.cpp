// `mivora coef` and `mivora response`: what a design is, without any audio.
#include "commands.hpp"

#include "coef_format.hpp"
#include "numbers.hpp"
#include "pending_file.hpp"
#include "response_plot.hpp"
#include "sections.hpp"

namespace mivora_tool {

void runCoef(const CoefCommand& command, std::ostream& out) {
    out << formatCoefficients(command.design, readSections(command.design.build()), command.format);
}

void runResponse(const ResponseCommand& command, std::ostream& out) {
    const Design& design = command.design;
    if (command.format) {
        const std::vector<double> freqs =
            command.at.empty() ? logSpaced(command.from, command.to, command.points) : command.at;
        out << formatResponse(design, sampleResponse(design.build(), design.fs, freqs), *command.format);
    }
    if (!command.svgPath.empty()) {
        const Plot plot = responsePlot(design.label, design.call(), {{design.label, design}},
                                       {command.from, command.to, command.points});
        writeWholeFile(command.svgPath, renderSvg(plot));
        if (!command.format) out << "wrote " << command.svgPath << "\n";
    }
}

}  // namespace mivora_tool
