#include "monitor/indicators.h"

#include <gtest/gtest.h>

#include "monitor/scripted_status.h"
#include "monitor/views.h"

namespace korvane {
namespace {

using test::ScriptedStatus;

// 'n'ormal, 'a'larm or '-' for unchanged: the four inputs and, behind a blank, the link.
std::string lampsAt(int alarmResult, unsigned alarms) {
    ScriptedStatus status;
    status.alarmResult = alarmResult;
    status.alarms = alarms;
    const Lamps now = lamps(status);
    std::string shown;
    for (const Lamp lamp : now.inputs) shown += "-na"[static_cast<int>(lamp)];
    return shown + ' ' + "-na"[static_cast<int>(now.link)];
}

TEST(Indicators, EachInputHasItsBitAndWithoutAStatusOnlyALostLinkIsShown) {
    EXPECT_EQ(lampsAt(0, 0x87), "nnnn n") << "the other bits have no lamp";
    EXPECT_EQ(lampsAt(0, 0x08), "annn n");
    EXPECT_EQ(lampsAt(0, 0x10), "nann n");
    EXPECT_EQ(lampsAt(0, 0x20), "nnan n");
    EXPECT_EQ(lampsAt(0, 0x40), "nnna n");
    EXPECT_EQ(lampsAt(1, 0x78), "---- -");
    EXPECT_EQ(lampsAt(-1, 0x78), "---- a");
}

TEST(Indicators, LampsAndViewsAreWhatTheDialogsHold) {
    std::string shown;
    for (const InputLamp& lamp : inputLamps) shown += std::to_string(lamp.control) + ' ';
    for (const int picture : lampPictures) shown += std::to_string(picture) + ' ';
    for (const MonitorView& view : monitorViews)
        shown += std::string(view.title) + std::to_string(view.dialog) + '/' +
                 std::to_string(view.periodMs) + ' ';
    EXPECT_EQ(shown,
              "1110 1112 1113 1114 0 140 139 复用帧结构1084/1500 业务列表1080/1000 "
              "图形化监控1089/1500 ");
    EXPECT_EQ(monitorPeriodMs, 1000u);
}

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
