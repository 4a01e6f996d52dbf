#include <windows.h>

#include <algorithm>
#include <sstream>

#include "robot.h"
#include "text/text.h"

namespace korvane::host {

namespace {

LONG leftEdge(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    return area.left;
}

// From left to right, whatever order they were made in.
std::vector<HWND> partsOf(HWND addressBox) {
    std::vector<HWND> parts;
    for (HWND part = GetWindow(addressBox, GW_CHILD); part; part = GetWindow(part, GW_HWNDNEXT))
        parts.push_back(part);
    std::ranges::sort(parts, {}, leftEdge);
    return parts;
}

}  // namespace

// A click gives the field the focus; what is typed replaces its text.
void Robot::type(HWND edit, std::string_view text) const {
    for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP})
        PostMessageW(edit, message, 0, MAKELPARAM(2, 2));
    settle();
    send(edit, EM_SETSEL, 0, LPARAM{-1});
    for (const wchar_t c : toWide(text)) PostMessageW(edit, WM_CHAR, c, 1);
    waitFor("waited for the field to hold \"" + std::string(text) + '"',
            [&] { return this->text(edit) == text; });
}

void Robot::chooseCombo(HWND combo, std::string_view text) const {
    const std::vector<std::string> items = comboItems(combo);
    const auto found = std::ranges::find(items, text);
    if (found == items.end()) fail("the list has no item \"" + std::string(text) + '"');
    selectCombo(combo, static_cast<int>(found - items.begin()));
}

void Robot::typeAddress(HWND addressBox, const std::string& text) const {
    std::istringstream octets(text);
    std::string octet;
    for (HWND part : partsOf(addressBox))
        if (std::getline(octets, octet, '.')) type(part, octet);
}

void Robot::fill(HWND dialog, const std::vector<FormEntry>& entries) const {
    for (const auto& [id, entry] : entries) {
        HWND control = waitControl(dialog, id);
        const std::string kind = className(control);
        if (kind == "ComboBox")
            chooseCombo(control, entry);
        else if (kind == "SysIPAddress32")
            typeAddress(control, entry);
        else if (kind == "Edit")
            type(control, entry);
        else if (isChecked(control) != (entry == "1"))
            click(dialog, id);
    }
    settle();
}

}  // namespace korvane::host
