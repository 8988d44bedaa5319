#include "audio_filter.hpp"

#include "audio_file.hpp"
#include "audio_formats.hpp"
#include "progress_bar.hpp"
#include "usage_error.hpp"

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
    std::vector<Mivora::IirProcess> filters(static_cast<std::size_t>(channels));
    for (Mivora::IirProcess& f : filters) design.applyTo(f);
    AudioWriter writer(job.outPath, outputFormat(info, {job.outPath, job.container, job.asFloat}), channels,
                       info.samplerate);

    const InterruptGuard guard;
    ProgressBar progress("filtering " + job.inPath, static_cast<double>(info.frames),
                         job.showProgress && info.frames > kProgressSeconds * info.samplerate);
    std::vector<float> interleaved(static_cast<std::size_t>(kBlockFrames * channels));
    std::vector<float> channel(static_cast<std::size_t>(kBlockFrames));
    double done = 0.0;
    for (sf_count_t frames; (frames = reader.read(interleaved.data(), kBlockFrames)) > 0;) {
        const auto n = static_cast<std::size_t>(frames);
        for (std::size_t c = 0; c < filters.size(); ++c) {
            for (std::size_t i = 0; i < n; ++i) channel[i] = interleaved[i * filters.size() + c];
            filters[c].doProcess(channel.data(), channel.data(), static_cast<unsigned>(n));
            for (std::size_t i = 0; i < n; ++i) interleaved[i * filters.size() + c] = channel[i];
        }
        writer.write(interleaved.data(), frames);
        done += static_cast<double>(frames);
        progress.update(done);
        guard.check();
    }
    writer.commit();
    return design;
}

}  // namespace mivora_tool
