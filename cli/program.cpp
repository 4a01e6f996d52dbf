#include "cli/program.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "CLI/CLI.hpp"
#include "cli/command.h"
#include "cli/failure.h"

namespace korvane::cli {
namespace {

constexpr std::array commands = {
    Command{"fetch", "read the whole configuration of a device into a file", describeFetch},
    Command{"send", "make a device take a file's configuration, checked and read back",
            describeSend},
    Command{"diff", "tell in what two configurations differ", describeDiff},
    Command{"check", "hold a configuration against every rule", describeCheck},
    Command{"show", "sum a configuration up", describeShow},
    Command{"convert", "turn a file into the other form", describeConvert},
    Command{"status", "tell how a device is", describeStatus},
    Command{"params", "get or set a device's own parameters", describeParams},
    Command{"reboot", "restart a device", describeReboot},
    Command{"restore", "restore a device's defaults", describeRestore},
    Command{"upgrade", "give a device another firmware", describeUpgrade},
};

constexpr const char* footer =
    "Where a FILE stands, .json is the text form and any other name the binary one, unless\n"
    "--format says; - is standard input or output, and text.\n"
    "\n"
    "Exit codes:\n"
    "  0    done\n"
    "  1    the answer is \"no\": it differs, there are findings, a question was declined\n"
    "  2    wrong command line\n"
    "  3    a file cannot be read, is wrong, or cannot be written\n"
    "  4    no answer from the device, or no socket\n"
    "  5    the device refused, or answered something wrong\n"
    "  130  ended by Ctrl-C, at the next safe place; a second Ctrl-C ends at once\n";

void describeAll(CLI::App& app, Action& chosen) {
    app.set_version_flag("--version", "korvane " KORVANE_VERSION);
    app.footer(footer);
    Arguments all(app, chosen);
    for (const Command& command : commands)
        command.describe(all.command(command.name, command.help));
}

// Help is an answer, anything else is wrong.
ExitCode tell(const CLI::App& app, const CLI::ParseError& what, Terminal& terminal) {
    std::ostringstream answer, complaint;
    const bool wrong = app.exit(what, answer, complaint) != 0;
    if (!wrong) {
        terminal.write(answer.str());
        return ExitCode::Done;
    }
    std::string text = complaint.str();
    text.erase(text.find_last_not_of('\n') + 1);
    terminal.note("korvane: " + text);
    return ExitCode::CommandLine;
}

ExitCode perform(const Action& action, Context& context) {
    try {
        return action(context);
    } catch (const Failure& failure) {
        context.terminal.note(std::string("korvane: ") + failure.what());
        return failure.code();
    } catch (const Interrupted&) {
        context.terminal.note("korvane: interrupted. " + context.deviceState);
        return ExitCode::Interrupted;
    }
}

}  // namespace

ExitCode run(std::vector<std::string> arguments, Context& context) {
    CLI::App app("The Korvane panel's work without its window.", "korvane");
    Action chosen;
    describeAll(app, chosen);
    try {
        std::ranges::reverse(arguments);  // as the parser takes them
        app.parse(std::move(arguments));
    } catch (const CLI::ParseError& what) {
        return tell(app, what, context.terminal);
    }
    return perform(chosen, context);
}

}  // namespace korvane::cli
