#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "plugin.h"

namespace korvane::host {

// The host's main window: an address bar above, the panel in the middle, a status line below.
// It belongs to the thread that makes it.
class HostWindow {
  public:
    // Throws std::runtime_error when the system refuses a window.
    explicit HostWindow(Plugin& plugin);
    ~HostWindow();
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    HWND hwnd() const { return window_; }
    // Puts `address` into the field and connects as the button does.
    void connectTo(std::string_view address);
    // Dispatches messages until the window is closed.
    void run();

  private:
    static LRESULT CALLBACK windowProc(HWND window, UINT message, WPARAM wParam,
                                       LPARAM lParam) noexcept;
    static INT_PTR CALLBACK barProc(HWND bar, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam);

    void createChildren();
    void layOut();
    void onBarCommand(int id);
    void connect();
    void disconnect();
    void complain(std::string_view text);
    void showStatus(std::string_view text);
    void showConnected(bool connected);
    void switchFocus();
    void moveFocus(HWND from);
    bool translate(MSG& message);

    Plugin& plugin_;
    HWND window_ = nullptr;
    HWND bar_ = nullptr;
    HWND frame_ = nullptr;  // the panel's parent: all that bar and status line leave
    HWND status_ = nullptr;
    bool connected_ = false;
};

// What the status line says about a result of `cmmbStart`.
std::string startResultText(int result, std::string_view address);

}  // namespace korvane::host
