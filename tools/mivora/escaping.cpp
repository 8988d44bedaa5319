#include "escaping.hpp"

#include "numbers.hpp"

#include <cmath>
#include <cstdio>

namespace mivora_tool {

std::string jsonString(const std::string& s) {
    std::string out = "\"";
    for (const char ch : s) {
        const auto c = static_cast<unsigned char>(ch);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += ch;
        } else if (c < 0x20) {
            char buf[8];
            std::snprintf(buf, sizeof buf, "\\u%04x", c);
            out += buf;
        } else {
            out += ch;
        }
    }
    return out + "\"";
}

std::string jsonNumber(double v) { return std::isfinite(v) ? exactNumber(v) : "null"; }

std::string xmlEscaped(const std::string& s) {
    std::string out;
    for (const char c : s) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        default: out += c;
        }
    }
    return out;
}

}  // namespace mivora_tool
