#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "cli/places.h"
#include "cli/program.h"
#include "simulator/simulated_device.h"
#include "simulator/simulator_link.h"
#include "support/scratch_directory.h"
#include "support/scripted_terminal.h"

namespace korvane::test {

// The program with a simulated device in the same process: of its waits only the link's clock
// knows.
class CommandLine : public testing::Test {
  protected:
    CommandLine() {
        device_.onEvent([this](const DeviceEvent& event) {
            if (event.kind == DeviceEvent::Kind::Request) commands_.push_back(event.command);
        });
    }

    // The exit code. What was told before is forgotten.
    int run(const std::vector<std::string>& arguments) {
        terminal_.written.clear();
        terminal_.notes.clear();
        terminal_.questions.clear();
        commands_.clear();
        cli::Context context{terminal_, link_, [] { return "2009-04-23 08:05:09"; }};
        return static_cast<int>(cli::run(arguments, context));
    }
    std::string file(const std::string& name) const { return (scratch_.path() / name).string(); }
    std::unique_ptr<Configuration> read(const std::string& name) {
        cli::Context context{terminal_, link_, nullptr};
        return cli::readConfigurationFile(context, file(name), std::nullopt);
    }
    void inject(const std::string& text) {
        std::string error;
        const auto fault = parseFault(text, error);
        ASSERT_TRUE(fault) << error;
        device_.faults().add(*fault);
    }
    std::size_t timesAsked(CommandCode code) const {
        return static_cast<std::size_t>(
            std::ranges::count(commands_, static_cast<std::uint32_t>(code)));
    }

    const std::string address_ = "10.1.2.3";
    ScratchDirectory scratch_;
    SimulatedDevice device_;
    SimulatorLink link_{device_};
    ScriptedTerminal terminal_;
    std::vector<std::uint32_t> commands_;
};

}  // namespace korvane::test
