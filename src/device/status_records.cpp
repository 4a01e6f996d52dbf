#include "device/status_records.h"

#include <algorithm>

#include "model/byte_order.h"

namespace korvane {
namespace {

// The first `count` elements, held to the array: what a device that miscounts can do no harm with.
template <class Array, class Visit>
void forFirst(Array& items, std::size_t count, Visit visit) {
    std::for_each(items.begin(), items.begin() + std::min(count, items.size()), visit);
}

void turnFields(SegmentStats& segment) {
    turn(segment.ipPackets);
    turn(segment.inputBytes);
    turn(segment.inputRateKbps);
    turn(segment.carried12);
}

void turnFields(SubFrameStats& subFrame) {
    turn(subFrame.id);
    turn(subFrame.serviceId);
    turn(subFrame.effectiveLength);
    turn(subFrame.bandwidth);
    forFirst(subFrame.segments, subFrame.segmentCount, [](SegmentStats& s) { turnFields(s); });
}

void turnFields(FrameStats& frame) {
    turn(frame.channelCapacity);
    turn(frame.effectiveData);
    turn(frame.id);
    forFirst(frame.subFrames, frame.subFrameCount, [](SubFrameStats& s) { turnFields(s); });
}

void turnFields(DeviceStatusImage& image) {
    turn(image.bytesSent);
    turn(image.streamRate);
    turn(image.systemRate);
    forFirst(image.frames, image.frameCount, [](FrameStats& f) { turnFields(f); });
}

void turnFields(StatusSummary& summary) {
    for (std::uint16_t* value :
         {&summary.carried0, &summary.year, &summary.month, &summary.day, &summary.carried8,
          &summary.hour, &summary.minute, &summary.second, &summary.carried16})
        turn(*value);
}

}  // namespace

void toNetworkOrder(DeviceStatusImage& image) {
    turnFields(image);
}
void fromNetworkOrder(DeviceStatusImage& image) {
    turnFields(image);
}
void toNetworkOrder(StatusSummary& summary) {
    turnFields(summary);
}
void fromNetworkOrder(StatusSummary& summary) {
    turnFields(summary);
}

}  // namespace korvane
