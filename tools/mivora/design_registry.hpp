// The designs the tool offers: friendly family names whose selectors pick one
// row, and each row maps its named options onto exactly one library call.
#ifndef MIVORA_TOOL_DESIGN_REGISTRY_HPP
#define MIVORA_TOOL_DESIGN_REGISTRY_HPP

#include <mivora/IirProcess.h>

#include <optional>
#include <string>
#include <vector>

namespace mivora_tool {

// What a numeric option holds; it decides the unit shown and the check made.
enum class Kind {
    Frequency, Gain, Level, Weight, Q, Ripple, StopLevel, Order, ProtoOrder, LowpassAlpha, HighpassAlpha
};

struct Param {
    const char* option;              // without the leading dashes
    Kind kind;
    const char* meaning;
    std::optional<double> fallback;  // empty: the option is required
};

// A family-level choice such as --type or --variant. A hidden selector is not
// an option itself: it takes `implied` when any option in `impliedBy` is given
// (how --weight/--level pick the corner-placed shelves, --alpha the DC forms).
struct Selector {
    const char* option;
    std::vector<const char*> values;
    const char* fallback;
    const char* meaning;
    bool hidden = false;
    std::vector<const char*> impliedBy = {};
    const char* implied = nullptr;
};

struct Family {
    const char* name;
    const char* summary;
    std::vector<Selector> selectors;
};

struct Pin {
    const char* selector;
    const char* value;
};

// The library's design entry point with its arguments named after the
// options that feed them, and the call itself taking the values in
// `params` order.
using ApplyFn = void (*)(Mivora::IirProcess& filter, const double* values, double fs);

struct DesignRow {
    const char* family;
    std::vector<Pin> pins;  // selector values that pick this row
    const char* call;       // e.g. "setCoefLPFChev(order, freq, ripple, fs)"
    std::vector<Param> params;
    ApplyFn apply;
};

const std::vector<Family>& families();
const std::vector<DesignRow>& designRows();

const Family* findFamily(const std::string& name);
const Selector* findSelector(const Family& family, const std::string& option);

// "lowshelf --order 2 --variant B", "dc-lowpass with --alpha": how messages
// and `mivora list` name a row.
std::string rowLabel(const DesignRow& row);
// Entry-point name alone: "setCoefLPFChev".
std::string operationName(const DesignRow& row);
// Argument names of the call, in library order: {"order", "freq", "ripple", "fs"}.
std::vector<std::string> callArguments(const DesignRow& row);

// Every option any design takes, each once, in table order.
std::vector<std::string> allDesignOptions();
// Families that take `option`, for the option's help line.
std::vector<std::string> familiesTaking(const std::string& option);

std::string unitOf(Kind kind);

}  // namespace mivora_tool

#endif
