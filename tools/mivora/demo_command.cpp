// `mivora demo`: the gallery of plots, a sweep through some of the designs,
// and a page that shows them all.
#include "commands.hpp"

#include "audio_file.hpp"
#include "audio_filter.hpp"
#include "demo_gallery.hpp"
#include "demo_index.hpp"
#include "numbers.hpp"
#include "pending_file.hpp"
#include "response_plot.hpp"
#include "usage_error.hpp"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <sstream>

namespace mivora_tool {

namespace {

constexpr double kFs = 48000.0;
constexpr FrequencyRange kPlotRange{10.0, 24000.0, 500};

// "lowpass --order 4 --freq 1000" as a request; the table holds only well-formed words.
DesignRequest requestFromWords(const std::string& words) {
    std::istringstream in(words);
    DesignRequest request;
    in >> request.name;
    std::string option, value;
    while (in >> option >> value) request.options.emplace_back(option.substr(2), value);
    return request;
}

// Exponential sweep: equal time per octave, faded in and out to avoid clicks.
std::vector<float> logSweep(double seconds, double f0, double f1, double amplitude) {
    const auto n = static_cast<std::size_t>(seconds * kFs);
    const double rate = std::log(f1 / f0);
    const double fade = 0.02 * kFs;
    std::vector<float> out(n);
    for (std::size_t i = 0; i < n; ++i) {
        const double t = static_cast<double>(i) / kFs;
        const double phase = 2.0 * kPi * f0 * seconds / rate * (std::exp(t / seconds * rate) - 1.0);
        const double edge = std::min(static_cast<double>(i), static_cast<double>(n - 1 - i));
        const double gain = edge < fade ? 0.5 - 0.5 * std::cos(kPi * edge / fade) : 1.0;
        out[i] = static_cast<float>(amplitude * gain * std::sin(phase));
    }
    return out;
}

std::string subtitleFor(const std::vector<std::pair<std::string, Design>>& curves) {
    std::vector<std::string> operations;
    for (const auto& curve : curves) {
        const std::string op = operationName(*curve.second.row);
        if (std::find(operations.begin(), operations.end(), op) == operations.end()) operations.push_back(op);
    }
    std::string subtitle;
    for (const std::string& op : operations) subtitle += (subtitle.empty() ? "" : ", ") + op;
    return subtitle;
}

std::vector<IndexEntry> writePlots(const std::filesystem::path& dir) {
    std::vector<IndexEntry> entries;
    for (const GalleryPlot& g : galleryPlots()) {
        std::vector<std::pair<std::string, Design>> curves;
        IndexEntry entry{std::string(g.file) + ".svg", g.title, {}};
        for (const GalleryCurve& c : g.curves) {
            curves.emplace_back(c.legend, resolveDesign(requestFromWords(c.design), kFs));
            entry.commands.push_back(std::string("mivora response ") + c.design + " --svg plot.svg");
        }
        const Plot plot = responsePlot(g.title, subtitleFor(curves), curves, kPlotRange);
        writeWholeFile((dir / entry.file).string(), renderSvg(plot));
        entries.push_back(entry);
    }
    return entries;
}

std::vector<IndexEntry> writeSounds(const std::filesystem::path& dir, const std::string& sweepFile) {
    const std::vector<float> sweep = logSweep(6.0, 20.0, 20000.0, 0.5);
    AudioWriter writer((dir / sweepFile).string(), SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1, static_cast<int>(kFs));
    writer.write(sweep.data(), static_cast<sf_count_t>(sweep.size()));
    writer.commit();

    std::vector<IndexEntry> entries;
    for (const GallerySound& s : gallerySounds()) {
        IndexEntry entry{std::string(s.file) + ".wav", s.title, {}};
        filterFile({requestFromWords(s.design), std::nullopt, (dir / sweepFile).string(), (dir / entry.file).string(),
                    false, false, {}});
        entry.commands.push_back("mivora filter " + std::string(s.design) + " --in " + sweepFile + " --out " +
                                 entry.file);
        entries.push_back(entry);
    }
    return entries;
}

}  // namespace

void runDemo(const DemoCommand& command, std::ostream& out) {
    const std::filesystem::path dir = command.outDir;
    std::error_code error;
    std::filesystem::create_directories(dir, error);
    if (error) throw UsageError("cannot create " + command.outDir + ": " + error.message());

    const std::string sweepFile = "sweep.wav";
    const std::vector<IndexEntry> plots = writePlots(dir);
    const std::vector<IndexEntry> sounds = writeSounds(dir, sweepFile);
    const std::filesystem::path index = dir / "index.html";
    writeWholeFile(index.string(), renderIndexPage(plots, sweepFile, sounds));

    const std::string where = std::filesystem::absolute(dir).lexically_normal().string();
    out << "mivora demo: " << plots.size() << " response plots, a sweep and " << sounds.size()
        << " filtered versions of it in " << where << "\n"
        << "  open " << std::filesystem::absolute(index).lexically_normal().string() << " in a browser\n";
}

}  // namespace mivora_tool
