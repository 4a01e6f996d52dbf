#include "text.h"

#include <windows.h>

namespace korvane::host {

std::wstring wide(std::string_view utf8) {
    const int size = static_cast<int>(utf8.size());
    std::wstring out(utf8.size(), L'\0');  // never more units than bytes
    out.resize(size == 0 ? 0
                         : MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, out.data(), size));
    return out;
}

std::string utf8(std::wstring_view wide) {
    const int size = static_cast<int>(wide.size());
    std::string out(wide.size() * 3, '\0');  // at most three bytes for each unit
    const int room = static_cast<int>(out.size());
    out.resize(size == 0 ? 0
                         : WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, out.data(), room,
                                               nullptr, nullptr));
    return out;
}

}  // namespace korvane::host
