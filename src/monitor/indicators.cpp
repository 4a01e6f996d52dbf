#include "monitor/indicators.h"

#include <cstdio>

namespace korvane {
Lamps lamps(const StatusSource& source) {
    Lamps result;
    std::vector<bool> alarms;
    const int news = source.getAlarmBits(alarms);
    if (news == 0) {
        for (std::size_t i = 0; i < inputLamps.size(); ++i)
            result.inputs[i] = alarms.at(inputLamps[i].alarmBit) ? Lamp::Alarm : Lamp::Normal;
        result.link = Lamp::Normal;
    } else if (news < 0) {
        result.link = Lamp::Alarm;
    }
    return result;
}

std::string timeOfDayLine(const StatusSource& source) {
    StatusSummary now{};
    if (source.getStatusSummary(now) != 0) return "TOD：无输入";
    char text[64];
    std::snprintf(text, sizeof text, "TOD: %d-%.2d-%.2d %.2d:%.2d:%.2d", now.year, now.month,
                  now.day, now.hour, now.minute, now.second);
    return text;
}

}  // namespace korvane
