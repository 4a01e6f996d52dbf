#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

#include "log/log.h"
#include "runtime/TroubleShootLib/log_environment.h"
#include "runtime/TroubleShootLib/log_file_path.h"
#include "runtime/system_mutex.h"

namespace korvane {

// The diagnostic log: a file per day beside the host's program, in GBK. Lines of all threads come
// one after the other. Informational ones are written only while value "PrintLog" of
// HKEY_LOCAL_MACHINE\software\Nox CAS1.0 is a number other than 0. A line that cannot be written is
// lost, and the caller never hears of it.
class TroubleShootLog : public LogSink {
  public:
    explicit TroubleShootLog(LogEnvironment& environment)
        : environment_(environment), path_(environment) {}

    // Writes the message (UTF-8) as it is, behind the time and the level. A level that is none is
    // written too, as an unknown one.
    void print(int level, std::string_view message) noexcept override;

    // Lines of level 2 so far, whether they could be written or not.
    std::uint32_t errorCount() const { return errorCount_; }

  private:
    void write(int level, std::string_view message);
    bool informationWanted(const LogTime& now);
    void append(const LogTime& now, const std::string& line);

    // A system's mutex, because threads that log may be ended by force.
    nox_pub::mswin::SystemMutex lock_;
    LogEnvironment& environment_;
    LogFilePath path_;
    LogTime switchRead_{};  // when the switch was last read; at first never
    long switch_ = 0;
    std::atomic<std::uint32_t> errorCount_{0};
};

// The log of this process.
TroubleShootLog& processLog();

// Writes one line to the log of this process. Format and texts are UTF-8. A wrong argument costs
// the line, not more.
__attribute__((format(gnu_printf, 2, 3))) void PrintLog(int level, const char* format,
                                                        ...) noexcept;

}  // namespace korvane
