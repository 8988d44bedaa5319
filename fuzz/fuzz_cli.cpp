// libFuzzer target: the tool's command line. The input, split at NUL bytes,
// is the argument list after the program name.
//
// Parsing must never throw, crash or touch memory it should not, and what it
// returns must be one of the forms main() knows how to report:
//  - a command, with exit status 0 and no message;
//  - help or version text for stdout, with exit status 0;
//  - one line of error for stderr, with exit status 2.
// A command that carries a design must hold checked values: building the
// filter either gives it or says in one line why not; response frequencies
// must lie in [0, fs/2], a range in (0, fs/2] with one point exactly when it
// is a single frequency. The same arguments parsed again
// give the same result.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <variant>
#include <vector>

#include "command_line.hpp"
#include "usage_error.hpp"

namespace {

using namespace mivora_tool;

[[noreturn]] void fail(const char* what, const std::string& detail = {}) {
    std::fprintf(stderr, "mivora_fuzz_cli: %s %s\n", what, detail.c_str());
    std::abort();
}

bool oneLine(const std::string& s) { return !s.empty() && s.find('\n') == std::string::npos; }

// What a parse gave, as text, to compare two parses.
std::string describe(const ParseResult& r) {
    std::string d = std::to_string(r.exitCode) + "|" + r.output + "|" + r.error + "|";
    if (r.invocation) {
        d += std::to_string(r.invocation->index());
        if (const auto* c = std::get_if<CoefCommand>(&*r.invocation)) d += c->design.call() + c->design.label;
        if (const auto* c = std::get_if<ResponseCommand>(&*r.invocation)) d += c->design.call() + c->design.label;
    }
    return d;
}

void checkDesign(const Design& design) {
    if (design.row == nullptr) fail("a command carries no design row");
    try {
        (void)design.build();
    } catch (const UsageError& e) {
        if (!oneLine(e.what())) fail("a design was refused in more than one line:", e.what());
    }
}

void checkForm(const ParseResult& r) {
    if (r.invocation) {
        if (r.exitCode != 0 || !r.error.empty() || !r.output.empty()) fail("a command came with a message or status");
        if (const auto* c = std::get_if<CoefCommand>(&*r.invocation)) checkDesign(c->design);
        if (const auto* c = std::get_if<ResponseCommand>(&*r.invocation)) {
            checkDesign(c->design);
            const double nyquist = c->design.fs / 2.0;
            for (double f : c->at)
                if (!(f >= 0.0 && f <= nyquist)) fail("a response frequency outside [0, fs/2]");
            if (c->at.empty() && (!(c->from > 0.0 && c->from <= c->to && c->to <= nyquist) ||
                                  (c->points == 1) != (c->from == c->to) || c->points < 1))
                fail("a response range outside (0, fs/2], or one point for a range");
        }
        return;
    }
    if (r.exitCode == kUsageExit) {
        if (!oneLine(r.error) || !r.output.empty()) fail("an error that is not one line:", r.error);
    } else if (r.exitCode == 0) {
        if (r.output.empty() || !r.error.empty()) fail("status 0 without a command or text");
    } else {
        fail("unexpected exit status", std::to_string(r.exitCode));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> args{"mivora"};
    std::string current;
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == 0) {
            args.push_back(current);
            current.clear();
        } else {
            current.push_back(static_cast<char>(data[i]));
        }
    }
    if (size > 0) args.push_back(current);
    std::vector<const char*> argv;
    for (const std::string& a : args) argv.push_back(a.c_str());
    argv.push_back(nullptr);
    const int argc = static_cast<int>(args.size());

    const ParseResult first = parseCommandLine(argc, argv.data());
    checkForm(first);
    if (describe(parseCommandLine(argc, argv.data())) != describe(first)) fail("a second parse gave another result");
    return 0;
}
