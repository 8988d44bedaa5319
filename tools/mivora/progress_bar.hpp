// A one-line progress bar on stderr, drawn only where a person watches.
#ifndef MIVORA_TOOL_PROGRESS_BAR_HPP
#define MIVORA_TOOL_PROGRESS_BAR_HPP

#include <string>

namespace mivora_tool {

class ProgressBar {
public:
    // Draws only when `wanted` and stderr is a terminal.
    ProgressBar(std::string label, double total, bool wanted);
    ~ProgressBar();
    void update(double done);

private:
    std::string label_;
    double total_;
    bool active_;
    int shownPercent_ = -1;
};

}  // namespace mivora_tool

#endif
