#include "plugin/host_border.h"

#include <algorithm>
#include <string_view>

#include "text/text.h"

namespace korvane {
namespace {

constexpr std::size_t longestText = 255;
constexpr std::size_t pageSize = 4096;

bool isReadable(const void* address) {
    constexpr DWORD forbidden = PAGE_NOACCESS | PAGE_GUARD;
    MEMORY_BASIC_INFORMATION region;
    return VirtualQuery(address, &region, sizeof region) != 0 && region.State == MEM_COMMIT &&
           (region.Protect & forbidden) == 0;
}

// Copies up to `size` bytes and returns how many could be read, without ever faulting. Page by
// page, because each may be missing. Asked first, then read through the system: not every system
// refuses by itself to read a page that has no access.
std::size_t safeRead(const void* source, void* target, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        const auto from = reinterpret_cast<std::uintptr_t>(source) + done;
        const std::size_t piece = std::min(size - done, pageSize - from % pageSize);
        const auto* address = reinterpret_cast<const void*>(from);
        SIZE_T read = 0;
        if (!isReadable(address) ||
            !ReadProcessMemory(GetCurrentProcess(), address, static_cast<std::byte*>(target) + done,
                               piece, &read) ||
            read != piece)
            break;
        done += piece;
    }
    return done;
}

template <class T>
bool readValue(const void* source, T& value) {
    return source && safeRead(source, &value, sizeof value) == sizeof value;
}

template <class Character>
std::basic_string_view<Character> upToTerminator(const std::array<char, 512>& bytes,
                                                 std::size_t count) {
    const auto* first = reinterpret_cast<const Character*>(bytes.data());
    const std::size_t length = std::min(count / sizeof(Character), longestText);
    return {first, static_cast<std::size_t>(std::find(first, first + length, Character{}) - first)};
}

}  // namespace

// The object first: an object's address is never taken for a handle then, whatever its value.
HWND hostWindow(const void* window) {
    HWND held = nullptr;
    const auto* place = static_cast<const std::byte*>(window) + KORVANE_HANDLE_OFFSET;
    if (window && readValue(place, held) && held && IsWindow(held)) return held;
    const auto plain = static_cast<HWND>(const_cast<void*>(window));
    return plain && IsWindow(plain) ? plain : nullptr;
}

std::string hostText(const void* text) {
    const void* characters = nullptr;
    if (!readValue(text, characters)) return {};
    alignas(wchar_t) std::array<char, 512> bytes{};
    const std::size_t count = characters ? safeRead(characters, bytes.data(), bytes.size()) : 0;
    const bool wide = count > 1 && bytes[0] != '\0' && bytes[1] == '\0';
    if (wide) return toUtf8(upToTerminator<wchar_t>(bytes, count));
    return systemToUtf8(upToTerminator<char>(bytes, count));
}

}  // namespace korvane
