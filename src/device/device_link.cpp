#include "device/device_link.h"

#include <algorithm>

#include "device/command_frame.h"

namespace korvane {

int UdpSendChunked(DeviceLink& link, std::uint32_t address, std::uint16_t port, const void* data,
                   std::uint32_t length, std::uint16_t chunkSize) {
    constexpr std::uint32_t writableTimeoutMs = 2000;
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    for (std::uint32_t offset = 0; offset < length;) {
        const auto size =
            static_cast<std::uint16_t>(std::min<std::uint32_t>(chunkSize, length - offset));
        const int result = link.send(address, port, writableTimeoutMs, bytes + offset, size);
        if (result < 0) return result;
        offset += size;
        link.sleep(wire::chunkPauseMs);
    }
    return 0;
}

}  // namespace korvane
