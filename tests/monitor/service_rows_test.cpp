#include "monitor/service_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "monitor/status_bytes.h"

namespace korvane {
namespace {

using test::StatusBytes;
using testing::ElementsAre;

TEST(ServiceRows, OneForEachSubFrameNumberedFromZero) {
    EXPECT_THAT(serviceRows(*test::smallMultiplex().image()),
                ElementsAre(ElementsAre("0", "101", "50784", "347", "223", "58", "106", "", ""),
                            ElementsAre("1", "65535", "900", "", "", "", "", "", "")));
}

TEST(ServiceRows, ShowAtMostThreeSegmentsAndCountOnAcrossFrames) {
    StatusBytes status;
    status.put8(11, 3);
    for (const std::size_t frame : {0u, 2u}) {
        status.put8(StatusBytes::frame(frame) + 54, 1);
        status.put8(StatusBytes::subFrame(frame, 0) + 15, 5);
        for (std::size_t k = 0; k < 5; ++k) {
            const auto value = static_cast<std::uint32_t>(10 * frame + k);
            status.put32(StatusBytes::segment(frame, 0, k), 1000 + value);
            status.put32(StatusBytes::segment(frame, 0, k) + 8, value);
        }
    }
    EXPECT_THAT(serviceRows(*status.image()),
                ElementsAre(ElementsAre("0", "0", "0", "0", "1000", "1", "1001", "2", "1002"),
                            ElementsAre("1", "0", "0", "20", "1020", "21", "1021", "22", "1022")));
}

TEST(ServiceRows, NoFramesGiveNoneAndCountsThatLieStayInTheirArrays) {
    EXPECT_TRUE(serviceRows(*StatusBytes().image()).empty());
    const auto rows = serviceRows(*StatusBytes().fill(0xFF).image());
    ASSERT_EQ(rows.size(), 320u);
    EXPECT_THAT(rows.back(), ElementsAre("319", "65535", "4294967295", "4294967295", "4294967295",
                                         "4294967295", "4294967295", "4294967295", "4294967295"));
}

}  // namespace
}  // namespace korvane
