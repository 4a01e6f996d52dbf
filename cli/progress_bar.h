#pragma once

#include <string>

#include "cli/context.h"
#include "device/progress_sink.h"

namespace korvane::cli {

// Shows a transfer on the terminal. One that may be interrupted ends at its next step: Interrupted
// is thrown through it.
class ProgressBar : public ProgressSink {
  public:
    ProgressBar(const Context& context, std::string label, bool stoppable)
        : context_(context), label_(std::move(label)), stoppable_(stoppable) {
        show(0);
    }

    void progress(int percent) override;
    void failed(int) override {}

  private:
    void show(int percent);

    const Context& context_;
    std::string label_;
    bool stoppable_;
};

}  // namespace korvane::cli
