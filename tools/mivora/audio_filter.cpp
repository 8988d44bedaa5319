#include "audio_filter.hpp"

#include "audio_file.hpp"
#include "audio_formats.hpp"
#include "progress_bar.hpp"
#include "usage_error.hpp"

#include <mivora/IirChannels.h>

#include <algorithm>
#include <csignal>
#include <sys/stat.h>
#include <vector>

namespace mivora_tool {

namespace {

constexpr sf_count_t kBlockFrames = 4096;
// Files shorter than this finish before a bar would be worth reading.
constexpr double kProgressSeconds = 30.0;

volatile std::sig_atomic_t interrupted = 0;
extern "C" void noteInterrupt(int) { interrupted = 1; }

// An interrupt ends the run through the normal error path, so the pending
// output is removed rather than left behind.
class InterruptGuard {
public:
    InterruptGuard() {
        interrupted = 0;
        previousInt_ = std::signal(SIGINT, noteInterrupt);
        previousTerm_ = std::signal(SIGTERM, noteInterrupt);
    }
    ~InterruptGuard() {
        std::signal(SIGINT, previousInt_);
        std::signal(SIGTERM, previousTerm_);
    }
    void check() const {
        if (interrupted) throw Interrupted();
    }

private:
    void (*previousInt_)(int);
    void (*previousTerm_)(int);
};

// The file's channels in groups of up to IirChannels::maxChannels, all
// designed alike; each channel gives the bits of its own IirProcess.
class ChannelFilters {
public:
    ChannelFilters(int channels, const Design& design) : channels_(channels) {
        for (int c = 0; c < channels; c += Mivora::IirChannels::maxChannels) {
            groups_.emplace_back(std::min(Mivora::IirChannels::maxChannels, channels - c));
            groups_.back().forEachChannel([&design](Mivora::IirProcess& f) { design.applyTo(f); });
        }
    }

    // Interleaved frames in place.
    void process(float* interleaved, unsigned int frames) {
        if (groups_.size() == 1) return groups_[0].processInterleaved(interleaved, interleaved, frames);
        // More channels than one object holds: each group on planar copies.
        const auto n = static_cast<std::size_t>(frames), stride = static_cast<std::size_t>(channels_);
        planar_.resize(n * stride);
        std::vector<float*> rows;
        for (std::size_t c = 0; c < stride; ++c) {
            rows.push_back(planar_.data() + c * n);
            for (std::size_t i = 0; i < n; ++i) rows[c][i] = interleaved[i * stride + c];
        }
        for (std::size_t g = 0; g < groups_.size(); ++g) {
            float* const* group = rows.data() + g * Mivora::IirChannels::maxChannels;
            groups_[g].processPlanar(group, group, frames);
        }
        for (std::size_t c = 0; c < stride; ++c)
            for (std::size_t i = 0; i < n; ++i) interleaved[i * stride + c] = rows[c][i];
    }

private:
    int channels_;
    std::vector<Mivora::IirChannels> groups_;
    std::vector<float> planar_;
};

bool sameFile(const std::string& a, const std::string& b) {
    struct stat sa{}, sb{};
    return ::stat(a.c_str(), &sa) == 0 && ::stat(b.c_str(), &sb) == 0 && sa.st_dev == sb.st_dev &&
           sa.st_ino == sb.st_ino;
}

}  // namespace

Design filterFile(const FilterJob& job) {
    if (job.inPath == job.outPath || sameFile(job.inPath, job.outPath))
        throw UsageError("--out must differ from --in: the input is never overwritten");
    AudioReader reader(job.inPath);
    const SF_INFO& info = reader.info();
    const Design design = resolveDesign(job.request, job.fs.value_or(static_cast<double>(info.samplerate)));
    design.build();  // refuses values whose coefficients are not finite

    const int channels = info.channels;
    ChannelFilters filters(channels, design);
    AudioWriter writer(job.outPath, outputFormat(info, {job.outPath, job.container, job.asFloat}), channels,
                       info.samplerate);

    const InterruptGuard guard;
    ProgressBar progress("filtering " + job.inPath, static_cast<double>(info.frames),
                         job.showProgress && info.frames > kProgressSeconds * info.samplerate);
    std::vector<float> interleaved(static_cast<std::size_t>(kBlockFrames * channels));
    double done = 0.0;
    for (sf_count_t frames; (frames = reader.read(interleaved.data(), kBlockFrames)) > 0;) {
        filters.process(interleaved.data(), static_cast<unsigned>(frames));
        writer.write(interleaved.data(), frames);
        done += static_cast<double>(frames);
        progress.update(done);
        guard.check();
    }
    writer.commit();
    return design;
}

}  // namespace mivora_tool
