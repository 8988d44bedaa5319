#include "audio_file.hpp"

#include "usage_error.hpp"

#include <cmath>
#include <cstdlib>
#include <cstring>

namespace mivora_tool {

namespace {

// Integer steps per unit full scale of the integer sample formats.
// libsndfile truncates floats toward minus infinity when it converts with
// clipping; rounding to the format's grid first makes that conversion exact,
// so integer output is the filter's result rounded to nearest.
double integerSteps(int format) {
    switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_S8:
    case SF_FORMAT_PCM_U8:
    case SF_FORMAT_DPCM_8: return 128.0;
    case SF_FORMAT_PCM_16:
    case SF_FORMAT_DPCM_16:
    case SF_FORMAT_ALAC_16: return 32768.0;
    case SF_FORMAT_ALAC_20: return 524288.0;
    case SF_FORMAT_PCM_24:
    case SF_FORMAT_ALAC_24: return 8388608.0;
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_ALAC_32: return 2147483648.0;
    default: return 0.0;
    }
}

// libsndfile opens a file whose header promises more audio than the file
// holds, and only notes it in its log, as "data : 1600 (should be 800)" for
// WAV and "SSND : ..." for AIFF. A truncated file is refused here instead of
// turned into a shorter output.
bool promisesMoreAudioThanItHolds(SNDFILE* file) {
    char log[16384] = {};
    sf_command(file, SFC_GET_LOG_INFO, log, sizeof log);
    for (const char* line = log; *line != '\0';) {
        while (*line == ' ') ++line;
        const bool audioChunk = std::strncmp(line, "data", 4) == 0 || std::strncmp(line, "SSND", 4) == 0;
        const char* colon = std::strchr(line, ':');
        const char* should = std::strstr(line, "(should be ");
        const char* end = std::strchr(line, '\n');
        if (end == nullptr) end = line + std::strlen(line);
        if (audioChunk && colon != nullptr && colon < end && should != nullptr && should < end) {
            const double declared = std::strtod(colon + 1, nullptr);
            const double present = std::strtod(should + std::strlen("(should be "), nullptr);
            if (present < declared) return true;
        }
        line = *end == '\n' ? end + 1 : end;
    }
    return false;
}

}  // namespace

AudioReader::AudioReader(const std::string& path) : path_(path) {
    file_ = sf_open(path.c_str(), SFM_READ, &info_);
    if (!file_) throw UsageError("cannot read " + path + ": " + sf_strerror(nullptr));
    if (info_.channels < 1 || info_.samplerate < 1) {
        sf_close(file_);
        throw UsageError("cannot read " + path + ": no audio channels in it");
    }
    if (promisesMoreAudioThanItHolds(file_)) {
        sf_close(file_);
        throw UsageError("cannot read " + path + ": the file is truncated (its header promises more audio)");
    }
}

AudioReader::~AudioReader() { sf_close(file_); }

sf_count_t AudioReader::read(float* interleaved, sf_count_t frames) {
    const sf_count_t got = sf_readf_float(file_, interleaved, frames);
    if (got < 0 || (got == 0 && sf_error(file_) != SF_ERR_NO_ERROR))
        throw UsageError("cannot read " + path_ + ": " + sf_strerror(file_));
    return got;
}

AudioWriter::AudioWriter(const std::string& path, int format, int channels, int sampleRate)
    : path_(path), channels_(channels), steps_(integerSteps(format)) {
    SF_INFO info{};
    info.format = format;
    info.channels = channels;
    info.samplerate = sampleRate;
    if (!sf_format_check(&info)) throw UsageError("cannot write " + path + ": the format cannot hold this audio");
    pending_ = std::make_unique<PendingFile>(path);
    file_ = sf_open_fd(pending_->descriptor(), SFM_WRITE, &info, SF_FALSE);
    if (!file_) throw UsageError("cannot write " + path + ": " + sf_strerror(nullptr));
    // Without clipping, a boost past full scale would wrap around in integer formats.
    sf_command(file_, SFC_SET_CLIPPING, nullptr, SF_TRUE);
}

AudioWriter::~AudioWriter() {
    if (file_) sf_close(file_);
}

void AudioWriter::write(const float* interleaved, sf_count_t frames) {
    if (steps_ > 0.0) {
        rounded_.assign(interleaved, interleaved + frames * channels_);
        for (float& v : rounded_) v = static_cast<float>(std::nearbyint(static_cast<double>(v) * steps_) / steps_);
        interleaved = rounded_.data();
    }
    if (sf_writef_float(file_, interleaved, frames) != frames)
        throw UsageError("cannot write " + path_ + ": " + sf_strerror(file_));
}

void AudioWriter::commit() {
    const int status = sf_close(file_);
    file_ = nullptr;
    if (status != 0) throw UsageError("cannot write " + path_ + ": " + sf_error_number(status));
    pending_->commit();
}

}  // namespace mivora_tool
