#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "model/configuration.h"

// The configuration file, as bytes: a plain dump, everything in host (little-endian) order.
//
//     0        u32 version mark
//     4        28 bytes, zero in what the panel writes
//     32       u32 number N of input channels; those beyond 60 are not taken
//     36       N records of 120 bytes
//     then     the configuration image, 629,896 bytes (older layout: 163,976)
//              the device parameters, 144 bytes
//              the description image, 41,944 bytes

namespace korvane {

namespace config_file {

inline constexpr std::uint32_t currentVersion = 4108;
inline constexpr std::uint32_t olderVersion = 4107;

enum Result : int {
    ok = 0,
    cannotOpen = -1,       // nothing changed; also: could not be read or written
    unknownVersion = -2,   // the input channels are already those of the file
    badChannelCount = -3,  // more channels than the file holds; nothing changed
};

struct Header {
    std::uint32_t version;
    std::array<std::uint8_t, 28> reserved;
    std::uint32_t channelCount;
};
static_assert(sizeof(Header) == 36);

// The image of the older layout: half as many services a frame, and components a service.
struct OldServiceSlot {
    ServiceHead head;
    std::array<InputChannelRecord, 4> components;
    std::uint32_t bandwidth;  // host order like everything in a file
};
struct OldFrameSlot {
    FrameHead head;
    std::array<OldServiceSlot, 4> services;
};
struct OldMultiplexBlock {
    std::array<std::uint8_t, 3> header;
    std::uint8_t frameCount;
    std::array<OldFrameSlot, limits::frames> frames;
};
struct OldConfigImage {
    ImageHeader header;
    NetworkBlock network;
    OldMultiplexBlock continuous;
    OldMultiplexBlock shortTime;
    ServiceFrequencyBlock continuousServices;
    ServiceFrequencyBlock shortTimeServices;
    ParamBlock264 params264;
    CaBlock caDescriptions;
    OutputParamBlock outputParams;
    std::array<std::uint8_t, 4> reserved;
};
static_assert(sizeof(OldServiceSlot) == 496 && sizeof(OldFrameSlot) == 2032 &&
              sizeof(OldMultiplexBlock) == 81284 && sizeof(OldConfigImage) == 163976 &&
              offsetof(OldConfigImage, shortTime) == 81924 &&
              offsetof(OldConfigImage, continuousServices) == 163208);

// More than that is not read: a file of either layout with some thousand channels.
inline constexpr std::size_t longestFile = std::size_t{1} << 20;

// The file of the current layout with this content.
std::vector<std::uint8_t> encode(const Configuration& configuration);

// Takes a file of either layout apart; what it lacks behind its channels stays as it is in
// `configuration`. The first 60 channels are taken, the rest goes to `channelsLeftOut`. ok,
// unknownVersion or badChannelCount.
int decode(std::span<const std::uint8_t> file, Configuration& configuration);

// What a file holds, for those who work on images: one of the current layout that is whole encodes
// to its own bytes again, whatever its counts and unused slots hold. Any other becomes what loading
// it makes: zeros where it ends too early, default descriptions where it has not all of them, the
// first 60 channels. Null when decode refuses it, with its result.
std::unique_ptr<Configuration> decodeWhole(std::span<const std::uint8_t> file, int& result);

// Frame 0 gets eight services with consecutive ids and sub-frame numbers, whatever it held.
void convertOldImage(const OldConfigImage& old, ConfigImage& image);

}  // namespace config_file

}  // namespace korvane
