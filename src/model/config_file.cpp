#include "model/config_file.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <fstream>
#include <random>
#include <string>
#include <system_error>
#include <thread>

namespace korvane {
namespace config_file {
namespace {

void convertService(const OldServiceSlot& old, ServiceSlot& slot) {
    slot.head = old.head;
    slot.head.componentCount =
        std::min<std::uint16_t>(old.head.componentCount, old.components.size());
    std::copy(old.components.begin(), old.components.end(), slot.components.begin());
    slot.bandwidth = old.bandwidth;
}

// Frame 0 carries the control tables: one service in each of its eight sub-frames.
void padServices(FrameSlot& frame) {
    for (std::size_t i = frame.head.serviceCount; i < frame.services.size(); ++i) {
        ServiceHead& head = frame.services[i].head;
        if (i > 0) {
            const ServiceHead& previous = frame.services[i - 1].head;
            head.subFrameNumber = static_cast<std::uint8_t>(previous.subFrameNumber + 1);
            // Of two ids that differ the second is the one that counts.
            head.serviceId = static_cast<std::uint16_t>(previous.serviceIdAgain + 1);
            head.serviceIdAgain = head.serviceId;
        }
        ++frame.head.serviceCount;
    }
}

void convertFrame(const OldFrameSlot& old, FrameSlot& frame) {
    frame.head = old.head;
    frame.head.serviceCount = std::min<std::uint8_t>(old.head.serviceCount, old.services.size());
    for (std::size_t i = 0; i < frame.head.serviceCount; ++i)
        convertService(old.services[i], frame.services[i]);
    if (frame.head.id == 0) padServices(frame);
}

void convertBlock(const OldMultiplexBlock& old, MultiplexBlock& block) {
    block.header = old.header;
    block.frameCount = std::min<std::uint8_t>(old.frameCount, old.frames.size());
    for (std::size_t i = 0; i < block.frameCount; ++i) convertFrame(old.frames[i], block.frames[i]);
}

// Reads what is there of a fixed-size object; the bytes that the file lacks keep their value.
template <class T>
bool readObject(std::istream& file, T& object) {
    file.read(reinterpret_cast<char*>(&object), sizeof object);
    return file.gcount() == static_cast<std::streamsize>(sizeof object);
}

template <class T>
void writeObject(std::ostream& file, const T& object) {
    file.write(reinterpret_cast<const char*>(&object), sizeof object);
}

bool readChannels(std::istream& file, std::uint32_t count, FlatChannelList& channels) {
    if (count > limits::inputChannels) return false;
    for (std::uint32_t i = 0; i < count; ++i) {
        InputChannelRecord record{};
        if (!readObject(file, record)) return false;
        channels.append(record);
    }
    return true;
}

// The file's image in the current layout; null for an unknown version. What the file lacks is zero.
std::unique_ptr<ConfigImage> readImage(std::istream& file, std::uint32_t version) {
    auto image = std::make_unique<ConfigImage>();
    if (version == currentVersion) {
        readObject(file, *image);
    } else if (version == olderVersion) {
        auto old = std::make_unique<OldConfigImage>();
        readObject(file, *old);
        convertOldImage(*old, *image);
    } else {
        return nullptr;
    }
    return image;
}

void writeConfiguration(std::ostream& file, const ConfigModel& model) {
    const FlatChannelList& channels = model.flatChannels();
    writeObject(file, Header{currentVersion, {}, static_cast<std::uint32_t>(channels.size())});
    for (const InputChannelRecord& record : channels) writeObject(file, record);

    auto image = std::make_unique<ConfigImage>();
    encodeImage(model.tables(), *image);
    writeObject(file, *image);
    writeObject(file, model.deviceParams());
    auto descriptions = std::make_unique<ServiceDescriptionImage>();
    encodeDescriptions(model.tables(), *descriptions);
    writeObject(file, *descriptions);
}

// Puts `from` in the place of `to`. A scanner or a copying tool may hold the old file for a moment,
// so a refusal is tried again, for a fifth of a second at most.
bool replaceFile(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::error_code error;
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::filesystem::rename(from, to, error);
        if (!error) return true;
        if (error != std::errc::permission_denied) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return false;
}

}  // namespace

void convertOldImage(const OldConfigImage& old, ConfigImage& image) {
    image = {};
    image.header = old.header;
    image.network = old.network;
    convertBlock(old.continuous, image.continuous);
    convertBlock(old.shortTime, image.shortTime);
    image.continuousServices = old.continuousServices;
    image.shortTimeServices = old.shortTimeServices;
    image.params264 = old.params264;
    image.caDescriptions = old.caDescriptions;
    image.outputParams = old.outputParams;
}

}  // namespace config_file

using namespace config_file;

int ConfigModel::saveConfigFile(const std::filesystem::path& path) {
    rebuildFlatChannels();
    // Written beside its place and moved there whole: a full disk or a power cut leaves the old
    // file.
    std::filesystem::path beside = path;
    beside += ".new";
    std::ofstream file(beside, std::ios::binary | std::ios::trunc);
    if (!file) return cannotOpen;
    writeConfiguration(file, *this);
    file.close();
    if (!file.fail() && replaceFile(beside, path)) return ok;
    std::error_code ignored;
    std::filesystem::remove(beside, ignored);
    return cannotOpen;
}

int ConfigModel::loadConfigFile(const std::filesystem::path& path, bool withDeviceParams) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return cannotOpen;

    Header header{};
    FlatChannelList channels;
    if (!readObject(file, header) || !readChannels(file, header.channelCount, channels))
        return badChannelCount;
    setFlatChannels(channels);

    const std::unique_ptr<ConfigImage> image = readImage(file, header.version);
    if (!image) return unknownVersion;
    decodeImage(*image, tables_);

    DeviceParamBlock params = deviceParams_;
    readObject(file, params);
    if (withDeviceParams) deviceParams_ = params;

    auto descriptions = std::make_unique<ServiceDescriptionImage>();
    if (readObject(file, *descriptions))
        decodeDescriptions(*descriptions, tables_);
    else
        setDefaultDescriptions(tables_);
    return ok;
}

}  // namespace korvane
