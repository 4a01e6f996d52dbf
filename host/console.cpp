#include "console.h"

#include <windows.h>

#include "text/text.h"

namespace korvane::host {

namespace {

bool usable(HANDLE stream) {
    return stream != nullptr && stream != INVALID_HANDLE_VALUE;
}

HANDLE streamOf(Channel channel) {
    HANDLE stream = GetStdHandle(channel == Channel::output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
    if (usable(stream)) return stream;
    static const bool attached = AttachConsole(ATTACH_PARENT_PROCESS) != FALSE;
    if (!attached) return nullptr;
    static const HANDLE console =
        CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    nullptr, OPEN_EXISTING, 0, nullptr);
    return console;
}

}  // namespace

bool writeConsole(Channel channel, std::string_view text) {
    HANDLE stream = streamOf(channel);
    if (!usable(stream)) return false;
    DWORD mode = 0, written = 0;
    if (GetConsoleMode(stream, &mode)) {
        const std::wstring converted = toWide(text);
        return WriteConsoleW(stream, converted.data(), static_cast<DWORD>(converted.size()),
                             &written, nullptr) != FALSE;
    }
    return WriteFile(stream, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) !=
           FALSE;
}

}  // namespace korvane::host
