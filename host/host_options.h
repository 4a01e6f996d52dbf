#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace korvane::host {

struct HostOptions {
    std::string address;        // connect to it at once; empty: wait for the operator
    std::string tourDirectory;  // run the tour and leave its pictures here; empty: no tour
    std::string importFile;     // what the tour imports; empty: what it exported before
    std::string consoleFile;    // commands for a simulated device go there; empty: it has none
    int attempts = 1;           // how often the tour tries a transfer that fails
    bool recover = false;       // the tour only takes in what an earlier run left unsaved
    bool help = false;
};

// The text says what is wrong with the command line.
class OptionError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// `arguments` without the program's name, UTF-8. Throws OptionError.
HostOptions parseHostOptions(const std::vector<std::string>& arguments);

std::string_view hostUsage();

}  // namespace korvane::host
