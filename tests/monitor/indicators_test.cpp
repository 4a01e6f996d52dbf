#include "monitor/indicators.h"

#include <gtest/gtest.h>

#include "monitor/scripted_status.h"

namespace korvane {
namespace {

using test::ScriptedStatus;

TEST(Indicators, TimeOfDay) {
    ScriptedStatus status;
    EXPECT_EQ(timeOfDayLine(status), "TOD：无输入");
    status.summaryResult = 0;
    status.summary = {77, 2009, 4, 23, 88, 8, 5, 9, 99, 0};
    EXPECT_EQ(timeOfDayLine(status), "TOD: 2009-04-23 08:05:09");
    status.summary = {0, 65535, 65535, 0, 0, 65535, 65535, 65535, 0, 0};
    EXPECT_EQ(timeOfDayLine(status), "TOD: 65535-65535-00 65535:65535:65535");
}

}  // namespace
}  // namespace korvane
