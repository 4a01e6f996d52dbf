#include <winsock2.h>
#include <windows.h>
#include <shellapi.h>

#include <algorithm>
#include <array>
#include <atomic>

#include "cli/system.h"
#include "device/ping_host.h"
#include "device/reachability.h"
#include "text/text.h"

namespace korvane::cli::system {
namespace {

std::atomic<bool> interruptAsked{false};

HANDLE handleOf(Stream stream) {
    return GetStdHandle(stream == Stream::Answer ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

bool isConsole(HANDLE handle) {
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != FALSE;
}

bool writeConsole(HANDLE console, std::string_view utf8) {
    const std::wstring text = toWide(utf8);
    DWORD written = 0;
    return WriteConsoleW(console, text.data(), static_cast<DWORD>(text.size()), &written,
                         nullptr) != FALSE;
}

BOOL WINAPI noteInterrupt(DWORD event) {
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
    return interruptAsked.exchange(true) ? FALSE : TRUE;
}

// One read of standard input, UTF-8; nothing at its end.
std::string readPiece(HANDLE input) {
    DWORD size = 0;
    if (isConsole(input)) {
        std::array<wchar_t, 4096> piece;
        if (!ReadConsoleW(input, piece.data(), piece.size(), &size, nullptr)) return {};
        return toUtf8({piece.data(), size});
    }
    std::array<char, 65536> piece;
    if (!ReadFile(input, piece.data(), piece.size(), &size, nullptr)) return {};
    return {piece.data(), size};
}

}  // namespace

// Older consoles know no escape sequences, and then show no transient lines.
bool isTerminal(Stream stream) {
    DWORD mode = 0;
    const HANDLE handle = handleOf(stream);
    return GetConsoleMode(handle, &mode) &&
           SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

bool write(Stream stream, std::string_view utf8) {
    const HANDLE handle = handleOf(stream);
    if (isConsole(handle)) return writeConsole(handle, utf8);
    while (!utf8.empty()) {
        DWORD written = 0;
        if (!WriteFile(handle, utf8.data(), static_cast<DWORD>(utf8.size()), &written, nullptr))
            return false;
        utf8.remove_prefix(written);
    }
    return true;
}

bool readLine(std::string& utf8) {
    utf8.clear();
    while (utf8.find('\n') == std::string::npos) {
        const std::string piece = readPiece(GetStdHandle(STD_INPUT_HANDLE));
        if (piece.empty()) break;
        utf8 += piece;
    }
    const bool answered = !utf8.empty() && !interrupted();
    utf8.erase(std::min(utf8.size(), utf8.find_first_of("\r\n")));
    return answered;
}

std::string readAll() {
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    std::string text;
    for (std::string piece = readPiece(input); !piece.empty(); piece = readPiece(input))
        text += piece;
    return text;
}

// Those of the system: the runtime's have lost what its code page lacks.
std::vector<std::string> arguments(int, char**) {
    int count = 0;
    LPWSTR* values = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> texts;
    for (int i = 1; i < count; ++i) texts.push_back(toUtf8(values[i]));
    LocalFree(values);
    return texts;
}

void catchInterrupts() {
    SetConsoleCtrlHandler(&noteInterrupt, TRUE);
}

bool interrupted() {
    return interruptAsked;
}

bool answersEcho(const std::string& host) {
    Reachability device(&resolveHost);
    device.watch(host);
    return device.answers();
}

}  // namespace korvane::cli::system
