#include "cli/progress_bar.h"

#include <algorithm>

namespace korvane::cli {

void ProgressBar::progress(int percent) {
    if (stoppable_) stopIfInterrupted(context_);
    show(percent);
}

void ProgressBar::show(int percent) {
    constexpr int width = 40;
    const auto filled = static_cast<std::size_t>(std::clamp(percent, 0, 100) * width / 100);
    context_.terminal.transient(label_ + " [" + std::string(filled, '#') +
                                std::string(width - filled, '.') + "] " + std::to_string(percent) +
                                " %");
}

}  // namespace korvane::cli
