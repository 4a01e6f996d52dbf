#include "model/config_file.h"

#include <algorithm>
#include <memory>

#include "model/object_bytes.h"

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

// The rest of a file, read from front to back.
class Reader {
  public:
    explicit Reader(std::span<const std::uint8_t> file) : rest_(file) {}

    std::size_t left() const { return rest_.size(); }

    // Copies what is there of a fixed layout; the bytes that the file lacks keep their value. False
    // when it lacks any.
    template <class T>
    bool take(T& object) {
        const std::size_t count = std::min(sizeof object, rest_.size());
        std::copy_n(rest_.begin(), count, writableBytesOf(object).begin());
        rest_ = rest_.subspan(count);
        return count == sizeof object;
    }

  private:
    std::span<const std::uint8_t> rest_;
};

// Whether what is behind the channels ends where one of its parts does.
bool endsWithAPart(std::size_t size, std::uint32_t version) {
    const std::size_t image =
        version == olderVersion ? sizeof(OldConfigImage) : sizeof(ConfigImage);
    const std::size_t withParams = image + sizeof(DeviceParamBlock);
    return size == image || size == withParams ||
           size == withParams + sizeof(ServiceDescriptionImage);
}

// A wrong count makes channels of the image's bytes, so one above the limit is believed only of a
// file that holds exactly the rest besides.
bool holdsChannels(const Reader& file, const Header& header) {
    const std::size_t count = header.channelCount;
    if (count > file.left() / sizeof(InputChannelRecord)) return false;
    return count <= limits::inputChannels ||
           endsWithAPart(file.left() - count * sizeof(InputChannelRecord), header.version);
}

void takeChannels(Reader& file, std::uint32_t count, Configuration& configuration) {
    configuration.channels.clear();
    configuration.channelsLeftOut.clear();
    for (std::uint32_t i = 0; i < count; ++i) {
        InputChannelRecord record{};
        file.take(record);
        if (!configuration.channels.append(record)) configuration.channelsLeftOut.push_back(record);
    }
}

// False for an unknown version.
bool takeImage(Reader& file, std::uint32_t version, ConfigImage& image) {
    if (version == currentVersion) {
        file.take(image);
    } else if (version == olderVersion) {
        const auto old = std::make_unique<OldConfigImage>();
        file.take(*old);
        convertOldImage(*old, image);
    } else {
        return false;
    }
    return true;
}

void describeByDefault(Configuration& configuration) {
    const auto tables = std::make_unique<ConfigTables>();
    decodeImage(configuration.image, *tables);
    setDefaultDescriptions(*tables);
    encodeDescriptions(*tables, {}, configuration.descriptions);
    configuration.hasDescriptions = true;
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

std::vector<std::uint8_t> encode(const Configuration& configuration) {
    const FlatChannelList& channels = configuration.channels;
    std::vector<std::uint8_t> file(sizeof(Header) + channels.size() * sizeof(InputChannelRecord) +
                                   sizeof(ConfigImage) + sizeof(DeviceParamBlock) +
                                   sizeof(ServiceDescriptionImage));
    auto place = file.begin();
    const auto put = [&place](const auto& object) {
        place = std::ranges::copy(bytesOf(object), place).out;
    };
    put(Header{currentVersion, configuration.fileReserved,
               static_cast<std::uint32_t>(channels.size())});
    for (const InputChannelRecord& record : channels) put(record);
    put(configuration.image);
    put(configuration.params);
    put(configuration.descriptions);
    return file;
}

int decode(std::span<const std::uint8_t> bytes, Configuration& configuration) {
    Reader file(bytes);
    Header header{};
    if (!file.take(header) || !holdsChannels(file, header)) return badChannelCount;
    configuration.fileReserved = header.reserved;
    takeChannels(file, header.channelCount, configuration);
    if (!takeImage(file, header.version, configuration.image)) return unknownVersion;
    file.take(configuration.params);
    configuration.hasDescriptions = file.take(configuration.descriptions);
    return ok;
}

std::unique_ptr<Configuration> decodeWhole(std::span<const std::uint8_t> file, int& result) {
    auto configuration = std::make_unique<Configuration>();
    result = decode(file, *configuration);
    if (result != ok) return nullptr;
    if (!configuration->hasDescriptions) describeByDefault(*configuration);
    return configuration;
}

}  // namespace config_file
}  // namespace korvane
