// Sound files through libsndfile: a reader, and a writer that commits its
// file only when every frame is in.
#ifndef MIVORA_TOOL_AUDIO_FILE_HPP
#define MIVORA_TOOL_AUDIO_FILE_HPP

#include "pending_file.hpp"

#include <sndfile.h>

#include <memory>
#include <string>
#include <vector>

namespace mivora_tool {

class AudioReader {
public:
    // Throws UsageError for a file that cannot be opened or is not audio.
    explicit AudioReader(const std::string& path);
    ~AudioReader();
    AudioReader(const AudioReader&) = delete;
    AudioReader& operator=(const AudioReader&) = delete;

    const SF_INFO& info() const { return info_; }
    // Interleaved samples scaled to [-1, 1); returns the frames read, 0 at the end.
    sf_count_t read(float* interleaved, sf_count_t frames);

private:
    std::string path_;
    SF_INFO info_{};
    SNDFILE* file_ = nullptr;
};

class AudioWriter {
public:
    // Throws UsageError when `format` cannot be written or the target cannot be created.
    AudioWriter(const std::string& path, int format, int channels, int sampleRate);
    ~AudioWriter();
    AudioWriter(const AudioWriter&) = delete;
    AudioWriter& operator=(const AudioWriter&) = delete;

    void write(const float* interleaved, sf_count_t frames);
    void commit();

private:
    std::string path_;
    std::unique_ptr<PendingFile> pending_;
    SNDFILE* file_ = nullptr;
    int channels_ = 0;
    double steps_ = 0.0;  // integer steps per unit of a PCM format; 0 for others
    std::vector<float> rounded_;
};

}  // namespace mivora_tool

#endif
