#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

namespace korvane {

// The seam to the operator: message boxes and file choosers, modal while they show, and the sign of
// being busy. All texts are UTF-8. The one production implementation shows windows; tests answer by
// script.
class Prompts {
  public:
    enum class DefaultButton { Yes, No };

    // What a file chooser offers.
    struct FileChoice {
        std::string_view defaultExtension;  // appended to a name that has none
        // Pairs of description and pattern, each ended by '|', the whole by one more '|'.
        std::string_view filter;
        // Where the chooser opens; empty for where the system likes.
        std::filesystem::path folder = {};
    };

    virtual ~Prompts() = default;

    // Messages with an OK button: of what was done, and of what was refused or failed.
    virtual void message(std::string_view text) = 0;
    virtual void warning(std::string_view text) = 0;

    // A Yes/No question; true only for Yes.
    virtual bool confirm(std::string_view text, DefaultButton preset = DefaultButton::Yes) = 0;

    // The chosen path, or nothing when the operator cancelled.
    virtual std::optional<std::filesystem::path> chooseFileToOpen(const FileChoice& choice) = 0;
    virtual std::optional<std::filesystem::path> chooseFileToSave(const FileChoice& choice) = 0;

    // Does `work`, for whose time the panel does not answer, while the operator sees that it is
    // busy, and returns its result.
    virtual int whileBusy(const std::function<int()>& work) = 0;
};

}  // namespace korvane
