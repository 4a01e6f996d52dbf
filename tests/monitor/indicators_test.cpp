#include "monitor/indicators.h"

#include <gtest/gtest.h>

#include "monitor/scripted_status.h"

namespace korvane {
namespace {

using test::ScriptedStatus;

std::array<Lamp, Lamps::inputCount> all(Lamp lamp) {
    return {lamp, lamp, lamp, lamp};
}

TEST(Indicators, EachInputHasItsBitAndTheOthersHaveNoLamp) {
    ScriptedStatus status;
    status.alarmResult = 0;
    status.alarms = 0x78;
    EXPECT_EQ(lamps(status).inputs, all(Lamp::Alarm));
    EXPECT_EQ(lamps(status).link, Lamp::Normal);
    status.alarms = 0x87;
    EXPECT_EQ(lamps(status).inputs, all(Lamp::Normal));
    for (std::size_t i = 0; i < Lamps::inputCount; ++i) {
        status.alarms = 8u << i;
        auto expected = all(Lamp::Normal);
        expected[i] = Lamp::Alarm;
        EXPECT_EQ(lamps(status).inputs, expected) << i;
    }
}

TEST(Indicators, WithoutAStatusOnlyALostLinkIsShown) {
    ScriptedStatus status;
    status.alarms = 0x78;
    status.alarmResult = 1;
    EXPECT_EQ(lamps(status).inputs, all(Lamp::Unchanged));
    EXPECT_EQ(lamps(status).link, Lamp::Unchanged);
    status.alarmResult = -1;
    EXPECT_EQ(lamps(status).inputs, all(Lamp::Unchanged));
    EXPECT_EQ(lamps(status).link, Lamp::Alarm);
}

TEST(Indicators, TimeOfDay) {
    ScriptedStatus status;
    EXPECT_EQ(timeOfDayLine(status), "TOD：无输入");
    status.summaryResult = 0;
    status.summary = {77, 2009, 4, 23, 88, 8, 5, 9, 99, 0};
    EXPECT_EQ(timeOfDayLine(status), "TOD: 2009-04-23 08:05:09");
    status.summary = {0, 65535, 65535, 65535, 0, 65535, 65535, 65535, 0, 0};
    EXPECT_EQ(timeOfDayLine(status), "TOD: 65535-65535-65535 65535:65535:65535");
    status.summary = {};
    EXPECT_EQ(timeOfDayLine(status), "TOD: 0-00-00 00:00:00");
}

}  // namespace
}  // namespace korvane
