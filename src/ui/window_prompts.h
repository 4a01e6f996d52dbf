#pragma once

#include <windows.h>

#include <commdlg.h>

#include "model/prompts.h"

namespace korvane {

// Prompts as windows of the system, owned by the top-level window of `owner`. Each throws
// Interrupted (modal.h) when the panel was taken down while it showed.
class WindowPrompts : public Prompts {
  public:
    using Chooser = BOOL(WINAPI*)(OPENFILENAMEW*);

    WindowPrompts() = default;
    // With other choosers than the system's.
    WindowPrompts(Chooser openChooser, Chooser saveChooser)
        : openChooser_(openChooser), saveChooser_(saveChooser) {}

    void setOwner(HWND owner) { owner_ = owner; }

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

    HWND owner_ = nullptr;
    Chooser openChooser_ = &GetOpenFileNameW;
    Chooser saveChooser_ = &GetSaveFileNameW;
};

}  // namespace korvane
