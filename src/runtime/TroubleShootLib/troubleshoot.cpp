#include "runtime/TroubleShootLib/troubleshoot.h"

#include <windows.h>

#include <cstdarg>
#include <cstdio>
#include <mutex>

#include "runtime/fault_guard.h"
#include "runtime/fault_report.h"
#include "text/text.h"

namespace korvane {
namespace {

using namespace nox_pub;

std::string_view tagOf(int level) {
    switch (level) {
        case logInformation:
            return "信息 ";
        case logWarning:
            return "警告 ";
        case logError:
            return "错误 ";
        default:
            return "未知 ";
    }
}

bool sameMinute(const LogTime& a, const LogTime& b) {
    return a.minute == b.minute && a.hour == b.hour && a.day == b.day && a.month == b.month &&
           a.year == b.year;
}

// The line's bytes in a text file: GBK, and every line feed with a carriage return before it.
std::string encoded(const LogTime& now, int level, std::string_view message) {
    char time[48];
    std::snprintf(time, sizeof time, "%02d:%02d:%02d", now.hour, now.minute, now.second);
    const std::string gbk = korvane::anyToGbk(tagOf(level)) + korvane::anyToGbk(message) + '\n';
    std::string line = time;
    for (const char character : gbk) {
        if (character == '\n') line += '\r';
        line += character;
    }
    return line;
}

// Appends with one write of the system's: a line stays whole even when another process has the same
// file, and a thread ended by force leaves no lock of the C library's files behind.
bool appendToFile(const std::wstring& path, const std::string& line) {
    const HANDLE file =
        CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    DWORD written = 0;
    WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    CloseHandle(file);
    return true;
}

// Lives as long as the module is loaded.
TroubleShootLog instance(systemLogEnvironment());

}  // namespace

void TroubleShootLog::print(int level, std::string_view message) noexcept {
    try {
        write(level, message);
    } catch (...) {
        // The log has nobody to complain to.
    }
}

void TroubleShootLog::write(int level, std::string_view message) {
    if (level == logError) ++errorCount_;
    // The time is read under the lock, so that the lines of a file are in its order.
    const std::lock_guard guard(lock_);
    const LogTime now = environment_.localTime();
    if (level == logInformation && !informationWanted(now)) return;
    append(now, encoded(now, level, message));
}

// The registry is looked at once a minute, and only when there is something to say.
bool TroubleShootLog::informationWanted(const LogTime& now) {
    if (!sameMinute(now, switchRead_)) {
        switchRead_ = now;
        environment_.readNumber("Nox CAS1.0", "PrintLog", switch_);
    }
    return switch_ != 0;
}

void TroubleShootLog::append(const LogTime& now, const std::string& line) {
    if (appendToFile(path_.forTime(now), line)) return;
    path_.forget();
    appendToFile(path_.forTime(now), line);
}

TroubleShootLog& processLog() {
    return instance;
}

void PrintLog(int level, const char* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    try {
        // Formatting is done before the lock is taken, and under a guard: an argument that does
        // not fit its format shall neither end a process nor leave the log locked.
        const mswin::TranslatorScope translator(&mswin::throwStructuredException);
        std::string message;
        mswin::guarded([&] { message = formatted(format, arguments); });
        processLog().print(level, message);
    } catch (...) {
        // As in print().
    }
    va_end(arguments);
}

}  // namespace korvane
