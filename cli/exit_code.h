#pragma once

#include <string>
#include <string_view>

namespace korvane::cli {

// What the program ends with.
enum class ExitCode {
    Done = 0,
    No = 1,            // the answer is "no": it differs, there are findings, somebody declined
    CommandLine = 2,   // wrong
    File = 3,          // could not be read, is wrong, could not be written
    NoAnswer = 4,      // of the device, or no socket to ask it with
    Refused = 5,       // by the device; also: it answered something else
    Interrupted = 130  // by Ctrl-C, as shells have it
};

// For a result of the device link other than 0.
ExitCode exitCodeOf(int result);

// What went wrong: "no answer to GetInputChannels from 192.168.1.20".
std::string failureText(int result, std::string_view step, std::string_view address);

}  // namespace korvane::cli
