#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>

namespace korvane {

// Big-endian numbers in a byte stream.
inline void putBigEndian32(std::uint8_t* out, std::uint32_t value) {
    out[0] = static_cast<std::uint8_t>(value >> 24);
    out[1] = static_cast<std::uint8_t>(value >> 16);
    out[2] = static_cast<std::uint8_t>(value >> 8);
    out[3] = static_cast<std::uint8_t>(value);
}
inline std::uint32_t getBigEndian32(const std::uint8_t* in) {
    return static_cast<std::uint32_t>(in[0]) << 24 | static_cast<std::uint32_t>(in[1]) << 16 |
           static_cast<std::uint32_t>(in[2]) << 8 | in[3];
}

// Every request and every answer starts with this; on the wire all three words are big-endian.
struct CommandFrame {
    std::uint32_t code;
    std::uint32_t status;         // 0 in requests; in answers 0 is done, else the device's error
    std::uint32_t payloadLength;  // bytes that follow

    static constexpr std::size_t size = 12;

    void write(std::uint8_t* out) const {
        putBigEndian32(out, code);
        putBigEndian32(out + 4, status);
        putBigEndian32(out + 8, payloadLength);
    }
    static CommandFrame read(const std::uint8_t* in) {
        return {getBigEndian32(in), getBigEndian32(in + 4), getBigEndian32(in + 8)};
    }
};

// A message longer than one datagram is announced by a datagram of its own, then sent as a train.
struct Announcement {
    static constexpr std::size_t size = 8;
    static constexpr std::uint8_t mark0 = 0x11, mark1 = 0x22;

    static std::array<std::uint8_t, size> make(std::uint32_t totalLength) {
        std::array<std::uint8_t, size> bytes{mark0, mark1};
        putBigEndian32(bytes.data() + 4, totalLength);
        return bytes;
    }
    static bool startsWith(const std::uint8_t* twoBytes) {
        return twoBytes[0] == mark0 && twoBytes[1] == mark1;
    }
};

namespace wire {
inline constexpr std::uint16_t devicePort = 1123;
inline constexpr std::size_t largestDatagram = 65536;  // longer messages are announced
inline constexpr std::size_t chunkSize = 30720;        // datagrams of a train
inline constexpr std::uint32_t chunkPauseMs = 50;      // the device clears its queue in that time
inline constexpr std::size_t bufferSize = 409600;      // of the client, for one whole frame
}  // namespace wire

}  // namespace korvane
