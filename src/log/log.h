#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

namespace korvane {

// The levels of log lines. Errors and warnings are always kept, information only while the station
// wants it.
enum LogLevel : int { logInformation = 0, logWarning = 1, logError = 2 };

// The seam to where log lines go.
class LogSink {
  public:
    virtual ~LogSink() = default;

    // One line (UTF-8) without its time and level. Called from any thread; what cannot be kept is
    // lost.
    virtual void print(int level, std::string_view line) noexcept = 0;
};

// All lines of this module go to `sink` from now on (null: nowhere, as at first), which outlives
// its use. Returns the one before.
LogSink* setLogSink(LogSink* sink);

// Writes one line. Format and texts are UTF-8.
#ifdef __clang__
__attribute__((format(printf, 2, 3)))
#else
__attribute__((format(gnu_printf, 2, 3)))
#endif
void logLine(LogLevel level, const char* format, ...) noexcept;

// What printf would write.
std::string formatted(const char* format, std::va_list arguments);

}  // namespace korvane
