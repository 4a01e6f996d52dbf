#include "model/whole_file.h"

#include <fstream>
#include <gtest/gtest.h>

#include "support/scratch_directory.h"

namespace korvane {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes read(const std::filesystem::path& path, std::size_t most = 100) {
    Bytes bytes;
    EXPECT_EQ(readFile(path, most, bytes), 0);
    return bytes;
}

class WholeFile : public testing::Test {
  protected:
    std::ptrdiff_t filesLeft() const {
        return std::distance(std::filesystem::directory_iterator(scratch_.path()), {});
    }

    test::ScratchDirectory scratch_;
    std::filesystem::path path_ = scratch_.path() / "x.dat";
};

// Never written in place: whoever still holds the old file has it whole.
TEST_F(WholeFile, ANewFileTakesThePlaceOfTheOldOne) {
    ASSERT_TRUE(replaceFile(path_, Bytes{1, 2, 3, 4}));
    const auto held = scratch_.path() / "held";
    std::filesystem::create_hard_link(path_, held);
    const auto operators = scratch_.path() / "x.dat.new";
    std::ofstream(operators) << "7";
    ASSERT_TRUE(replaceFile(path_, Bytes{0x0D, 0x0A, 0}));
    EXPECT_EQ(read(path_), (Bytes{0x0D, 0x0A, 0}));
    EXPECT_EQ(read(path_, 2), (Bytes{0x0D, 0x0A}));
    EXPECT_EQ(read(held), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(read(operators), Bytes{'7'}) << "a file of that name is someone else's";
    EXPECT_EQ(filesLeft(), 3);
}

TEST_F(WholeFile, WhatFailsLeavesNothingBehind) {
    EXPECT_FALSE(replaceFile(scratch_.path() / "no such directory" / "x.dat", Bytes{1}));
    std::filesystem::create_directories(path_ / "in the way");
    EXPECT_FALSE(replaceFile(path_, Bytes{1}));
    EXPECT_EQ(filesLeft(), 1);
    Bytes bytes;
    EXPECT_EQ(readFile(scratch_.path() / "missing", 1, bytes), file_result::cannotOpen);
    EXPECT_NE(readFile(path_, 1, bytes), 0);
    EXPECT_TRUE(bytes.empty());
}

TEST_F(WholeFile, MayBeLongerThanOnePiece) {
    Bytes bytes(3'000'001);
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i / 4099);
    ASSERT_TRUE(replaceFile(path_, bytes));
    EXPECT_TRUE(read(path_, 4'000'000) == bytes);
}

}  // namespace
}  // namespace korvane
