// A design request as typed, and the design it resolves to: one table row
// with every value checked, ready to be applied to an IirProcess.
#ifndef MIVORA_TOOL_DESIGN_HPP
#define MIVORA_TOOL_DESIGN_HPP

#include "design_registry.hpp"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace mivora_tool {

struct DesignRequest {
    std::string name;
    // Options given, without dashes, with their text as typed.
    std::vector<std::pair<std::string, std::string>> options;
};

struct Design {
    const DesignRow* row = nullptr;
    std::vector<double> values;  // in row->params order
    double fs = 0.0;
    std::string label;           // the request as a command line: "lowpass --order 4 --freq 8000"

    void applyTo(Mivora::IirProcess& filter) const { row->apply(filter, values.data(), fs); }
    // A fresh filter holding this design; throws UsageError when the values,
    // though each in range, give coefficients that are not finite.
    Mivora::IirProcess build() const;
    // The library call with the values filled in: "setCoefLPF(4, 8000, 48000)".
    std::string call() const;
};

// Picks the row and checks every value; throws UsageError with one line.
// Without fs, frequencies are checked to be positive only (the filter
// command learns fs from its input file and resolves again).
Design resolveDesign(const DesignRequest& request, std::optional<double> fs);

// A sampling frequency a design can use: finite and positive.
double checkSampleRate(const std::string& option, double fs);

}  // namespace mivora_tool

#endif
