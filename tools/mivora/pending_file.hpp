// Output files that appear whole or not at all: the data goes to a hidden
// temporary beside the target and is renamed over it only once complete, so
// a failure never leaves a partial file or clobbers an old one.
#ifndef MIVORA_TOOL_PENDING_FILE_HPP
#define MIVORA_TOOL_PENDING_FILE_HPP

#include <string>

namespace mivora_tool {

class PendingFile {
public:
    // Throws UsageError when the target's directory takes no new file.
    explicit PendingFile(std::string target);
    ~PendingFile();
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    int descriptor() const { return fd_; }
    // Closes and renames onto the target; throws UsageError on failure.
    void commit();

private:
    std::string target_;
    std::string temp_;
    int fd_ = -1;
    bool committed_ = false;
};

// The whole of `content` into `path`, through a PendingFile.
void writeWholeFile(const std::string& path, const std::string& content);

}  // namespace mivora_tool

#endif
