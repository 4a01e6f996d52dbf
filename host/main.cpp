#include <windows.h>

#include <filesystem>
#include <shellapi.h>
#include <string>
#include <thread>
#include <vector>

#include "console.h"
#include "host_options.h"
#include "host_window.h"
#include "plugin.h"
#include "text/text.h"
#include "tour.h"

namespace korvane::host {

namespace {

enum ExitCode : int { exitDone = 0, exitFailed = 1, exitUsage = 2 };

std::vector<std::string> commandLine() {
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) arguments.push_back(toUtf8(words[i]));
    LocalFree(words);
    return arguments;
}

// On the console when there is one, else in a window: a program started by its icon has none.
void tell(Channel channel, const std::string& text) {
    if (writeConsole(channel, text)) return;
    const UINT icon = channel == Channel::output ? MB_ICONINFORMATION : MB_ICONERROR;
    MessageBoxW(nullptr, toWide(text).c_str(), L"Korvane", MB_OK | icon);
}

std::filesystem::path ownDirectory() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return std::filesystem::path(path).parent_path();
}

// The tour's thread ends the process itself when it fails: a window may wait for an answer then,
// and the user-interface thread would never come back.
void runTour(HWND window, DWORD guiThread, const HostOptions& options) noexcept {
    try {
        Robot robot(guiThread);
        if (Tour(robot, window, options).run()) {
            robot.close(window);
            return;
        }
    } catch (const std::exception& error) {
        writeConsole(Channel::error, std::string("KorvaneHost: ") + error.what() + "\n");
    }
    TerminateProcess(GetCurrentProcess(), exitFailed);
}

int show(const HostOptions& options) {
    Plugin plugin(ownDirectory() / "Korvane.dll");
    HostWindow window(plugin);
    if (options.tourDirectory.empty()) {
        if (!options.address.empty()) window.connectTo(options.address);
        window.run();
        return exitDone;
    }
    std::jthread tour(runTour, window.hwnd(), GetCurrentThreadId(), options);
    window.run();
    return exitDone;
}

int runHost() {
    HostOptions options;
    try {
        options = parseHostOptions(commandLine());
    } catch (const OptionError& error) {
        tell(Channel::error,
             std::string("KorvaneHost: ") + error.what() + "\nTry KorvaneHost.exe --help\n");
        return exitUsage;
    }
    if (options.help) {
        tell(Channel::output, std::string(hostUsage()));
        return exitDone;
    }
    try {
        return show(options);
    } catch (const std::exception& error) {
        const std::string text = std::string(error.what()) + "\n";
        // An operator sees the window; a script that runs a tour reads the stream.
        if (options.tourDirectory.empty())
            MessageBoxW(nullptr, toWide(text).c_str(), L"Korvane", MB_OK | MB_ICONERROR);
        else
            tell(Channel::error, "KorvaneHost: " + text);
        return exitFailed;
    }
}

}  // namespace

}  // namespace korvane::host

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    return korvane::host::runHost();
}
