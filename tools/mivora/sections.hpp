// The sections a designed filter runs, read out through getCoef.
#ifndef MIVORA_TOOL_SECTIONS_HPP
#define MIVORA_TOOL_SECTIONS_HPP

#include <mivora/IirProcess.h>

#include <array>
#include <optional>
#include <vector>

namespace mivora_tool {

struct Sections {
    int order = 0;
    // b0 b1 b2 a1 a2 per second-order section, feedback stored as added.
    std::vector<std::array<double, 5>> biquads;
    // b0 b1 a1 of the first-order section, when it runs.
    std::optional<std::array<double, 3>> firstOrder;

    bool allFinite() const;
};

Sections readSections(const Mivora::IirProcess& filter);

}  // namespace mivora_tool

#endif
