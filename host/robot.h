#pragma once

#include <windows.h>

#include <chrono>
#include <commctrl.h>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace korvane::host {

// What a robot waited for did not come in time; the text says what, and which windows were there.
class RobotError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

struct PopupItem {
    std::string text;  // empty for a separator
    bool enabled = true;
    bool separator = false;
};

// What is to be entered in a control of a dialog: as typed, an item's text, or "1" for checked.
struct FormEntry {
    int control;
    std::string text;
};

struct TreeRow {
    int depth;  // 0 for a root
    std::string text;
    HTREEITEM item;
};

// Operates the windows of one thread as a person would, from another thread of the same process.
// Texts are UTF-8. What can open a modal window is posted, so that no call here waits for the
// window to be closed again; questions are sent. Every wait polls until its condition holds and
// throws RobotError when the patience is used up: nothing depends on how fast the machine is.
class Robot {
  public:
    using Milliseconds = std::chrono::milliseconds;

    explicit Robot(DWORD guiThread, Milliseconds patience = std::chrono::seconds(30));
    ~Robot();
    Robot(const Robot&) = delete;
    Robot& operator=(const Robot&) = delete;

    // Polls `condition` until it gives something true and returns that; `what` names it in errors.
    template <class Condition>
    auto waitFor(std::string_view what, Condition condition) const -> decltype(condition()) {
        const auto deadline = std::chrono::steady_clock::now() + patience_;
        for (;;) {
            if (auto result = condition()) return result;
            if (std::chrono::steady_clock::now() > deadline) fail(what);
            std::this_thread::sleep_for(Milliseconds(5));
        }
    }
    // Returns once the windows' thread has taken everything from its message queue that was posted
    // before. What a click does is then done, or waits in a modal window for an answer.
    void settle() const;
    // Throws RobotError: `what`, and the windows that are open.
    [[noreturn]] void fail(std::string_view what) const;

    // Windows. "Ready" is visible and enabled: a disabled dialog has another one above it.
    // The thread's visible top-level windows, topmost first.
    std::vector<HWND> topWindows() const;
    // A ready dialog with exactly this caption; `except` is one that is known already.
    HWND waitDialog(std::string_view caption, HWND except = nullptr) const;
    // A ready message box with exactly this text.
    HWND waitBox(std::string_view text) const;
    // Any ready message box.
    HWND waitAnyBox() const;
    // A visible top-level window of this class.
    HWND waitClass(std::string_view className) const;
    void waitGone(HWND window) const;
    // The visible descendant with this control id, or nullptr; `waitControl` waits for it. An id
    // can occur twice (the list inside a file dialog has that of its OK button): own children go
    // first.
    HWND findControl(HWND ancestor, int id) const;
    HWND waitControl(HWND ancestor, int id) const;
    // Visible child dialogs of `parent`, in their order.
    std::vector<HWND> childDialogs(HWND parent) const;
    // One line for each open window, message boxes with their text.
    std::string describeWindows() const;

    // Reading.
    std::string caption(HWND window) const;  // never waits for the window's thread
    std::string text(HWND control) const;
    std::string className(HWND window) const;
    bool isBox(HWND window) const;
    std::string boxText(HWND box) const;
    std::vector<std::string> boxButtons(HWND box) const;  // without access key marks
    int boxDefault(HWND box) const;                       // control id, such as IDNO
    bool isChecked(HWND button) const;
    std::vector<std::string> comboItems(HWND combo) const;
    int comboSelection(HWND combo) const;  // -1 for none
    std::vector<std::string> listBoxItems(HWND listBox) const;
    std::vector<std::string> listColumns(HWND listView) const;
    // All rows of a list view, `columns` cells each (all of its columns when 0).
    std::vector<std::vector<std::string>> listRows(HWND listView, int columns = 0) const;
    int listSelection(HWND listView) const;  // -1 for none
    bool isRowChecked(HWND listView, int row) const;
    std::vector<std::string> tabTitles(HWND tab) const;
    std::string clipboardText() const;               // empty when there is none
    std::vector<TreeRow> treeRows(HWND tree) const;  // in display order, collapsed ones too

    // Acting.
    void click(HWND ancestor, int id) const;                // waits until the button is ready
    void command(HWND window, int id, int code = 0) const;  // posts WM_COMMAND
    void answer(HWND box, int button) const;                // and waits until the box is gone
    void close(HWND window) const;                          // posts WM_CLOSE
    void key(HWND window, WORD virtualKey) const;           // posts a key press and release
    // Sent, so done when the call returns; where the handler would open a modal window, set the
    // control by `send` and post the notification by `command`.
    void setText(HWND control, std::string_view text) const;
    void type(HWND edit, std::string_view text) const;  // key by key
    void fill(HWND dialog, const std::vector<FormEntry>& entries) const;
    void selectCombo(HWND combo, int index) const;
    void selectListBox(HWND listBox, int index) const;
    void selectRow(HWND listView, int row) const;
    void clearSelection(HWND listView) const;
    void checkRow(HWND listView, int row, bool checked) const;
    void doubleClickRow(HWND listView, int row) const;
    void selectTab(HWND tab, int index) const;
    void selectTreeItem(HWND tree, HTREEITEM item) const;

    // Popup menus: open one (row -1: below the last row), look at it, choose or dismiss.
    void rightClickRow(HWND listView, int row) const;
    std::vector<PopupItem> waitPopup() const;
    void choosePopup(std::string_view text) const;  // throws when there is no such enabled item
    void dismissPopup() const;

    // Enters `path` in an open or save dialog of the system and confirms it; does not wait for it
    // to close, as it may ask something first.
    void chooseFile(HWND fileDialog, const std::filesystem::path& path) const;

    // Draws the whole window anew and writes it as a PNG file.
    void savePicture(HWND window, const std::filesystem::path& file) const;

    // Sends a message, with the patience as its limit.
    LRESULT send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    template <class T>
    LRESULT send(HWND window, UINT message, WPARAM wParam, T* data) const {
        return send(window, message, wParam, reinterpret_cast<LPARAM>(data));
    }

  private:
    void passMarker() const;
    void chooseCombo(HWND combo, std::string_view text) const;
    void typeAddress(HWND addressBox, const std::string& text) const;
    HWND firstTop(const std::function<bool(HWND)>& wanted) const;
    void notifyParent(HWND control, int code) const;
    void clickRow(HWND listView, int row, const std::vector<UINT>& messages, bool below) const;
    HWND popupWindow() const;
    void addTreeRows(HWND tree, HTREEITEM first, int depth, std::vector<TreeRow>& rows) const;

    DWORD guiThread_;
    Milliseconds patience_;
    HHOOK hook_;  // tells when a marker of settle() comes out of the queue
};

// Runs a script against the windows of the thread that makes this object. A script that throws ends
// the process with exit code 3 and the error on the standard error stream: the modal window that it
// would have answered would otherwise stay for ever.
class RobotThread {
  public:
    explicit RobotThread(std::function<void(Robot&)> script);
    ~RobotThread();  // as finish()
    RobotThread(const RobotThread&) = delete;
    RobotThread& operator=(const RobotThread&) = delete;

    // Dispatches the calling thread's messages until the script has ended.
    void finish();

  private:
    std::thread thread_;
};

}  // namespace korvane::host
