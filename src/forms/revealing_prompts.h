#pragma once

#include <functional>

#include "model/prompts.h"

namespace korvane {

// The prompts of a page that may be asked for its entries while another page shows: before it
// refuses one, it shows itself.
class RevealingPrompts : public Prompts {
  public:
    using Reveal = std::function<void()>;

    RevealingPrompts(Prompts& prompts, Reveal reveal)
        : prompts_(prompts), reveal_(std::move(reveal)) {}

    void message(std::string_view text) override { prompts_.message(text); }
    void warning(std::string_view text) override {
        reveal_();
        prompts_.warning(text);
    }
    bool confirm(std::string_view text, DefaultButton preset) override {
        return prompts_.confirm(text, preset);
    }
    std::optional<std::filesystem::path> chooseFileToOpen(const FileChoice& choice) override {
        return prompts_.chooseFileToOpen(choice);
    }
    std::optional<std::filesystem::path> chooseFileToSave(const FileChoice& choice) override {
        return prompts_.chooseFileToSave(choice);
    }
    int whileBusy(const std::function<int()>& work) override { return prompts_.whileBusy(work); }

  private:
    Prompts& prompts_;
    Reveal reveal_;
};

}  // namespace korvane
