// Subcommands and options, declared with CLI11. Option values are taken as
// text and read by the design code, so that every bad value gets the same
// kind of one-line message whichever command it came through.
#include "command_line.hpp"

#include "numbers.hpp"
#include "usage_error.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>

#ifndef MIVORA_TOOL_VERSION
#define MIVORA_TOOL_VERSION "unknown"
#endif

namespace mivora_tool {

namespace {

constexpr double kDefaultFs = 48000.0;
const char* const kCommands[] = {"list", "coef", "response", "filter", "demo"};

std::string commandList() {
    std::string out;
    for (const char* c : kCommands) out += (out.empty() ? "" : ", ") + std::string(c);
    return out;
}

// The design name, its options and --fs, shared by coef, response and filter.
struct DesignOptions {
    std::string name;
    std::map<std::string, std::string> text;
    std::map<std::string, CLI::Option*> given;
    std::string fsText;
    CLI::Option* fs = nullptr;

    void declare(CLI::App& cmd, const std::string& fsHelp) {
        cmd.add_option("design", name, "design name (mivora list shows them)")->required();
        for (const std::string& option : allDesignOptions()) {
            std::string help = "for";
            for (const std::string& family : familiesTaking(option)) help += " " + family;
            given[option] = cmd.add_option("--" + option, text[option], help);
        }
        fs = cmd.add_option("--fs", fsText, fsHelp);
        for (CLI::Option* o : cmd.get_options())
            o->multi_option_policy(CLI::MultiOptionPolicy::Throw);
    }

    DesignRequest request() const {
        DesignRequest r{name, {}};
        for (const auto& [option, opt] : given)
            if (opt->count() > 0) r.options.emplace_back(option, text.at(option));
        return r;
    }

    std::optional<double> sampleRate() const {
        if (fs->count() == 0) return std::nullopt;
        return checkSampleRate("fs", parseNumber("fs", fsText));
    }
};

template <typename Format>
Format pickFormat(const std::string& text, const std::vector<std::pair<const char*, Format>>& names) {
    std::string allowed;
    for (const auto& [name, format] : names) {
        if (text == name) return format;
        allowed += (allowed.empty() ? "" : ", ") + std::string(name);
    }
    throw UsageError("--format must be one of: " + allowed + " (got '" + text + "')");
}

// Anything CLI11 left over is an option no command knows, or a stray word.
void rejectLeftovers(const CLI::App& cmd) {
    const std::vector<std::string> rest = cmd.remaining();
    if (rest.empty()) return;
    const std::string& first = rest.front();
    if (first.size() > 1 && first[0] == '-')
        throw UsageError("unknown option " + first.substr(0, first.find('=')) + " for " + cmd.get_name());
    throw UsageError("unexpected argument '" + first + "' for " + cmd.get_name());
}

struct Parser {
    CLI::App app{"Design, inspect, plot and apply Mivora IIR filters.", "mivora"};
    CLI::App* list = nullptr;
    CLI::App* coef = nullptr;
    CLI::App* response = nullptr;
    CLI::App* filter = nullptr;
    CLI::App* demo = nullptr;

    std::string listFamily;
    DesignOptions coefDesign, responseDesign, filterDesign;
    std::string coefFormat = "text";
    std::string tableFormat, fromText, toText, pointsText, atText, svgPath;
    CLI::Option* atOpt = nullptr;
    CLI::Option* fromOpt = nullptr;
    CLI::Option* toOpt = nullptr;
    CLI::Option* pointsOpt = nullptr;
    CLI::Option* tableFormatOpt = nullptr;
    std::string inPath, outPath, container, demoDir = "mivora-demo";
    bool asFloat = false;

    Parser() {
        app.require_subcommand(1);
        app.set_version_flag("--version", MIVORA_TOOL_VERSION);

        list = app.add_subcommand("list", "every design, its options and the library call it makes");
        list->add_option("design", listFamily, "show this design only");

        coef = app.add_subcommand("coef", "the coefficients of a design, per section");
        coefDesign.declare(*coef, "sampling frequency, Hz (default 48000)");
        coef->add_option("--format", coefFormat, "text, json, csv, c, or sos ([b0 b1 b2 1 -a1 -a2] rows)");

        response = app.add_subcommand("response", "power (dB) and phase (rad) over frequency, as a table or SVG plot");
        responseDesign.declare(*response, "sampling frequency, Hz (default 48000)");
        fromOpt = response->add_option("--from", fromText, "lowest frequency, Hz (default 10)");
        toOpt = response->add_option("--to", toText, "highest frequency, Hz (default fs/2)");
        pointsOpt = response->add_option("--points", pointsText,
                                         "frequencies, log-spaced (default 31, or 400 for --svg; 1 when from = to)");
        atOpt = response->add_option("--at", atText, "these frequencies instead, Hz, comma-separated (1000,2000)");
        tableFormatOpt = response->add_option("--format", tableFormat, "table as text, csv or json");
        response->add_option("--svg", svgPath, "write a plot of magnitude and phase to this file");

        filter = app.add_subcommand("filter", "run an audio file through a design, each channel on its own");
        filterDesign.declare(*filter, "sampling frequency the design assumes, Hz (default: the file's rate)");
        filter->add_option("--in", inPath, "input audio file (any format libsndfile reads)")->required();
        filter->add_option("--out", outPath,
                           "output file, in the container its extension names (wav, flac, ogg, opus, mp3, aiff, "
                           "caf, ...), with the input's sample format where that container holds it")
            ->required();
        filter->add_option("--format", container, "the output container whatever the extension (flac, wav, ...)");
        filter->add_flag("--float", asFloat, "write 32-bit float samples instead");

        demo = app.add_subcommand("demo", "a gallery of response plots, an index page and filtered sweeps");
        demo->add_option("--out", demoDir, "directory to write into (default mivora-demo)");

        for (CLI::App* cmd : {list, coef, response, filter, demo}) cmd->allow_extras();
    }

    Invocation invocation() {
        if (list->parsed()) {
            rejectLeftovers(*list);
            if (!listFamily.empty() && !findFamily(listFamily))
                throw UsageError("unknown design '" + listFamily + "' (mivora list shows them all)");
            return ListCommand{listFamily};
        }
        if (coef->parsed()) {
            rejectLeftovers(*coef);
            const CoefFormat format = pickFormat<CoefFormat>(
                coefFormat, {{"text", CoefFormat::Text}, {"json", CoefFormat::Json}, {"csv", CoefFormat::Csv},
                             {"c", CoefFormat::C}, {"sos", CoefFormat::Sos}});
            return CoefCommand{resolveDesign(coefDesign.request(), coefDesign.sampleRate().value_or(kDefaultFs)),
                               format};
        }
        if (response->parsed()) return responseCommand();
        if (filter->parsed()) {
            rejectLeftovers(*filter);
            if (inPath == outPath) throw UsageError("--out must differ from --in: the input is never overwritten");
            if (filter->get_option("--format")->count() > 0 && container.empty())
                throw UsageError("--format needs a container name such as flac or wav");
            FilterCommand c{filterDesign.request(), filterDesign.sampleRate(), inPath, outPath, container, asFloat};
            resolveDesign(c.request, c.fs);  // everything but the rate is checked before any file is opened
            return c;
        }
        rejectLeftovers(*demo);
        if (demoDir.empty()) throw UsageError("--out needs a directory name");
        return DemoCommand{demoDir};
    }

    ResponseCommand responseCommand() {
        rejectLeftovers(*response);
        ResponseCommand c;
        const double fs = responseDesign.sampleRate().value_or(kDefaultFs);
        c.design = resolveDesign(responseDesign.request(), fs);
        c.svgPath = svgPath;
        if (tableFormatOpt->count() > 0)
            c.format = pickFormat<TableFormat>(
                tableFormat, {{"text", TableFormat::Text}, {"json", TableFormat::Json}, {"csv", TableFormat::Csv}});
        else if (svgPath.empty())
            c.format = TableFormat::Text;
        if (atOpt->count() > 0) {
            if (fromOpt->count() + toOpt->count() + pointsOpt->count() > 0 || !svgPath.empty())
                throw UsageError("--at lists the frequencies itself: give it without --from, --to, --points, --svg");
            c.at = frequencyList(atText, fs);
            return c;
        }
        c.from = fromOpt->count() ? parseNumber("from", fromText) : std::min(10.0, fs / 200.0);
        c.to = toOpt->count() ? parseNumber("to", toText) : fs / 2.0;
        if (!(c.from > 0.0) || !(c.from <= c.to) || !(c.to <= fs / 2.0))
            throw UsageError("--from and --to must satisfy 0 < from <= to <= fs/2 = " + shortNumber(fs / 2.0) +
                             " Hz (got " + shortNumber(c.from) + " and " + shortNumber(c.to) + ")");
        const bool one = c.from == c.to;
        if (one && !svgPath.empty()) throw UsageError("--svg plots a range: it needs --from below --to");
        const long fallbackPoints = one ? 1 : svgPath.empty() ? 31 : 400;
        c.points = static_cast<int>(pointsOpt->count() ? parseWholeNumber("points", pointsText, 1, 100000)
                                                        : fallbackPoints);
        if ((c.points == 1) != one)
            throw UsageError(one ? "--from equals --to, one frequency: --points must be 1 there"
                                 : "--points 1 needs --from equal to --to (or --at for chosen frequencies)");
        return c;
    }

    // "1000,2000" as frequencies, each within [0, fs/2].
    static std::vector<double> frequencyList(const std::string& text, double fs) {
        std::vector<double> freqs;
        std::size_t start = 0;
        for (;;) {
            const std::size_t comma = text.find(',', start);
            const double f = parseNumber("at", text.substr(start, comma - start));
            if (!(f >= 0.0 && f <= fs / 2.0))
                throw UsageError("--at frequencies must lie in 0 to fs/2 = " + shortNumber(fs / 2.0) + " Hz (got " +
                                 shortNumber(f) + ")");
            freqs.push_back(f);
            if (comma == std::string::npos) return freqs;
            start = comma + 1;
        }
    }
};

// CLI11's own messages, for the few errors it catches before we see values,
// reworded where a plainer line helps.
std::string parseErrorLine(const CLI::ParseError& e, const Parser& parser) {
    std::string message = e.what();
    message.erase(std::remove(message.begin(), message.end(), '\n'), message.end());
    const std::string option = message.substr(0, message.find(':'));
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&e) && option.rfind("--", 0) == 0)
        return option + (message.find("missing") != std::string::npos ? " needs a value" : " is given more than once");
    if (dynamic_cast<const CLI::RequiredError*>(&e) && message == "design is required") {
        for (const CLI::App* cmd : parser.app.get_subcommands())
            return cmd->get_name() + " needs a design name (mivora list shows them)";
    }
    return message;
}
}  // namespace

ParseResult parseCommandLine(int argc, const char* const* argv) {
    ParseResult result;
    result.exitCode = kUsageExit;
    if (argc < 2) {
        result.error = "no command given; use one of " + commandList() + " (mivora --help tells more)";
        return result;
    }
    const std::string first = argv[1];
    const bool command = std::find(std::begin(kCommands), std::end(kCommands), first) != std::end(kCommands);
    if (!command && first != "-h" && first != "--help" && first != "--version") {
        const bool option = first.size() > 1 && first[0] == '-';
        result.error = oneLine((option ? "unknown option " + first : "unknown command '" + first + "'") +
                               "; use one of " + commandList());
        return result;
    }

    Parser parser;
    try {
        parser.app.parse(argc, argv);
        result.invocation = parser.invocation();
        result.exitCode = 0;
    } catch (const CLI::Success& e) {  // --help, --version
        std::ostringstream out, err;
        result.exitCode = parser.app.exit(e, out, err);
        result.output = out.str();
    } catch (const CLI::ParseError& e) {
        result.error = parseErrorLine(e, parser);
    } catch (const UsageError& e) {
        result.error = e.what();
    }
    result.error = oneLine(result.error);
    return result;
}

}  // namespace mivora_tool
