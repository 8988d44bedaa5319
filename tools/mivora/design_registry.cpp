// Look-ups over the design table, and the names it shows people.
#include "design_registry.hpp"

#include <algorithm>
#include <cstring>

namespace mivora_tool {

const Family* findFamily(const std::string& name) {
    for (const Family& f : families())
        if (name == f.name) return &f;
    return nullptr;
}

const Selector* findSelector(const Family& family, const std::string& option) {
    for (const Selector& s : family.selectors)
        if (option == s.option) return &s;
    return nullptr;
}

std::string rowLabel(const DesignRow& row) {
    const Family* family = findFamily(row.family);
    std::string label = row.family;
    for (const Pin& pin : row.pins) {
        const Selector* s = family ? findSelector(*family, pin.selector) : nullptr;
        if (s && s->hidden) {
            if (s->implied && std::strcmp(pin.value, s->implied) == 0) {
                label += " with ";
                for (std::size_t i = 0; i < s->impliedBy.size(); ++i)
                    label += (i ? "/--" : "--") + std::string(s->impliedBy[i]);
            }
            continue;
        }
        label += " --" + std::string(pin.selector) + " " + pin.value;
    }
    return label;
}

std::string operationName(const DesignRow& row) {
    const std::string call = row.call;
    return call.substr(0, call.find('('));
}

std::vector<std::string> callArguments(const DesignRow& row) {
    const std::string call = row.call;
    const std::size_t open = call.find('(');
    const std::size_t close = call.rfind(')');
    std::vector<std::string> names;
    if (open == std::string::npos || close == std::string::npos || close < open) return names;
    std::string current;
    for (std::size_t i = open + 1; i < close; ++i) {
        if (call[i] == ',') {
            names.push_back(current);
            current.clear();
        } else if (call[i] != ' ') {
            current += call[i];
        }
    }
    if (!current.empty()) names.push_back(current);
    return names;
}

std::vector<std::string> allDesignOptions() {
    std::vector<std::string> options;
    auto add = [&options](const char* name) {
        if (std::find(options.begin(), options.end(), name) == options.end()) options.emplace_back(name);
    };
    for (const Family& f : families())
        for (const Selector& s : f.selectors)
            if (!s.hidden) add(s.option);
    for (const DesignRow& row : designRows())
        for (const Param& p : row.params) add(p.option);
    return options;
}

std::vector<std::string> familiesTaking(const std::string& option) {
    std::vector<std::string> names;
    auto add = [&names](const char* name) {
        if (std::find(names.begin(), names.end(), name) == names.end()) names.emplace_back(name);
    };
    for (const Family& f : families()) {
        const Selector* s = findSelector(f, option);
        if (s && !s->hidden) add(f.name);
    }
    for (const DesignRow& row : designRows())
        for (const Param& p : row.params)
            if (option == p.option) add(row.family);
    return names;
}

std::string unitOf(Kind kind) {
    switch (kind) {
    case Kind::Frequency: return "Hz";
    case Kind::Gain:
    case Kind::Level:
    case Kind::Ripple: return "dB";
    case Kind::StopLevel: return "dB/10";
    case Kind::Order: return "1.." + std::to_string(Mivora::IirProcess::maxOrder);
    case Kind::ProtoOrder: return "1.." + std::to_string(Mivora::IirProcess::maxProtoOrder);
    case Kind::Weight:
    case Kind::Q:
    case Kind::LowpassAlpha:
    case Kind::HighpassAlpha: return "";
    }
    return "";
}

}  // namespace mivora_tool
