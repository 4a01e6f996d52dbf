#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "panel/panel_body.h"
#include "ui/keyboard_hook.h"
#include "ui/parent_follower.h"
#include "ui/scrolling.h"

namespace korvane {

// The window that fills the host's: it holds the body, which never gets smaller than its template
// but is scrolled then, and brings it what the host does not pass on.
class PanelWindow : public Dialog {
  public:
    // `gone` is called when the window is destroyed, by whomever.
    PanelWindow(DeviceManager& manager, const PageMaker& makePages, std::function<void()> gone);

    void refresh() { body_.refresh(); }

  protected:
    bool onInit() override;
    bool onCommand(int id, int notification, HWND control) override;
    void onSize(int width, int height) override;
    void onDestroy() override;
    std::optional<INT_PTR> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void placeBody();
    void showFocused();

    PanelBody body_;
    std::function<void()> gone_;
    SIZE leastBody_{};  // pixels
    WheelScrolling wheel_;
    std::optional<ParentFollower> follower_;
    std::optional<KeyboardHook> keyboard_;
};

// The panel of the plug-in, with or without a window.
class MainPanel {
  public:
    // `window` outlives the panel and always holds its window, nullptr while there is none.
    MainPanel(DeviceManager& manager, HWND& window, PageMaker makePages = &korvane::makePages)
        : manager_(manager), handle_(window), makePages_(std::move(makePages)) {}

    // False when there is a window already or none could be made.
    bool create(HWND parent);
    // Cancels what the panel shows modally, and destroys its window if there is one.
    void destroy();
    HWND hwnd() const { return handle_; }
    // Fills the pages from the model.
    void refresh();

  private:
    void retire();

    DeviceManager& manager_;
    HWND& handle_;
    PageMaker makePages_;
    std::unique_ptr<PanelWindow> window_;
    // Panels that were taken down while a command of theirs was waiting for an answer: that
    // command still has to return through them.
    std::vector<std::unique_ptr<PanelWindow>> retired_;
};

}  // namespace korvane
