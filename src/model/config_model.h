#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "model/configuration.h"
#include "model/records.h"

namespace korvane {

// Slot numbers of one frame.
using TimeSlotList = BoundedList<std::uint8_t, limits::timeSlots>;

// The whole configuration that the panel holds, and the operations on it.
// Not locked: the editors and a running transfer are kept apart by the modal progress dialog.
//
// The operations of the editors take and give whole records by value and return 0 or, with nothing
// changed, -1: for an index that names no record, and for a change that a limit of the device
// forbids; -2 for one of frames or services that would need more than 40 entries in the CSCT.
// Values are checked before, by ConfigChecks.
class ConfigModel {
  public:
    const ConfigTables& tables() const { return tables_; }

    const DeviceParamBlock& deviceParams() const { return deviceParams_; }
    void setDeviceParams(const DeviceParamBlock& params) { deviceParams_ = params; }

    // The channels of one type (0-7), in the order in which the editors show them.
    const FlatChannelList& channels(std::size_t type) const { return channels_[type]; }

    // All channels, rebuilt from the eight lists: types 0 to 7, each record's place in byte 1.
    const FlatChannelList& flatChannels() const { return flatChannels_; }

    // Replaces all channels and sorts them into the eight lists by their type byte, keeping order.
    // A record whose type names no list is left out: nothing could show, send or file it again.
    void setFlatChannels(const FlatChannelList& channels);

    // Replaces everything, the device parameters only if asked to, by what came from a device or a
    // file. It is taken as it is: none of the operations below has a hand in it.
    void load(const Configuration& from, bool withDeviceParams = true);

    // Everything, in the form in which it is sent and filed.
    std::unique_ptr<Configuration> configuration() const;

    // What a service of a table is called, see config_image.h.
    const ServiceDescription& description(TableKind kind, const ServiceRecord& service) const {
        return descriptionOf(service, kind, lastDescriptions_);
    }

    // Empties everything: what an all-zero image and an all-zero parameter block decode to.
    void resetModel();

    // The text that names the device, and with it the cache file; and the directory of that file.
    void setDeviceKey(std::string key) { deviceKey_ = std::move(key); }
    const std::string& deviceKey() const { return deviceKey_; }
    void setCacheDirectory(std::filesystem::path directory) {
        cacheDirectory_ = std::move(directory);
    }

    // A file of the device, in the directory of the cache file: the key and this ending. Empty when
    // the key cannot be a file's name.
    std::filesystem::path deviceFile(std::u8string_view ending) const;

    // See config_file.h for results and the layout.
    int saveConfigFile(const std::filesystem::path& path) const;
    // Input channels of the file beyond the 60 that the model holds go to `leftOut`.
    int loadConfigFile(const std::filesystem::path& path, bool withDeviceParams,
                       ChannelsLeftOut& leftOut);
    int saveCacheFile() const;
    // A file that is not taken leaves an empty model, not a part of what it holds.
    int loadCacheFile(ChannelsLeftOut& leftOut);

    // Table set and image header.

    // Keeps the low 8 bits as the current set.
    int selectTableSet(std::uint32_t index);
    std::uint8_t tableSet() const { return tableSet_; }
    int getHeader(std::array<std::uint8_t, 12>& bytes, std::uint8_t& length) const;
    int setHeader(const std::array<std::uint8_t, 12>& bytes, std::uint8_t length);

    // Input channels, by type (0-7) and index in the type's list.

    static constexpr std::uint32_t atEnd = 0xFFFFFFFF;

    int getChannels(std::size_t type, FlatChannelList& list) const;
    // Issues a channel id above all that were issued before, and inserts before `position`.
    // -1 also for a 61st channel: the device's answer is cut at 60, and it would be lost.
    int addChannel(InputChannelRecord record, std::uint32_t position);
    int removeChannel(std::size_t type, std::size_t index);
    int clearChannels(std::size_t type);
    // The record's type byte selects the list.
    int updateChannel(std::size_t index, const InputChannelRecord& record);
    // Where a frame stands; index -1 for one not yet stored.
    struct FramePlace {
        TableKind kind;
        int index;
        bool operator==(const FramePlace&) const = default;
    };
    // The channels of a type that no other frame uses, of either table, in list order: those that
    // the services of this frame may.
    FlatChannelList candidateChannels(std::size_t type, const FramePlace& frame) const;

    // Network.

    int getNetworkInfo(NetworkInfo& info) const;
    // Replaces all of it and rebuilds the current channel's part of the CSCT.
    int setNetworkInfo(const NetworkInfo& info);
    int getFrequencyPoint(std::size_t index, FrequencyPoint& point) const;
    int setFrequencyPoint(std::size_t index, const FrequencyPoint& point);
    int addFrequencyPoint(const FrequencyPoint& point);
    // Takes the CSCT entries of its channel number along.
    int removeFrequencyPoint(std::size_t index);
    int getNeighbourNetwork(std::size_t index, NeighbourNetwork& network) const;
    int setNeighbourNetwork(std::size_t index, const NeighbourNetwork& network);
    int addNeighbourNetwork(const NeighbourNetwork& network);
    int removeNeighbourNetwork(std::size_t index);

    // Multiplex tables.
    // After a change of the continuous table's frames, services included, every frame's slots are
    // numbered anew, consecutively in list order from 0, and the CSCT entries of the table's
    // channel number are replaced by one for each service of the frames with an id other than 0, at
    // the front. The short-time table's frames keep their slot numbers.

    // Byte 0, the table id, equal to 4 selects the short-time table; byte 1 is the channel number.
    int setMultiplexHeader(const std::array<std::uint8_t, 3>& header);

    int getFrame(TableKind kind, int index, MultiplexFrame& frame) const;
    // A position that names no frame appends.
    int addFrame(TableKind kind, const MultiplexFrame& frame, int position = -1);
    int updateFrame(TableKind kind, int index, const MultiplexFrame& frame);
    int removeFrame(TableKind kind, int index);
    // What updateFrame would answer, or addFrame for index -1: a form asks before it closes.
    int checkFrame(TableKind kind, int index, const MultiplexFrame& frame) const;
    // 0 without frames.
    std::uint8_t highestFrameId(TableKind kind) const;

    // One slot number of a frame, in place: the next update of the frame renumbers.
    int setTimeSlot(TableKind kind, int frame, std::size_t index, std::uint8_t slot);
    int removeTimeSlot(TableKind kind, int frame, std::size_t index);
    // The numbers that renumbering would give a frame of a table with `count` slots (held to 40):
    // from the sum of those before it; frame -1 is one not yet stored, behind all others.
    TimeSlotList allocateTimeSlots(TableKind kind, int frame, std::size_t count) const;

    int addService(TableKind kind, int frame, const ServiceRecord& service);
    int updateService(TableKind kind, int frame, int index, const ServiceRecord& service);
    int removeService(TableKind kind, int frame, int index);

    struct ServicePlace {
        TableKind kind;
        std::size_t frame, service;  // indexes
        bool operator==(const ServicePlace&) const = default;
    };
    // The first service with this id, the continuous table first.
    std::optional<ServicePlace> findService(std::uint16_t serviceId) const;

    // Service/frequency tables.

    int getServiceFrequency(TableKind kind, std::size_t index, ServiceFrequencyEntry& entry) const;
    int setServiceFrequency(TableKind kind, std::size_t index, const ServiceFrequencyEntry& entry);
    // Position -1 appends.
    int addServiceFrequency(TableKind kind, const ServiceFrequencyEntry& entry, int position = -1);
    int removeServiceFrequency(TableKind kind, std::size_t index);
    // Byte 0 of the table's header.
    int setServiceFrequencyTableId(TableKind kind, std::uint8_t id);

    // Opaque blocks and conditional access.

    void setOutputParams(const OutputParamBlock& params) { tables_.outputParams = params; }
    int get264Block(ParamBlock264& block) const;
    int set264Block(const ParamBlock264& block);
    int getCaTable(CaDescriptionTable& table) const;
    int setCaTable(const CaDescriptionTable& table);
    int appendCaSystem(const CaSystemEntry& entry);

    // Places kept for operations that this device has no use for.
    int reserved(int) { return 0; }
    int reserved(int, int) { return 0; }
    int reserved(int, int, int) { return 0; }

  private:
    struct Demand;

    void rebuildFlatChannels();
    bool usedElsewhere(const InputChannelRecord& channel, const FramePlace& place) const;
    std::uint32_t nextChannelId() const;

    ServiceFrequencyTable& serviceTable(TableKind kind);
    const ServiceFrequencyTable& serviceTable(TableKind kind) const;
    Demand demandOfContinuous() const;
    int exceeded(const Demand& gone, const Demand& added) const;
    void renumberTimeSlots();
    void rebuildServiceFrequencies();
    void afterFrameChange(TableKind kind);

    ConfigTables tables_;
    std::array<FlatChannelList, limits::channelTypes> channels_;
    FlatChannelList flatChannels_;
    DeviceParamBlock deviceParams_{};
    ServiceDescriptionImage lastDescriptions_{};  // of the last load
    std::string deviceKey_;
    std::filesystem::path cacheDirectory_;
    std::uint8_t tableSet_ = 0;
};

}  // namespace korvane
