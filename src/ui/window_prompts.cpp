#include "ui/window_prompts.h"

#include <algorithm>
#include <string>

#include "text/text.h"
#include "ui/controls.h"
#include "ui/modal.h"

namespace korvane {
namespace {

// The longest path that the system knows, in characters.
constexpr DWORD pathCapacity = 32768;

// The choosers take the parts of a filter ended by zeros instead of bars, and one more zero.
std::wstring chooserFilter(std::string_view filter) {
    std::wstring parts = toWide(filter);
    std::ranges::replace(parts, L'|', L'\0');
    return parts;
}

// The hourglass. It stays while it lives, as no message is taken meanwhile that would change it.
class WaitCursor {
  public:
    WaitCursor() : shown_(SetCursor(LoadCursorW(nullptr, IDC_WAIT))) {}
    ~WaitCursor() { SetCursor(shown_); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

  private:
    HCURSOR shown_;  // before
};

}  // namespace

// Without a caption of its own: it shows the host's, as that program's own messages would.
int WindowPrompts::showBox(std::string_view text, UINT style) {
    const std::wstring caption = toWide(Control(modalRoot()).text());
    const ModalScope scope;
    const int answer = MessageBoxW(scope.owner(), toWide(text).c_str(), caption.c_str(), style);
    scope.check();
    return answer;
}

void WindowPrompts::message(std::string_view text) {
    showBox(text, MB_OK | MB_ICONINFORMATION);
}

void WindowPrompts::warning(std::string_view text) {
    showBox(text, MB_OK | MB_ICONWARNING);
}

bool WindowPrompts::confirm(std::string_view text, DefaultButton preset) {
    const UINT button = preset == DefaultButton::No ? MB_DEFBUTTON2 : MB_DEFBUTTON1;
    return showBox(text, MB_YESNO | MB_ICONQUESTION | button) == IDYES;
}

std::optional<std::filesystem::path> WindowPrompts::chooseFileToOpen(const FileChoice& choice) {
    return choose(choice, openChooser_, OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST);
}

std::optional<std::filesystem::path> WindowPrompts::chooseFileToSave(const FileChoice& choice) {
    return choose(choice, saveChooser_, OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST);
}

int WindowPrompts::whileBusy(const std::function<int()>& work) {
    const WaitCursor cursor;
    return work();
}

std::optional<std::filesystem::path> WindowPrompts::choose(const FileChoice& choice,
                                                           Chooser chooser, DWORD flags) {
    const std::wstring filter = chooserFilter(choice.filter);
    const std::wstring extension = toWide(choice.defaultExtension);
    std::wstring path(pathCapacity, L'\0');
    OPENFILENAMEW request{};
    request.lStructSize = sizeof request;
    request.lpstrFilter = filter.c_str();
    request.lpstrDefExt = extension.c_str();
    const std::wstring folder = choice.folder.wstring();
    if (!folder.empty()) request.lpstrInitialDir = folder.c_str();
    request.lpstrFile = path.data();
    request.nMaxFile = pathCapacity;
    // A plug-in must not move the directory that the host works in.
    request.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | flags;

    const ModalScope scope;
    request.hwndOwner = scope.owner();
    const bool chosen = chooser(&request) != FALSE;
    scope.check();
    if (!chosen) return std::nullopt;
    return std::filesystem::path(path.c_str());
}

}  // namespace korvane
