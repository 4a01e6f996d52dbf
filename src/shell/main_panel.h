#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "shell/host_border.h"
#include "shell/panel_body.h"
#include "ui/keyboard_hook.h"
#include "ui/parent_follower.h"

namespace korvane {

// The window that fills the host's: it holds the body, which never gets smaller than its template
// but is scrolled then, and brings it what the host does not pass on.
class PanelWindow : public Dialog {
  public:
    // `gone` is called when the window is destroyed, by whomever.
    PanelWindow(DeviceManager& manager, std::function<void()> gone);

    void refresh() { body_.refresh(); }

  protected:
    bool onInit() override;
    bool onCommand(int id, int notification, HWND control) override;
    void onSize(int width, int height) override;
    void onDestroy() override;
    std::optional<INT_PTR> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void placeBody();

    PanelBody body_;
    std::function<void()> gone_;
    SIZE leastBody_{};  // pixels
    std::optional<ParentFollower> follower_;
    std::optional<KeyboardHook> keyboard_;
};

// The panel of the plug-in, with or without a window.
class MainPanel {
  public:
    explicit MainPanel(DeviceManager& manager) : manager_(manager) {}

    // False when there is a window already or none could be made.
    bool create(HWND parent);
    // Cancels what the panel shows modally, and destroys its window if there is one.
    void destroy();
    HWND hwnd() const { return object_.window; }
    // Fills the pages from the model.
    void refresh();
    // What the host gets.
    PanelWindowObject& object() { return object_; }

  private:
    void retire();

    DeviceManager& manager_;
    PanelWindowObject object_;
    std::unique_ptr<PanelWindow> window_;
    // Panels that were taken down while a command of theirs was waiting for an answer: that
    // command still has to return through them.
    std::vector<std::unique_ptr<PanelWindow>> retired_;
};

}  // namespace korvane
