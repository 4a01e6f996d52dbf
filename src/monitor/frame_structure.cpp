#include "monitor/frame_structure.h"

#include <charconv>
#include <string>

#include "monitor/held_count.h"

namespace korvane {
namespace {

constexpr std::string_view bytes = " Bytes", kbps = " Kbps", bps = " bps";

void appendNumber(std::string& text, std::uint32_t number) {
    char digits[10];
    const auto result = std::to_chars(digits, digits + sizeof digits, number);
    text.append(digits, result.ptr);
}

// Makes each line's text in the same place.
class Outline {
  public:
    explicit Outline(const TreeLineSink& sink) : sink_(sink) {}

    void add(int depth, std::string_view label, std::uint32_t number, std::string_view unit = {}) {
        text_ = label;
        appendNumber(text_, number);
        text_ += unit;
        sink_(depth, text_);
    }
    void add(int depth, std::string_view text) { sink_(depth, text); }

  private:
    const TreeLineSink& sink_;
    std::string text_;
};

std::string timeSlotList(const FrameStats& frame) {
    std::string text = "时隙:[";
    const std::size_t count = heldCount(frame.timeSlotCount, frame.timeSlots);
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) text += ',';
        appendNumber(text, frame.timeSlots[i]);
    }
    return text += ']';
}

void addSegment(Outline& outline, int depth, std::uint32_t index, const SegmentStats& segment) {
    outline.add(depth, "段", index);
    outline.add(depth + 1, "IP包个数:", segment.ipPackets);
    outline.add(depth + 1, "输入码率:", segment.inputRateKbps, kbps);
    outline.add(depth + 1, "输入字节数:", segment.inputBytes, bytes);
}

void addSubFrame(Outline& outline, int depth, std::uint32_t index, const SubFrameStats& subFrame) {
    outline.add(depth, "子帧", index);
    outline.add(depth + 1, "子帧ID:", subFrame.id);
    outline.add(depth + 1, "业务ID:", subFrame.serviceId);
    outline.add(depth + 1, "带宽:", subFrame.bandwidth, bps);
    outline.add(depth + 1, "有效长度:", subFrame.effectiveLength, bytes);
    outline.add(depth + 1, "段个数:", subFrame.segmentCount);
    const std::size_t count = heldCount(subFrame.segmentCount, subFrame.segments);
    for (std::uint32_t i = 0; i < count; ++i)
        addSegment(outline, depth + 1, i, subFrame.segments[i]);
}

void addFrame(Outline& outline, std::uint32_t index, const FrameStats& frame) {
    outline.add(0, "复用帧", index);
    outline.add(1, "复用帧ID:", frame.id);
    outline.add(1, "信道容量:", frame.channelCapacity, bytes);
    outline.add(1, "有效数据量:", frame.effectiveData, bytes);
    outline.add(1, "时隙数:", frame.timeSlotCount);
    outline.add(1, timeSlotList(frame));
    outline.add(1, "子帧个数:", frame.subFrameCount);
    const std::size_t count = heldCount(frame.subFrameCount, frame.subFrames);
    for (std::uint32_t i = 0; i < count; ++i) addSubFrame(outline, 1, i, frame.subFrames[i]);
}

}  // namespace

void describeFrames(const DeviceStatusImage& status, const TreeLineSink& sink) {
    Outline outline(sink);
    outline.add(0, "系统码率:", status.systemRate * 8u, kbps);
    outline.add(0, "复用流码率:", status.streamRate / 1000, kbps);
    outline.add(0, "发送字节数:", status.bytesSent, bytes);
    outline.add(0, "复用帧个数:", status.frameCount);
    const std::size_t count = heldCount(status.frameCount, status.frames);
    for (std::uint32_t i = 0; i < count; ++i) addFrame(outline, i, status.frames[i]);
}

}  // namespace korvane
