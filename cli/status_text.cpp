#include "cli/status_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <vector>

#include "monitor/indicators.h"
#include "monitor/service_rows.h"
#include "monitor/slot_occupancy.h"

namespace korvane::cli {
namespace {

constexpr std::uint32_t systemRateUnit = 8;  // kbit/s

// In the order of their lamps.
constexpr std::array<const char*, Lamps::inputCount> inputNames = {"data input", "1PPS", "10M",
                                                                   "TOD"};

const char* lampWord(Lamp lamp) {
    switch (lamp) {
        case Lamp::Normal:
            return "normal";
        case Lamp::Alarm:
            return "ALARM";
        default:
            return "unknown";
    }
}

std::string lampsLine(const Lamps& lamps) {
    std::string line = std::string("link ") + (lamps.link == Lamp::Normal ? "normal" : "LOST");
    for (std::size_t i = 0; i < Lamps::inputCount; ++i)
        line += std::string(", ") + inputNames[i] + ' ' + lampWord(lamps.inputs[i]);
    return line + '\n';
}

std::string ratesLine(const DeviceStatusImage& status) {
    return "stream " + std::to_string(status.streamRate) + " bit/s, system " +
           std::to_string(status.systemRate * systemRateUnit) + " kbit/s, sent " +
           std::to_string(status.bytesSent) + " bytes\n";
}

// Slots one after the other that are as full as each other.
std::string slotsLines(const DeviceStatusImage& status) {
    const auto slots = slotOccupancy(status);
    std::string line = "slots in use:";
    for (std::size_t i = 0, end = 0; i < slots.size(); i = end) {
        const auto other = [&](auto percent) { return percent != slots[i]; };
        end = static_cast<std::size_t>(
            std::find_if(slots.begin() + static_cast<std::ptrdiff_t>(i), slots.end(), other) -
            slots.begin());
        line += (i == 0 ? " " : ", ") + std::to_string(i);
        if (end - i > 1) line += '-' + std::to_string(end - 1);
        line += ' ' + std::to_string(slots[i]) + " %";
    }
    return line + '\n';
}

std::string tableLine(const std::vector<std::string>& cells) {
    std::string line;
    for (const std::string& cell : cells) {
        char column[32];
        std::snprintf(column, sizeof column, "%10s", cell.c_str());
        line += column;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
}

std::string servicesLines(const DeviceStatusImage& status) {
    std::string lines = tableLine(
        {"", "service", "bytes", "video", "packets", "audio", "packets", "data", "packets"});
    for (const auto& row : serviceRows(status)) lines += tableLine(row);
    return lines;
}

// Service ids, each with the kbit/s of its segments: "101:480+64 102:320".
std::string servicesCell(const DeviceStatusImage& status) {
    std::string cell;
    for (const auto& row : serviceRows(status)) {
        cell += (cell.empty() ? "" : " ") + row[1] + ':';
        for (std::size_t i = 3; i < row.size() && !row[i].empty(); i += 2)
            cell += (i == 3 ? "" : "+") + row[i];
    }
    return cell;
}

std::string slotsCell(const DeviceStatusImage& status) {
    std::string cell;
    for (const auto percent : slotOccupancy(status))
        cell += (cell.empty() ? "" : " ") + std::to_string(percent);
    return cell;
}

std::string timeCell(const StatusSource& source) {
    const std::string line = timeOfDayLine(source);
    return line.substr(std::min(line.size(), line.find(' ') + 1));
}

std::string numbersCells(const DeviceStatusImage& status) {
    return std::to_string(status.bytesSent) + ',' + std::to_string(status.streamRate) + ',' +
           std::to_string(status.systemRate * systemRateUnit);
}

}  // namespace

std::string statusText(const StatusSource& source, const std::string& time,
                       const std::string& address) {
    std::string text = address + ", " + time + '\n' + lampsLine(lamps(source));
    const auto status = std::make_unique<DeviceStatusImage>();
    if (source.getDeviceStatusImage(*status) != 0) return text;
    return text + timeOfDayLine(source) + '\n' + ratesLine(*status) + slotsLines(*status) +
           servicesLines(*status);
}

std::string statusTableHead() {
    return "time,link,data_input,1pps,10m,tod,device_time,bytes_sent,stream_bps,system_kbps,"
           "slots_percent,services_kbps\n";
}

std::string statusTableRow(const StatusSource& source, const std::string& time) {
    const auto status = std::make_unique<DeviceStatusImage>();
    if (source.getDeviceStatusImage(*status) != 0) return time + ",lost,,,,,,,,,,\n";
    std::string row = time + ",normal";
    for (const Lamp lamp : lamps(source).inputs) row += lamp == Lamp::Alarm ? ",alarm" : ",normal";
    return row + ',' + timeCell(source) + ',' + numbersCells(*status) + ',' + slotsCell(*status) +
           ',' + servicesCell(*status) + '\n';
}

}  // namespace korvane::cli
