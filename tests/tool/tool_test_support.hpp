// Running the built mivora binary and reading what it leaves behind.
#ifndef MIVORA_TOOL_TEST_SUPPORT_HPP
#define MIVORA_TOOL_TEST_SUPPORT_HPP

#include <gtest/gtest.h>
#include <sndfile.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tool_test {

struct Run {
    int exitCode = -1;
    std::string out;
    std::string err;
};

struct Audio {
    int channels = 0;
    int sampleRate = 0;
    int format = 0;
    std::vector<float> samples;  // interleaved, scaled to [-1, 1)
};


// A fresh, empty directory under the build tree for one test.
inline std::string scratchDir(const std::string& name) {
    const std::filesystem::path dir = std::filesystem::path(MIVORA_TOOL_SCRATCH) / name;
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    return dir.string();
}

// Every name in a directory, hidden ones included, sorted.
inline std::vector<std::string> filesIn(const std::string& dir) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

inline std::string readText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

inline void writeText(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

// Rows of numbers from comma- or space-separated text; lines that start
// with a letter or '#' (headers, comments) are skipped. With labelColumn,
// each line's first comma-separated field is dropped first.
inline std::vector<std::vector<double>> numberRows(const std::string& text, bool labelColumn = false) {
    std::vector<std::vector<double>> rows;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (labelColumn) line.erase(0, line.find(',') + 1);
        if (line.empty() || line[0] == '#' || std::isalpha(static_cast<unsigned char>(line[0]))) continue;
        std::replace(line.begin(), line.end(), ',', ' ');
        std::istringstream words(line);
        std::vector<double> row;
        for (std::string w; words >> w;) row.push_back(std::strtod(w.c_str(), nullptr));
        rows.push_back(row);
    }
    return rows;
}

inline void writeAudio(const std::string& path, const Audio& audio) {
    SF_INFO info{};
    info.channels = audio.channels;
    info.samplerate = audio.sampleRate;
    info.format = audio.format;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
    const auto frames = static_cast<sf_count_t>(audio.samples.size() / static_cast<std::size_t>(audio.channels));
    EXPECT_EQ(sf_writef_float(file, audio.samples.data(), frames), frames);
    sf_close(file);
}

// Every sample as float: integer formats come back as value / 2^(bits-1),
// exactly, so integer output can be compared exactly too.
inline Audio readAudio(const std::string& path) {
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (!file) {
        ADD_FAILURE() << "cannot read " << path << ": " << sf_strerror(nullptr);
        return {};
    }
    std::vector<float> samples(static_cast<std::size_t>(info.frames * info.channels));
    sf_readf_float(file, samples.data(), info.frames);
    sf_close(file);
    return {info.channels, info.samplerate, info.format, std::move(samples)};
}


// One word for the shell, quoted so that any byte reaches the tool as typed.
inline std::string shellWord(const std::string& word) {
    std::string quoted = "'";
    for (char ch : word) quoted += ch == '\'' ? std::string("'\\''") : std::string(1, ch);
    return quoted + "'";
}

// Runs the tool with `args` (without the program name) in `workDir`, stdin empty.
inline Run runTool(const std::vector<std::string>& args, const std::string& workDir = ".") {
    const std::string capture = scratchDir("capture-" + std::to_string(::getpid()));
    std::string command = "cd " + shellWord(workDir) + " && exec " + shellWord(MIVORA_TOOL_PATH);
    for (const std::string& a : args) command += " " + shellWord(a);
    command += " </dev/null >" + shellWord(capture + "/out") + " 2>" + shellWord(capture + "/err");
    const int status = std::system(command.c_str());
    Run run;
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    run.out = readText(capture + "/out");
    run.err = readText(capture + "/err");
    return run;
}

// `mivora WORDS`, the words split at spaces, for arguments with none in them.
inline Run runWords(const std::string& words, const std::string& workDir = ".") {
    std::istringstream in(words);
    std::vector<std::string> args;
    for (std::string w; in >> w;) args.push_back(w);
    return runTool(args, workDir);
}

// A refused run, as a user sees it: exit status 2, nothing on stdout, and
// one line on stderr, "mivora: ..." containing `message`.
inline void expectRefused(const Run& run, const std::string& message) {
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err.rfind("mivora: ", 0), 0u) << run.err;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << "not one line: " << run.err;
    EXPECT_NE(run.err.find(message), std::string::npos) << run.err;
}

}  // namespace tool_test

#endif
