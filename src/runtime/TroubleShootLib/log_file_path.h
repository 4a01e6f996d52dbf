#pragma once

#include <string>

#include "runtime/TroubleShootLib/log_environment.h"

namespace korvane {

// Where the log of a day is kept: for a program C:\App\Host.exe on 23 April 2009 it is
// C:\App\LogFile\HostLog2009\04-23.log. Directories are made when they are first needed.
class LogFilePath {
  public:
    explicit LogFilePath(LogEnvironment& environment) : environment_(environment) {}

    // The file for this moment; "c:\NOXExcep.log" when no path can be built. The next call tries
    // again.
    std::wstring forTime(const LogTime& now);

    // Makes the next call build everything anew: a directory may have gone in the meantime.
    void forget();

  private:
    void update(const LogTime& now);
    void findRoot();

    LogEnvironment& environment_;
    std::wstring root_;  // empty until first use
    std::wstring tag_;   // a backslash and the program's name without its extension
    std::wstring yearDirectory_;
    std::wstring file_;
    int year_ = 0, month_ = 0, day_ = 0;  // what the two above were built for
};

}  // namespace korvane
