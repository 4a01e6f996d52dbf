#include <cstring>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <tuple>
#include <vector>

#include "device/transfer_sequences.h"
#include "model/whole_file.h"
#include "simulator/simulated_device.h"
#include "simulator/simulator_link.h"
#include "support/bytes.h"
#include "support/configurations.h"
#include "support/recorded_log.h"
#include "support/recording_sink.h"
#include "support/scratch_directory.h"

namespace korvane {
namespace {

using testing::ElementsAre;

using test::RecordingSink;

// The panel's side of a transfer and a simulated device behind it. Only the clock of the link
// passes.
class Transfer : public testing::Test {
  protected:
    Transfer() {
        device_.onEvent([this](const DeviceEvent& event) {
            if (event.kind == DeviceEvent::Kind::Request) commands_.push_back(event.command);
        });
        client_.Start("10.1.2.3");
        model_->setCacheDirectory(scratch_.path());
        model_->setDeviceKey("10.1.2.3");
    }

    // Runs a sequence as the worker does and returns what it reported last.
    int run(const TransferWorker::Sequence& sequence) {
        commands_.clear();
        sink_ = std::make_shared<RecordingSink>();
        EXPECT_EQ(worker_.start("transfer", sink_, sequence), 0);
        worker_.join();
        EXPECT_EQ(sink_->outcomes(), 1);
        return sink_->outcome();
    }
    int save() {
        return run([this](Progress& progress) { return runSave(client_, *model_, progress); });
    }
    int load() {
        return run([this](Progress& progress) { return runLoad(client_, *model_, progress); });
    }
    int upgrade(const std::string& name, std::size_t size, bool stopAtOnce = false) {
        const std::filesystem::path path = scratch_.path() / name;
        std::ofstream(path, std::ios::binary) << std::string(size, 'f');
        return upgradeFrom(path, stopAtOnce);
    }
    int upgradeFrom(const std::filesystem::path& path, bool stopAtOnce = false) {
        return run([this, path, stopAtOnce](Progress& progress) {
            return runUpgrade(
                client_, link_, path, [stopAtOnce] { return stopAtOnce; }, progress);
        });
    }
    void inject(const std::string& fault) {
        std::string error;
        const auto parsed = parseFault(fault, error);
        ASSERT_TRUE(parsed) << error;
        device_.faults().clear();
        device_.faults().add(*parsed);
    }

    test::ScratchDirectory scratch_;
    SimulatedDevice device_;
    SimulatorLink link_{device_};
    DeviceClient client_{link_};
    TransferWorker worker_{client_, link_, plainThreads()};
    std::unique_ptr<ConfigModel> model_ = std::make_unique<ConfigModel>();
    std::shared_ptr<RecordingSink> sink_;
    std::vector<std::uint32_t> commands_;
};

TEST_F(Transfer, ASaveSendsEverythingInOrderAndTellsItsProgress) {
    test::loadImage(*model_, *test::randomImage(3));
    FlatChannelList channels;
    channels.append(test::channel(ChannelType::Audio, 4, 0x1234));
    model_->setFlatChannels(channels);
    ASSERT_EQ(save(), 0);
    EXPECT_THAT(commands_, ElementsAre(1, 2000, 2001, 2003, 2004, 2005, 2009, 2010, 2006, 2007,
                                       2008, 2999, 103, 4000));
    // 19 steps; SetImageBlock624 (2003) counts none.
    EXPECT_THAT(sink_->percentages(),
                ElementsAre(5, 10, 15, 21, 26, 31, 36, 42, 47, 52, 57, 63, 73, 100));
    EXPECT_TRUE(std::filesystem::exists(scratch_.path() / "10.1.2.3.dat"));

    const auto expected = test::randomImage(3);
    toNetworkOrder(*expected);
    const DeviceConfiguration& held = device_.state().applied;
    EXPECT_EQ(std::memcmp(&held.image, expected.get(), sizeof(ConfigImage)), 0);
    EXPECT_EQ(held.channels[0], 1);
    EXPECT_EQ(held.channels[1 + 8], 0x12);
    EXPECT_EQ(held.channels[1 + 9], 0x34);
}

TEST_F(Transfer, ALoadBringsBackWhatTheDeviceHoldsAndAsksInOrder) {
    ASSERT_EQ(load(), 0);
    EXPECT_THAT(commands_, ElementsAre(2, 3000, 3001, 3003, 3004, 3005, 3009, 3010, 3006, 3007,
                                       3008, 3999, 104, 101));
    EXPECT_THAT(sink_->percentages(),
                ElementsAre(6, 13, 20, 26, 33, 40, 46, 53, 60, 66, 73, 80, 93, 100));
    EXPECT_EQ(test::wholeBytes(model_->deviceParams()),
              test::wholeBytes(device_.state().paramsSet));
    const auto loaded = copyOf(model_->tables());
    ASSERT_FALSE(loaded->continuous.frames.empty());
    const auto before = std::make_unique<DeviceState>(device_.state());
    ASSERT_EQ(save(), 0);
    EXPECT_TRUE(device_.state() == *before) << "saving what was loaded changes no byte";
    ASSERT_EQ(load(), 0);
    EXPECT_TRUE(model_->tables() == *loaded);
}

class SequenceStops : public Transfer, public testing::WithParamInterface<std::uint32_t> {};

TEST_P(SequenceStops, AtTheFirstRefusalAndReportsItsStatus) {
    const std::uint32_t code = GetParam();
    const bool loads = code == 2 || code == 104 || code == 101 || (code >= 3000 && code < 4000);
    test::loadImage(*model_, *test::randomImage(8));
    const auto before = copyOf(model_->tables());
    inject("refuse=7@" + std::to_string(code));
    // Answers of a fixed size are judged by their length before their status.
    const bool bare = loads && code != 2 && code != 3000 && code != 3001 && code != 3999;
    EXPECT_EQ(loads ? load() : save(), bare ? -3 : 7);
    ASSERT_FALSE(commands_.empty());
    EXPECT_EQ(commands_.back(), code);
    EXPECT_TRUE(model_->tables() == *before);
}

INSTANTIATE_TEST_SUITE_P(Commands, SequenceStops,
                         testing::Values(1, 2000, 2003, 2009, 2999, 103, 4000, 2, 3000, 3001, 3004,
                                         3010, 3999, 104, 101));

// The log is what a station reads afterwards.
TEST_F(Transfer, FaultsAreOvercomeOrReportedOnce) {
    const std::function<int()> saving = [this] { return save(); };
    const std::function<int()> loading = [this] { return load(); };
    const std::function<int()> upgrading = [this] { return upgrade("vxWorks", 100); };
    const std::tuple<const char*, std::function<int()>, int, std::string> cases[] = {
        {"lost-answer@2000:1", saving, 0, ""},
        {"duplicate=1@2003", saving, 0, ""},
        {"late@2001:1", saving, 0, ""},
        {"refuse=7@2004", saving, 7,
         "1 命令2004 SetImageBlockA: 设备拒绝, 状态7, 尝试1次\n"
         "2 transfer: 失败, 结果7, 停在SetImageBlockA, 用时0.6秒\n"},
        {"silence@4000", saving, -2,
         "1 命令4000 ActivateConfig: 失败, 结果-2, 尝试2次\n"
         "2 transfer: 失败, 结果-2, 停在ActivateConfig, 用时7.4秒\n"},
        {"refuse=9@4010", upgrading, 9,
         "1 命令4010 FinishUpgrade: 设备拒绝, 状态9, 尝试1次\n"
         "2 transfer: 失败, 结果9, 停在FinishUpgrade, 用时0.0秒\n"},
        {"cut=0@3004", loading, -2, ""},
        {"cut=10@3004", loading, -2, ""},
        {"refuse=9@4009", upgrading, 9, ""},
        {"refuse=9@4011", upgrading, 9, ""},
        {"silence@4012", upgrading, -3, ""},
    };
    for (const auto& [fault, transfer, result, lines] : cases) {
        test::RecordedLog log;
        inject(fault);
        EXPECT_EQ(transfer(), result) << fault;
        std::string kept;
        for (const std::string& line : log.lines())
            if (line[0] != '0') kept += line + '\n';
        EXPECT_TRUE(kept == lines || (result != 0 && lines.empty())) << fault << kept;
        EXPECT_EQ(log.count("transfer: 成功"), result == 0 ? 1 : 0);
    }
    link_.setReachable(false);
    inject("silence");
    EXPECT_TRUE(save() == -8 && load() == -8);
}

TEST_F(Transfer, AnUpgradeSendsTheFileInPiecesAndWaitsForTheDevice) {
    ASSERT_EQ(upgrade("vxWorks", 25000), 0);
    // The device is at it for three polls.
    EXPECT_THAT(commands_, ElementsAre(4009, 4011, 4011, 4011, 4010, 4012, 4012, 4012, 4012));
    // 25000 / 10240 + 25 = 27 steps, counted from 1: begin, two of three pieces, then each poll.
    EXPECT_THAT(sink_->percentages(), ElementsAre(7, 11, 14, 18, 22, 25, 100));
}

TEST_F(Transfer, AnUpgradeAsksFifteenTimesASecondApart) {
    SimulatedDevice busy{{1, 15000, 1000}};
    SimulatorLink link(busy);
    DeviceClient client(link);
    client.Start("10.1.2.3");
    int asked = 0;
    busy.onEvent([&](const DeviceEvent& event) { asked += event.command == 4012; });
    const auto path = scratch_.path() / "vxWorks";
    ASSERT_TRUE(replaceFile(path, std::vector<std::uint8_t>(5)));
    RecordingSink sink;
    Progress progress(sink);
    EXPECT_EQ(runUpgrade(
                  client, link, path, [] { return false; }, progress),
              0);
    EXPECT_EQ(asked, 15);
    EXPECT_EQ(link.nowMs(), 15000u);
}

TEST_F(Transfer, AnUpgradeWithoutAFileSendsNothingAndAStoppedOneNoPiece) {
    EXPECT_EQ(upgradeFrom(scratch_.path() / "missing"), -1);
    EXPECT_EQ(upgradeFrom(""), -1);
    EXPECT_TRUE(commands_.empty());
    inject("refuse=5@4010");
    EXPECT_EQ(upgrade("vxWorks", 30000, true), 5);
    EXPECT_THAT(commands_, ElementsAre(4009, 4010));
}

TEST_F(Transfer, OneTransferAtATime) {
    std::atomic<bool> release{false};
    const auto first = std::make_shared<RecordingSink>();
    const auto second = std::make_shared<RecordingSink>();
    const std::uint64_t before = link_.nowMs();
    ASSERT_EQ(worker_.start("one", first,
                            [&release](Progress&) {
                                while (!release) std::this_thread::yield();
                                return 0;
                            }),
              0);
    EXPECT_EQ(worker_.start("two", second, [](Progress&) { return 0; }), -1);
    release = true;
    worker_.join();
    EXPECT_TRUE(second->percentages().empty());
    EXPECT_THAT(first->percentages(), ElementsAre(100));
    EXPECT_EQ(link_.nowMs() - before, 1000u) << "the operator sees the dialog before it moves";
    EXPECT_EQ(run([](Progress&) -> int { throw std::bad_alloc(); }), -1);
}

}  // namespace
}  // namespace korvane
