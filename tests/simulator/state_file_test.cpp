#include "simulator/state_file.h"

#include <fstream>
#include <iterator>

#include "simulator/dialogue.h"
#include "simulator/state_keeper.h"
#include "support/scratch_directory.h"

namespace korvane::test {
namespace {

class StateFile : public testing::Test {
  protected:
    Bytes readAll() const {
        std::ifstream file(path_, std::ios::binary);
        return Bytes(std::istreambuf_iterator<char>(file), {});
    }
    std::ptrdiff_t files() const {
        return std::distance(std::filesystem::directory_iterator(scratch_.path()), {});
    }

    ScratchDirectory scratch_;
    std::filesystem::path path_ = scratch_.path() / "device.state";
    std::string error_;
    Dialogue talk_;
};

// Each block comes back as it was sent, and stands in its place in the image.
TEST_F(StateFile, EachPartStandsWhereTheLayoutSays) {
    constexpr std::size_t image = 304, applied = 680015;
    const struct {
        std::uint32_t set;
        std::size_t size, place;
    } parts[] = {
        {100, 144, 16},      {103, 41944, 630200},   {2002, 974, 672144}, {2003, 624, 320},
        {2004, 314244, 944}, {2009, 314244, 315188}, {2005, 168, 629432}, {2010, 168, 629600},
        {2006, 264, 629768}, {2007, 92, 630032},     {2008, 72, 630124},
    };
    talk_.play("2000 01 | 2001 21000102030405060708090A0B | 1 02 240*8 | 1 01 120*9");
    for (const auto& part : parts)
        EXPECT_EQ(talk_.panel.ask(part.set, pattern(part.size, part.set % 251)).frame.status, 0u);
    const Bytes file = encodeState(talk_.device.state());
    ASSERT_EQ(file.size(), 1360334u);
    const auto at = [&file](std::size_t from, std::size_t size) {
        return Bytes(file.data() + from, file.data() + from + size);
    };
    for (const auto& part : parts) {
        const Bytes expected = pattern(part.size, part.set % 251);
        const std::uint32_t get = part.set + (part.set < 2000 ? 1 : 1000);
        EXPECT_EQ(talk_.panel.ask(get).payload, expected) << get;
        EXPECT_EQ(at(part.place, part.size), expected) << part.set;
        EXPECT_NE(at(part.place + (part.set == 100 ? 144 : applied), part.size), expected)
            << part.set << " is not applied yet";
    }
    EXPECT_EQ(at(image, 16), Bytes({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 33, 0, 0, 0}));
    talk_.play("3001 -> 0 21000102030405060708090A0B");
    EXPECT_EQ(at(673118, 1), Bytes{1});
    EXPECT_EQ(at(673119, 120), pattern(120, 9));
    EXPECT_EQ(at(673239, 7080), Bytes(7080)) << "nothing is left of a longer list";
}

TEST_F(StateFile, DamageIsFoundAndNothingIsWritten) {
    const auto sample = sampleState("10.0.0.7");
    const Bytes good = encodeState(*sample);
    std::vector<Bytes> damaged = {Bytes(), Bytes(15), good, good};
    damaged[2].pop_back();
    damaged[3].push_back(0);
    for (const std::size_t place : {std::size_t{0}, std::size_t{7}, std::size_t{11},
                                    std::size_t{12}, std::size_t{16}, good.size() - 1}) {
        damaged.push_back(good);
        damaged.back()[place] ^= 0x80;
    }
    for (const Bytes& bytes : damaged) {
        std::ofstream(path_, std::ios::binary) << std::string(bytes.begin(), bytes.end());
        EXPECT_FALSE(loadState(path_, error_));
        EXPECT_FALSE(error_.empty());
        EXPECT_EQ(readAll(), bytes);
    }
    for (DeviceConfiguration* one : {&sample->set, &sample->applied}) {
        one->channels[0] = 61;
        EXPECT_FALSE(decodeState(encodeState(*sample), error_)) << "more channels than there are";
        one->channels[0] = 60;
        EXPECT_TRUE(decodeState(encodeState(*sample), error_)) << error_;
    }
    EXPECT_FALSE(loadState(scratch_.path() / "none", error_));
    error_.clear();
    EXPECT_FALSE(saveState(scratch_.path() / "no" / "such" / "place", *sample, error_));
    EXPECT_FALSE(error_.empty());
}

TEST_F(StateFile, TheKeeperSavesOnceTheDeviceIsLeftAlone) {
    StateKeeper keeper(talk_.device, path_);
    const auto savedAt = [&](std::uint64_t ms) {
        EXPECT_TRUE(keeper.tend(ms, error_)) << error_;
        return std::filesystem::exists(path_);
    };
    EXPECT_FALSE(savedAt(1000)) << "nothing has changed";
    std::uint64_t now = 10'000;
    for (const char* change :
         {"4002", "4001 | +1500", "2000 00 | 2999 00 | 4000", "102", "100 144*3", "1 00",
          "103 41944*1", "2000 00 | 2001 /13", "2002 974*1", "2003 624*1"}) {
        std::filesystem::remove(path_);
        talk_.play("4006 -> ~0");
        EXPECT_FALSE(savedAt(now));
        talk_.play(change);
        EXPECT_FALSE(savedAt(now + 1000)) << change;
        EXPECT_FALSE(savedAt(now + 1299)) << "the device is still busy";
        EXPECT_TRUE(savedAt(now + 1300)) << change;
        now += 10'000;
    }
    const auto loaded = loadState(path_, error_);
    ASSERT_TRUE(loaded) << error_;
    EXPECT_TRUE(*loaded == talk_.device.state());
    EXPECT_EQ(files(), 1) << "nothing is left beside it";
    EXPECT_TRUE(StateKeeper(talk_.device, "").saveNow(error_)) << "keeps nothing";
}

}  // namespace
}  // namespace korvane::test
