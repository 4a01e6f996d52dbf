#include <iterator>

#include "simulator/dialogue.h"
#include "simulator/simulator_options.h"

namespace korvane::test {
namespace {

// What a command line says, all of it, or why it is wrong.
std::string parsed(const std::string& line) {
    std::istringstream words(line);
    const std::vector<std::string> list(std::istream_iterator<std::string>(words), {});
    std::vector<const char*> arguments;
    for (const std::string& word : list) arguments.push_back(word.c_str());
    std::string error;
    const auto options = parseOptions(arguments, error);
    if (!options) return error;
    std::ostringstream text;
    text << options->address << ':' << options->port << " state " << options->stateFile << " dump "
         << options->dumpFile << " seed " << options->simulation.seed << " reboot "
         << options->simulation.rebootMs << " polls " << options->simulation.upgradePolls << " log "
         << static_cast<int>(options->logLevel) << options->help << options->version;
    for (const Fault& fault : options->faults) text << ' ' << describe(fault);
    return text.str();
}

TEST(Options, AreTakenOrNamedWhenTheyAreWrong) {
    const std::string usual = R"(127.0.0.1:1123 state "" dump "" seed 1 reboot 15000 polls 3 log )";
    const std::pair<const char*, std::string> lines[] = {
        {"", usual + "100"},
        {"--quiet --help", usual + "010"},
        {"--log quiet --version", usual + "001"},
        {"--address 127.0.0.3 --port=65535 --state a=b --dump=b.dump --seed 0x10 --log=all "
         "--fault loss=5 --fault=cut=2@4007 --reboot-time 600000 --upgrade-polls 0",
         R"(127.0.0.3:65535 state "a=b" dump "b.dump" seed 16 reboot 600000 polls 0 log 200 loss=5 )"
         "cut=2@GetDeviceStatus"},
        {"--prot 1", "unknown option '--prot'"},
        {"state", "unknown option 'state'"},
        {"--port", "--port needs a value: PORT"},
        {"--port 65536", "--port: '65536' is no PORT"},
        {"--port 0", "--port: '0' is no PORT"},
        {"--address localhost", "--address: 'localhost' is no ADDRESS"},
        {"--address 127.1", "--address: '127.1' is no ADDRESS"},
        {"--state=", "--state: '' is no FILE"},
        {"--seed one", "--seed: 'one' is no NUMBER"},
        {"--reboot-time 600001", "--reboot-time: '600001' is no MS"},
        {"--fault lose", "--fault: no fault 'lose'"},
        {"--fault=", "--fault: no fault ''"},
        {"--log loud", "--log: 'loud' is no LEVEL"},
        {"--quiet=1", "--quiet takes no value"},
    };
    for (const auto& [line, result] : lines) EXPECT_EQ(parsed(line), result) << line;
    EXPECT_NE(helpText().find("--port PORT"), std::string::npos);
    EXPECT_NE(helpText().find("cut=DATAGRAMS"), std::string::npos);
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
     "status -> ~alarms 0; | +64000 | status -> ~alarms 40; | alarms x -> ~needs a byte | "
     "alarms 256 -> alarms needs a byte or auto"},
    {"SavingQuittingAndNonsense",
     "save  some file \t -> to 'some file' | save -> to '' | stauts -> unknown command 'stauts', "
     "try help | help -> ~alarms BITS|auto      force | help -> ~loss=PERCENT    | "
     "quit -> ending, it quits"},
    {"AnEmptyLineSaysNothing", " \t -> "},
};
INSTANTIATE_TEST_SUITE_P(Console, Conversation, testing::ValuesIn(scenes), sceneName);

}  // namespace
}  // namespace korvane::test
