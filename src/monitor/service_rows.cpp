#include "monitor/service_rows.h"

#include "monitor/held_count.h"

namespace korvane {
namespace {

constexpr std::size_t leadingCells = 3, shownSegments = 3;

// Which kind of stream a segment carries is told by its place alone.
std::vector<std::string> rowOf(std::size_t number, const SubFrameStats& subFrame) {
    std::vector<std::string> cells(leadingCells + 2 * shownSegments);
    cells[0] = std::to_string(number);
    cells[1] = std::to_string(subFrame.serviceId);
    cells[2] = std::to_string(subFrame.effectiveLength);
    const std::size_t count = heldCount(subFrame.segmentCount, subFrame.segments);
    for (std::size_t i = 0; i < std::min(count, shownSegments); ++i) {
        cells[leadingCells + 2 * i] = std::to_string(subFrame.segments[i].inputRateKbps);
        cells[leadingCells + 2 * i + 1] = std::to_string(subFrame.segments[i].ipPackets);
    }
    return cells;
}

}  // namespace

std::vector<std::vector<std::string>> serviceRows(const DeviceStatusImage& status) {
    std::vector<std::vector<std::string>> rows;
    const std::size_t frames = heldCount(status.frameCount, status.frames);
    for (std::size_t i = 0; i < frames; ++i) {
        const FrameStats& frame = status.frames[i];
        const std::size_t subFrames = heldCount(frame.subFrameCount, frame.subFrames);
        for (std::size_t j = 0; j < subFrames; ++j)
            rows.push_back(rowOf(rows.size(), frame.subFrames[j]));
    }
    return rows;
}

}  // namespace korvane
