// Turning a typed request into a checked design. The library accepts any
// value; the checks here are where a user learns that a value makes no sense.
#include "design.hpp"

#include "numbers.hpp"
#include "sections.hpp"
#include "usage_error.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace mivora_tool {

namespace {

using Given = std::vector<std::pair<std::string, std::string>>;

const std::string* findGiven(const Given& given, const std::string& option) {
    for (const auto& [name, text] : given)
        if (name == option) return &text;
    return nullptr;
}

std::string joined(const std::vector<const char*>& words) {
    std::string out;
    for (const char* w : words) out += (out.empty() ? "" : ", ") + std::string(w);
    return out;
}

// The value each of the family's selectors takes for this request.
std::vector<std::pair<std::string, std::string>> selectorValues(const Family& family, const Given& given) {
    std::vector<std::pair<std::string, std::string>> chosen;
    for (const Selector& s : family.selectors) {
        std::string value = s.fallback;
        if (s.hidden) {
            for (const char* trigger : s.impliedBy)
                if (findGiven(given, trigger)) value = s.implied;
        } else if (const std::string* text = findGiven(given, s.option)) {
            const auto& allowed = s.values;
            if (std::find_if(allowed.begin(), allowed.end(), [&](const char* v) { return *text == v; }) ==
                allowed.end())
                throw UsageError("--" + std::string(s.option) + " must be one of: " + joined(allowed) + " (got '" +
                                 *text + "')");
            value = *text;
        }
        chosen.emplace_back(s.option, value);
    }
    return chosen;
}

bool pinsMatch(const DesignRow& row, const std::vector<std::pair<std::string, std::string>>& chosen) {
    for (const Pin& pin : row.pins) {
        const auto it =
            std::find_if(chosen.begin(), chosen.end(), [&](const auto& c) { return c.first == pin.selector; });
        if (it == chosen.end() || it->second != pin.value) return false;
    }
    return true;
}

bool rowTakes(const DesignRow& row, const std::string& option) {
    for (const Pin& pin : row.pins)
        if (option == pin.selector) return true;
    for (const Param& p : row.params)
        if (option == p.option) return true;
    return false;
}

// Range checks by kind; `shown` is how the message names the value.
void checkValue(const Param& p, double v, std::optional<double> fs, const std::string& shown) {
    const std::string name = "--" + std::string(p.option);
    auto fail = [&](const std::string& rule) { throw UsageError(name + " must be " + rule + " (got " + shown + ")"); };
    switch (p.kind) {
    case Kind::Frequency:
        if (!(v > 0.0)) fail("above 0 Hz");
        if (fs && !(v < *fs / 2.0)) fail("below fs/2 = " + shortNumber(*fs / 2.0) + " Hz");
        break;
    case Kind::Q:
    case Kind::Ripple:
        if (!(v > 0.0)) fail("above 0");
        break;
    case Kind::StopLevel:
        if (!(v < 960.0)) fail("below 960 (an attenuation above 0 dB)");
        break;
    case Kind::LowpassAlpha:
        if (!(v > 0.0 && v < 2.0)) fail("between 0 and 2 for a stable filter");
        break;
    case Kind::HighpassAlpha:
        if (!(v > 0.0 && v < 4.0)) fail("between 0 and 4 for a stable filter");
        break;
    case Kind::Order:
    case Kind::ProtoOrder:
    case Kind::Gain:
    case Kind::Level:
    case Kind::Weight:
        break;  // whole-number ranges are checked while parsing; any finite dB or weight is fine
    }
}

double readValue(const Param& p, const std::string& text) {
    using Mivora::IirProcess;
    if (p.kind == Kind::Order) return static_cast<double>(parseWholeNumber(p.option, text, 1, IirProcess::maxOrder));
    if (p.kind == Kind::ProtoOrder)
        return static_cast<double>(parseWholeNumber(p.option, text, 1, IirProcess::maxProtoOrder));
    return parseNumber(p.option, text);
}

std::string requestLabel(const Family& family, const DesignRow& row, const Given& given) {
    std::string label = family.name;
    auto add = [&](const char* option) {
        if (const std::string* text = findGiven(given, option)) label += " --" + std::string(option) + " " + *text;
    };
    for (const Selector& s : family.selectors)
        if (!s.hidden) add(s.option);
    for (const Param& p : row.params) add(p.option);
    return label;
}

}  // namespace

double checkSampleRate(const std::string& option, double fs) {
    if (!(fs > 0.0) || !std::isfinite(fs))
        throw UsageError("--" + option + " must be a positive sampling frequency (got " + shortNumber(fs) + ")");
    return fs;
}

Design resolveDesign(const DesignRequest& request, std::optional<double> fs) {
    const Family* family = findFamily(request.name);
    if (!family) throw UsageError("unknown design '" + request.name + "' (mivora list shows them all)");

    const auto chosen = selectorValues(*family, request.options);
    const auto& rows = designRows();
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const DesignRow& r) {
        return request.name == r.family && pinsMatch(r, chosen);
    });
    if (row == rows.end()) throw UsageError("no " + request.name + " design is available for these options");

    for (const auto& given : request.options)
        if (!rowTakes(*row, given.first))
            throw UsageError("--" + given.first + " does not apply to " + rowLabel(*row));

    Design design;
    design.row = &*row;
    design.fs = fs.value_or(0.0);
    for (const Param& p : row->params) {
        const std::string* text = findGiven(request.options, p.option);
        if (!text && !p.fallback)
            throw UsageError(rowLabel(*row) + " needs --" + p.option + " (" + p.meaning + ")");
        const double v = text ? readValue(p, *text) : *p.fallback;
        checkValue(p, v, fs, text ? *text : shortNumber(v) + ", the default");
        design.values.push_back(v);
    }

    // Band edges are the one check that spans two options.
    const auto& params = row->params;
    auto named = [&params](const char* option) {
        return std::find_if(params.begin(), params.end(),
                            [option](const Param& p) { return !std::strcmp(p.option, option); });
    };
    const auto low = named("low");
    const auto high = named("high");
    if (low != params.end() && high != params.end()) {
        const double lo = design.values[static_cast<std::size_t>(low - params.begin())];
        const double hi = design.values[static_cast<std::size_t>(high - params.begin())];
        if (!(lo < hi))
            throw UsageError("--low must be below --high (got " + shortNumber(lo) + " and " + shortNumber(hi) + ")");
    }

    design.label = requestLabel(*family, *row, request.options);
    return design;
}

Mivora::IirProcess Design::build() const {
    Mivora::IirProcess filter;
    applyTo(filter);
    if (!readSections(filter).allFinite())
        throw UsageError(label + ": these values give coefficients that are not finite numbers");
    return filter;
}

std::string Design::call() const {
    std::string out = operationName(*row) + "(";
    const std::vector<std::string> args = callArguments(*row);
    for (std::size_t i = 0; i < args.size(); ++i) {
        double v = fs;
        for (std::size_t k = 0; k < row->params.size(); ++k)
            if (args[i] == row->params[k].option) v = values[k];
        out += (i ? ", " : "") + shortNumber(v);
    }
    return out + ")";
}

}  // namespace mivora_tool
