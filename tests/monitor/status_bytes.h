#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "device/status_records.h"

namespace korvane::test {

// The status as it travels, written by offset: big-endian, counts first so that they convert what
// they count.
class StatusBytes {
  public:
    // Offsets of the format.
    static constexpr std::size_t frame(std::size_t i) { return 12 + 1208 * i; }
    static constexpr std::size_t subFrame(std::size_t i, std::size_t j) {
        return frame(i) + 56 + 144 * j;
    }
    static constexpr std::size_t segment(std::size_t i, std::size_t j, std::size_t k) {
        return subFrame(i, j) + 16 + 16 * k;
    }

    StatusBytes& put8(std::size_t offset, unsigned value) {
        bytes_.at(offset) = static_cast<std::uint8_t>(value);
        return *this;
    }
    StatusBytes& put16(std::size_t offset, unsigned value) {
        return put8(offset, value >> 8).put8(offset + 1, value);
    }
    StatusBytes& put32(std::size_t offset, std::uint32_t value) {
        return put16(offset, value >> 16).put16(offset + 2, value);
    }
    StatusBytes& fill(std::uint8_t value) {
        bytes_.assign(bytes_.size(), value);
        return *this;
    }

    std::unique_ptr<DeviceStatusImage> image() const {
        auto image = std::make_unique<DeviceStatusImage>();
        std::memcpy(static_cast<void*>(image.get()), bytes_.data(), bytes_.size());
        fromNetworkOrder(*image);
        return image;
    }

  private:
    std::vector<std::uint8_t> bytes_ = std::vector<std::uint8_t>(48332);
};

// Two frames: the first with the slots 3, 7 and 39 and two sub-frames, of which the first has a
// video and an audio segment and the second none; the second frame has nothing in it.
inline StatusBytes smallMultiplex() {
    StatusBytes status;
    status.put32(0, 4000000000u).put32(4, 4379999).put16(8, 1000).put8(10, 0x78).put8(11, 2);
    const std::size_t frame = StatusBytes::frame(0);
    status.put32(frame, 69120).put32(frame + 4, 60826).put16(frame + 8, 5);
    status.put8(frame + 13, 3).put8(frame + 14, 3).put8(frame + 15, 7).put8(frame + 16, 39);
    status.put8(frame + 54, 2);
    const std::size_t first = StatusBytes::subFrame(0, 0), second = StatusBytes::subFrame(0, 1);
    status.put16(first, 1).put16(first + 2, 101).put32(first + 4, 50784).put32(first + 8, 450000);
    status.put8(first + 15, 2);
    const std::size_t video = StatusBytes::segment(0, 0, 0), audio = StatusBytes::segment(0, 0, 1);
    status.put32(video, 223).put32(video + 4, 263140).put32(video + 8, 347);
    status.put32(audio, 106).put32(audio + 4, 39432).put32(audio + 8, 58);
    status.put16(second, 2).put16(second + 2, 65535).put32(second + 4, 900);
    status.put32(second + 8, 8000);
    status.put16(StatusBytes::frame(1) + 8, 300);
    return status;
}

}  // namespace korvane::test
