#include "monitor/service_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "monitor/sample_status.h"

namespace korvane {
namespace {

using testing::ElementsAre;

TEST(ServiceRows, ShowAtMostThreeSegmentsAndCountOnAcrossFrames) {
    const test::StatusImage status = std::make_unique<DeviceStatusImage>();
    status->frameCount = 3;
    for (const std::uint32_t frame : {0u, 2u}) {
        status->frames[frame].subFrameCount = 1;
        SubFrameStats& subFrame = status->frames[frame].subFrames[0];
        subFrame.segmentCount = 5;
        for (std::uint32_t k = 0; k < 5; ++k)
            subFrame.segments[k] = {1000 + 10 * frame + k, 0, 10 * frame + k, 0};
    }
    EXPECT_THAT(serviceRows(*status),
                ElementsAre(ElementsAre("0", "0", "0", "0", "1000", "1", "1001", "2", "1002"),
                            ElementsAre("1", "0", "0", "20", "1020", "21", "1021", "22", "1022")));
}

TEST(ServiceRows, NoFramesGiveNoneAndCountsThatLieStayInTheirArrays) {
    EXPECT_TRUE(serviceRows(*std::make_unique<DeviceStatusImage>()).empty());
    const auto rows = serviceRows(*test::lyingStatus());
    ASSERT_EQ(rows.size(), 320u);
    EXPECT_THAT(rows.back(), ElementsAre("319", "65535", "4294967295", "4294967295", "4294967295",
                                         "4294967295", "4294967295", "4294967295", "4294967295"));
}

}  // namespace
}  // namespace korvane
