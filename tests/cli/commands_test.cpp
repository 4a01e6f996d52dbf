#include <fstream>
#include <string>
#include <tuple>

#include "command_line.h"
#include "model/whole_file.h"

namespace korvane::test {
namespace {

using testing::HasSubstr;
using Arguments = std::vector<std::string>;

class Commands : public CommandLine {
  protected:
    std::vector<std::uint8_t> bytesOf(const std::string& name) {
        std::vector<std::uint8_t> bytes;
        readFile(file(name), 1 << 24, bytes);
        return bytes;
    }
};

TEST_F(Commands, WrongCommandLinesAreRefusedAndAskNoDevice) {
    const Arguments wrong[] = {{},
                               {"fetch"},
                               {"fetch", "10.1.2", "x.dat"},
                               {"fetch", "multiplexer", "x.dat"},
                               {"fetch", address_, "x.dat", "--format", "xml"},
                               {"fetch", address_, "x.dat", "y.dat"},
                               {"diff", "a.json", "device:10.1.2"},
                               {"status", address_, "--watch", "0"},
                               {"params"},
                               {"params", "set", address_},
                               {"fetch", address_, "-", "--format", "binary"},
                               {"nothing"}};
    for (const Arguments& arguments : wrong) {
        EXPECT_EQ(run(arguments), 2) << testing::PrintToString(arguments);
        EXPECT_THAT(terminal_.notes, HasSubstr("korvane: "));
        EXPECT_EQ(terminal_.written, "");
        EXPECT_TRUE(commands_.empty());
    }
}

TEST_F(Commands, HelpAndVersionAreAnswers) {
    for (const Arguments& arguments :
         {Arguments{"--help"}, {"send", "--help"}, {"params", "set", "--help"}, {"--version"}}) {
        EXPECT_EQ(run(arguments), 0);
        EXPECT_EQ(terminal_.notes, "");
        EXPECT_FALSE(terminal_.written.empty());
    }
}

TEST_F(Commands, WhatIsFetchedIsOneConfigurationInEitherForm) {
    ASSERT_EQ(run({"fetch", address_, file("a.dat")}), 0) << terminal_.notes;
    EXPECT_GT(terminal_.transients, 10) << "the progress is shown";
    ASSERT_EQ(run({"fetch", address_, "-"}), 0);
    terminal_.typed = terminal_.written;
    ASSERT_EQ(run({"convert", "-", file("b.dat")}), 0) << terminal_.notes;
    EXPECT_EQ(bytesOf("a.dat"), bytesOf("b.dat"));
    ASSERT_EQ(run({"convert", file("a.dat"), file("text"), "--format", "text"}), 0);
    EXPECT_EQ(run({"convert", file("text"), file("c.dat")}), 3) << "by its name it is binary";
    ASSERT_EQ(run({"convert", file("text"), file("c.dat"), "--from", "text"}), 0);
    EXPECT_EQ(bytesOf("a.dat"), bytesOf("c.dat"));
    EXPECT_EQ(run({"diff", file("a.dat"), "device:" + address_}), 0) << terminal_.written;
    EXPECT_EQ(run({"check", file("a.dat")}), 0) << terminal_.written;
    EXPECT_EQ(run({"show", "device:" + address_}), 0);
    EXPECT_THAT(terminal_.written, HasSubstr("新闻综合频道"));
}

TEST_F(Commands, DifferencesAndFindingsAreTheAnswerNo) {
    ASSERT_EQ(run({"fetch", address_, file("a.dat")}), 0);
    const auto changed = read("a.dat");
    changed->image.continuous.frames[1].services[0].bandwidth = 490000;
    changed->image.continuous.frames[1].head.modulation = 9;
    cli::Context context{terminal_, link_, nullptr};
    cli::writeConfiguration(context, *changed, file("b.json"), std::nullopt);
    EXPECT_EQ(run({"diff", file("a.dat"), file("b.json")}), 1);
    EXPECT_THAT(terminal_.written, HasSubstr("bandwidth 500000 → 490000 bit/s\n"));
    EXPECT_EQ(run({"diff", file("a.dat"), file("b.json"), "--json"}), 1);
    EXPECT_THAT(terminal_.written, HasSubstr("\"value\": 490000"));
    EXPECT_EQ(run({"check", file("b.json")}), 1);
    EXPECT_THAT(terminal_.written, HasSubstr("error: "));
    EXPECT_THAT(terminal_.written, testing::EndsWith("1 error, 0 warnings\n"));
}

TEST_F(Commands, FilesThatCannotBeTakenLeaveNothingBehind) {
    std::ofstream(file("bad.json")) << "{\n  \"format\": 1,\n}";
    std::ofstream(file("bad.dat")) << "nothing";
    for (const char* name : {"bad.json", "bad.dat", "missing.json"}) {
        EXPECT_EQ(run({"convert", file(name), file("out.dat")}), 3);
        EXPECT_THAT(terminal_.notes, HasSubstr(name));
    }
    EXPECT_EQ(run({"fetch", address_, file("no folder/a.dat")}), 3);
    EXPECT_EQ(run({"fetch", address_, file("")}), 3) << "a folder";
    EXPECT_THAT(terminal_.notes, HasSubstr("is no ordinary file"));
    EXPECT_FALSE(std::filesystem::exists(file("out.dat")));
}

// What the device link tells, as exit codes.
TEST_F(Commands, AnUnwillingDeviceHasAnExitCodeAndGetsItsQuestionsAnswered) {
    const std::tuple<const char*, Arguments, int, const char*> cases[] = {
        {"silence", {"fetch", address_, file("a.dat")}, 4, "no answer to GetInputChannels"},
        {"refuse=9@GetInputChannels",
         {"fetch", address_, file("a.dat")},
         5,
         "refused GetInputChannels with status 9"},
        {"wrong-length=5@GetImageBlockA", {"show", "device:" + address_}, 5, "wrong length"},
        {"wrong-code=7@GetDeviceParams", {"params", "get", address_}, 5, "GetDeviceParams"},
        {"silence@GetHeartbeat", {"status", address_}, 4, "no answer to the status queries"},
        {"refuse=3@RebootDevice", {"reboot", "-y", address_}, 5, "status 3"},
        {"silence@RestoreDefaults", {"restore", "-y", address_}, 4, "RestoreDefaults"},
        {"refuse=3@ApplyDeviceParams",
         {"params", "set", "-y", address_, "controlMac=001122334455"},
         5,
         "not yet in effect"},
        {"refuse=8@UpgradeData", {"upgrade", file("vxWorks"), address_, "-y"}, 5, "UpgradeData"},
    };
    std::ofstream(file("vxWorks")) << "firmware";
    for (const auto& [fault, arguments, code, sentence] : cases) {
        device_.faults().clear();
        inject(fault);
        EXPECT_EQ(run(arguments), code) << fault;
        EXPECT_THAT(terminal_.notes, HasSubstr(sentence));
    }
    EXPECT_FALSE(std::filesystem::exists(file("a.dat")));
    link_.setReachable(false);
    inject("silence");
    EXPECT_EQ(run({"fetch", address_, "-"}), 4);
    EXPECT_THAT(terminal_.notes, HasSubstr("连接设备失败"));
}

TEST_F(Commands, NothingIsDoneToADeviceUnasked) {
    std::ofstream(file("vxWorks")) << "firmware";
    const std::tuple<Arguments, CommandCode> cases[] = {
        {{"reboot", address_}, CommandCode::RebootDevice},
        {{"restore", address_}, CommandCode::RestoreDefaults},
        {{"upgrade", file("vxWorks"), address_}, CommandCode::FinishUpgrade},
        {{"params", "set", address_, "managementHost=10.0.0.9"}, CommandCode::ApplyDeviceParams},
    };
    for (const auto& [arguments, code] : cases) {
        EXPECT_EQ(run(arguments), 1) << arguments[0];
        EXPECT_EQ(timesAsked(code), 0u);
        EXPECT_EQ(terminal_.questions.size(), 1u);
    }
    for (std::size_t i = std::size(cases); i-- > 0;) {
        terminal_.answers = {true};
        EXPECT_EQ(run(std::get<Arguments>(cases[i])), 0) << terminal_.notes;
        EXPECT_EQ(timesAsked(std::get<CommandCode>(cases[i])), 1u);
    }
    EXPECT_EQ(std::string(device_.state().paramsApplied.managementHost.data()), "10.0.0.9");
}

TEST_F(Commands, ParametersAreSetByTheirNames) {
    EXPECT_EQ(run({"params", "get", address_}), 0);
    EXPECT_THAT(terminal_.written, HasSubstr("controlPort.address=127.0.0.1\n"));
    for (const char* wrong : {"gateway=1", "controlPort=1", "controlPort/address=1", "controlMac",
                              "serviceMac=12345678901234567"}) {
        EXPECT_EQ(run({"params", "set", "-y", address_, wrong}), 2) << wrong;
        EXPECT_EQ(timesAsked(CommandCode::SetDeviceParams), 0u);
    }
}

TEST_F(Commands, TheNextCommandNeedNotWaitForARestore) {
    EXPECT_EQ(run({"restore", "-y", address_}), 0);
    EXPECT_GE(link_.nowMs(), 10000u);
    EXPECT_THAT(terminal_.notes, HasSubstr("waiting 10 s"));
}

TEST_F(Commands, CtrlCEndsAFetchBetweenItsStepsAndTellsWhatTheDeviceHas) {
    terminal_.interruptAt = "33 %";
    EXPECT_EQ(run({"fetch", address_, file("a.dat")}), 130);
    EXPECT_THAT(terminal_.notes, HasSubstr("Nothing was changed on 10.1.2.3."));
    EXPECT_LT(commands_.size(), 8u);
    EXPECT_FALSE(std::filesystem::exists(file("a.dat")));
}

TEST_F(Commands, CtrlCEndsAnUpgradeBehindAPiece) {
    std::ofstream(file("vxWorks")) << std::string(50000, 'f');
    terminal_.interruptAt = "13 %";
    EXPECT_EQ(run({"upgrade", file("vxWorks"), address_, "-y"}), 130);
    EXPECT_EQ(timesAsked(CommandCode::FinishUpgrade), 1u) << "the device is told";
    EXPECT_LT(timesAsked(CommandCode::UpgradeData), 5u);
}

}  // namespace
}  // namespace korvane::test
