#include "simulator/state_file.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

#include "simulator/panel_side.h"
#include "simulator/sample_configuration.h"
#include "simulator/state_keeper.h"
#include "support/scratch_directory.h"

namespace korvane::test {
namespace {

Bytes readAll(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

void writeAll(const std::filesystem::path& path, const Bytes& bytes) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

class StateFile : public testing::Test {
  protected:
    ScratchDirectory scratch_;
    std::filesystem::path path_ = scratch_.path() / "device.state";
    std::unique_ptr<DeviceState> sample_ = sampleState("10.0.0.7");
    std::string error_;
};

TEST_F(StateFile, RoundTripThroughADisk) {
    sample_->set.image.network.level = 5;
    sample_->set.block2002[973] = 0xAB;
    sample_->paramsSet.controlMac[0] = 'F';
    ASSERT_TRUE(saveState(path_, *sample_, error_)) << error_;
    const auto loaded = loadState(path_, error_);
    ASSERT_TRUE(loaded) << error_;
    EXPECT_TRUE(*loaded == *sample_);
    EXPECT_FALSE(loaded->set == loaded->applied);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(scratch_.path()), {}), 1)
        << "nothing is left beside it";
}

TEST_F(StateFile, PartsStandWhereTheLayoutSays) {
    SimulatedDevice device;
    PanelSide panel(device);
    panel.ask(2000, {1});
    panel.ask(2003, pattern(624, 1));
    panel.ask(2008, pattern(72, 2));
    panel.ask(2999, {1});
    panel.ask(100, pattern(144, 3));
    panel.ask(103, pattern(41944, 4));
    Bytes channels(1 + 2 * 120, 0x55);
    channels[0] = 2;
    panel.ask(1, channels);
    const Bytes file = encodeState(device.state());
    const auto part = [&file](std::size_t offset, std::size_t size) {
        const auto from = file.begin() + static_cast<std::ptrdiff_t>(offset);
        return Bytes(from, from + static_cast<std::ptrdiff_t>(size));
    };
    ASSERT_EQ(file.size(), 1360334u);
    EXPECT_EQ(part(16, 144), pattern(144, 3));
    EXPECT_NE(part(160, 144), pattern(144, 3)) << "not applied yet";
    EXPECT_EQ(part(304 + 16, 624), pattern(624, 1));
    EXPECT_EQ(part(304 + 629820, 72), pattern(72, 2));
    EXPECT_EQ(part(630200, 41944), pattern(41944, 4));
    EXPECT_EQ(part(673118, channels.size()), channels);
    EXPECT_NE(part(680319 + 16, 624), pattern(624, 1)) << "not applied yet";
}

TEST_F(StateFile, DamageIsFoundAndNothingIsWritten) {
    const Bytes good = encodeState(*sample_);
    std::vector<Bytes> damaged = {Bytes(), Bytes(15), good, good};
    damaged[2].resize(good.size() - 1);
    damaged[3].resize(good.size() + 1);
    for (const std::size_t place :
         {std::size_t{0}, std::size_t{11}, std::size_t{12}, std::size_t{16}, good.size() - 1}) {
        damaged.push_back(good);
        damaged.back()[place] ^= 0x80;
    }
    for (const Bytes& bytes : damaged) {
        writeAll(path_, bytes);
        EXPECT_FALSE(loadState(path_, error_));
        EXPECT_FALSE(error_.empty());
        EXPECT_EQ(readAll(path_), bytes);
    }
    sample_->applied.channels[0] = 61;
    EXPECT_FALSE(decodeState(encodeState(*sample_), error_)) << "more channels than there are";
    EXPECT_FALSE(loadState(scratch_.path() / "none", error_));
}

TEST_F(StateFile, FailedWriteLeavesTheOldFile) {
    std::filesystem::create_directories(path_ / "in the way");
    EXPECT_FALSE(saveState(path_, *sample_, error_));
    EXPECT_FALSE(error_.empty());
    EXPECT_FALSE(saveState(scratch_.path() / "no" / "such" / "place", *sample_, error_));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(scratch_.path()), {}), 1);
}

TEST_F(StateFile, KeeperSavesOnceTheDeviceIsLeftAlone) {
    SimulatedDevice device;
    PanelSide panel(device);
    StateKeeper keeper(device, path_);
    EXPECT_TRUE(keeper.tend(1000, error_));
    EXPECT_FALSE(std::filesystem::exists(path_)) << "nothing has changed";
    panel.ask(100, pattern(144, 3));
    EXPECT_TRUE(keeper.tend(2000, error_));
    panel.ask(102);
    EXPECT_TRUE(keeper.tend(2299, error_));
    EXPECT_FALSE(std::filesystem::exists(path_)) << "the device is still busy";
    EXPECT_TRUE(keeper.tend(2599, error_));
    const auto loaded = loadState(path_, error_);
    ASSERT_TRUE(loaded) << error_;
    EXPECT_TRUE(*loaded == device.state());
}

}  // namespace
}  // namespace korvane::test
