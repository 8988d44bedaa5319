// Which container and sample format `mivora filter` writes: the container
// the output's extension (or --format) names, from libsndfile's own list of
// formats, and the input's sample format wherever that container holds it.
#ifndef MIVORA_TOOL_AUDIO_FORMATS_HPP
#define MIVORA_TOOL_AUDIO_FORMATS_HPP

#include <sndfile.h>

#include <string>

namespace mivora_tool {

struct OutputRequest {
    std::string path;
    std::string container;  // --format; empty: outPath's extension names it
    bool asFloat = false;   // 32-bit float samples whatever the input has
};

// The libsndfile format (container | sample format) to write `request` with
// for `input`'s audio. A name without an extension keeps the input's
// container. Throws UsageError, before any file is touched, when the name is
// no container libsndfile writes or the container cannot hold this audio.
int outputFormat(const SF_INFO& input, const OutputRequest& request);

// "FLAC (...), Signed 24 bit PCM", or the container alone: for messages.
std::string describeFormat(int format);

}  // namespace mivora_tool

#endif
