#include <gtest/gtest.h>
#include <string_view>

#include "device/command_frame.h"
#include "simulator/panel_side.h"

namespace korvane::test {
namespace {

// "123456789" has a well-known CRC-32/MPEG-2.
constexpr std::string_view file = "123456789";
constexpr std::uint32_t checksum = 0x0376E6E7;

class Upgrade : public testing::Test {
  protected:
    std::uint32_t begin(std::string_view name, std::uint32_t size, std::uint32_t crc) {
        Bytes payload(264);
        std::copy(name.begin(), name.end(), payload.begin());
        putBigEndian32(payload.data() + 256, size);
        putBigEndian32(payload.data() + 260, crc);
        return panel_.statusOf(4009, payload);
    }
    std::uint32_t begin(std::uint32_t crc = checksum) {
        return begin("vxWorks", static_cast<std::uint32_t>(file.size()), crc);
    }
    std::uint32_t piece(std::uint32_t offset, std::string_view bytes,
                        std::optional<std::uint32_t> length = {}) {
        Bytes payload(8 + bytes.size());
        std::copy(bytes.begin(), bytes.end(), payload.data() + 8);
        putBigEndian32(payload.data(), offset);
        putBigEndian32(payload.data() + 4,
                       length.value_or(static_cast<std::uint32_t>(bytes.size())));
        return panel_.statusOf(4011, payload);
    }
    std::uint32_t finish() { return panel_.statusOf(4010); }
    int state() {
        const Reply reply = panel_.ask(4012);
        return reply.payload.size() == 1 ? reply.payload[0] : -1;
    }

    SimulatedDevice device_;
    PanelSide panel_{device_};
};

TEST_F(Upgrade, WholeFileWorksForThreePollsThenIsFinished) {
    EXPECT_EQ(state(), 0);
    EXPECT_EQ(begin(), 0u);
    EXPECT_EQ(piece(0, "1234"), 0u);
    EXPECT_EQ(piece(4, "56789"), 0u);
    EXPECT_EQ(state(), 1);
    EXPECT_EQ(finish(), 0u);
    EXPECT_EQ(finish(), 0u) << "again, as when the answer was lost";
    for (int poll = 0; poll < 3; ++poll) EXPECT_EQ(state(), 1) << poll;
    EXPECT_EQ(state(), 0);
    EXPECT_EQ(finish(), 3u);
}

TEST_F(Upgrade, RepeatedPieceIsAccepted) {
    begin();
    piece(0, "1234");
    EXPECT_EQ(piece(0, "1234"), 0u);
    EXPECT_EQ(piece(4, "56789"), 0u);
    EXPECT_EQ(piece(4, "56789"), 0u);
    EXPECT_EQ(finish(), 0u);
}

TEST_F(Upgrade, BeginningAgainAndRestartingStartOver) {
    begin();
    piece(0, "1234");
    begin();
    EXPECT_EQ(piece(4, "56789"), 6u);
    EXPECT_EQ(piece(0, file), 0u);
    device_.reboot(panel_.nowMs);
    panel_.nowMs += 15'000;
    EXPECT_EQ(state(), 0);
    EXPECT_EQ(finish(), 3u);
}

TEST_F(Upgrade, WrongChecksumIsRefused) {
    begin(checksum ^ 1);
    piece(0, file);
    EXPECT_EQ(finish(), 7u);
    EXPECT_EQ(state(), 0);
    begin();
    piece(0, "12345678x");
    EXPECT_EQ(finish(), 7u);
}

TEST_F(Upgrade, FileThatIsNotWhole) {
    begin();
    piece(0, "12345678");
    EXPECT_EQ(finish(), 3u);
    EXPECT_EQ(piece(8, "9"), 0u) << "it may still come";
    EXPECT_EQ(finish(), 0u);
}

TEST_F(Upgrade, NamesAndSizes) {
    for (const char* name : {"CMMB_FPGA.rbf", "softH264EP.out", "vxWorks"})
        EXPECT_EQ(begin(name, 9, checksum), 0u) << name;
    for (const char* name : {"", "vxworks", "vxWorks ", "dir/vxWorks", "softH264EP.OUT"})
        EXPECT_EQ(begin(name, 9, checksum), 5u) << name;
    EXPECT_EQ(begin(std::string(256, 'v'), 9, checksum), 5u) << "no terminator";
    EXPECT_EQ(begin("vxWorks", 0, checksum), 4u);
    EXPECT_EQ(begin("vxWorks", 0xFFFFFFFF, checksum), 4u);
}

TEST_F(Upgrade, PiecesOutOfPlace) {
    EXPECT_EQ(piece(0, "1234"), 3u) << "before the beginning";
    begin();
    EXPECT_EQ(piece(1, "2345"), 6u) << "a gap";
    EXPECT_EQ(piece(0xFFFFFFFF, "1"), 6u);
    EXPECT_EQ(piece(0, "1234567890"), 6u) << "beyond the end";
    EXPECT_EQ(piece(0, "1234", 5), 2u);
    EXPECT_EQ(piece(0, "1234", 0xFFFFFFFF), 2u);
    EXPECT_EQ(piece(0, ""), 2u);
    EXPECT_EQ(panel_.statusOf(4011, Bytes(7)), 2u);
    EXPECT_EQ(piece(0, file), 0u);
    EXPECT_EQ(finish(), 0u);
}

}  // namespace
}  // namespace korvane::test
