#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <string>

#include "korvane/plugin.h"

// All that is known of the host's own objects. Nothing that a host passes is trusted: an address
// that is none reads as nothing.

namespace korvane {

// The window that `window` stands for: a window object of the host's class library or a plain
// HWND. nullptr when it is neither.
HWND hostWindow(const void* window);

// The characters of a text object as UTF-8, at most 255 of them; empty when it is none.
std::string hostText(const void* text);

// What a host gets as the panel's window object: laid out so that the inline accessors of the
// host's class library find the handle, and behind it no owner, no site and no control container
// (which they look for up to 0x54), whatever version of the library the host has.
struct PanelWindowObject {
    static constexpr std::size_t size = 0x100;

    std::array<std::byte, KORVANE_HANDLE_OFFSET> zerosBefore{};
    HWND window = nullptr;
    std::array<std::byte, size - KORVANE_HANDLE_OFFSET - sizeof(HWND)> zerosBehind{};
};
static_assert(offsetof(PanelWindowObject, window) == KORVANE_HANDLE_OFFSET);
static_assert(sizeof(PanelWindowObject) == PanelWindowObject::size);

}  // namespace korvane
