#include "text/text.h"

#include <windows.h>

#include "text/gbk.h"

namespace korvane {
namespace {

std::wstring decode(UINT codePage, std::string_view text) {
    const int size = static_cast<int>(text.size());
    const int length = MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), length);
    return wide;
}

std::string encode(UINT codePage, std::wstring_view text) {
    const int size = static_cast<int>(text.size());
    const int length =
        WideCharToMultiByte(codePage, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(codePage, 0, text.data(), size, bytes.data(), length, nullptr, nullptr);
    return bytes;
}

}  // namespace

std::wstring toWide(std::string_view utf8) {
    return decode(CP_UTF8, utf8);
}
// No character is more units in UTF-16 than it is bytes in UTF-8.
void toWide(std::string_view utf8, std::wstring& wide) {
    const int size = static_cast<int>(utf8.size());
    wide.resize(utf8.size());
    const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(length));
}
std::string toUtf8(std::wstring_view wide) {
    return encode(CP_UTF8, wide);
}
std::wstring anyToWide(std::string_view text) {
    const int size = static_cast<int>(text.size());
    const bool isUtf8 =
        MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, nullptr, 0) > 0;
    return decode(isUtf8 ? CP_UTF8 : CP_ACP, text);
}
std::string anyToGbk(std::string_view text) {
    return toGbk(toUtf8(anyToWide(text))).bytes;
}
std::string systemToUtf8(std::string_view narrow) {
    return toUtf8(decode(CP_ACP, narrow));
}

}  // namespace korvane
