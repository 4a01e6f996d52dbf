#include "log/log.h"

#include <atomic>
#include <cstdio>

namespace korvane {
namespace {

// The log is the process's: to hand it to everything that may fail would hide what that works on.
std::atomic<LogSink*> currentSink{nullptr};

}  // namespace

LogSink* setLogSink(LogSink* sink) {
    return currentSink.exchange(sink);
}

void logLine(LogLevel level, const char* format, ...) noexcept {
    LogSink* const sink = currentSink;
    if (!sink) return;
    std::va_list arguments;
    va_start(arguments, format);
    try {
        sink->print(level, formatted(format, arguments));
    } catch (...) {
        // Out of memory: the line is lost.
    }
    va_end(arguments);
}

std::string formatted(const char* format, std::va_list arguments) {
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    if (length > 0) std::vsnprintf(text.data(), text.size() + 1, format, arguments);
    return text;
}

}  // namespace korvane
