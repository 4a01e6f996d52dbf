// Each system has its own converter.
#ifdef _WIN32
#include <windows.h>
#else
#include <iconv.h>

#include <stdexcept>
#endif

#include "text/gbk.h"

namespace korvane {
namespace {

// Bytes of the character that begins a UTF-8 text; a byte that begins none stands for itself.
std::size_t characterSize(std::string_view utf8) {
    const auto first = static_cast<unsigned char>(utf8.front());
    const std::size_t size = first < 0xC0 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    return size <= utf8.size() ? size : 1;
}

#ifdef _WIN32

constexpr UINT gbkCodePage = 936;

std::wstring wide(UINT codePage, DWORD flags, std::string_view text) {
    std::wstring result(text.size(), L'\0');
    const int size = static_cast<int>(text.size());
    result.resize(static_cast<std::size_t>(
        MultiByteToWideChar(codePage, flags, text.data(), size, result.data(), size)));
    return result;
}

std::string narrow(UINT codePage, const std::wstring& text, BOOL* missing) {
    std::string result(text.size() * 4, '\0');
    result.resize(static_cast<std::size_t>(
        WideCharToMultiByte(codePage, 0, text.data(), static_cast<int>(text.size()), result.data(),
                            static_cast<int>(result.size()), nullptr, missing)));
    return result;
}

// Empty when there is no such character in GBK.
std::string characterToGbk(std::string_view character) {
    BOOL missing = FALSE;
    const std::string gbk =
        narrow(gbkCodePage, wide(CP_UTF8, MB_ERR_INVALID_CHARS, character), &missing);
    return missing ? std::string() : gbk;
}

std::string decode(std::string_view gbk) {
    return narrow(CP_UTF8, wide(gbkCodePage, 0, gbk), nullptr);
}

#else

class Converter {
  public:
    Converter(const char* to, const char* from) : handle_(iconv_open(to, from)) {
        if (handle_ == reinterpret_cast<iconv_t>(-1))
            throw std::runtime_error("this system cannot convert GBK");
    }
    ~Converter() { iconv_close(handle_); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    // As much as can be converted; `text` keeps the rest.
    std::string take(std::string_view& text) {
        std::string result(text.size() * 3, '\0');
        char* in = const_cast<char*>(text.data());
        char* out = result.data();
        std::size_t inLeft = text.size(), outLeft = result.size();
        iconv(handle_, nullptr, nullptr, nullptr, nullptr);
        iconv(handle_, &in, &inLeft, &out, &outLeft);
        text.remove_prefix(text.size() - inLeft);
        result.resize(result.size() - outLeft);
        return result;
    }

  private:
    iconv_t handle_;
};

std::string characterToGbk(std::string_view character) {
    thread_local Converter converter("GBK", "UTF-8");
    std::string gbk = converter.take(character);
    return character.empty() ? gbk : std::string();
}

std::string decode(std::string_view gbk) {
    thread_local Converter converter("UTF-8", "GBK");
    std::string text = converter.take(gbk);
    while (!gbk.empty()) {
        gbk.remove_prefix(1);
        text += "\uFFFD" + converter.take(gbk);
    }
    return text;
}

#endif

}  // namespace

GbkText toGbk(std::string_view utf8) {
    GbkText result;
    while (!utf8.empty()) {
        const std::string_view character = utf8.substr(0, characterSize(utf8));
        utf8.remove_prefix(character.size());
        const std::string gbk = characterToGbk(character);
        result.bytes += gbk.empty() ? "?" : gbk;
        if (gbk.empty() && result.missing.empty()) result.missing = character;
    }
    return result;
}

std::string gbkToUtf8(std::string_view gbk) {
    return decode(gbk);
}

}  // namespace korvane
