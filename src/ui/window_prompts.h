#pragma once

#include <windows.h>

#include <commdlg.h>

#include "model/prompts.h"

namespace korvane {

// Prompts as windows of the system, over what is modal already (modal.h). Each throws
// Interrupted (modal.h) when the panel was taken down while it showed.
class WindowPrompts : public Prompts {
  public:
    using Chooser = BOOL(WINAPI*)(OPENFILENAMEW*);

    WindowPrompts() = default;
    // With other choosers than the system's.
    WindowPrompts(Chooser openChooser, Chooser saveChooser)
        : openChooser_(openChooser), saveChooser_(saveChooser) {}

    void message(std::string_view text) override;
    void warning(std::string_view text) override;
    bool confirm(std::string_view text, DefaultButton preset) override;
    std::optional<std::filesystem::path> chooseFileToOpen(const FileChoice& choice) override;
    std::optional<std::filesystem::path> chooseFileToSave(const FileChoice& choice) override;
    int whileBusy(const std::function<int()>& work) override;

  private:
    int showBox(std::string_view text, UINT style);
    std::optional<std::filesystem::path> choose(const FileChoice& choice, Chooser chooser,
                                                DWORD flags);

    Chooser openChooser_ = &GetOpenFileNameW;
    Chooser saveChooser_ = &GetSaveFileNameW;
};

}  // namespace korvane
