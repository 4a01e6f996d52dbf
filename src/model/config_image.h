#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "model/field_text.h"
#include "model/records.h"

// The configuration as it travels between panel and device, and as it stands in files. Built and
// read in host order; the wire wants it big-endian. No slot that is beyond its count, and no byte
// named `reserved`, is ever anything but zero in an image that encodeImage made.

namespace korvane {

struct ImageHeader {                    // 16 bytes
    std::array<std::uint8_t, 8> bytes;  // byte 1 goes with the begin and end commands
    std::uint16_t value;                // big-endian on the wire
    std::array<std::uint8_t, 2> bytes10;
    std::uint8_t length;
    std::array<std::uint8_t, 3> reserved;
};
static_assert(sizeof(ImageHeader) == 16 && offsetof(ImageHeader, value) == 8 &&
              offsetof(ImageHeader, length) == 12);

struct NetworkBlock {  // 624 bytes; offsets in the image are 16 more
    std::array<std::uint8_t, 4> word0;
    std::array<std::uint8_t, 4> word1;
    std::uint16_t networkNumber;  // big-endian on the wire
    std::uint8_t tableId;
    std::uint8_t carried27;
    std::uint8_t level;
    std::array<char, 4> countryCode;
    std::uint8_t nameLength;  // wraps to 0 for a name of 256 bytes
    std::array<char, limits::networkName> name;
    std::array<std::uint8_t, 2> reserved290;
    FrequencyPoint ownFrequency;
    std::uint8_t otherFrequencyCount;
    std::array<std::uint8_t, 3> reserved301;
    std::array<FrequencyPoint, limits::frequencyPoints> otherFrequencies;
    std::uint8_t neighbourCount;
    std::array<std::uint8_t, 3> reserved433;
    std::array<NeighbourNetwork, limits::neighbourNetworks> neighbours;
    std::array<std::uint8_t, 12> reserved628;
};
static_assert(sizeof(NetworkBlock) == 624 && offsetof(NetworkBlock, networkNumber) == 24 - 16 &&
              offsetof(NetworkBlock, countryCode) == 29 - 16 &&
              offsetof(NetworkBlock, nameLength) == 33 - 16 &&
              offsetof(NetworkBlock, name) == 34 - 16 &&
              offsetof(NetworkBlock, ownFrequency) == 292 - 16 &&
              offsetof(NetworkBlock, otherFrequencies) == 304 - 16 &&
              offsetof(NetworkBlock, neighbourCount) == 432 - 16 &&
              offsetof(NetworkBlock, neighbours) == 436 - 16);

struct ServiceHead {  // the first 12 bytes of a service slot
    std::uint8_t subFrameNumber;
    std::uint8_t scrambled;
    std::uint16_t serviceId;       // big-endian on the wire
    std::uint16_t serviceIdAgain;  // likewise; where the two differ, this one counts
    std::uint16_t componentCount;  // 0-8, big-endian on the wire
    std::uint8_t encapsulation;
    std::uint8_t type;
    std::uint8_t esgInternal;
    std::uint8_t reserved;
};
static_assert(sizeof(ServiceHead) == 12 && offsetof(ServiceHead, encapsulation) == 8);

struct ServiceSlot {  // 976 bytes
    ServiceHead head;
    std::array<InputChannelRecord, limits::components> components;
    std::uint32_t bandwidth;  // bit/s, big-endian on the wire
};
static_assert(sizeof(ServiceSlot) == 976 && offsetof(ServiceSlot, bandwidth) == 972);

struct FrameHead {  // the first 48 bytes of a frame slot
    std::uint8_t id;
    std::uint8_t rsRate;
    std::uint8_t byteInterleaving;
    std::uint8_t ldpcRate;
    std::uint8_t modulation;
    std::uint8_t scrambling;
    std::uint8_t timeSlotCount;  // 0-40
    std::array<std::uint8_t, limits::timeSlots> timeSlots;
    std::uint8_t serviceCount;  // 0-8
};
static_assert(sizeof(FrameHead) == 48 && offsetof(FrameHead, timeSlots) == 7);

struct FrameSlot {  // 7,856 bytes
    FrameHead head;
    std::array<ServiceSlot, limits::services> services;
};
static_assert(sizeof(FrameSlot) == 7856);

struct MultiplexBlock {  // 314,244 bytes
    std::array<std::uint8_t, 3> header;
    std::uint8_t frameCount;  // 0-40
    std::array<FrameSlot, limits::frames> frames;
};
static_assert(sizeof(MultiplexBlock) == 314244);

struct ServiceFrequencyBlock {  // 168 bytes
    std::array<std::uint8_t, 4> header;
    std::uint16_t value;       // big-endian on the wire
    std::uint16_t entryCount;  // 0-40, big-endian on the wire
    std::array<ServiceFrequencyEntry, limits::serviceFrequencies> entries;
};
static_assert(sizeof(ServiceFrequencyBlock) == 168);

struct CaBlock {  // 92 bytes
    std::uint8_t tableId;
    std::uint8_t reserved1;
    std::uint8_t sendFlag;
    std::array<std::uint8_t, 3> reserved3;
    std::uint16_t entryCount;  // 0-10, big-endian on the wire
    std::uint8_t sectionCount;
    std::array<std::uint8_t, 3> reserved9;
    std::array<CaSystemEntry, limits::caSystems> entries;
};
static_assert(sizeof(CaBlock) == 92 && offsetof(CaBlock, sendFlag) == 2 &&
              offsetof(CaBlock, entryCount) == 6 && offsetof(CaBlock, sectionCount) == 8 &&
              offsetof(CaBlock, entries) == 12);

struct ConfigImage {  // 629,896 bytes
    ImageHeader header;
    NetworkBlock network;
    MultiplexBlock continuous;
    MultiplexBlock shortTime;
    ServiceFrequencyBlock continuousServices;
    ServiceFrequencyBlock shortTimeServices;
    ParamBlock264 params264;
    CaBlock caDescriptions;
    OutputParamBlock outputParams;
    std::array<std::uint8_t, 4> reserved;  // never sent
};
static_assert(sizeof(ConfigImage) == 629896 && offsetof(ConfigImage, network) == 16 &&
              offsetof(ConfigImage, continuous) == 640 &&
              offsetof(ConfigImage, shortTime) == 314884 &&
              offsetof(ConfigImage, continuousServices) == 629128 &&
              offsetof(ConfigImage, shortTimeServices) == 629296 &&
              offsetof(ConfigImage, params264) == 629464 &&
              offsetof(ConfigImage, caDescriptions) == 629728 &&
              offsetof(ConfigImage, outputParams) == 629820 &&
              offsetof(ConfigImage, reserved) == 629892);
static_assert(std::is_trivially_copyable_v<ConfigImage>);

struct ServiceDescriptionImage {  // 41,944 bytes
    std::array<ServiceDescription, limits::serviceDescriptions> slots;
    std::uint32_t count;  // 0-40, big-endian on the wire
    std::array<std::uint8_t, 100> reserved;
};
static_assert(sizeof(ServiceDescriptionImage) == 41944 &&
              offsetof(ServiceDescriptionImage, count) == 41840);

// Clears the image and fills it from the tables, in host order.
void encodeImage(const ConfigTables& tables, ConfigImage& image);

// Replaces the tables by what the image (host order) holds, descriptions excepted: those of the new
// services are empty. A count above its array counts as the array's size.
void decodeImage(const ConfigImage& image, ConfigTables& tables);

// Turn exactly the big-endian fields of the whole image round, in used and unused slots alike.
void toNetworkOrder(ConfigImage& image);
void fromNetworkOrder(ConfigImage& image);

// The description image, in host order: the services of the continuous frames but the first, then
// those of the short-time frames, as descriptionOf has them. What exceeds its 40 slots is left out.
void encodeDescriptions(const ConfigTables& tables, const ServiceDescriptionImage& last,
                        ServiceDescriptionImage& image);

// What a service is called, where `last` is the description image that came last: its own
// description or, for one of a short-time frame whose own is all zero (decodeDescriptions leaves it
// so), the first slot with its id. Else a save after a load would wipe those names on the device.
const ServiceDescription& descriptionOf(const ServiceRecord& service, TableKind kind,
                                        const ServiceDescriptionImage& last);

// Gives each service of the continuous table the first description with its id, or an empty one.
// Services of the short-time table keep what they have.
void decodeDescriptions(const ServiceDescriptionImage& image, ConfigTables& tables);

// Descriptions for a configuration that came without: "节目<service id>", provider "内部生成"
// (GBK), for the services that encodeDescriptions sends.
void setDefaultDescriptions(ConfigTables& tables);

void toNetworkOrder(ServiceDescriptionImage& image);
void fromNetworkOrder(ServiceDescriptionImage& image);

void toNetworkOrder(InputChannelRecord& record);
void fromNetworkOrder(InputChannelRecord& record);

}  // namespace korvane
