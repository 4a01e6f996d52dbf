#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "model/bounded_list.h"

// The records of one multiplexer's configuration. Multi-byte numbers are in host order here; the
// records marked "image slot" are laid out exactly as in the device's configuration image, where
// the same fields travel big-endian. Texts inside records are GBK (code page 936) bytes.

namespace korvane {

// Array sizes of the configuration image, and with them the limits of the lists.
namespace limits {
inline constexpr std::size_t frames = 40;           // per multiplex table, ids 0-39
inline constexpr std::size_t timeSlots = 40;        // per frame, and in all continuous frames
inline constexpr std::size_t services = 8;          // per frame: one service a sub-frame
inline constexpr std::size_t components = 8;        // per service
inline constexpr std::size_t inputChannels = 60;    // of all types together
inline constexpr std::size_t channelTypes = 8;      // 0-7
inline constexpr std::size_t frequencyPoints = 16;  // beside the network's own
inline constexpr std::size_t neighbourNetworks = 16;
inline constexpr std::size_t serviceFrequencies = 40;  // per service/frequency table
inline constexpr std::size_t caSystems = 10;
inline constexpr std::size_t serviceDescriptions = 40;  // slots of the description image
inline constexpr std::size_t networkName = 256;         // GBK bytes
inline constexpr std::size_t countryCode = 3;           // characters
inline constexpr std::uint32_t leastSystemKbps = 1000;  // of the multiplex output
inline constexpr std::uint32_t mostSystemKbps = 50000;
}  // namespace limits

enum class TableKind : std::uint8_t { Continuous = 0, ShortTime = 1 };

// Image slot, 8 bytes.
struct FrequencyPoint {
    std::uint8_t channelNumber;           // 频点编号
    std::uint8_t bandwidth;               // 带宽: 0 is 8 MHz, 1 is 2 MHz; byte 1 of the three
    std::array<std::uint8_t, 2> carried;  // kept as they come
    std::uint32_t centreFrequency;        // units of 10 Hz; big-endian on the wire
    bool operator==(const FrequencyPoint&) const = default;
};
static_assert(sizeof(FrequencyPoint) == 8 && offsetof(FrequencyPoint, centreFrequency) == 4);

// Image slot, 12 bytes. Of the four leading bytes the first three are used by the editors.
struct NeighbourNetwork {
    std::uint8_t level;          // 网络级别, 1-5
    std::uint8_t channelNumber;  // 频点编号
    std::uint8_t bandwidth;      // as in FrequencyPoint
    std::uint8_t carried;
    std::uint32_t networkNumber;    // 网络号; big-endian on the wire
    std::uint32_t centreFrequency;  // units of 10 Hz; big-endian on the wire
    bool operator==(const NeighbourNetwork&) const = default;
};
static_assert(sizeof(NeighbourNetwork) == 12 && offsetof(NeighbourNetwork, networkNumber) == 4);

enum class ChannelType : std::uint8_t {
    Video = 0,
    Audio = 1,
    Dra = 2,
    Esg = 3,
    Ecm = 4,
    Emm = 5,
    Data = 6,
    Emergency = 7
};

// Image slot, 120 bytes: one input stream, in a channel list or as a component of a service.
// Fields named `carried…` are further coding parameters that no editor sets; those of 16 and 32
// bits still change byte order on the wire.
struct InputChannelRecord {
    std::uint8_t receiveMode;
    std::uint8_t position;  // in the flat list, rewritten at each rebuild
    std::array<std::uint8_t, 2> carried2;
    std::array<std::uint8_t, 4> address;  // IPv4, first octet first, never turned round
    std::uint16_t port;                   // big-endian on the wire
    std::array<std::uint8_t, 2> carried10;
    std::uint8_t type;  // ChannelType: names the list of the record
    std::uint8_t rtcpSync;
    std::uint8_t carried14;
    std::uint8_t streamParameter;  // of types 3, 6 and 7
    std::uint8_t videoCoding;      // 0 AVS, 1 H.264
    std::array<std::uint8_t, 3> carried17;
    std::uint8_t frameRateGiven;  // 1: videoFrameRate counts
    std::uint8_t carried21;
    std::uint16_t carried22;  // big-endian on the wire
    std::array<std::uint8_t, 4> carried24;
    std::uint16_t carried28;       // big-endian on the wire
    std::uint16_t carried30;       // big-endian on the wire
    std::uint16_t videoFrameRate;  // 0 25 Hz, 1 30, 2 12.5, 3 15; big-endian
    std::array<std::uint8_t, 2> carried34;
    std::uint8_t audioCoding;  // 0 DRA, 1 HE-AAC, 2 AAC
    std::uint8_t carried37;
    std::uint8_t audioParametersGiven;  // 1 once the audio dialog stored the record
    std::uint8_t carried39;
    std::uint16_t carried40;        // big-endian on the wire
    std::uint16_t audioSampleRate;  // index 0-8: 8 kHz … 96 kHz; big-endian
    std::uint32_t carried44;        // big-endian on the wire
    std::uint8_t dataUnitType;      // 128-159, types 4 and 5
    std::uint8_t payloadType;       // 0-127
    std::array<std::uint8_t, 2> carried50;
    std::uint32_t channelId;          // issued by the store; big-endian on the wire
    std::uint32_t maxSendIntervalMs;  // types 4 and 5; big-endian on the wire
    std::array<std::uint8_t, 60> carried60;
    bool operator==(const InputChannelRecord&) const = default;
};
static_assert(sizeof(InputChannelRecord) == 120 && offsetof(InputChannelRecord, address) == 4 &&
              offsetof(InputChannelRecord, port) == 8 && offsetof(InputChannelRecord, type) == 12 &&
              offsetof(InputChannelRecord, rtcpSync) == 13 &&
              offsetof(InputChannelRecord, streamParameter) == 15 &&
              offsetof(InputChannelRecord, videoCoding) == 16 &&
              offsetof(InputChannelRecord, frameRateGiven) == 20 &&
              offsetof(InputChannelRecord, carried22) == 22 &&
              offsetof(InputChannelRecord, carried28) == 28 &&
              offsetof(InputChannelRecord, videoFrameRate) == 32 &&
              offsetof(InputChannelRecord, audioCoding) == 36 &&
              offsetof(InputChannelRecord, audioParametersGiven) == 38 &&
              offsetof(InputChannelRecord, carried40) == 40 &&
              offsetof(InputChannelRecord, audioSampleRate) == 42 &&
              offsetof(InputChannelRecord, carried44) == 44 &&
              offsetof(InputChannelRecord, dataUnitType) == 48 &&
              offsetof(InputChannelRecord, payloadType) == 49 &&
              offsetof(InputChannelRecord, channelId) == 52 &&
              offsetof(InputChannelRecord, maxSendIntervalMs) == 56);

// Whether two records name the same stream: mode, address, port and what lies between, wherever in
// the list of channels either stood when it was copied.
inline bool sameStream(const InputChannelRecord& a, const InputChannelRecord& b) {
    return a.receiveMode == b.receiveMode && a.carried2 == b.carried2 && a.address == b.address &&
           a.port == b.port && a.carried10 == b.carried10;
}

// Up to 60 input channels in the order in which they are sent and filed.
using FlatChannelList = BoundedList<InputChannelRecord, limits::inputChannels>;

// Slot of the description image, 1,046 bytes, stored and sent verbatim but for the id's byte order.
struct ServiceDescription {
    std::uint16_t serviceId;               // match key; big-endian on the wire
    std::array<std::uint8_t, 3> language;  // code of the description's language
    std::array<std::uint8_t, 3> carried5;
    std::array<char, 256> name;      // 业务名称, GBK, zero-terminated
    std::array<char, 780> provider;  // GBK, zero-terminated, and what follows it
    std::uint16_t carried1044;
    bool operator==(const ServiceDescription&) const = default;
};
static_assert(sizeof(ServiceDescription) == 1046 && offsetof(ServiceDescription, language) == 2 &&
              offsetof(ServiceDescription, name) == 8 &&
              offsetof(ServiceDescription, provider) == 264 &&
              offsetof(ServiceDescription, carried1044) == 1044);

// 业务类型; 0 is shown and stored as Media.
enum class ServiceType : std::uint8_t { Media = 1, Dra = 2, Esg = 3, Emm = 4, Data = 5 };

// One service, in one sub-frame of a multiplex frame.
struct ServiceRecord {
    std::uint8_t subFrameNumber = 0;
    std::uint8_t scrambled = 0;   // 1: 加扰
    std::uint16_t serviceId = 0;  // 业务标识, unique in the continuous table
    ServiceDescription description{};
    std::array<std::uint8_t, 4> carried{};  // no place in image or file: lives with the record
    std::uint8_t type = 0;                  // ServiceType
    std::uint8_t encapsulation = 0;         // 封装模式: 1 is 模式1, 0 is 模式2
    std::uint8_t esgInternal = 0;           // 1: the device makes the ESG itself
    BoundedList<InputChannelRecord, limits::components> components;
    std::uint32_t bandwidth = 0;  // 带宽限制, bit/s
    bool operator==(const ServiceRecord&) const = default;
};

struct MultiplexFrame {
    std::uint8_t id = 0;                     // 复用帧标识, 0-39
    std::uint8_t rsRate = 0;                 // 0 (240,240), 1 (240,224), 2 (240,192), 3 (240,176)
    std::uint8_t byteInterleaving = 0;       // 字节交织模式
    std::uint8_t ldpcRate = 0;               // 0 is 1/2, 1 is 3/4
    std::uint8_t modulation = 0;             // 0 BPSK, 1 QPSK, 2 16QAM
    std::uint8_t scrambling = 0;             // 扰码方式
    TableKind kind = TableKind::Continuous;  // of the table it was decoded into; not in the image
    BoundedList<std::uint8_t, limits::timeSlots> timeSlots;
    BoundedList<ServiceRecord, limits::services> services;
    bool operator==(const MultiplexFrame&) const = default;
};

struct MultiplexTable {
    std::array<std::uint8_t, 3> header{};  // byte 0 the table id, byte 1 the channel number
    BoundedList<MultiplexFrame, limits::frames> frames;
    bool operator==(const MultiplexTable&) const = default;
};

// Image slot, 4 bytes: a service that is on the air at a frequency point.
struct ServiceFrequencyEntry {
    std::uint16_t serviceId;     // 业务号; big-endian on the wire
    std::uint8_t channelNumber;  // 频点号
    std::uint8_t spare;
    bool operator==(const ServiceFrequencyEntry&) const = default;
};
static_assert(sizeof(ServiceFrequencyEntry) == 4 &&
              offsetof(ServiceFrequencyEntry, channelNumber) == 2);

struct ServiceFrequencyTable {
    std::array<std::uint8_t, 4> header{};  // table bytes 0-3
    std::uint16_t value = 0;
    BoundedList<ServiceFrequencyEntry, limits::serviceFrequencies> entries;
    bool operator==(const ServiceFrequencyTable&) const = default;
};

// Image slot, 8 bytes.
struct CaSystemEntry {
    std::uint16_t caSystemId;      // CA_System_ID; big-endian on the wire
    std::uint16_t serviceId;       // 业务标识; big-endian on the wire
    std::uint8_t emmDataUnitType;  // 128-159
    std::uint8_t ecmDataUnitType;  // 128-159
    std::uint8_t ecmTransferMode;  // ECM传送方式
    std::uint8_t spare;
    bool operator==(const CaSystemEntry&) const = default;
};
static_assert(sizeof(CaSystemEntry) == 8 && offsetof(CaSystemEntry, emmDataUnitType) == 4);

struct CaDescriptionTable {
    std::uint8_t tableId = 0;       // byte 0 of the block
    std::uint8_t sendFlag = 0;      // byte 2
    std::uint8_t sectionCount = 0;  // byte 8
    BoundedList<CaSystemEntry, limits::caSystems> entries;
    bool operator==(const CaDescriptionTable&) const = default;
};

struct NetworkInfo {
    // Two words that the panel gives no meaning: their bytes never change order.
    std::array<std::uint8_t, 4> word0{};
    std::array<std::uint8_t, 4> word1{};
    std::uint16_t networkNumber = 0;    // 网络号
    std::uint8_t tableId = 0;           // first 8-bit field, image offset 26
    std::uint8_t carried27 = 0;         // second 8-bit field
    std::uint8_t level = 0;             // third 8-bit field, image offset 28: 网络级别, 1-5
    std::array<char, 4> countryCode{};  // 国家码, up to 3 characters and a zero
    std::string name;                   // 网络名称, GBK, at most limits::networkName bytes
    FrequencyPoint ownFrequency{};
    BoundedList<FrequencyPoint, limits::frequencyPoints> otherFrequencies;
    BoundedList<NeighbourNetwork, limits::neighbourNetworks> neighbours;
    bool operator==(const NetworkInfo&) const = default;
};

// 72 bytes: multiplex output parameters, of which the device settings page edits the first 20.
struct OutputParamBlock {
    std::uint16_t pmsPid;        // 0-0x1FFF; big-endian on the wire
    std::uint16_t deviceNumber;  // big-endian on the wire
    std::uint8_t timeLabelEnabled;
    std::uint8_t updateSequenceAdvance;  // 0, 1 or 2
    std::uint8_t carried6;
    std::uint8_t sendNextFrameParameters;
    std::uint8_t transmitDelaySeconds;
    std::uint8_t clockSource;                   // 0 internal, 1 external
    std::uint8_t isBackup;                      // of a hot-standby pair
    std::array<std::uint8_t, 4> backupAddress;  // IPv4, first octet first
    std::uint8_t alarmSwitches;   // bit 3 always set, bit 4 1PPS, bit 5 10M, bit 6 TOD
    std::uint32_t systemBitRate;  // bit/s; big-endian on the wire
    std::array<std::uint8_t, 16> carried20;
    // Bytes 36-39, host order in the panel and verbatim on the wire: nobody else reads them.
    std::uint32_t lastChannelId;
    std::array<std::uint8_t, 32> carried40;
    bool operator==(const OutputParamBlock&) const = default;
};
static_assert(sizeof(OutputParamBlock) == 72 && offsetof(OutputParamBlock, backupAddress) == 11 &&
              offsetof(OutputParamBlock, systemBitRate) == 16 &&
              offsetof(OutputParamBlock, lastChannelId) == 36);

// 264 bytes: carried whole. The device keeps its version texts in it.
struct ParamBlock264 {
    std::array<std::uint8_t, 2> carried0;
    std::uint16_t value2;                  // big-endian on the wire
    std::array<char, 16> softwareVersion;  // zero-terminated printable ASCII
    std::array<char, 16> hardwareVersion;  // likewise
    std::array<std::uint8_t, 228> carried36;
    bool operator==(const ParamBlock264&) const = default;
};
static_assert(sizeof(ParamBlock264) == 264 && offsetof(ParamBlock264, value2) == 2 &&
              offsetof(ParamBlock264, softwareVersion) == 4 &&
              offsetof(ParamBlock264, hardwareVersion) == 20);

// 144 bytes: the device's own network settings, nine zero-terminated texts of 16 bytes each.
struct DeviceParamBlock {
    using Text = std::array<char, 16>;
    struct Port {
        Text address, subnetMask, gateway;  // dotted decimal
    };
    Port controlPort;
    Text managementHost;  // dotted decimal
    Text controlMac;      // 12 hexadecimal characters, no separators
    Port servicePort;
    Text serviceMac;
};
static_assert(sizeof(DeviceParamBlock) == 144 && offsetof(DeviceParamBlock, managementHost) == 48 &&
              offsetof(DeviceParamBlock, controlMac) == 64 &&
              offsetof(DeviceParamBlock, servicePort) == 80 &&
              offsetof(DeviceParamBlock, serviceMac) == 128);

// Everything that the configuration image and the description image carry. 1.3 MB, more than a
// thread's whole stack may have: it lives on the heap, and only copyOf() makes another one.
struct ConfigTables {
    ConfigTables() = default;
    ConfigTables& operator=(const ConfigTables&) = default;

    std::array<std::uint8_t, 8> header{};    // image bytes 0-7; byte 1 is the transfer byte
    std::uint16_t headerValue = 0;           // image bytes 8-9, big-endian on the wire
    std::array<std::uint8_t, 2> header10{};  // image bytes 10-11
    std::uint8_t headerLength = 0;           // image byte 12
    NetworkInfo network;
    MultiplexTable continuous;                 // CMCT 持续业务复用配置表
    MultiplexTable shortTime;                  // SMCT 短时间业务复用配置表
    ServiceFrequencyTable continuousServices;  // CSCT 持续业务配置表
    ServiceFrequencyTable shortTimeServices;   // SSCT 短时间业务配置表
    ParamBlock264 params264{};
    CaDescriptionTable caDescriptions;  // 加密授权描述表
    OutputParamBlock outputParams{};
    bool operator==(const ConfigTables&) const = default;

    MultiplexTable& table(TableKind kind) {
        return kind == TableKind::ShortTime ? shortTime : continuous;
    }
    const MultiplexTable& table(TableKind kind) const {
        return kind == TableKind::ShortTime ? shortTime : continuous;
    }

    ServiceFrequencyTable& serviceTable(TableKind kind) {
        return kind == TableKind::ShortTime ? shortTimeServices : continuousServices;
    }
    const ServiceFrequencyTable& serviceTable(TableKind kind) const {
        return kind == TableKind::ShortTime ? shortTimeServices : continuousServices;
    }

    friend std::unique_ptr<ConfigTables> copyOf(const ConfigTables& tables) {
        return std::unique_ptr<ConfigTables>(new ConfigTables(tables));
    }

  private:
    ConfigTables(const ConfigTables&) = default;
};

}  // namespace korvane
