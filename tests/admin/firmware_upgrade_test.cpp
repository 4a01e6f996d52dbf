#include "admin/firmware_upgrade.h"

#include <gtest/gtest.h>

#include "model/whole_file.h"
#include "simulator/simulator_link.h"
#include "support/recording_sink.h"
#include "support/scratch_directory.h"
#include "support/scripted_prompts.h"

namespace korvane {
namespace {

// A simulated device behind the choice and the button.
class Firmware : public testing::Test, protected TransferRunner {
  protected:
    Firmware() {
        manager_.client().Start("10.1.2.3");
        device_.onEvent([this](const DeviceEvent& event) { heard_ += event.text + '\n'; });
    }
    int run(const Start& start) override {
        const auto sink = std::make_shared<test::RecordingSink>();
        return start(sink) == 0 ? sink->outcome() : -1;
    }
    bool choose(const std::filesystem::path& name) {
        prompts_.files = {directory_.path() / name};
        return upgrade_.browse();
    }
    std::string said() {
        std::string text;
        for (const std::string& line : std::exchange(prompts_.log, {})) text += line + '\n';
        return text;
    }
    // What the operator is told when the device has this fault.
    std::string outcome(const std::string& fault, bool agrees = true) {
        std::string error;
        heard_.clear();
        said();
        device_.faults().clear();
        if (const auto parsed = parseFault(fault, error)) device_.faults().add(*parsed);
        prompts_.answers = {agrees};
        upgrade_.run();
        const std::string told = said();
        const std::string question = "ask/No 确认要进行设备升级吗？\n";
        EXPECT_TRUE(told.starts_with(question)) << told;
        return told.substr(std::min(question.size(), told.size()));
    }
    bool heard(const std::string& what) const { return heard_.find(what) != std::string::npos; }

    test::ScratchDirectory directory_;
    SimulatedDevice device_;
    SimulatorLink link_{device_};
    DeviceManager manager_{link_, directory_.path()};
    test::ScriptedPrompts prompts_;
    FirmwareUpgrade upgrade_{manager_, prompts_, *this};
    std::string heard_;  // by the device
};

TEST_F(Firmware, FilesOfThreeNamesAreTakenAndAnyOtherLeavesTheChoiceAlone) {
    const std::string opening = "open out korvane prog Files (*.out)|*.out|All Files (*.*)|*.*||\n";
    EXPECT_FALSE(upgrade_.browse()) << "cancelled";
    EXPECT_EQ(said(), opening);
    EXPECT_TRUE(upgrade_.file().empty());
    for (const char* name : {"CMMB_FPGA.rbf", "softH264EP.out", "vxWorks"}) {
        EXPECT_TRUE(choose(name));
        EXPECT_EQ(said(), opening);
        for (const char* wrong :
             {"vxworks", "softH264EP.OUT", "vxWorks.out", "CMMB_FPGA", "固件"}) {
            EXPECT_FALSE(choose(std::filesystem::path(u8"vxWorks") / wrong)) << wrong;
            EXPECT_EQ(said(), opening + "warn 文件名不正确，请检查是否为复用器的升级文件\n");
        }
        EXPECT_EQ(upgrade_.file(), directory_.path() / name);
    }
}

TEST_F(Firmware, GoesToTheDeviceOrTheOperatorIsToldWhyNot) {
    const std::string refused = "warn 与设备通信错误，请重试\n";
    EXPECT_EQ(outcome(""), refused) << "no file was chosen";
    ASSERT_TRUE(choose("softH264EP.out"));
    EXPECT_EQ(outcome(""), refused) << "it cannot be read";
    EXPECT_EQ(heard_, "");
    ASSERT_TRUE(replaceFile(upgrade_.file(), std::vector<std::uint8_t>(25'000, 7)));
    EXPECT_EQ(outcome("", false), "");
    EXPECT_EQ(heard_, "") << "declined";
    EXPECT_EQ(outcome(""), "say 升级完成，请重启设备\n");
    EXPECT_TRUE(heard("softH264EP.out received whole, checksum right"));
    EXPECT_TRUE(heard("softH264EP.out written"));
    for (const char* fault : {"refuse=5@BeginUpgrade", "silence@UpgradeData",
                              "refuse@FinishUpgrade", "silence@GetUpgradeState"})
        EXPECT_EQ(outcome(fault), refused) << fault;
    link_.setReachable(false);
    EXPECT_EQ(outcome("silence"), "warn 连接设备失败,请检查网络连接\n");
}

}  // namespace
}  // namespace korvane
