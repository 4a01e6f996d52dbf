#include "simulator/simulator_program.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <iostream>
#include <system_error>

#include "simulator/console.h"
#include "simulator/event_log.h"
#include "simulator/line_reader.h"
#include "simulator/sample_configuration.h"
#include "simulator/state_file.h"
#include "simulator/state_keeper.h"
#include "simulator/udp_server.h"

namespace korvane {

namespace {

volatile std::sig_atomic_t endAsked = 0;
volatile std::sig_atomic_t dumpAsked = 0;

void catchSignals() {
    std::signal(SIGINT, [](int) { endAsked = 1; });
    std::signal(SIGTERM, [](int) { endAsked = 1; });
#ifdef SIGUSR1
    std::signal(SIGUSR1, [](int) { dumpAsked = 1; });
#endif
#ifdef SIGPIPE
    // Whoever reads the log may go away; the device goes on.
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

// Since the first call.
std::uint64_t steadyMs() {
    using std::chrono::steady_clock;
    static const steady_clock::time_point start = steady_clock::now();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - start).count());
}

// std::localtime has one result for all threads; only this thread asks.
WallTime localTime() {
    const std::time_t seconds = std::time(nullptr);
    const std::tm* parts = std::localtime(&seconds);
    if (!parts) return {};
    const auto number = [](int value) { return static_cast<std::uint16_t>(value); };
    return {number(parts->tm_year + 1900), number(parts->tm_mon + 1), number(parts->tm_mday),
            number(parts->tm_wday),        number(parts->tm_hour),    number(parts->tm_min),
            number(parts->tm_sec)};
}

std::string timeText() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(now).count() % 1000;
    const WallTime time = localTime();
    char text[16];
    std::snprintf(text, sizeof(text), "%02u:%02u:%02u.%03u", time.hour % 100u, time.minute % 100u,
                  time.second % 100u, static_cast<unsigned>(ms) % 1000u);
    return text;
}

void complain(const std::string& text) {
    std::cerr << "korvane-sim: " << text << std::endl;
}

// The state to start with; null after telling why when the state file must not be touched.
std::unique_ptr<DeviceState> startingState(const SimulatorOptions& options) {
    std::error_code problem;
    if (options.stateFile.empty() || !std::filesystem::exists(options.stateFile, problem))
        return sampleState(options.address);
    std::string error;
    auto state = loadState(options.stateFile, error);
    if (!state)
        complain("state file " + options.stateFile.string() + " is not usable: " + error +
                 "; it is left as it is");
    return state;
}

class Program {
  public:
    Program(const SimulatorOptions& options, const DeviceState& state)
        : options_(options),
          device_(state, *sampleConfiguration(), options.simulation, localTime),
          log_(std::cout, options.logLevel, timeText),
          server_(device_),
          keeper_(device_, options.stateFile),
          console_(device_, log_, [this](const std::string& path) { return save(path); }) {
        for (const Fault& fault : options.faults) device_.faults().add(fault);
        device_.onEvent([this](const DeviceEvent& event) { log_.write(event); });
    }

    int run() {
        std::string error;
        if (!server_.open(options_.address, options_.port)) {
            complain("cannot listen on " + options_.address + ':' + std::to_string(options_.port) +
                     ": the port is in use or the address is not this machine's");
            return 1;
        }
        // A file that cannot be written is better found now than at the end.
        if (!keeper_.saveNow(error)) {
            complain(error);
            return 1;
        }
        std::cout << "listening on " << options_.address << ':' << options_.port << std::endl;
        LineReader lines;
        while (!endAsked && !console_.quitAsked()) turn(lines);
        return finish();
    }

  private:
    void turn(LineReader& lines) {
        constexpr std::uint32_t consoleMs = 50;
        const std::size_t refused = server_.serve(consoleMs, steadyMs);
        if (refused != 0) complain(std::to_string(refused) + " datagrams could not be sent");
        while (const auto line = lines.next()) {
            const std::string text = console_.execute(*line, steadyMs());
            if (!text.empty()) std::cout << text << std::endl;
        }
        if (dumpAsked) {
            dumpAsked = 0;
            std::cout << save({}) << std::endl;
        }
        std::string error;
        if (!keeper_.tend(steadyMs(), error)) complain(error);
    }

    // To `path`, else to the dump file, else to the state file.
    std::string save(std::filesystem::path path) const {
        if (path.empty()) path = options_.dumpFile.empty() ? options_.stateFile : options_.dumpFile;
        if (path.empty()) return "no file: neither --dump nor --state was given";
        std::string error;
        if (!saveState(path, device_.state(), error)) return error;
        return "state written to " + path.string();
    }

    int finish() {
        std::string error;
        bool written = keeper_.saveNow(error);
        if (!options_.dumpFile.empty())
            written = saveState(options_.dumpFile, device_.state(), error) && written;
        if (written) return 0;
        complain(error);
        return 1;
    }

    const SimulatorOptions& options_;
    SimulatedDevice device_;
    EventLog log_;
    UdpServer server_;
    StateKeeper keeper_;
    Console console_;
};

}  // namespace

int runSimulator(const SimulatorOptions& options) {
    catchSignals();
    const auto state = startingState(options);
    if (!state) return 1;
    return std::make_unique<Program>(options, *state)->run();
}

}  // namespace korvane
