#include "device/crc32.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

TEST(Crc32, IsTheMpeg2Variant) {
    EXPECT_EQ(Crc32("123456789", 9), 0x0376E6E7u);  // the published check value of CRC-32/MPEG-2
    EXPECT_EQ(Crc32("", 0), 0xFFFFFFFFu);
    EXPECT_EQ(Crc32("x", -5), 0xFFFFFFFFu);
}

}  // namespace
}  // namespace korvane
