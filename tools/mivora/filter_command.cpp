// `mivora filter`: a sound file through a design.
#include "audio_filter.hpp"
#include "commands.hpp"

namespace mivora_tool {

void runFilter(const FilterCommand& command, std::ostream& out) {
    const Design design =
        filterFile({command.request, command.fs, command.inPath, command.outPath, command.asFloat, true,
                    command.container});
    out << "wrote " << command.outPath << " (" << design.call() << ")\n";
}

}  // namespace mivora_tool
