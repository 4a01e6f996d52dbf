#pragma once

#include <cstring>
#include <memory>
#include <random>

#include "model/config_image.h"
#include "model/config_model.h"

namespace korvane::test {

// Changes a model's tables as a load would, past the operations of the store: change(tables).
template <class Change>
void editTables(ConfigModel& model, Change change) {
    const auto tables = copyOf(model.tables());
    change(*tables);
    const auto configuration = model.configuration();
    encodeImage(*tables, configuration->image);
    encodeDescriptions(*tables, configuration->descriptions);
    model.load(*configuration);
}

inline void loadImage(ConfigModel& model, const ConfigImage& image) {
    editTables(model, [&image](ConfigTables& tables) { decodeImage(image, tables); });
}

inline InputChannelRecord channel(ChannelType type, std::uint8_t lastOctet, std::uint16_t port) {
    InputChannelRecord record{};
    record.type = static_cast<std::uint8_t>(type);
    record.address = {225, 1, 2, lastOctet};
    record.port = port;
    return record;
}

inline ServiceRecord service(std::uint8_t subFrame, std::uint16_t id) {
    ServiceRecord record;
    record.subFrameNumber = subFrame;
    record.serviceId = id;
    record.description.serviceId = id;
    return record;
}

inline MultiplexFrame frame(std::uint8_t id, std::initializer_list<ServiceRecord> services = {}) {
    MultiplexFrame result;
    result.id = id;
    for (const ServiceRecord& record : services) result.services.append(record);
    return result;
}

// An image as a device could send it, in host order: random wherever it may hold anything, zero in
// unused slots and reserved bytes. `full` fills every list to its limit.
inline std::unique_ptr<ConfigImage> randomImage(unsigned seed, bool full = false) {
    std::mt19937 random(seed);
    const auto byte = [&random] { return static_cast<std::uint8_t>(random()); };
    const auto fill = [&byte](auto& object) {
        auto* bytes = reinterpret_cast<std::uint8_t*>(&object);
        for (std::size_t i = 0; i < sizeof object; ++i) bytes[i] = byte();
    };
    const auto count = [&random, full](std::size_t limit) {
        return full ? limit : random() % (limit + 1);
    };
    auto image = std::make_unique<ConfigImage>();
    fill(image->header);
    image->header.reserved = {};

    NetworkBlock& network = image->network;
    fill(network.word0);
    fill(network.word1);
    fill(network.networkNumber);
    network.tableId = 1;
    network.carried27 = byte();
    network.level = 3;
    std::memcpy(network.countryCode.data(), "CHN", 4);
    network.nameLength = static_cast<std::uint8_t>(count(255));
    for (std::size_t i = 0; i < network.nameLength; ++i)
        network.name[i] = static_cast<char>(byte() | 1);
    fill(network.ownFrequency);
    network.otherFrequencyCount = static_cast<std::uint8_t>(count(limits::frequencyPoints));
    for (std::size_t i = 0; i < network.otherFrequencyCount; ++i) fill(network.otherFrequencies[i]);
    network.neighbourCount = static_cast<std::uint8_t>(count(limits::neighbourNetworks));
    for (std::size_t i = 0; i < network.neighbourCount; ++i) fill(network.neighbours[i]);

    for (MultiplexBlock* block : {&image->continuous, &image->shortTime}) {
        fill(block->header);
        block->frameCount = static_cast<std::uint8_t>(count(limits::frames));
        for (std::size_t f = 0; f < block->frameCount; ++f) {
            FrameSlot& slot = block->frames[f];
            fill(slot.head);
            slot.head.timeSlotCount = static_cast<std::uint8_t>(count(limits::timeSlots));
            for (std::size_t i = slot.head.timeSlotCount; i < limits::timeSlots; ++i)
                slot.head.timeSlots[i] = 0;
            slot.head.serviceCount = static_cast<std::uint8_t>(count(limits::services));
            for (std::size_t s = 0; s < slot.head.serviceCount; ++s) {
                ServiceSlot& one = slot.services[s];
                fill(one.head);
                one.head.serviceIdAgain = one.head.serviceId;
                one.head.reserved = 0;
                one.head.componentCount = static_cast<std::uint16_t>(count(limits::components));
                for (std::size_t c = 0; c < one.head.componentCount; ++c) fill(one.components[c]);
                fill(one.bandwidth);
            }
        }
    }
    for (ServiceFrequencyBlock* block : {&image->continuousServices, &image->shortTimeServices}) {
        fill(block->header);
        fill(block->value);
        block->entryCount = static_cast<std::uint16_t>(count(limits::serviceFrequencies));
        for (std::size_t i = 0; i < block->entryCount; ++i) fill(block->entries[i]);
    }
    fill(image->params264);
    CaBlock& ca = image->caDescriptions;
    ca.tableId = byte();
    ca.sendFlag = byte();
    ca.sectionCount = byte();
    ca.entryCount = static_cast<std::uint16_t>(count(limits::caSystems));
    for (std::size_t i = 0; i < ca.entryCount; ++i) fill(ca.entries[i]);
    fill(image->outputParams);
    return image;
}

}  // namespace korvane::test
