#include "progress_bar.hpp"

#include <cstdio>
#include <unistd.h>

namespace mivora_tool {

ProgressBar::ProgressBar(std::string label, double total, bool wanted)
    : label_(std::move(label)), total_(total), active_(wanted && total > 0 && ::isatty(STDERR_FILENO)) {}

ProgressBar::~ProgressBar() {
    if (active_ && shownPercent_ >= 0) std::fprintf(stderr, "\r\033[K");
}

void ProgressBar::update(double done) {
    if (!active_) return;
    const int percent = static_cast<int>(100.0 * done / total_);
    if (percent == shownPercent_) return;
    shownPercent_ = percent;
    constexpr int kWidth = 30;
    char bar[kWidth + 1];
    const int filled = percent * kWidth / 100;
    for (int i = 0; i < kWidth; ++i) bar[i] = i < filled ? '#' : '.';
    bar[kWidth] = '\0';
    std::fprintf(stderr, "\r%s [%s] %3d%%", label_.c_str(), bar, percent);
    std::fflush(stderr);
}

}  // namespace mivora_tool
