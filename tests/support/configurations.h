#pragma once

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <type_traits>

#include "model/config_image.h"
#include "model/config_model.h"
#include "model/object_bytes.h"

namespace korvane::test {

// Changes a model's tables as a load would, past the operations of the store: change(tables).
template <class Change>
void editTables(ConfigModel& model, Change change) {
    const auto tables = copyOf(model.tables());
    change(*tables);
    const auto configuration = model.configuration();
    encodeImage(*tables, configuration->image);
    encodeDescriptions(*tables, {}, configuration->descriptions);
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
    const auto fill = [&random](auto&... objects) {
        const auto one = [&random](auto bytes) {
            for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
        };
        (one(writableBytesOf(objects)), ...);
    };
    // As many of the slots as `count` then says.
    const auto fillSome = [&](auto& slots, auto& count) {
        const std::size_t used = full ? slots.size() : random() % (slots.size() + 1);
        for (std::size_t i = 0; i < used; ++i) fill(slots[i]);
        count = static_cast<std::remove_reference_t<decltype(count)>>(used);
    };
    auto image = std::make_unique<ConfigImage>();
    NetworkBlock& network = image->network;
    fill(image->header, network.word0, network.word1, network.networkNumber, network.tableId,
         network.carried27, network.level, network.ownFrequency);
    image->header.reserved = {};
    std::memcpy(network.countryCode.data(), "CHN", 4);
    network.nameLength = 200;
    std::fill_n(network.name.begin(), 200, static_cast<char>('A' + seed % 26));
    fillSome(network.otherFrequencies, network.otherFrequencyCount);
    fillSome(network.neighbours, network.neighbourCount);

    for (MultiplexBlock* block : {&image->continuous, &image->shortTime}) {
        fill(block->header);
        block->frameCount = static_cast<std::uint8_t>(full ? 40 : random() % 41);
        for (std::size_t f = 0; f < block->frameCount; ++f) {
            FrameSlot& frame = block->frames[f];
            fill(frame.head);
            frame.head.timeSlots = {};
            fillSome(frame.head.timeSlots, frame.head.timeSlotCount);
            fillSome(frame.services, frame.head.serviceCount);
            for (std::size_t s = 0; s < frame.head.serviceCount; ++s) {
                ServiceSlot& service = frame.services[s];
                service.head.serviceIdAgain = service.head.serviceId;
                service.head.reserved = 0;
                service.components = {};
                fillSome(service.components, service.head.componentCount);
            }
        }
    }
    for (ServiceFrequencyBlock* block : {&image->continuousServices, &image->shortTimeServices}) {
        fill(block->header, block->value);
        fillSome(block->entries, block->entryCount);
    }
    CaBlock& ca = image->caDescriptions;
    fill(image->params264, image->outputParams, ca.tableId, ca.sendFlag, ca.sectionCount);
    fillSome(ca.entries, ca.entryCount);
    return image;
}

}  // namespace korvane::test
