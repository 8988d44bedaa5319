// `mivora list`: the design table, as a person reads it.
#include "commands.hpp"

#include "numbers.hpp"

#include <cstdio>

namespace mivora_tool {

namespace {

std::string optionLine(const char* option, const std::string& unit, const std::string& meaning) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "      --%-11s %-6s ", option, unit.c_str());
    return buf + meaning + "\n";
}

void listFamily(const Family& family, std::ostream& out) {
    out << family.name << ": " << family.summary << "\n";
    for (const Selector& s : family.selectors) {
        if (s.hidden) continue;
        std::string values;
        for (const char* v : s.values) values += (values.empty() ? "" : "|") + std::string(v);
        out << "  --" << s.option << " " << values << " (default " << s.fallback << "): " << s.meaning << "\n";
    }
    for (const DesignRow& row : designRows()) {
        if (row.family != std::string(family.name)) continue;
        out << "\n    " << rowLabel(row) << "  ->  " << row.call << "\n";
        for (const Param& p : row.params) {
            const std::string fallback = p.fallback ? "default " + shortNumber(*p.fallback) : "required";
            out << optionLine(p.option, unitOf(p.kind), std::string(p.meaning) + " (" + fallback + ")");
        }
    }
    out << "\n";
}

}  // namespace

void runList(const ListCommand& command, std::ostream& out) {
    for (const Family& family : families())
        if (command.family.empty() || command.family == family.name) listFamily(family, out);
    if (!command.family.empty()) return;
    out << "Every design also takes --fs, the sampling frequency in Hz (default 48000; filter: the input's rate).\n"
           "Frequencies must lie above 0 and below fs/2.\n"
           "Entry points that forward to the designs above: setCoef is setCoefPDFPQ; setCoefLOWS, setCoefHIGS,\n"
           "setCoefLOWS_2 and setCoefHIGS_2 are their _B designs (with a type: _B for 1, _A otherwise);\n"
           "setCoefHPF(freq, fs) and setCoefLPF(freq, fs) are order 2.\n";
}

}  // namespace mivora_tool
