#include "runtime/encoding.h"

#include <windows.h>

namespace nox_pub::mswin {

std::wstring wideFromText(std::string_view text) {
    const int size = static_cast<int>(text.size());
    UINT codePage = CP_UTF8;
    int length = MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, text.data(), size, nullptr, 0);
    if (length == 0) {
        codePage = CP_ACP;
        length = MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0);
    }
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), length);
    return wide;
}

std::string gbkFromText(std::string_view text) {
    constexpr UINT gbkCodePage = 936;
    const std::wstring wide = wideFromText(text);
    const int size = static_cast<int>(wide.size());
    const int length =
        WideCharToMultiByte(gbkCodePage, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(gbkCodePage, 0, wide.data(), size, bytes.data(), length, nullptr, nullptr);
    return bytes;
}

}  // namespace nox_pub::mswin
