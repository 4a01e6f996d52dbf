#include <cstdlib>
#include <exception>
#include <iostream>
#include <span>

#include "simulator/simulator_program.h"

namespace {

int run(std::span<const char* const> arguments) {
    std::string error;
    const auto options = korvane::parseOptions(arguments, error);
    if (!options) {
        std::cerr << "korvane-sim: " << error << "\nTry 'korvane-sim --help'." << std::endl;
        return 2;
    }
    if (options->help) {
        std::cout << korvane::helpText() << std::flush;
        return 0;
    }
    if (options->version) {
        std::cout << "korvane-sim " KORVANE_VERSION << std::endl;
        return 0;
    }
    return korvane::runSimulator(*options);
}

}  // namespace

int main(int count, char** arguments) {
    int code = 1;
    try {
        code = run(std::span<const char* const>(arguments, static_cast<std::size_t>(count))
                       .subspan(count > 0 ? 1 : 0));
    } catch (const std::exception& exception) {
        std::cerr << "korvane-sim: " << exception.what() << std::endl;
    }
    // The thread that reads standard input may hold its lock; an ordinary exit could wait for it.
    std::_Exit(code);
}
