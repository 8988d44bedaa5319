#include "audio_formats.hpp"

#include "usage_error.hpp"

#include <algorithm>
#include <cctype>
#include <optional>
#include <vector>

namespace mivora_tool {

namespace {

std::string lowerCase(std::string s) {
    for (char& ch : s) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    return s;
}

// libsndfile's own list: each container with its usual extension.
std::vector<SF_FORMAT_INFO> formatList(int countCommand, int itemCommand) {
    int count = 0;
    sf_command(nullptr, countCommand, &count, sizeof count);
    std::vector<SF_FORMAT_INFO> list;
    for (int i = 0; i < count; ++i) {
        SF_FORMAT_INFO info{};
        info.format = i;
        if (sf_command(nullptr, itemCommand, &info, sizeof info) == 0) list.push_back(info);
    }
    return list;
}

// Names users give that libsndfile's list spells otherwise ("oga", "m1a")
// or does not list as a container (Opus is a codec inside Ogg); these also
// fix the sample format.
struct Alias {
    const char* name;
    int format;
};
constexpr Alias kAliases[] = {
    {"ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS},
    {"opus", SF_FORMAT_OGG | SF_FORMAT_OPUS},
    {"mp3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III},
    {"aif", SF_FORMAT_AIFF},
};

// The container (and, for an alias, the sample format) a name stands for.
std::optional<int> formatNamed(const std::string& name) {
    const std::string key = lowerCase(name);
    for (const Alias& a : kAliases)
        if (key == a.name) return a.format;
    // The first of several containers sharing an extension is the usual one
    // (Microsoft WAV before NIST Sphere).
    for (const SF_FORMAT_INFO& f : formatList(SFC_GET_FORMAT_MAJOR_COUNT, SFC_GET_FORMAT_MAJOR))
        if (f.extension != nullptr && key == f.extension) return f.format;
    return std::nullopt;
}

bool writable(int format, const SF_INFO& input) {
    SF_INFO info{};
    info.format = format;
    info.channels = input.channels;
    info.samplerate = input.samplerate;
    return sf_format_check(&info) != 0;
}

// The names a user may give, for the refusal message: those whose container
// this libsndfile writes at all.
std::string writableNames() {
    std::vector<std::string> names;
    SF_INFO probe{};
    probe.channels = 1;
    probe.samplerate = 48000;
    const auto subtypes = formatList(SFC_GET_FORMAT_SUBTYPE_COUNT, SFC_GET_FORMAT_SUBTYPE);
    auto anyWritable = [&](int format) {
        if (format & SF_FORMAT_SUBMASK) return writable(format, probe);
        return std::any_of(subtypes.begin(), subtypes.end(),
                           [&](const SF_FORMAT_INFO& s) { return writable(format | s.format, probe); });
    };
    for (const SF_FORMAT_INFO& f : formatList(SFC_GET_FORMAT_MAJOR_COUNT, SFC_GET_FORMAT_MAJOR))
        if (anyWritable(f.format)) names.push_back(f.extension);
    for (const Alias& a : kAliases)
        if (anyWritable(a.format)) names.push_back(a.name);
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    std::string out;
    for (const std::string& n : names) out += (out.empty() ? "" : ", ") + n;
    return out;
}

std::string extensionOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    const std::size_t dot = path.find_last_of('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash) || dot + 1 == path.size() ||
        dot == (slash == std::string::npos ? 0 : slash + 1))
        return "";
    return path.substr(dot + 1);
}

// Sample formats to try when the container cannot hold the input's, best
// first: deep PCM for lossless containers, then the lossy codecs.
constexpr int kFallbackSubtypes[] = {SF_FORMAT_PCM_24, SF_FORMAT_PCM_16, SF_FORMAT_FLOAT,
                                     SF_FORMAT_VORBIS, SF_FORMAT_OPUS,   SF_FORMAT_MPEG_LAYER_III};

}  // namespace

int outputFormat(const SF_INFO& input, const OutputRequest& request) {
    const std::string name = request.container.empty() ? extensionOf(request.path) : request.container;
    int format = input.format;  // no extension: the input's container as it is
    if (!name.empty()) {
        const std::optional<int> named = formatNamed(name);
        if (!named)
            throw UsageError("cannot write " + request.path + ": " +
                             (request.container.empty() ? "the extension ." : "--format ") + name +
                             " names no format this tool writes; use one of: " + writableNames());
        format = *named;
    }
    const int container = format & SF_FORMAT_TYPEMASK;
    if (request.asFloat) {
        format = (format & (SF_FORMAT_TYPEMASK | SF_FORMAT_ENDMASK)) | SF_FORMAT_FLOAT;
    } else if ((format & SF_FORMAT_SUBMASK) == 0) {
        // The input's sample format in the container, else the best it holds.
        format = container | (input.format & SF_FORMAT_SUBMASK);
        for (std::size_t i = 0; !writable(format, input) && i < std::size(kFallbackSubtypes); ++i)
            format = container | kFallbackSubtypes[i];
    }
    if (!writable(format, input))
        throw UsageError("cannot write " + request.path + ": " + describeFormat(container) + " cannot hold " +
                         (request.asFloat ? "float samples of " : "") + std::to_string(input.channels) +
                         " channel(s) at " + std::to_string(input.samplerate) + " Hz");
    return format;
}

std::string describeFormat(int format) {
    SF_FORMAT_INFO major{};
    major.format = format & SF_FORMAT_TYPEMASK;
    if (sf_command(nullptr, SFC_GET_FORMAT_INFO, &major, sizeof major) != 0) return "this format";
    SF_FORMAT_INFO sub{};
    sub.format = format & SF_FORMAT_SUBMASK;
    if (sub.format == 0 || sf_command(nullptr, SFC_GET_FORMAT_INFO, &sub, sizeof sub) != 0) return major.name;
    return std::string(major.name) + ", " + sub.name;
}

}  // namespace mivora_tool
