#include "cli/context.h"

#include <algorithm>

#include "cli/failure.h"

namespace korvane::cli {

void stopIfInterrupted(const Context& context) {
    if (context.terminal.interrupted()) throw Interrupted{};
}

void pause(const Context& context, std::uint32_t milliseconds) {
    constexpr std::uint32_t stepMs = 100;
    const std::uint32_t begin = context.link.ticks();
    for (std::uint32_t passed = 0; passed < milliseconds; passed = context.link.ticks() - begin) {
        stopIfInterrupted(context);
        context.link.sleep(std::min(stepMs, milliseconds - passed));
    }
    stopIfInterrupted(context);
}

void askUnless(bool yes, const Context& context, const std::string& question) {
    if (yes) return;
    const bool agreed = context.terminal.confirm(question);
    stopIfInterrupted(context);
    if (!agreed) throw Failure(ExitCode::No, "not done");
}

}  // namespace korvane::cli
