#include "host_options.h"

#include <charconv>

#include "ipv4_address.h"

namespace korvane::host {

namespace {

constexpr int mostAttempts = 100;

class Parser {
  public:
    explicit Parser(const std::vector<std::string>& arguments) : arguments_(arguments) {}

    HostOptions parse() {
        while (next_ < arguments_.size()) take(arguments_[next_++]);
        if (options_.help) return options_;
        if (!options_.tourDirectory.empty() && options_.address.empty())
            throw OptionError("--tour needs the device's address");
        if (options_.tourDirectory.empty() && tourOnly_ != nullptr)
            throw OptionError(std::string(tourOnly_) + " is for a tour: give --tour too");
        return options_;
    }

  private:
    void take(const std::string& argument) {
        if (argument == "--help" || argument == "-h" || argument == "/?") {
            options_.help = true;
        } else if (argument == "--tour") {
            options_.tourDirectory = value(argument);
        } else if (argument == "--import") {
            tourOnly_ = "--import";
            options_.importFile = value(argument);
        } else if (argument == "--console") {
            tourOnly_ = "--console";
            options_.consoleFile = value(argument);
        } else if (argument == "--recover") {
            tourOnly_ = "--recover";
            options_.recover = true;
        } else if (argument == "--attempts") {
            tourOnly_ = "--attempts";
            options_.attempts = number(argument, value(argument));
        } else if (argument.starts_with('-')) {
            throw OptionError("unknown option " + argument);
        } else {
            takeAddress(argument);
        }
    }

    void takeAddress(const std::string& argument) {
        if (!options_.address.empty()) throw OptionError("more than one address: " + argument);
        if (!isDeviceAddress(argument)) throw OptionError("not a device address: " + argument);
        options_.address = argument;
    }

    std::string value(const std::string& option) {
        if (next_ == arguments_.size() || arguments_[next_].empty())
            throw OptionError(option + " needs a value");
        return arguments_[next_++];
    }

    static int number(const std::string& option, const std::string& text) {
        int value = 0;
        const char* end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, value);
        if (error != std::errc{} || stop != end || value < 1 || value > mostAttempts)
            throw OptionError(option + " takes a number from 1 to 100, not " + text);
        return value;
    }

    const std::vector<std::string>& arguments_;
    std::size_t next_ = 0;
    HostOptions options_;
    const char* tourOnly_ = nullptr;
};

}  // namespace

HostOptions parseHostOptions(const std::vector<std::string>& arguments) {
    return Parser(arguments).parse();
}

std::string_view hostUsage() {
    return "KorvaneHost: shows the Korvane panel of one multiplexer in a window of its own.\n"
           "\n"
           "  KorvaneHost.exe [ADDRESS]\n"
           "  KorvaneHost.exe --tour DIRECTORY [--import FILE] [--console FILE] [--attempts N] "
           "[--recover] ADDRESS\n"
           "\n"
           "  ADDRESS           the device's IPv4 address, such as 192.168.1.20; connects at "
           "once.\n"
           "                    Without it the window asks for one.\n"
           "  --tour DIRECTORY  operates the panel by itself: fetches the device's configuration,\n"
           "                    shows each page, exports, imports, saves it to the device. Leaves\n"
           "                    a picture of each page and dialog in DIRECTORY, tells each step "
           "on\n"
           "                    the standard output and ends with 0 when all went well.\n"
           "                    It writes to the device: not for one that is on the air.\n"
           "  --import FILE     what the tour imports; otherwise the file that it exported.\n"
           "  --console FILE    where the tour adds lines for the console of a simulated device, "
           "to\n"
           "                    show alarms and a lost link; without it, it shows none.\n"
           "  --attempts N      how often the tour tries a transfer that the panel reports as\n"
           "                    failed, 1 to 100; otherwise once.\n"
           "  --recover         the tour only takes in edits that an earlier run left unsaved, and "
           "exports.\n"
           "  --help            this text.\n"
           "\n"
           "Korvane.dll is loaded from the directory of this program.\n"
           "Exit codes: 0 done, 1 failed, 2 wrong command line.\n";
}

}  // namespace korvane::host
