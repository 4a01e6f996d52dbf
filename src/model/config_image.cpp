#include "model/config_image.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "model/byte_order.h"
#include "model/configuration.h"

namespace korvane {
namespace {

// What follows names each big-endian field of the images once; both conversions walk it.

void turnFields(InputChannelRecord& record) {
    turn(record.port);
    turn(record.carried22);
    turn(record.carried28);
    turn(record.carried30);
    turn(record.videoFrameRate);
    turn(record.carried40);
    turn(record.audioSampleRate);
    turn(record.carried44);
    turn(record.channelId);
    turn(record.maxSendIntervalMs);
}

void turnFields(NetworkBlock& block) {
    turn(block.networkNumber);
    turn(block.ownFrequency.centreFrequency);
    for (FrequencyPoint& point : block.otherFrequencies) turn(point.centreFrequency);
    for (NeighbourNetwork& network : block.neighbours) {
        turn(network.networkNumber);
        turn(network.centreFrequency);
    }
}

void turnFields(ServiceSlot& slot) {
    turn(slot.head.serviceId);
    turn(slot.head.serviceIdAgain);
    turn(slot.head.componentCount);
    for (InputChannelRecord& component : slot.components) turnFields(component);
    turn(slot.bandwidth);
}

void turnFields(MultiplexBlock& block) {
    for (FrameSlot& frame : block.frames)
        for (ServiceSlot& service : frame.services) turnFields(service);
}

void turnFields(ServiceFrequencyBlock& block) {
    turn(block.value);
    turn(block.entryCount);
    for (ServiceFrequencyEntry& entry : block.entries) turn(entry.serviceId);
}

void turnFields(CaBlock& block) {
    turn(block.entryCount);
    for (CaSystemEntry& entry : block.entries) {
        turn(entry.caSystemId);
        turn(entry.serviceId);
    }
}

void turnFields(OutputParamBlock& block) {
    turn(block.pmsPid);
    turn(block.deviceNumber);
    turn(block.systemBitRate);
}

void turnFields(ConfigImage& image) {
    turn(image.header.value);
    turnFields(image.network);
    turnFields(image.continuous);
    turnFields(image.shortTime);
    turnFields(image.continuousServices);
    turnFields(image.shortTimeServices);
    turn(image.params264.value2);
    turnFields(image.caDescriptions);
    turnFields(image.outputParams);
}

void turnFields(ServiceDescriptionImage& image) {
    for (ServiceDescription& slot : image.slots) turn(slot.serviceId);
    turn(image.count);
}

void turnFields(Configuration& configuration) {
    for (InputChannelRecord& record : configuration.channels) turnFields(record);
    turnFields(configuration.image);
    turnFields(configuration.descriptions);
}

ImageHeader encodeHeader(const ConfigTables& tables) {
    return {tables.header, tables.headerValue, tables.header10, tables.headerLength, {}};
}

void decodeHeader(const ImageHeader& header, ConfigTables& tables) {
    tables.header = header.bytes;
    tables.headerValue = header.value;
    tables.header10 = header.bytes10;
    tables.headerLength = header.length;
}

void encodeNetwork(const NetworkInfo& network, NetworkBlock& block) {
    block = {};
    block.word0 = network.word0;
    block.word1 = network.word1;
    block.networkNumber = network.networkNumber;
    block.tableId = network.tableId;
    block.carried27 = network.carried27;
    block.level = network.level;
    block.countryCode = network.countryCode;
    const std::size_t length = std::min(network.name.size(), block.name.size());
    std::copy_n(network.name.begin(), length, block.name.begin());
    block.nameLength = static_cast<std::uint8_t>(length);
    block.ownFrequency = network.ownFrequency;
    block.otherFrequencyCount = static_cast<std::uint8_t>(network.otherFrequencies.size());
    block.otherFrequencies = network.otherFrequencies.slots();
    block.neighbourCount = static_cast<std::uint8_t>(network.neighbours.size());
    block.neighbours = network.neighbours.slots();
}

void decodeNetwork(const NetworkBlock& block, NetworkInfo& network) {
    network.word0 = block.word0;
    network.word1 = block.word1;
    network.networkNumber = block.networkNumber;
    network.tableId = block.tableId;
    network.carried27 = block.carried27;
    network.level = block.level;
    network.countryCode = block.countryCode;
    network.name = fieldText(block.name);
    network.ownFrequency = block.ownFrequency;
    network.otherFrequencies.assign(block.otherFrequencies, block.otherFrequencyCount);
    network.neighbours.assign(block.neighbours, block.neighbourCount);
}

void encodeService(const ServiceRecord& service, ServiceSlot& slot) {
    slot.head = {service.subFrameNumber,
                 service.scrambled,
                 service.serviceId,
                 service.serviceId,
                 static_cast<std::uint16_t>(service.components.size()),
                 service.encapsulation,
                 service.type,
                 service.esgInternal,
                 0};
    slot.components = service.components.slots();
    slot.bandwidth = service.bandwidth;
}

void decodeService(const ServiceSlot& slot, ServiceRecord& service) {
    const ServiceHead& head = slot.head;
    service.subFrameNumber = head.subFrameNumber;
    service.scrambled = head.scrambled;
    service.serviceId = head.serviceIdAgain;
    service.description = {};
    service.carried = {};
    service.type = head.type;
    service.encapsulation = head.encapsulation;
    service.esgInternal = head.esgInternal;
    service.components.assign(slot.components, head.componentCount);
    service.bandwidth = slot.bandwidth;
}

void encodeFrame(const MultiplexFrame& frame, FrameSlot& slot) {
    slot.head = {frame.id,
                 frame.rsRate,
                 frame.byteInterleaving,
                 frame.ldpcRate,
                 frame.modulation,
                 frame.scrambling,
                 static_cast<std::uint8_t>(frame.timeSlots.size()),
                 frame.timeSlots.slots(),
                 static_cast<std::uint8_t>(frame.services.size())};
    const std::size_t used = frame.services.size();
    for (std::size_t i = 0; i < used; ++i) encodeService(frame.services[i], slot.services[i]);
    std::fill(slot.services.begin() + used, slot.services.end(), ServiceSlot{});
}

void decodeFrame(const FrameSlot& slot, TableKind kind, MultiplexFrame& frame) {
    const FrameHead& head = slot.head;
    frame.id = head.id;
    frame.rsRate = head.rsRate;
    frame.byteInterleaving = head.byteInterleaving;
    frame.ldpcRate = head.ldpcRate;
    frame.modulation = head.modulation;
    frame.scrambling = head.scrambling;
    frame.kind = kind;
    frame.timeSlots.assign(head.timeSlots, head.timeSlotCount);
    frame.services.resize(head.serviceCount);
    for (std::size_t i = 0; i < frame.services.size(); ++i)
        decodeService(slot.services[i], frame.services[i]);
}

void encodeMultiplex(const MultiplexTable& table, MultiplexBlock& block) {
    block.header = table.header;
    const std::size_t used = table.frames.size();
    block.frameCount = static_cast<std::uint8_t>(used);
    for (std::size_t i = 0; i < used; ++i) encodeFrame(table.frames[i], block.frames[i]);
    std::memset(block.frames.data() + used, 0, (block.frames.size() - used) * sizeof(FrameSlot));
}

void decodeMultiplex(const MultiplexBlock& block, TableKind kind, MultiplexTable& table) {
    table.header = block.header;
    table.frames.resize(block.frameCount);
    for (std::size_t i = 0; i < table.frames.size(); ++i)
        decodeFrame(block.frames[i], kind, table.frames[i]);
}

ServiceFrequencyBlock encodeServiceFrequencies(const ServiceFrequencyTable& table) {
    return {table.header, table.value, static_cast<std::uint16_t>(table.entries.size()),
            table.entries.slots()};
}

void decodeServiceFrequencies(const ServiceFrequencyBlock& block, ServiceFrequencyTable& table) {
    table.header = block.header;
    table.value = block.value;
    table.entries.assign(block.entries, block.entryCount);
}

CaBlock encodeCa(const CaDescriptionTable& table) {
    CaBlock block{};
    block.tableId = table.tableId;
    block.sendFlag = table.sendFlag;
    block.sectionCount = table.sectionCount;
    block.entryCount = static_cast<std::uint16_t>(table.entries.size());
    block.entries = table.entries.slots();
    return block;
}

void decodeCa(const CaBlock& block, CaDescriptionTable& table) {
    table.tableId = block.tableId;
    table.sendFlag = block.sendFlag;
    table.sectionCount = block.sectionCount;
    table.entries.assign(block.entries, block.entryCount);
}

// Calls visit(service, kind) for the services that own a slot of the description image, in its
// order. The first continuous frame carries the control tables' own data and gets none.
template <class Tables, class Visit>
void forEachDescribedService(Tables& tables, Visit visit) {
    auto& continuous = tables.continuous.frames;
    for (std::size_t i = 1; i < continuous.size(); ++i)
        for (auto& service : continuous[i].services) visit(service, TableKind::Continuous);
    for (auto& frame : tables.shortTime.frames)
        for (auto& service : frame.services) visit(service, TableKind::ShortTime);
}

// The first slot with this id, or null.
const ServiceDescription* findDescription(const ServiceDescriptionImage& image,
                                          std::uint16_t serviceId) {
    const std::span slots(image.slots.data(),
                          std::min<std::size_t>(image.count, image.slots.size()));
    const auto found = std::ranges::find(slots, serviceId, &ServiceDescription::serviceId);
    return found != slots.end() ? &*found : nullptr;
}

}  // namespace

void encodeImage(const ConfigTables& tables, ConfigImage& image) {
    image.header = encodeHeader(tables);
    encodeNetwork(tables.network, image.network);
    encodeMultiplex(tables.continuous, image.continuous);
    encodeMultiplex(tables.shortTime, image.shortTime);
    image.continuousServices = encodeServiceFrequencies(tables.continuousServices);
    image.shortTimeServices = encodeServiceFrequencies(tables.shortTimeServices);
    image.params264 = tables.params264;
    image.caDescriptions = encodeCa(tables.caDescriptions);
    image.outputParams = tables.outputParams;
    image.reserved = {};
}

void decodeImage(const ConfigImage& image, ConfigTables& tables) {
    decodeHeader(image.header, tables);
    decodeNetwork(image.network, tables.network);
    decodeMultiplex(image.continuous, TableKind::Continuous, tables.continuous);
    decodeMultiplex(image.shortTime, TableKind::ShortTime, tables.shortTime);
    decodeServiceFrequencies(image.continuousServices, tables.continuousServices);
    decodeServiceFrequencies(image.shortTimeServices, tables.shortTimeServices);
    tables.params264 = image.params264;
    decodeCa(image.caDescriptions, tables.caDescriptions);
    tables.outputParams = image.outputParams;
}

void toNetworkOrder(ConfigImage& image) {
    turnFields(image);
}
void fromNetworkOrder(ConfigImage& image) {
    turnFields(image);
}
void toNetworkOrder(ServiceDescriptionImage& image) {
    turnFields(image);
}
void fromNetworkOrder(ServiceDescriptionImage& image) {
    turnFields(image);
}
void toNetworkOrder(InputChannelRecord& record) {
    turnFields(record);
}
void fromNetworkOrder(InputChannelRecord& record) {
    turnFields(record);
}

void toNetworkOrder(Configuration& configuration) {
    turnFields(configuration);
}
void fromNetworkOrder(Configuration& configuration) {
    turnFields(configuration);
}

const ServiceDescription& descriptionOf(const ServiceRecord& service, TableKind kind,
                                        const ServiceDescriptionImage& last) {
    static constexpr ServiceDescription none{};
    if (kind == TableKind::Continuous || service.description != none) return service.description;
    const ServiceDescription* found = findDescription(last, service.serviceId);
    return found ? *found : service.description;
}

void encodeDescriptions(const ConfigTables& tables, const ServiceDescriptionImage& last,
                        ServiceDescriptionImage& image) {
    image = {};
    forEachDescribedService(tables, [&](const ServiceRecord& service, TableKind kind) {
        if (image.count < image.slots.size())
            image.slots[image.count++] = descriptionOf(service, kind, last);
    });
}

void decodeDescriptions(const ServiceDescriptionImage& image, ConfigTables& tables) {
    for (MultiplexFrame& frame : tables.continuous.frames) {
        for (ServiceRecord& service : frame.services) {
            const ServiceDescription* found = findDescription(image, service.serviceId);
            service.description = found ? *found : ServiceDescription{};
        }
    }
}

void setDefaultDescriptions(ConfigTables& tables) {
    forEachDescribedService(tables, [](ServiceRecord& service, TableKind) {
        ServiceDescription& description = service.description;
        description = {};
        description.serviceId = service.serviceId;
        const std::string name = "\xBD\xDA\xC4\xBF" + std::to_string(service.serviceId);  // 节目
        std::copy(name.begin(), name.end(), description.name.begin());
        constexpr std::string_view provider = "\xC4\xDA\xB2\xBF\xC9\xFA\xB3\xC9";  // 内部生成
        std::copy(provider.begin(), provider.end(), description.provider.begin());
    });
}

}  // namespace korvane
