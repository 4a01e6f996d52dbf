#pragma once

#include <functional>
#include <string>

#include "cli/terminal.h"
#include "device/device_link.h"

namespace korvane::cli {

// What a command has around it.
struct Context {
    Terminal& terminal;
    DeviceLink& link;
    std::function<std::string()> now;  // the local time of day: "2009-04-23 08:05:09"
    std::string deviceState{};         // what is told of the device when the command is interrupted
};

// Ends the command if that was asked for: at a place where nothing is left half-done.
void stopIfInterrupted(const Context& context);

// Sleeps, but notices an interrupt soon: throws Interrupted.
void pause(const Context& context, std::uint32_t milliseconds);

// Asks unless it is said already. A no is an answer: it throws a Failure.
void askUnless(bool yes, const Context& context, const std::string& question);

}  // namespace korvane::cli
