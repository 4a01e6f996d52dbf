#include "simulator/console.h"

#include <gtest/gtest.h>
#include <sstream>

#include "simulator/panel_side.h"
#include "simulator/simulator_options.h"

namespace korvane::test {
namespace {

std::optional<SimulatorOptions> parse(std::vector<const char*> arguments, std::string& error) {
    return parseOptions(arguments, error);
}

TEST(Options, AllOfThem) {
    std::string error;
    const auto options =
        parse({"--address", "127.0.0.3", "--port=2000", "--state", "a.state", "--dump=b.dump",
               "--seed", "0x10", "--fault", "loss=5", "--fault=cut=2@4007", "--reboot-time", "500",
               "--upgrade-polls", "0", "--log", "all"},
              error);
    ASSERT_TRUE(options) << error;
    EXPECT_EQ(options->address, "127.0.0.3");
    EXPECT_EQ(options->port, 2000);
    EXPECT_EQ(options->stateFile, "a.state");
    EXPECT_EQ(options->dumpFile, "b.dump");
    EXPECT_EQ(options->simulation.seed, 16u);
    EXPECT_EQ(options->simulation.rebootMs, 500u);
    EXPECT_EQ(options->simulation.upgradePolls, 0u);
    ASSERT_EQ(options->faults.size(), 2u);
    EXPECT_EQ(describe(options->faults[1]), "cut=2@GetDeviceStatus");
    EXPECT_EQ(options->logLevel, LogLevel::All);
    EXPECT_EQ(parse({"--quiet"}, error)->logLevel, LogLevel::Quiet);
    EXPECT_EQ(parse({}, error)->port, 1123);
}

TEST(Options, BadOnesAreNamed) {
    for (const auto& [arguments, part] :
         std::vector<std::pair<std::vector<const char*>, const char*>>{
             {{"--prot", "1"}, "unknown option '--prot'"},
             {{"state"}, "unknown option 'state'"},
             {{"-h"}, "unknown option '-h'"},
             {{"--port"}, "--port needs a value"},
             {{"--port", "65536"}, "--port: '65536' is no PORT"},
             {{"--port", "0"}, "'0' is no PORT"},
             {{"--address", "localhost"}, "'localhost' is no ADDRESS"},
             {{"--address", "127.1"}, "'127.1' is no ADDRESS"},
             {{"--state="}, "'' is no FILE"},
             {{"--seed", "one"}, "'one' is no NUMBER"},
             {{"--fault", "lose"}, "--fault: no fault 'lose'"},
             {{"--log", "loud"}, "'loud' is no LEVEL"},
             {{"--quiet=1"}, "--quiet takes no value"}}) {
        std::string error;
        EXPECT_FALSE(parse(arguments, error)) << part;
        EXPECT_NE(error.find(part), std::string::npos) << error;
    }
}

TEST(Options, HelpNamesEveryOptionAndFault) {
    const std::string help = helpText();
    for (const char* name :
         {"--address", "--port", "--state", "--dump", "--seed", "--fault", "--reboot-time",
          "--upgrade-polls", "--log", "--quiet", "--help", "--version"})
        EXPECT_NE(help.find(name), std::string::npos) << name;
    for (const FaultTraits& traits : faultTraits())
        EXPECT_NE(help.find(traits.name), std::string::npos) << traits.name;
}

class ConsoleCommands : public testing::Test {
  protected:
    std::string run(std::string_view line) { return console_.execute(line, panel_.nowMs); }

    SimulatedDevice device_;
    PanelSide panel_{device_};
    std::ostringstream out_;
    EventLog log_{out_, LogLevel::Normal, [] { return std::string("12:00:00.000"); }};
    std::string savedTo_ = "nowhere";
    Console console_{device_, log_, [this](const std::string& path) {
                         savedTo_ = path;
                         return std::string("written");
                     }};
};

TEST_F(ConsoleCommands, FaultsAreAddedListedAndCleared) {
    EXPECT_EQ(run("faults"), "no faults");
    EXPECT_EQ(run("  fault  loss=5   silence@4000:2 \r"),
              "faults: loss=5, silence@ActivateConfig:2");
    EXPECT_EQ(panel_.ask(4000).datagrams, 0u);
    EXPECT_EQ(run("faults"), "faults: loss=5, silence@ActivateConfig:1");
    EXPECT_EQ(run("clear loss"), "faults: silence@ActivateConfig:1");
    EXPECT_EQ(run("clear"), "no faults");
    EXPECT_EQ(panel_.ask(4000).datagrams, 1u);
    EXPECT_EQ(run("fault loss=200"), "loss takes a number from 0 to 100, not '200'");
    EXPECT_EQ(run("clear lose"), "no fault 'lose'");
    EXPECT_NE(run("fault").find("at least one"), std::string::npos);
}

TEST_F(ConsoleCommands, StatusAndAlarms) {
    EXPECT_EQ(run("alarms 0x78"), "alarms 0x78");
    EXPECT_EQ(panel_.ask(4007).payload[10], 0x78);
    const std::string status = run("status");
    EXPECT_NE(status.find("running; 9 frames"), std::string::npos) << status;
    EXPECT_NE(status.find("alarms 120; 27 input channels; configuration applied; no faults"),
              std::string::npos)
        << status;
    EXPECT_EQ(run("alarms auto"), "alarms auto");
    EXPECT_EQ(panel_.ask(4007).payload[10], 0);
    EXPECT_EQ(run("alarms 256"), "alarms needs a byte or auto");
    panel_.ask(1, {0});
    EXPECT_NE(run("status").find("set but not applied"), std::string::npos);
    run("reboot");
    EXPECT_EQ(panel_.ask(4006).datagrams, 0u);
    EXPECT_NE(run("status").find("restarting"), std::string::npos);
}

TEST_F(ConsoleCommands, SavingQuittingAndNonsense) {
    EXPECT_EQ(run("save some file"), "written");
    EXPECT_EQ(savedTo_, "some file");
    run("save");
    EXPECT_EQ(savedTo_, "");
    EXPECT_EQ(run(""), "");
    EXPECT_EQ(run(" \t"), "");
    EXPECT_EQ(run("stauts"), "unknown command 'stauts', try help");
    EXPECT_FALSE(console_.quitAsked());
    run("quit");
    EXPECT_TRUE(console_.quitAsked());
    EXPECT_NE(run("help").find("alarms"), std::string::npos);
}

TEST_F(ConsoleCommands, LogShowsPollsOnlyWhenAsked) {
    device_.onEvent([this](const DeviceEvent& event) { log_.write(event); });
    panel_.ask(4006);
    panel_.ask(4000);
    EXPECT_EQ(out_.str(),
              "12:00:00.000 127.0.0.1:40000 ActivateConfig (4000), 0 bytes -> done, 0 "
              "bytes (configuration applied)\n");
    out_.str({});
    EXPECT_EQ(run("log all"), "log all");
    panel_.ask(4006);
    EXPECT_NE(out_.str().find("GetHeartbeat"), std::string::npos);
    out_.str({});
    run("log quiet");
    panel_.ask(4000);
    EXPECT_EQ(out_.str(), "");
    EXPECT_NE(run("log loud").find("needs"), std::string::npos);
}

}  // namespace
}  // namespace korvane::test
