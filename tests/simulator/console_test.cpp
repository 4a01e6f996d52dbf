#include "simulator/dialogue.h"
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

const Scene scenes[] = {
    {"FaultsAreAddedListedAndCleared",
     "faults -> no faults |   fault  loss=5   silence@4000:2 \r -> faults: loss=5, "
     "silence@ActivateConfig:2 | 4000 -> nothing | faults -> faults: loss=5, "
     "silence@ActivateConfig:1 | clear loss -> faults: silence@ActivateConfig:1 | "
     "clear lose -> no fault 'lose' | clear -> no faults | 4000 | fault -> ~at least one | "
     "fault cut loss=200 -> loss takes a number from 0 to 100, not '200' | faults -> faults: cut"},
    {"AlarmsAreForced",
     "alarms 0x78 -> alarms 0x78 | status -> ~alarms 120; 27 input channels; configuration "
     "applied; "
     "no faults | alarms 255 -> alarms 255 | status -> ~alarms 255; | alarms auto -> alarms auto | "
     "status -> ~alarms 0; | alarms 256 -> alarms needs a byte or auto | alarms x -> ~needs a "
     "byte"},
    {"SavingQuittingAndNonsense",
     "save some file -> to 'some file' | save -> to '' |   -> | stauts -> unknown command "
     "'stauts', "
     "try help | help -> ~alarms BITS|auto      force | help -> ~loss=PERCENT   "},
};
INSTANTIATE_TEST_SUITE_P(Console, Conversation, testing::ValuesIn(scenes), sceneName);

TEST(Console, EndsWhenAsked) {
    SimulatedDevice device;
    std::ostringstream out;
    EventLog log(out, LogLevel::Normal, nullptr);
    Console console(device, log, nullptr);
    EXPECT_EQ(console.execute("", 0), "");
    EXPECT_FALSE(console.quitAsked());
    console.execute("quit", 0);
    EXPECT_TRUE(console.quitAsked());
}

}  // namespace
}  // namespace korvane::test
