// Running the built mivora binary and reading what it leaves behind.
#ifndef MIVORA_TOOL_TEST_SUPPORT_HPP
#define MIVORA_TOOL_TEST_SUPPORT_HPP

#include <sndfile.h>

#include <string>
#include <vector>

namespace tool_test {

struct Run {
    int exitCode = -1;
    std::string out;
    std::string err;
};

// Runs the tool with `args` (without the program name) in `workDir`.
Run runTool(const std::vector<std::string>& args, const std::string& workDir = ".");

// A refused run, as a user sees it: exit status 2, nothing on stdout, and
// one line on stderr, "mivora: ..." containing `message`.
void expectRefused(const Run& run, const std::string& message);

// A fresh, empty directory under the build tree for one test.
std::string scratchDir(const std::string& name);
// Every name in a directory, hidden ones included, sorted.
std::vector<std::string> filesIn(const std::string& dir);
std::string readText(const std::string& path);
void writeText(const std::string& path, const std::string& text);

// Rows of numbers from comma- or space-separated text; lines that start
// with a letter or '#' (headers, comments) are skipped. With labelColumn,
// each line's first comma-separated field is dropped first.
std::vector<std::vector<double>> numberRows(const std::string& text, bool labelColumn = false);

struct Audio {
    int channels = 0;
    int sampleRate = 0;
    int format = 0;
    std::vector<float> samples;  // interleaved, scaled to [-1, 1)
};
void writeAudio(const std::string& path, const Audio& audio);
Audio readAudio(const std::string& path);
// Raw 16-bit values, for checking integer output exactly.
std::vector<short> readShorts(const std::string& path);

}  // namespace tool_test

#endif
