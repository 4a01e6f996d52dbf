#include "simulator/console.h"

#include <algorithm>
#include <array>
#include <memory>

#include "simulator/simulator_options.h"

namespace korvane {

struct Console::Row {
    std::string_view name;
    std::string_view argument;
    std::string_view help;
    std::string (Console::*run)(std::string_view argument);
};

std::span<const Console::Row> Console::rows() {
    static constexpr std::array<Row, 10> table = {{
        {"help", "", "list the commands and the faults", &Console::help},
        {"fault", "FAULT...", "add faults", &Console::fault},
        {"faults", "", "list the faults in force", &Console::faults},
        {"clear", "[KIND]", "end all faults, or those of one kind", &Console::clear},
        {"status", "", "show what the device does", &Console::status},
        {"alarms", "BITS|auto", "force the alarm byte, for example 0x78, or let it go",
         &Console::alarms},
        {"save", "[FILE]", "write the state to a file, else to the dump or state file",
         &Console::save},
        {"reboot", "", "restart the device", &Console::reboot},
        {"log", "LEVEL", "quiet, normal or all", &Console::log},
        {"quit", "", "save the state file and end", &Console::quit},
    }};
    return table;
}

namespace {

// The first word of `text`, which loses it and the blanks around it.
std::string_view takeWord(std::string_view& text) {
    constexpr std::string_view blanks = " \t\r";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    const auto end = std::min(text.find_first_of(blanks), text.size());
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(end);
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    while (!text.empty() && blanks.find(text.back()) != std::string_view::npos)
        text.remove_suffix(1);
    return word;
}

}  // namespace

std::string Console::execute(std::string_view line, std::uint64_t nowMs) {
    nowMs_ = nowMs;
    const std::string_view name = takeWord(line);
    if (name.empty()) return {};
    for (const Row& row : rows())
        if (row.name == name) return (this->*row.run)(line);
    return "unknown command '" + std::string(name) + "', try help";
}

std::string Console::help(std::string_view) {
    std::string text = "Commands:\n";
    for (const Row& row : rows()) {
        std::string left = "  " + std::string(row.name) + " " + std::string(row.argument);
        left.resize(24, ' ');
        text += left + std::string(row.help) + "\n";
    }
    text += faultHelp();
    text.pop_back();
    return text;
}

std::string Console::fault(std::string_view argument) {
    if (argument.empty()) return "fault needs at least one fault, try help";
    while (!argument.empty()) {
        std::string error;
        const auto parsed = parseFault(takeWord(argument), error);
        if (!parsed) return error;
        device_.faults().add(*parsed);
    }
    return faults({});
}

std::string Console::faults(std::string_view) {
    std::string text;
    for (const Fault& fault : device_.faults().all())
        text += (text.empty() ? "faults: " : ", ") + describe(fault);
    return text.empty() ? "no faults" : text;
}

std::string Console::clear(std::string_view argument) {
    if (argument.empty()) {
        device_.faults().clear();
        return "no faults";
    }
    for (const FaultTraits& traits : faultTraits()) {
        if (traits.name != argument) continue;
        device_.faults().clear(traits.kind);
        return faults({});
    }
    return "no fault '" + std::string(argument) + "'";
}

std::string Console::status(std::string_view) {
    device_.status().advance(nowMs_);
    const auto image = std::make_unique<DeviceStatusImage>();
    device_.status().write(*image);
    const DeviceState& state = device_.state();
    return (device_.isRebooting(nowMs_) ? "restarting" : "running") + std::string("; ") +
           std::to_string(image->frameCount) + " frames, stream " +
           std::to_string(image->streamRate / 1000) + " kbit/s, " +
           std::to_string(image->bytesSent) + " bytes sent, alarms " +
           std::to_string(image->alarms) + "; " + std::to_string(state.set.channels[0]) +
           " input channels; configuration " +
           (state.set == state.applied ? "applied" : "set but not applied") + "; " + faults({}) +
           "; " + device_.networkSettings();
}

std::string Console::alarms(std::string_view argument) {
    const auto bits = parseUnsigned(argument);
    if (argument != "auto" && (!bits || *bits > 0xFF)) return "alarms needs a byte or auto";
    if (bits)
        device_.status().forceAlarms(static_cast<std::uint8_t>(*bits));
    else
        device_.status().forceAlarms(std::nullopt);
    return "alarms " + std::string(argument);
}

std::string Console::save(std::string_view argument) {
    return save_(std::string(argument));
}

std::string Console::reboot(std::string_view) {
    device_.reboot(nowMs_);
    return "restarting";
}

std::string Console::log(std::string_view argument) {
    const auto level = parseLogLevel(argument);
    if (!level) return "log needs quiet, normal or all";
    log_.setLevel(*level);
    return "log " + std::string(argument);
}

std::string Console::quit(std::string_view) {
    quit_ = true;
    return "ending";
}

}  // namespace korvane
