#include "demo_index.hpp"

#include "escaping.hpp"

#include <sstream>

namespace mivora_tool {

namespace {

constexpr const char* kStyle =
    "body{font-family:'DejaVu Sans',Helvetica,Arial,sans-serif;margin:2em auto;max-width:1900px;padding:0 1.5em;"
    "color:#222}h1{margin-bottom:.2em}p.lead{color:#555;margin-top:0}"
    ".grid{display:grid;grid-template-columns:repeat(auto-fill,minmax(640px,1fr));gap:1.5em}"
    "figure{margin:0;border:1px solid #ddd;border-radius:6px;padding:.8em;background:#fff}"
    "figure img{width:100%;height:auto}figcaption{font-size:.95em}"
    "code{display:block;font-size:.85em;color:#333;background:#f5f5f5;padding:.2em .4em;margin-top:.3em;"
    "white-space:pre-wrap}audio{width:100%;margin-top:.4em}";

void commands(std::ostringstream& out, const std::vector<std::string>& lines) {
    for (const std::string& c : lines) out << "<code>" << xmlEscaped(c) << "</code>";
}

}  // namespace

std::string renderIndexPage(const std::vector<IndexEntry>& plots, const std::string& sweepFile,
                            const std::vector<IndexEntry>& sounds) {
    std::ostringstream out;
    out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        << "<title>Mivora filter gallery</title>\n<style>" << kStyle << "</style>\n</head>\n<body>\n"
        << "<h1>Mivora filter gallery</h1>\n"
        << "<p class=\"lead\">Responses as each filter reports them (power in dB, phase in radians) at fs 48 kHz. "
           "Under each plot: the commands that draw one curve each.</p>\n<div class=\"grid\">\n";
    for (const IndexEntry& p : plots) {
        out << "<figure><a href=\"" << xmlEscaped(p.file) << "\"><img src=\"" << xmlEscaped(p.file) << "\" alt=\""
            << xmlEscaped(p.title) << "\"></a>\n<figcaption>";
        commands(out, p.commands);
        out << "</figcaption></figure>\n";
    }
    out << "</div>\n<h2>Hear it</h2>\n<p>A logarithmic sweep from 20 Hz to 20 kHz, and the same sweep through "
           "some of the filters above.</p>\n<div class=\"grid\">\n"
        << "<figure><figcaption><strong>The sweep</strong></figcaption><audio controls src=\"" << xmlEscaped(sweepFile)
        << "\"></audio></figure>\n";
    for (const IndexEntry& s : sounds) {
        out << "<figure><figcaption><strong>" << xmlEscaped(s.title) << "</strong>";
        commands(out, s.commands);
        out << "</figcaption><audio controls src=\"" << xmlEscaped(s.file) << "\"></audio></figure>\n";
    }
    out << "</div>\n</body>\n</html>\n";
    return out.str();
}

}  // namespace mivora_tool
