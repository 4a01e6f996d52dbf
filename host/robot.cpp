#include "robot.h"

#include <windows.h>

#include <algorithm>
#include <sstream>
#include <utility>

#include "picture.h"
#include "text/text.h"

namespace korvane::host {

namespace {

constexpr int boxTextId = 0xFFFF;
constexpr int fileNameCombo = 0x47C;  // cmb13: the system's file dialogs
constexpr int fileNameEdit = 0x480;   // edt1: their older form

using Windows = std::vector<HWND>;

BOOL CALLBACK collect(HWND window, LPARAM windows) {
    reinterpret_cast<Windows*>(windows)->push_back(window);
    return TRUE;
}

Windows descendants(HWND window) {
    Windows all;
    EnumChildWindows(window, collect, reinterpret_cast<LPARAM>(&all));
    return all;
}

bool isReady(HWND window) {
    return IsWindowVisible(window) && IsWindowEnabled(window);
}

UINT markerMessage() {
    static const UINT number = RegisterWindowMessageW(L"KorvaneRobotMarker");
    return number;
}

LRESULT CALLBACK watchMarkers(int code, WPARAM removal, LPARAM data) {
    const auto* message = reinterpret_cast<const MSG*>(data);
    if (code == HC_ACTION && removal == PM_REMOVE && message->hwnd == nullptr &&
        message->message == markerMessage())
        SetEvent(reinterpret_cast<HANDLE>(message->lParam));
    return CallNextHookEx(nullptr, code, removal, data);
}

std::string withoutAccessKeys(std::string text) {
    std::erase(text, '&');
    return text;
}

}  // namespace

Robot::Robot(DWORD guiThread, Milliseconds patience)
    : guiThread_(guiThread),
      patience_(patience),
      hook_(SetWindowsHookExW(WH_GETMESSAGE, watchMarkers, nullptr, guiThread)) {
    if (hook_ == nullptr) throw RobotError("the windows' thread cannot be watched");
}

Robot::~Robot() {
    UnhookWindowsHookEx(hook_);
}

// A modal loop that a message sent from another thread has just ended may take one more message
// with the same call, before its caller goes on: hence the second marker.
void Robot::settle() const {
    passMarker();
    passMarker();
}

// The marker belongs to no window, so every message loop of the thread takes it, and drops it.
void Robot::passMarker() const {
    HANDLE taken = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    PostThreadMessageW(guiThread_, markerMessage(), 0, reinterpret_cast<LPARAM>(taken));
    const auto limit = static_cast<DWORD>(patience_.count());
    // Left open on failure: the marker may come out of the queue yet.
    if (WaitForSingleObject(taken, limit) != WAIT_OBJECT_0)
        fail("waited for the windows' thread to take its messages");
    CloseHandle(taken);
}

void Robot::fail(std::string_view what) const {
    throw RobotError(std::string(what) + "; open windows:" + describeWindows());
}

LRESULT Robot::send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const {
    DWORD_PTR result = 0;
    const auto limit = static_cast<UINT>(patience_.count());
    if (SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, limit, &result) == 0)
        throw RobotError("no answer to message " + std::to_string(message) + " from window \"" +
                         caption(window) + "\"");
    return static_cast<LRESULT>(result);
}

Windows Robot::topWindows() const {
    Windows all;
    EnumThreadWindows(guiThread_, collect, reinterpret_cast<LPARAM>(&all));
    std::erase_if(all, [](HWND window) { return !IsWindowVisible(window); });
    return all;
}

HWND Robot::firstTop(const std::function<bool(HWND)>& wanted) const {
    const Windows all = topWindows();
    const auto found = std::find_if(all.begin(), all.end(), wanted);
    return found == all.end() ? nullptr : *found;
}

HWND Robot::waitDialog(std::string_view wanted, HWND except) const {
    return waitFor("waited for the dialog \"" + std::string(wanted) + "\"", [&] {
        return firstTop([&](HWND window) {
            return window != except && isReady(window) && className(window) == "#32770" &&
                   caption(window) == wanted;
        });
    });
}

HWND Robot::waitBox(std::string_view wanted) const {
    return waitFor("waited for the message \"" + std::string(wanted) + "\"", [&] {
        return firstTop([&](HWND window) {
            return isReady(window) && isBox(window) && boxText(window) == wanted;
        });
    });
}

HWND Robot::waitAnyBox() const {
    return waitFor("waited for a message", [&] {
        return firstTop([&](HWND window) { return isReady(window) && isBox(window); });
    });
}

HWND Robot::waitClass(std::string_view wanted) const {
    return waitFor("waited for a window of the class " + std::string(wanted), [&] {
        return firstTop([&](HWND window) { return className(window) == wanted; });
    });
}

void Robot::waitGone(HWND window) const {
    const std::string what = "waited for the window \"" + caption(window) + "\" to go";
    waitFor(what, [&] { return !IsWindow(window) || !IsWindowVisible(window); });
}

HWND Robot::findControl(HWND ancestor, int id) const {
    const Windows all = descendants(ancestor);
    const auto wanted = [&](HWND window) {
        return GetDlgCtrlID(window) == id && IsWindowVisible(window);
    };
    const auto own = std::find_if(all.begin(), all.end(), [&](HWND window) {
        return GetParent(window) == ancestor && wanted(window);
    });
    if (own != all.end()) return *own;
    const auto found = std::find_if(all.begin(), all.end(), wanted);
    return found == all.end() ? nullptr : *found;
}

HWND Robot::waitControl(HWND ancestor, int id) const {
    return waitFor("waited for the control " + std::to_string(id),
                   [&] { return findControl(ancestor, id); });
}

Windows Robot::childDialogs(HWND parent) const {
    Windows all = descendants(parent);
    std::erase_if(all, [&](HWND window) {
        return GetParent(window) != parent || !IsWindowVisible(window) ||
               className(window) != "#32770";
    });
    return all;
}

std::string Robot::describeWindows() const {
    std::ostringstream out;
    for (HWND window : topWindows()) {
        out << "\n  " << className(window) << " \"" << caption(window) << '"';
        if (isBox(window)) out << ": " << boxText(window);
        if (!IsWindowEnabled(window)) out << " (disabled)";
    }
    return out.str();
}

std::string Robot::caption(HWND window) const {
    wchar_t buffer[256];
    const int size = InternalGetWindowText(window, buffer, std::size(buffer));
    return toUtf8({buffer, static_cast<std::size_t>(std::max(size, 0))});
}

std::string Robot::className(HWND window) const {
    wchar_t buffer[256];
    const int size = GetClassNameW(window, buffer, std::size(buffer));
    return toUtf8({buffer, static_cast<std::size_t>(size)});
}

std::string Robot::text(HWND control) const {
    const auto size = static_cast<std::size_t>(send(control, WM_GETTEXTLENGTH));
    std::wstring buffer(size + 1, L'\0');
    buffer.resize(static_cast<std::size_t>(
        send(control, WM_GETTEXT, static_cast<WPARAM>(buffer.size()), buffer.data())));
    return toUtf8(buffer);
}

std::string Robot::clipboardText() const {
    std::string text;
    if (!OpenClipboard(nullptr)) return text;
    if (HANDLE memory = GetClipboardData(CF_UNICODETEXT)) {
        text = toUtf8(static_cast<const wchar_t*>(GlobalLock(memory)));
        GlobalUnlock(memory);
    }
    CloseClipboard();
    return text;
}

// A dialog of nothing but static controls and buttons, one of the former being the text.
bool Robot::isBox(HWND window) const {
    if (className(window) != "#32770" || GetDlgItem(window, boxTextId) == nullptr) return false;
    const Windows all = descendants(window);
    return std::all_of(all.begin(), all.end(), [&](HWND child) {
        const std::string name = className(child);
        return name == "Static" || name == "Button";
    });
}

std::string Robot::boxText(HWND box) const {
    return text(GetDlgItem(box, boxTextId));
}

std::vector<std::string> Robot::boxButtons(HWND box) const {
    std::vector<std::string> texts;
    for (HWND child : descendants(box))
        if (className(child) == "Button" && IsWindowVisible(child))
            texts.push_back(withoutAccessKeys(text(child)));
    return texts;
}

int Robot::boxDefault(HWND box) const {
    for (HWND child : descendants(box))
        if (className(child) == "Button" &&
            (GetWindowLongW(child, GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON)
            return GetDlgCtrlID(child);
    return 0;
}

void Robot::click(HWND ancestor, int id) const {
    HWND button = waitFor("waited for the button " + std::to_string(id), [&]() -> HWND {
        HWND found = findControl(ancestor, id);
        return found != nullptr && IsWindowEnabled(found) ? found : nullptr;
    });
    PostMessageW(button, BM_CLICK, 0, 0);
}

void Robot::command(HWND window, int id, int code) const {
    const auto control = reinterpret_cast<LPARAM>(GetDlgItem(window, id));
    PostMessageW(window, WM_COMMAND, MAKEWPARAM(id, code), control);
}

void Robot::answer(HWND box, int button) const {
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
    waitGone(box);
}

void Robot::close(HWND window) const {
    PostMessageW(window, WM_CLOSE, 0, 0);
}

void Robot::key(HWND window, WORD virtualKey) const {
    PostMessageW(window, WM_KEYDOWN, virtualKey, 1);
    PostMessageW(window, WM_KEYUP, virtualKey, static_cast<LPARAM>(0xC0000001u));
}

void Robot::setText(HWND control, std::string_view text) const {
    send(control, WM_SETTEXT, 0, toWide(text).c_str());
}

void Robot::chooseFile(HWND fileDialog, const std::filesystem::path& path) const {
    HWND name = waitFor("waited for the field of the file name", [&]() -> HWND {
        HWND found = findControl(fileDialog, fileNameCombo);
        return found != nullptr ? found : findControl(fileDialog, fileNameEdit);
    });
    send(name, WM_SETTEXT, 0, path.wstring().c_str());
    click(fileDialog, IDOK);
}

void Robot::savePicture(HWND window, const std::filesystem::path& file) const {
    RedrawWindow(window, nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
    send(window, WM_NULL);  // what was posted before is drawn now
    writePicture(window, file);
}

}  // namespace korvane::host
