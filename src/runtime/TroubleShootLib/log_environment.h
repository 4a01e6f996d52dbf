#pragma once

#include <string>

namespace korvane {

// Local time.
struct LogTime {
    int year;
    int month;  // 1-12
    int day;
    int hour;
    int minute;
    int second;
};

// The seam between the log and its surroundings. Calls come one at a time; they may throw.
class LogEnvironment {
  public:
    virtual ~LogEnvironment() = default;

    virtual LogTime localTime() = 0;

    // Full path of the program that this process runs.
    virtual std::wstring executablePath() = 0;

    // Value `name` of subkey `key` of HKEY_LOCAL_MACHINE\software as a number: 1, or 0 when there
    // is none; then `out` is unchanged.
    virtual int readNumber(const char* key, const char* name, long& out) = 0;
};

// The process's own.
LogEnvironment& systemLogEnvironment();

}  // namespace korvane
