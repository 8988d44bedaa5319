#include "coef_format.hpp"

#include "escaping.hpp"
#include "numbers.hpp"

#include <sstream>

namespace mivora_tool {

namespace {

const char* const kSectionNames[] = {"b0", "b1", "b2", "a1", "a2"};
const char* const kFirstOrderNames[] = {"b0", "b1", "a1"};
constexpr const char* kConvention = "y = b0*x + b1*x1 + b2*x2 + a1*y1 + a2*y2 (feedback added)";

// A first-order section as a second-order one with b2 = a2 = 0.
std::array<double, 5> padded(const std::array<double, 3>& c) { return {c[0], c[1], 0.0, c[2], 0.0}; }

// Negating an exact zero gives -0, which reads oddly in a table.
double negated(double v) { return -v + 0.0; }

std::string text(const Design& d, const Sections& s) {
    std::ostringstream out;
    out << d.label << "\n" << d.call() << "   order " << s.order << ", fs " << shortNumber(d.fs) << " Hz\n"
        << kConvention << "\n\n";
    for (std::size_t k = 0; k < s.biquads.size(); ++k) {
        out << "section " << k << "\n";
        for (std::size_t i = 0; i < 5; ++i)
            out << "  " << kSectionNames[i] << " = " << exactNumber(s.biquads[k][i]) << "\n";
    }
    if (s.firstOrder) {
        out << "first-order section   y = b0*x + b1*x1 + a1*y1\n";
        for (std::size_t i = 0; i < 3; ++i)
            out << "  " << kFirstOrderNames[i] << " = " << exactNumber((*s.firstOrder)[i]) << "\n";
    }
    return out.str();
}

std::string json(const Design& d, const Sections& s) {
    std::ostringstream out;
    out << "{\n  \"design\": " << jsonString(d.label) << ",\n  \"call\": " << jsonString(d.call())
        << ",\n  \"fs\": " << jsonNumber(d.fs) << ",\n  \"order\": " << s.order
        << ",\n  \"convention\": " << jsonString(kConvention) << ",\n  \"sections\": [";
    for (std::size_t k = 0; k < s.biquads.size(); ++k) {
        out << (k ? ",\n    {" : "\n    {");
        for (std::size_t i = 0; i < 5; ++i)
            out << (i ? ", " : "") << "\"" << kSectionNames[i] << "\": " << jsonNumber(s.biquads[k][i]);
        out << "}";
    }
    out << (s.biquads.empty() ? "],\n" : "\n  ],\n") << "  \"firstOrder\": ";
    if (s.firstOrder) {
        out << "{";
        for (std::size_t i = 0; i < 3; ++i)
            out << (i ? ", " : "") << "\"" << kFirstOrderNames[i] << "\": " << jsonNumber((*s.firstOrder)[i]);
        out << "}\n}\n";
    } else {
        out << "null\n}\n";
    }
    return out.str();
}

std::string csv(const Sections& s) {
    std::ostringstream out;
    out << "section,b0,b1,b2,a1,a2\n";
    auto row = [&out](const std::string& name, const std::array<double, 5>& c) {
        out << name;
        for (double v : c) out << "," << exactNumber(v);
        out << "\n";
    };
    for (std::size_t k = 0; k < s.biquads.size(); ++k) row(std::to_string(k), s.biquads[k]);
    if (s.firstOrder) row("first-order", padded(*s.firstOrder));
    return out.str();
}

std::string cArrays(const Design& d, const Sections& s) {
    std::ostringstream out;
    out << "/* " << d.label << "\n * " << d.call() << "\n * " << kConvention << " */\n";
    if (!s.biquads.empty()) {
        out << "static const double mivora_sections[" << s.biquads.size() << "][5] = {\n";
        for (const auto& b : s.biquads) {
            out << "    {";
            for (std::size_t i = 0; i < 5; ++i) out << (i ? ", " : "") << exactNumber(b[i]);
            out << "},\n";
        }
        out << "};\n";
    }
    if (s.firstOrder) {
        const auto& c = *s.firstOrder;
        out << "/* first-order section: y = b0*x + b1*x1 + a1*y1 */\n"
            << "static const double mivora_first_order[3] = {" << exactNumber(c[0]) << ", " << exactNumber(c[1])
            << ", " << exactNumber(c[2]) << "};\n";
    }
    return out.str();
}

std::string sos(const Sections& s) {
    std::ostringstream out;
    out << "# b0 b1 b2 1 -a1 -a2, one row per section\n";
    auto row = [&out](const std::array<double, 5>& c) {
        out << exactNumber(c[0]) << " " << exactNumber(c[1]) << " " << exactNumber(c[2]) << " 1 "
            << exactNumber(negated(c[3])) << " " << exactNumber(negated(c[4])) << "\n";
    };
    for (const auto& b : s.biquads) row(b);
    if (s.firstOrder) row(padded(*s.firstOrder));
    return out.str();
}

}  // namespace

std::string formatCoefficients(const Design& design, const Sections& sections, CoefFormat format) {
    switch (format) {
    case CoefFormat::Text: return text(design, sections);
    case CoefFormat::Json: return json(design, sections);
    case CoefFormat::Csv: return csv(sections);
    case CoefFormat::C: return cArrays(design, sections);
    case CoefFormat::Sos: return sos(sections);
    }
    return {};
}

}  // namespace mivora_tool
