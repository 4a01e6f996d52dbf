#include "simulator/simulator_options.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "device/udp.h"

namespace korvane {

namespace {

struct OptionRow {
    std::string_view name;
    std::string_view valueName;  // empty: takes none
    std::string_view help;
    // False when the value is wrong; `error` may then say why.
    bool (*apply)(SimulatorOptions& options, std::string_view value, std::string& error);
};

bool setNumber(std::uint32_t& target, std::string_view value, std::uint32_t least,
               std::uint32_t most) {
    const auto number = parseUnsigned(value);
    if (!number || *number < least || *number > most) return false;
    target = *number;
    return true;
}

bool setAddress(SimulatorOptions& options, std::string_view value, std::string&) {
    options.address = value;
    // The system would read 127.1 as 127.0.0.1.
    return std::ranges::count(value, '.') == 3 && parseIpv4(options.address.c_str()) != 0xFFFFFFFF;
}

bool setPort(SimulatorOptions& options, std::string_view value, std::string&) {
    std::uint32_t port = 0;
    if (!setNumber(port, value, 1, 65535)) return false;
    options.port = static_cast<std::uint16_t>(port);
    return true;
}

bool addFault(SimulatorOptions& options, std::string_view value, std::string& error) {
    const auto fault = parseFault(value, error);
    if (fault) options.faults.push_back(*fault);
    return fault.has_value();
}

bool setLogLevel(SimulatorOptions& options, std::string_view value, std::string&) {
    const auto level = parseLogLevel(value);
    if (level) options.logLevel = *level;
    return level.has_value();
}

bool setPath(std::filesystem::path& target, std::string_view value) {
    target = value;
    return !value.empty();
}

constexpr std::array<OptionRow, 12> rows = {{
    {"--address", "ADDRESS", "IPv4 address to listen at (127.0.0.1); 0.0.0.0 is every address",
     setAddress},
    {"--port", "PORT", "UDP port, 1-65535 (1123, where the panel looks for a device)", setPort},
    {"--state", "FILE", "keep the configuration in this file across restarts",
     [](SimulatorOptions& options, std::string_view value, std::string&) {
         return setPath(options.stateFile, value);
     }},
    {"--dump", "FILE", "write the configuration there on SIGUSR1 and at the end",
     [](SimulatorOptions& options, std::string_view value, std::string&) {
         return setPath(options.dumpFile, value);
     }},
    {"--seed", "NUMBER", "start of all chance: same seed, same rates, alarms and losses (1)",
     [](SimulatorOptions& options, std::string_view value, std::string&) {
         return setNumber(options.simulation.seed, value, 0, 0xFFFFFFFF);
     }},
    {"--fault", "FAULT", "a fault from the start on, see below; may be given several times",
     addFault},
    {"--reboot-time", "MS", "silence after a restart command (15000)",
     [](SimulatorOptions& options, std::string_view value, std::string&) {
         return setNumber(options.simulation.rebootMs, value, 0, 600'000);
     }},
    {"--upgrade-polls", "COUNT", "times that an upgrade answers \"still working\" (3)",
     [](SimulatorOptions& options, std::string_view value, std::string&) {
         return setNumber(options.simulation.upgradePolls, value, 0, 1000);
     }},
    {"--log", "LEVEL", "quiet, normal (all but the status polls) or all (normal)", setLogLevel},
    {"--quiet", "", "the same as --log quiet",
     [](SimulatorOptions& options, std::string_view, std::string&) {
         options.logLevel = LogLevel::Quiet;
         return true;
     }},
    {"--help", "", "print this and end",
     [](SimulatorOptions& options, std::string_view, std::string&) { return options.help = true; }},
    {"--version", "", "print the version and end",
     [](SimulatorOptions& options, std::string_view, std::string&) {
         return options.version = true;
     }},
}};

std::string column(std::string_view name, std::string_view value, std::string_view glue,
                   std::size_t width) {
    std::string text = "  ";
    text += name;
    if (!value.empty()) text.append(glue).append(value);
    text.resize(std::max(width, text.size() + 2), ' ');
    return text;
}

std::string quoted(std::string_view text) {
    std::string result = "'";
    result += text;
    return result += '\'';
}

// The value of an option, behind its '=' or from the next argument. Options without one get none.
std::optional<std::string_view> takeValue(const OptionRow& row, std::string_view argument,
                                          std::span<const char* const>& rest, std::string& error) {
    const bool attached = argument.size() > row.name.size();
    if (row.valueName.empty()) {
        if (!attached) return std::string_view();
        error = std::string(row.name) + " takes no value";
        return std::nullopt;
    }
    if (attached) return argument.substr(row.name.size() + 1);
    if (rest.empty()) {
        error = std::string(row.name) + " needs a value: " + std::string(row.valueName);
        return std::nullopt;
    }
    const std::string_view value = rest.front();
    rest = rest.subspan(1);
    return value;
}

// Takes one option with its value from the front of `arguments`.
bool applyNext(std::span<const char* const>& arguments, SimulatorOptions& options,
               std::string& error) {
    const std::string_view argument = arguments.front();
    arguments = arguments.subspan(1);
    const std::string_view name = argument.substr(0, argument.find('='));
    const auto row = std::ranges::find(rows, name, &OptionRow::name);
    if (row == rows.end()) {
        error = "unknown option " + quoted(name);
        return false;
    }
    const auto value = takeValue(*row, argument, arguments, error);
    if (!value) return false;
    std::string reason;
    if (row->apply(options, *value, reason)) return true;
    error = name;
    error += ": ";
    error += reason.empty() ? quoted(*value) + " is no " + std::string(row->valueName) : reason;
    return false;
}

}  // namespace

std::optional<SimulatorOptions> parseOptions(std::span<const char* const> arguments,
                                             std::string& error) {
    SimulatorOptions options;
    error.clear();
    while (!arguments.empty())
        if (!applyNext(arguments, options, error)) return std::nullopt;
    return options;
}

std::string faultHelp() {
    std::string text =
        "A fault is KIND[=VALUE][@COMMAND][:COUNT]. COMMAND is a code or a name such as\n"
        "4007 or GetDeviceStatus (without: every command), COUNT how many requests it\n"
        "meets before it is over (without: until it is cleared). Kinds, with what they\n"
        "mean without a value in brackets:\n";
    for (const FaultTraits& traits : faultTraits())
        text += column(traits.name, traits.valueName, "=", 24) + std::string(traits.help) + "\n";
    return text;
}

std::string helpText() {
    std::string text =
        "korvane-sim: a simulated CMMB multiplexer that answers the Korvane panel over UDP.\n\n"
        "Usage: korvane-sim [OPTION...]\n\n";
    for (const OptionRow& row : rows)
        text += column(row.name, row.valueName, " ", 26) + std::string(row.help) + "\n";
    text += '\n';
    text += faultHelp();
    text +=
        "\nExamples: --fault loss=20  --fault silence@ActivateConfig:1  --fault refuse=5@2004\n"
        "\n"
        "It starts with a sample configuration, or with what the state file holds. When it\n"
        "is ready it prints one line, \"listening on ADDRESS:PORT\"; then it logs what it\n"
        "receives and answers, and takes commands from its standard input (\"help\" lists\n"
        "them). SIGINT, SIGTERM and \"quit\" end it and save the state file. SIGUSR1 writes\n"
        "the dump file, or the state file when there is none; both have the same layout,\n"
        "all bytes as they travel:\n"
        "       0       8  \"KVSIM001\"\n"
        "       8       4  size of the file, big-endian\n"
        "      12       4  CRC-32/MPEG-2 of what follows, big-endian\n"
        "      16     144  device parameters as set\n"
        "     160     144  device parameters as applied\n"
        "     304  629896  configuration image as set\n"
        "  630200   41944  service descriptions as set\n"
        "  672144     974  block 2002 as set\n"
        "  673118    7201  count and records of the input channels as set\n"
        "  680319  680015  image, descriptions, block and channels as applied\n"
        "\n"
        "Exit codes: 0 ended as asked, 1 could not run (address in use, state file\n"
        "damaged or not writable), 2 wrong options.\n";
    return text;
}

}  // namespace korvane
