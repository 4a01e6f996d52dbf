#pragma once

#include <memory>
#include <string>
#include <vector>

#include "model/configuration.h"

// A configuration taken apart: all frames of both tables in one list, all their services, and all
// components of those, each with what it is in. No list is longer than its slots, whatever its
// count says.

namespace korvane::review {

struct FrameAt {
    TableKind kind;
    std::size_t index;  // in its table
    const MultiplexFrame& frame;
    const FrameHead& head;  // as it came
};

struct ServiceAt {
    const FrameAt& at;
    const ServiceRecord& service;
    const ServiceHead& head;
};

struct ComponentAt {
    const ServiceAt& at;
    const InputChannelRecord& channel;
};

struct PairAt {
    TableKind kind;
    ServiceFrequencyEntry entry;
};

struct Whole {
    explicit Whole(const Configuration& configuration);
    Whole(const Whole&) = delete;
    Whole& operator=(const Whole&) = delete;

    const Configuration& content;
    const std::unique_ptr<const ConfigTables> tables;
    std::vector<FrameAt> frames;
    std::vector<ServiceAt> services;
    std::vector<ComponentAt> components;
    std::vector<PairAt> pairs;

  private:
    void addFrames(TableKind kind, const MultiplexBlock& block);
    void addServices(const FrameAt& at, const FrameSlot& slot);
    void addPairs(TableKind kind);
};

// Where a person finds it: "frame 3, service 101".
std::string placeOf(const FrameAt& frame);
std::string placeOf(const ServiceAt& service);
std::string placeOf(const ComponentAt& component);
std::string placeOf(const PairAt& pair);
std::string placeOf(const InputChannelRecord& channel);
std::string placeOf(const FrequencyPoint& point);
std::string placeOf(const NeighbourNetwork& network);
std::string placeOf(const CaSystemEntry& entry);
std::string placeOf(const NetworkBlock&);
std::string placeOf(const OutputParamBlock&);
std::string placeOf(const DeviceParamBlock&);

// "video 239.1.10.1:5000".
std::string channelTerm(const InputChannelRecord& channel);

}  // namespace korvane::review
