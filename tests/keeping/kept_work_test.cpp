#include "keeping/kept_work.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>

#include "model/whole_file.h"
#include "support/recorded_log.h"
#include "support/scratch_directory.h"

namespace korvane {
namespace {

namespace fs = std::filesystem;
using Notice = KeptWork::Notice;

std::time_t wallTime = 0;

class KeptWorkTest : public testing::Test {
  protected:
    KeptWorkTest() {
        std::tm clock{};
        clock.tm_year = 126;
        clock.tm_mday = 1;
        wallTime = std::mktime(&clock);
        model_->setCacheDirectory(folder_);
        model_->setDeviceKey("10.1.2.3");
    }

    // The panel's next run; the cache file is what the last one left.
    void restart(bool hardEnd = false) {
        if (!hardEnd) work_->end(ticks_);
        ChannelsLeftOut leftOut;
        work_ = std::make_unique<KeptWork>(*model_, [] { return wallTime; });
        work_->begin(model_->loadCacheFile(leftOut) == 0);
    }
    void edit(std::uint16_t networkNumber) {
        NetworkInfo network = model_->tables().network;
        network.networkNumber = networkNumber;
        model_->setNetworkInfo(network);
    }
    // As a load does: what came is cached.
    void load(std::uint16_t networkNumber) {
        edit(networkNumber);
        work_->loaded();
        model_->saveCacheFile();
    }
    void save(int result) {
        work_->saving(ticks_);
        model_->saveCacheFile();
        work_->saved(result);
    }
    Notice tend(std::uint32_t laterMs = 0) {
        wallTime += laterMs / 1000;
        return work_->tend(ticks_ += laterMs);
    }
    // The number in a file; -1 when there is no such file.
    static int number(const fs::path& file) {
        ConfigModel model;
        ChannelsLeftOut leftOut;
        return model.loadConfigFile(file, true, leftOut) == 0 ? model.tables().network.networkNumber
                                                              : -1;
    }
    int unsaved() const { return number(folder_ / "10.1.2.3.unsaved.dat"); }
    int shown() const { return model_->tables().network.networkNumber; }
    // "name:number" of each backup.
    std::string backups() const {
        std::vector<std::string> lines;
        std::error_code none;
        for (const auto& one : fs::directory_iterator(work_->backupFolder(), none))
            lines.push_back(one.path().filename().string() + ':' +
                            std::to_string(number(one.path())) + '\n');
        std::ranges::sort(lines);
        std::string text;
        for (const std::string& line : lines) text += line;
        return text;
    }

    test::ScratchDirectory scratch_;
    fs::path folder_ = scratch_.path() / "host";
    std::unique_ptr<ConfigModel> model_ = std::make_unique<ConfigModel>();
    std::unique_ptr<KeptWork> work_ = std::make_unique<KeptWork>(*model_);
    std::uint32_t ticks_ = 0xFFFFF000;  // about to wrap
    const bool made_ = fs::create_directory(folder_);
};

TEST_F(KeptWorkTest, NoticesWhatTheDeviceDoesNotHold) {
    restart();
    EXPECT_EQ(tend(), Notice::None);
    edit(1);
    EXPECT_EQ(tend(), Notice::Edited);
    edit(0);
    EXPECT_EQ(tend(), Notice::None) << "as it was";
    load(2);
    EXPECT_EQ(tend(), Notice::None);
    edit(3);
    save(0);
    EXPECT_EQ(tend(), Notice::None);
    save(-1);
    EXPECT_EQ(tend(), Notice::Edited) << "nobody knows what it took";
    save(0);
    // A save does not send the device's own settings, their own button does.
    DeviceParamBlock params{};
    params.controlMac[0] = '7';
    model_->setDeviceParams(params);
    EXPECT_EQ(tend(), Notice::Edited);
    save(0);
    EXPECT_EQ(tend(), Notice::Edited);
    work_->sentDeviceParams();
    EXPECT_EQ(tend(), Notice::None);
    work_->end(ticks_);
    edit(9);
    EXPECT_EQ(tend(), Notice::None) << "no device is open";
}

TEST_F(KeptWorkTest, WritesEditsAtMostOnceInTenSecondsAndAtTheEnd) {
    restart();
    EXPECT_EQ(unsaved(), -1);
    for (const auto& [later, entered, expected] :
         {std::tuple{0, 1, 1}, {9999, 2, 1}, {1, 2, 2}, {9999, 3, 2}, {50'000, 3, 3}}) {
        edit(static_cast<std::uint16_t>(entered));
        tend(static_cast<std::uint32_t>(later));
        EXPECT_EQ(unsaved(), expected) << later;
    }
    edit(4);
    tend(5);
    work_->end(ticks_);
    EXPECT_EQ(unsaved(), 4);
}

TEST_F(KeptWorkTest, TheFileGoesWithTheLastDifference) {
    restart();
    edit(1);
    tend();
    EXPECT_EQ(unsaved(), 1);
    save(0);
    tend();
    EXPECT_EQ(unsaved(), -1);
    edit(2);
    tend(10'000);
    edit(1);
    tend();
    EXPECT_EQ(unsaved(), -1) << "taken back by hand";
}

// It is offered until it is decided about, and not touched by looking.
TEST_F(KeptWorkTest, EditsSurviveAHardEnd) {
    restart();
    load(1);
    edit(2);
    tend();
    restart(true);
    EXPECT_EQ(shown(), 1);
    EXPECT_EQ(tend(20'000), Notice::FromLastTime);
    restart();
    EXPECT_EQ(tend(), Notice::FromLastTime);
    work_->recover(ticks_);
    EXPECT_EQ(shown(), 2);
    EXPECT_EQ(tend(), Notice::Edited);
    EXPECT_EQ(unsaved(), 2);
    restart(true);
    EXPECT_EQ(tend(), Notice::FromLastTime) << "not yet sent";
    work_->recover(ticks_);
    save(0);
    EXPECT_EQ(tend(), Notice::None);
    EXPECT_EQ(unsaved(), -1);
    restart();
    EXPECT_EQ(tend(), Notice::None);
    EXPECT_EQ(backups(), "10.1.2.3-20260101-000020.dat:1\n") << "what the save replaced";
}

TEST_F(KeptWorkTest, WhatIsLeftAloneOrGivenUpBecomesABackup) {
    restart();
    load(1);
    edit(2);
    restart();
    edit(3);
    EXPECT_EQ(tend(), Notice::FromLastTime);
    EXPECT_EQ(unsaved(), 3) << "this run's";
    EXPECT_EQ(backups(), "10.1.2.3-20260101-000000.dat:2\n");
    work_->recover(ticks_);
    EXPECT_EQ(shown(), 2);
    EXPECT_EQ(tend(10'000), Notice::Edited);
    EXPECT_EQ(unsaved(), 2);
    EXPECT_EQ(backups(), "10.1.2.3-20260101-000000.dat:2\n10.1.2.3-20260101-000001.dat:3\n");
    restart();
    work_->discard(ticks_);
    EXPECT_EQ(tend(), Notice::None);
    EXPECT_EQ(unsaved(), -1);
    EXPECT_EQ(shown(), 1);
    EXPECT_EQ(backups().substr(62), "10.1.2.3-20260101-000010.dat:2\n");
}

// The cache file is written before the device is: alone it would pass for what the device holds.
TEST_F(KeptWorkTest, ASaveThatDidNotComeThroughIsKnownAtTheNextStart) {
    restart();
    load(1);
    edit(2);
    save(5);
    tend();
    restart(true);
    EXPECT_EQ(shown(), 2);
    EXPECT_EQ(tend(), Notice::FromLastTime);
    work_->recover(ticks_);
    EXPECT_EQ(tend(), Notice::Edited);
    restart(true);
    work_->discard(ticks_);
    EXPECT_EQ(tend(), Notice::None);
}

TEST_F(KeptWorkTest, KeepsTheNewestTenOfEachDevice) {
    restart();
    fs::create_directories(work_->backupFolder());
    for (const char* other : {"10.1.2.33-20200101-000000.dat", "10.1.2.3-20200101-00000.dat",
                              "10.1.2.3-20200101-0000000.dat"})
        std::ofstream(work_->backupFolder() / other) << 'x';
    work_->backUp(ticks_);
    for (std::uint16_t i = 1; i <= 12; ++i) {
        load(i);
        work_->backUp(ticks_);
        ++wallTime;
        work_->backUp(ticks_);  // the same is not kept again
    }
    std::string expected = "10.1.2.3-20200101-00000.dat:-1\n10.1.2.3-20200101-0000000.dat:-1\n";
    for (int i = 2; i < 12; ++i)
        expected += "10.1.2.3-20260101-0000" + std::string(i < 10 ? "0" : "") + std::to_string(i) +
                    ".dat:" + std::to_string(i + 1) + '\n';
    EXPECT_EQ(backups(), expected + "10.1.2.33-20200101-000000.dat:-1\n");
    wallTime -= 3600;
    load(99);
    work_->backUp(ticks_);
    EXPECT_NE(backups().find("20251231-230012.dat:99\n"), std::string::npos) << "set back";
}

TEST_F(KeptWorkTest, AFolderThatCannotBeWrittenIsToldOnceAnHour) {
    restart();
    fs::remove_all(folder_);
    std::ofstream(folder_) << "no folder";
    test::RecordedLog log;
    edit(1);
    EXPECT_EQ(tend(), Notice::Edited);
    work_->loaded();
    work_->backUp(ticks_);
    edit(2);
    for (int i = 0; i < 359; ++i) EXPECT_EQ(tend(10'000), Notice::Edited);
    EXPECT_EQ(log.count("1 未设置到设备的修改无法写入磁盘"), 1);
    fs::remove(folder_);
    tend(10'000);
    EXPECT_EQ(log.count("无法写入磁盘"), 2);
    fs::create_directory(folder_);
    tend(10'000);
    EXPECT_EQ(unsaved(), 2);
}

// What cannot be read is not offered, and not lost either.
TEST_F(KeptWorkTest, ADamagedFileAndADeviceThatNamesNoFile) {
    test::RecordedLog log;
    std::ofstream(folder_ / "10.1.2.3.unsaved.dat") << "damaged";
    restart();
    EXPECT_EQ(tend(), Notice::None);
    EXPECT_EQ(log.count("1 上次未设置到设备的修改无法读取"), 1);
    edit(1);
    tend();
    EXPECT_EQ(unsaved(), 1);
    EXPECT_EQ(backups(), "10.1.2.3-20260101-000000.dat:-1\n");
    work_->end(ticks_);
    model_->setDeviceKey("../other");
    restart();
    edit(2);
    EXPECT_EQ(tend(), Notice::Edited);
    work_->loaded();
    work_->backUp(ticks_);
    EXPECT_EQ(work_->backupFolder(), fs::path());
}

}  // namespace
}  // namespace korvane
