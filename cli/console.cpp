#include "cli/console.h"

#include "cli/failure.h"
#include "cli/system.h"

namespace korvane::cli {
namespace {

using system::Stream;

// Of a terminal: to the line's start, and nothing behind it; to the screen's start likewise.
constexpr std::string_view clearLine = "\r\x1b[K";
constexpr std::string_view clearScreen = "\x1b[H\x1b[J";

}  // namespace

void Console::write(std::string_view text) {
    clearTransient();
    if (!system::write(Stream::Answer, text))
        throw Failure(ExitCode::File, "standard output could not be written");
}

void Console::redraw(std::string_view text) {
    std::string screen(system::isTerminal(Stream::Answer) ? clearScreen : "");
    write(screen.append(text));
}

void Console::note(std::string_view line) {
    clearTransient();
    system::write(Stream::Notes, std::string(line) + '\n');
}

void Console::transient(std::string_view line) {
    if (!system::isTerminal(Stream::Notes)) return;
    system::write(Stream::Notes, std::string(clearLine).append(line));
    transientShown_ = true;
}

void Console::clearTransient() {
    if (!transientShown_) return;
    system::write(Stream::Notes, clearLine);
    transientShown_ = false;
}

bool Console::confirm(std::string_view question) {
    clearTransient();
    system::write(Stream::Notes, std::string(question) + " [y/N] ");
    std::string answer;
    const bool answered = system::readLine(answer);
    if (!answered) system::write(Stream::Notes, "\n");
    return answered && (answer == "y" || answer == "Y" || answer == "yes");
}

std::string Console::input() {
    return system::readAll();
}

bool Console::interrupted() const {
    return system::interrupted();
}

}  // namespace korvane::cli
