#include "pending_file.hpp"

#include "usage_error.hpp"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace mivora_tool {

namespace {

[[noreturn]] void cannotWrite(const std::string& path, int error) {
    throw UsageError("cannot write " + path + ": " + std::strerror(error));
}

}  // namespace

PendingFile::PendingFile(std::string target) : target_(std::move(target)) {
    const std::filesystem::path path(target_);
    if (path.filename().empty()) cannotWrite(target_, EISDIR);
    const std::filesystem::path temp = path.parent_path() / ("." + path.filename().string() + ".XXXXXX");
    const std::string pattern = temp.string();
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    fd_ = ::mkstemp(name.data());
    if (fd_ < 0) cannotWrite(target_, errno);
    temp_ = name.data();
    // mkstemp makes the file private; give it the usual permissions.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(fd_, 0666 & ~mask);
}

PendingFile::~PendingFile() {
    if (fd_ >= 0) ::close(fd_);
    if (!committed_) ::unlink(temp_.c_str());
}

void PendingFile::commit() {
    const int fd = fd_;
    fd_ = -1;
    if (::close(fd) != 0) cannotWrite(target_, errno);
    if (std::rename(temp_.c_str(), target_.c_str()) != 0) cannotWrite(target_, errno);
    committed_ = true;
}

void writeWholeFile(const std::string& path, const std::string& content) {
    PendingFile file(path);
    std::size_t done = 0;
    while (done < content.size()) {
        const ssize_t n = ::write(file.descriptor(), content.data() + done, content.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            cannotWrite(path, errno);
        }
        done += static_cast<std::size_t>(n);
    }
    file.commit();
}

}  // namespace mivora_tool
