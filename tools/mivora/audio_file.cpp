#include "audio_file.hpp"

#include "usage_error.hpp"

namespace mivora_tool {

AudioReader::AudioReader(const std::string& path) : path_(path) {
    file_ = sf_open(path.c_str(), SFM_READ, &info_);
    if (!file_) throw UsageError("cannot read " + path + ": " + sf_strerror(nullptr));
    if (info_.channels < 1 || info_.samplerate < 1) {
        sf_close(file_);
        throw UsageError("cannot read " + path + ": no audio channels in it");
    }
}

AudioReader::~AudioReader() { sf_close(file_); }

sf_count_t AudioReader::read(float* interleaved, sf_count_t frames) {
    const sf_count_t got = sf_readf_float(file_, interleaved, frames);
    if (got < 0 || (got == 0 && sf_error(file_) != SF_ERR_NO_ERROR))
        throw UsageError("cannot read " + path_ + ": " + sf_strerror(file_));
    return got;
}

AudioWriter::AudioWriter(const std::string& path, int format, int channels, int sampleRate) : path_(path) {
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
    if (sf_writef_float(file_, interleaved, frames) != frames)
        throw UsageError("cannot write " + path_ + ": " + sf_strerror(file_));
}

void AudioWriter::commit() {
    const int status = sf_close(file_);
    file_ = nullptr;
    if (status != 0) throw UsageError("cannot write " + path_ + ": " + sf_error_number(status));
    pending_->commit();
}

int outputFormat(const SF_INFO& input, bool asFloat) {
    if (!asFloat) return input.format;
    return (input.format & (SF_FORMAT_TYPEMASK | SF_FORMAT_ENDMASK)) | SF_FORMAT_FLOAT;
}

}  // namespace mivora_tool
