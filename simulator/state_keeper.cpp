#include "simulator/state_keeper.h"

#include "simulator/state_file.h"

namespace korvane {

bool StateKeeper::tend(std::uint64_t nowMs, std::string& error) {
    constexpr std::uint64_t restMs = 300;
    if (device_.revision() != seen_) {
        seen_ = device_.revision();
        changedAtMs_ = nowMs;
        unsaved_ = true;
    }
    if (!unsaved_ || nowMs - changedAtMs_ < restMs) return true;
    return saveNow(error);
}

bool StateKeeper::saveNow(std::string& error) {
    unsaved_ = false;
    seen_ = device_.revision();
    return path_.empty() || saveState(path_, device_.state(), error);
}

}  // namespace korvane
