#include <chrono>
#include <ctime>
#include <exception>
#include <string>

#include "cli/console.h"
#include "cli/program.h"
#include "cli/system.h"
#include "device/udp_link.h"

namespace {

using namespace korvane;

std::string localTime() {
    const std::time_t seconds = std::time(nullptr);
    const std::tm* parts = std::localtime(&seconds);
    char text[32] = "";
    if (parts) std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", parts);
    return text;
}

cli::ExitCode run(int count, char** values) {
    cli::system::catchInterrupts();
    UdpDeviceLink link(&cli::system::answersEcho);
    cli::Console console;
    cli::Context context{console, link, &localTime};
    return cli::run(cli::system::arguments(count, values), context);
}

}  // namespace

int main(int count, char** values) {
    try {
        return static_cast<int>(run(count, values));
    } catch (const std::exception& exception) {  // of the file system, or out of memory
        cli::system::write(cli::system::Stream::Notes,
                           std::string("korvane: ") + exception.what() + '\n');
        return static_cast<int>(cli::ExitCode::File);
    }
}
