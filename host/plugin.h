#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "korvane/plugin.h"

namespace korvane::host {

// A window of this host as the plug-in expects it: laid out as a window object of the classic
// class library.
struct WindowObject {
    std::array<std::byte, KORVANE_HANDLE_OFFSET> base{};
    HWND window = nullptr;
    std::array<std::byte, 0x40> rest{};  // room of the object's other members
};
static_assert(offsetof(WindowObject, window) == KORVANE_HANDLE_OFFSET);

// The text, Chinese, says why the plug-in cannot be used.
class PluginError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The loaded plug-in library. All calls belong to the user-interface thread.
class Plugin {
  public:
    // Throws PluginError when the library is missing, is no library or lacks an export.
    explicit Plugin(const std::filesystem::path& library);
    ~Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    // What `cmmbStart` returns: KORVANE_STARTED, KORVANE_DEVICE_FAILED or KORVANE_NO_PANEL.
    int start(HWND parent, const std::string& address);
    void stop();
    // The panel's window, or nullptr while there is none.
    HWND panel() const;

  private:
    template <class Function>
    Function find(const char* name) const;

    HMODULE library_;
    KorvaneStart start_ = nullptr;
    KorvaneGetWnd getWnd_ = nullptr;
    KorvaneStop stop_ = nullptr;
    WindowObject parent_;  // the plug-in may keep its address until it is stopped
};

}  // namespace korvane::host
