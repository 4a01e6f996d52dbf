#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace korvane::host {

// A modeless dialog with one control of each kind that the robot drives; it notes what reaches it.
class SampleDialog {
  public:
    enum Id : int { edit = 10, button, combo, listBox, list, tab, tree };

    SampleDialog();
    ~SampleDialog();
    SampleDialog(const SampleDialog&) = delete;
    SampleDialog& operator=(const SampleDialog&) = delete;

    HWND hwnd() const { return window_; }
    // Such as "command 11/0", "notify 14/-3" or "menu 2", in the order in which they came.
    const std::vector<std::string>& events() const { return events_; }
    bool saw(const std::string& event) const;

  private:
    static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void addControls();
    HWND add(const wchar_t* className, DWORD style, Id id, int left, int top);
    void fill();
    void showMenu();

    HWND window_ = nullptr;
    std::vector<std::string> events_;
};

}  // namespace korvane::host
