#include "model/config_file.h"

#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <vector>

#include "model/config_model.h"
#include "support/bytes.h"
#include "support/configurations.h"
#include "support/scratch_directory.h"

namespace korvane {
namespace {

using test::bytesAt;
using Bytes = std::vector<std::uint8_t>;

Bytes readAll(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeAll(const std::filesystem::path& path, const Bytes& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

template <class T>
void append(Bytes& bytes, const T& object) {
    const auto* from = reinterpret_cast<const std::uint8_t*>(&object);
    bytes.insert(bytes.end(), from, from + sizeof object);
}

// "version, 28 zero bytes, number of channels", the channels, and the given image.
template <class Image>
Bytes fileOf(std::uint32_t version, const std::vector<InputChannelRecord>& channels,
             const Image& image) {
    Bytes bytes;
    append(bytes, version);
    bytes.resize(32);
    append(bytes, static_cast<std::uint32_t>(channels.size()));
    for (const InputChannelRecord& record : channels) append(bytes, record);
    append(bytes, image);
    return bytes;
}

class ConfigFile : public testing::Test {
  protected:
    ConfigFile() {
        FlatChannelList channels;
        channels.append(test::channel(ChannelType::Emergency, 1, 7001));
        channels.append(test::channel(ChannelType::Video, 2, 7002));
        model_->setFlatChannels(channels);
        test::editTables(*model_, [](ConfigTables& tables) {
            decodeImage(*test::randomImage(5), tables);
            for (MultiplexFrame& frame : tables.continuous.frames)
                for (ServiceRecord& service : frame.services)
                    service.description.serviceId = service.serviceId;
        });
        setAddress(*model_, "10.0.0.5");
        original_ = model_->configuration();
    }

    // The model is what the constructor made of it.
    void expectUntouched() {
        EXPECT_TRUE(config_file::encode(*model_->configuration()) ==
                    config_file::encode(*original_));
    }
    static void setAddress(ConfigModel& model, const char* text) {
        DeviceParamBlock params{};
        std::strcpy(params.controlPort.address.data(), text);
        model.setDeviceParams(params);
    }

    test::ScratchDirectory scratch_;
    std::filesystem::path path_ = scratch_.path() / "configuration.dat";
    std::unique_ptr<ConfigModel> model_ = std::make_unique<ConfigModel>();
    std::unique_ptr<Configuration> original_;
    std::unique_ptr<ConfigModel> loaded_ = std::make_unique<ConfigModel>();
};

TEST_F(ConfigFile, EveryPartStandsAtItsPlaceInHostOrder) {
    ASSERT_EQ(model_->saveConfigFile(path_), 0);
    const Bytes file = readAll(path_);
    const std::size_t image = 36 + 2 * 120;
    ASSERT_EQ(file.size(), image + 629896 + 144 + 41944);
    EXPECT_EQ(bytesAt(*file.data(), 0, 8), "0C 10 00 00 00 00 00 00");
    EXPECT_EQ(bytesAt(*file.data(), 28, 8), "00 00 00 00 02 00 00 00");
    // The video channel comes first: types in order, positions in byte 1, the port low byte first.
    EXPECT_EQ(bytesAt(*file.data(), 36, 13), "00 00 00 00 E1 01 02 02 5A 1B 00 00 00");
    EXPECT_EQ(bytesAt(*file.data(), 36 + 120, 13), "00 01 00 00 E1 01 02 01 59 1B 00 00 07");
    EXPECT_EQ(std::memcmp(file.data() + image, test::randomImage(5).get(), 629896), 0);
    EXPECT_EQ(std::memcmp(file.data() + image + 629896, "10.0.0.5", 9), 0);
    // The first description is that of the second frame's first service; its id's low byte leads.
    const std::uint16_t id = model_->tables().continuous.frames[1].services[0].serviceId;
    const std::size_t descriptions = image + 629896 + 144;
    EXPECT_EQ(file[descriptions], id & 0xFF);
    EXPECT_EQ(file[descriptions + 1], id >> 8);
    EXPECT_EQ(bytesAt(*file.data(), descriptions + 41840, 4), "28 00 00 00");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(scratch_.path()), {}), 1);
}

TEST_F(ConfigFile, LoadsWhatWasSaved) {
    test::editTables(*model_, [](ConfigTables& tables) { setDefaultDescriptions(tables); });
    // The first continuous frame's services get no description slot.
    ASSERT_EQ(model_->saveConfigFile(path_), 0);
    ASSERT_EQ(loaded_->loadConfigFile(path_, true), 0);
    EXPECT_TRUE(loaded_->flatChannels() == model_->flatChannels());
    EXPECT_EQ(loaded_->channels(7).size(), 1u);
    EXPECT_TRUE(loaded_->tables().network == model_->tables().network);
    EXPECT_TRUE(loaded_->tables().shortTime == model_->tables().shortTime);
    EXPECT_TRUE(loaded_->tables().outputParams == model_->tables().outputParams);
    EXPECT_STREQ(loaded_->deviceParams().controlPort.address.data(), "10.0.0.5");
    ASSERT_GE(loaded_->tables().continuous.frames.size(), 2u);
    const ServiceRecord& service = loaded_->tables().continuous.frames[1].services[0];
    EXPECT_EQ(fieldText(service.description.name),
              "\xBD\xDA\xC4\xBF" + std::to_string(service.serviceId));
}

TEST_F(ConfigFile, KeepsTheDeviceParametersWhenAskedTo) {
    ASSERT_EQ(model_->saveConfigFile(path_), 0);
    setAddress(*loaded_, "10.9.9.9");
    ASSERT_EQ(loaded_->loadConfigFile(path_, false), 0);
    EXPECT_STREQ(loaded_->deviceParams().controlPort.address.data(), "10.9.9.9");
    EXPECT_TRUE(loaded_->tables().network == model_->tables().network);
}

TEST_F(ConfigFile, WithoutDescriptionsEachServiceGetsTheDefaultOne) {
    auto image = std::make_unique<ConfigImage>();
    image->continuous.frameCount = 2;
    for (int f = 0; f < 2; ++f) {
        image->continuous.frames[f].head.serviceCount = 1;
        image->continuous.frames[f].services[0].head.serviceIdAgain =
            static_cast<std::uint16_t>(301 + f);
    }
    Bytes file = fileOf(4108, {}, *image);
    append(file, DeviceParamBlock{});
    writeAll(path_, file);
    ASSERT_EQ(model_->loadConfigFile(path_, true), 0);
    EXPECT_TRUE(model_->flatChannels().empty());
    const auto& frames = model_->tables().continuous.frames;
    EXPECT_EQ(frames[0].services[0].description, ServiceDescription{});
    const ServiceDescription& description = frames[1].services[0].description;
    EXPECT_EQ(description.serviceId, 302);
    EXPECT_EQ(fieldText(description.name),
              "\xBD\xDA\xC4\xBF"
              "302");                                                                // 节目302
    EXPECT_EQ(fieldText(description.provider), "\xC4\xDA\xB2\xBF\xC9\xFA\xB3\xC9");  // 内部生成
}

TEST_F(ConfigFile, RefusesWhatItCannotReadAndChangesNothing) {
    EXPECT_EQ(model_->loadConfigFile(scratch_.path() / "missing.dat", true), -1);
    expectUntouched();
    for (const std::uint32_t count : {61u, 0x7FFFFFFFu, 0xFFFFFFFFu, 3u}) {
        Bytes file = fileOf(4108, {}, std::array<std::uint8_t, 359>{});  // one byte short of three
        std::memcpy(file.data() + 32, &count, 4);
        writeAll(path_, file);
        EXPECT_EQ(model_->loadConfigFile(path_, true), config_file::badChannelCount) << count;
        expectUntouched();
    }
    writeAll(path_, {0x0C, 0x10});
    EXPECT_LT(model_->loadConfigFile(path_, true), 0);
    expectUntouched();
}

TEST_F(ConfigFile, AnUnknownVersionHasReplacedTheChannelsOnly) {
    writeAll(path_, fileOf(4109, {test::channel(ChannelType::Dra, 77, 1)}, ConfigImage{}));
    EXPECT_EQ(model_->loadConfigFile(path_, true), -2);
    ASSERT_EQ(model_->flatChannels().size(), 1u);
    EXPECT_EQ(model_->channels(2)[0].address[3], 77);
    EXPECT_EQ(std::memcmp(&model_->configuration()->image, &original_->image, sizeof(ConfigImage)),
              0);
}

TEST_F(ConfigFile, RecordsOfNoKnownTypeAreLeftOut) {
    InputChannelRecord odd = test::channel(ChannelType::Data, 1, 1);
    odd.type = 8;
    writeAll(path_, fileOf(4108, {odd, test::channel(ChannelType::Data, 2, 2)}, ConfigImage{}));
    ASSERT_EQ(model_->loadConfigFile(path_, true), 0);
    ASSERT_EQ(model_->flatChannels().size(), 1u);
    EXPECT_EQ(model_->flatChannels()[0].position, 0);
}

TEST_F(ConfigFile, TheOlderLayoutIsConvertedAndItsFrame0Filled) {
    auto old = std::make_unique<config_file::OldConfigImage>();
    old->header.bytes[1] = 9;
    old->network.networkNumber = 77;
    old->outputParams.systemBitRate = 8000000;
    old->continuous.header = {2, 21, 0};
    old->continuous.frameCount = 2;
    config_file::OldFrameSlot& first = old->continuous.frames[0];
    first.head.serviceCount = 3;
    for (std::uint16_t i = 0; i < 3; ++i) {
        ServiceHead& head = first.services[i].head;
        head.subFrameNumber = static_cast<std::uint8_t>(i + 1);
        head.serviceId = head.serviceIdAgain = static_cast<std::uint16_t>(500 + 10 * i);
    }
    config_file::OldFrameSlot& second = old->continuous.frames[1];
    second.head.id = 1;
    second.head.serviceCount = 4;
    second.services[3].head.componentCount = 4;
    second.services[3].components[3].port = 5004;
    second.services[3].bandwidth = 123456;
    old->shortTime.frameCount = 1;
    old->shortTime.frames[0].head = {};
    writeAll(path_, fileOf(4107, {}, *old));

    ASSERT_EQ(model_->loadConfigFile(path_, true), 0);
    const ConfigTables& tables = model_->tables();
    EXPECT_EQ(tables.header[1], 9);
    EXPECT_EQ(tables.network.networkNumber, 77);
    EXPECT_EQ(tables.outputParams.systemBitRate, 8000000u);
    const auto& services = tables.continuous.frames[0].services;
    ASSERT_EQ(services.size(), 8u);
    EXPECT_EQ(services[2].serviceId, 520);
    for (std::uint16_t i = 3; i < 8; ++i) {
        EXPECT_EQ(services[i].serviceId, 520 + i - 2);
        EXPECT_EQ(services[i].subFrameNumber, i + 1);
        EXPECT_TRUE(services[i].components.empty());
        EXPECT_EQ(services[i].bandwidth, 0u);
    }
    const ServiceRecord& last = tables.continuous.frames[1].services[3];
    EXPECT_EQ(tables.continuous.frames[1].services.size(), 4u);
    EXPECT_EQ(last.components[3].port, 5004);
    EXPECT_EQ(last.bandwidth, 123456u);
    // A frame 0 without any service counts from zero.
    const auto& counted = tables.shortTime.frames[0].services;
    ASSERT_EQ(counted.size(), 8u);
    EXPECT_EQ(counted[0].serviceId, 0);
    EXPECT_EQ(counted[7].serviceId, 7);
    EXPECT_EQ(counted[7].subFrameNumber, 7);
}

// The older layout at literal offsets, independent of the structs that read it.
TEST_F(ConfigFile, TheOlderLayoutIsReadFromItsPlaces) {
    Bytes image(163976);
    const auto put = [&image](std::size_t offset, std::initializer_list<int> bytes) {
        for (const int byte : bytes) image[offset++] = static_cast<std::uint8_t>(byte);
    };
    put(1, {9});              // transfer byte
    put(24, {0x34, 0x12});    // network number, low byte first
    put(640, {2, 21, 0, 1});  // continuous table, one frame
    const std::size_t frame = 644;
    put(frame, {7, 1, 0, 1, 2, 0, 2, 5, 6});
    put(frame + 47, {4});
    const std::size_t last = frame + 48 + 3 * 496;
    put(last, {8, 0, 0x2C, 0x01, 0x2C, 0x01, 1, 0, 0xB2, 0xB1, 0xB3});
    put(last + 12, {2, 0, 0, 0, 225, 1, 1, 9, 0x88, 0x13});
    put(last + 492, {0x80, 0x1A, 0x06, 0x00});
    put(81924, {4, 22, 0, 1});  // short-time table
    put(81928, {3});
    put(163208, {3, 0, 0, 0, 0, 0, 1, 0, 0x2C, 0x01, 21, 0});  // CSCT
    put(163208 + 336 + 4, {'V', '2'});                         // 264-byte block
    put(163208 + 336 + 264 + 12, {0x01, 0x0B});                // CA block
    put(163208 + 336 + 264 + 6, {1});
    put(163208 + 336 + 264 + 92 + 16, {0x00, 0x12, 0x7A, 0x00});  // system bit rate
    Bytes file = fileOf(4107, {}, std::array<std::uint8_t, 0>{});
    file.resize(36);
    file.insert(file.end(), image.begin(), image.end());
    writeAll(path_, file);

    ASSERT_EQ(model_->loadConfigFile(path_, true), 0);
    const ConfigTables& tables = model_->tables();
    EXPECT_EQ(tables.header[1], 9);
    EXPECT_EQ(tables.network.networkNumber, 0x1234);
    ASSERT_EQ(tables.continuous.frames.size(), 1u);
    EXPECT_EQ(tables.continuous.frames[0].id, 7);
    EXPECT_EQ(tables.continuous.frames[0].modulation, 2);
    EXPECT_EQ(tables.continuous.frames[0].timeSlots[1], 6);
    ASSERT_EQ(tables.continuous.frames[0].services.size(), 4u);
    const ServiceRecord& service = tables.continuous.frames[0].services[3];
    EXPECT_EQ(service.subFrameNumber, 8);
    EXPECT_EQ(service.serviceId, 300);
    EXPECT_EQ(service.parameters, (std::array<std::uint8_t, 3>{0xB1, 0xB2, 0xB3}));
    EXPECT_EQ(service.components[0].port, 5000);
    EXPECT_EQ(service.components[0].address[3], 9);
    EXPECT_EQ(service.bandwidth, 400000u);
    EXPECT_EQ(tables.shortTime.frames[0].id, 3);
    EXPECT_EQ(tables.continuousServices.entries[0].serviceId, 300);
    EXPECT_EQ(tables.params264.softwareVersion[1], '2');
    EXPECT_EQ(tables.caDescriptions.entries[0].caSystemId, 0x0B01);
    EXPECT_EQ(tables.outputParams.systemBitRate, 8000000u);
}

TEST_F(ConfigFile, AFileThatCannotBeWrittenIsReportedAndLeavesNothingBehind) {
    EXPECT_LT(model_->saveConfigFile(scratch_.path() / "no such directory" / "x.dat"), 0);
    std::filesystem::create_directories(path_ / "in the way");
    EXPECT_LT(model_->saveConfigFile(path_), 0);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(scratch_.path()), {}), 1);
}

TEST_F(ConfigFile, TheCacheIsNamedAfterTheDevice) {
    model_->setCacheDirectory(scratch_.path());
    EXPECT_LT(model_->saveCacheFile(), 0);  // no device yet
    model_->setDeviceKey("../10.0.0.5");
    EXPECT_LT(model_->saveCacheFile(), 0);
    model_->setDeviceKey("10.0.0.5");
    EXPECT_EQ(model_->saveCacheFile(), 0);
    EXPECT_TRUE(std::filesystem::exists(scratch_.path() / "10.0.0.5.dat"));
    loaded_->setCacheDirectory(scratch_.path());
    loaded_->setDeviceKey("10.0.0.5");
    EXPECT_EQ(loaded_->loadCacheFile(), 0);
    EXPECT_TRUE(loaded_->flatChannels() == model_->flatChannels());
    EXPECT_STREQ(loaded_->deviceParams().controlPort.address.data(), "10.0.0.5");
}

TEST_F(ConfigFile, ResettingEmptiesEverything) {
    model_->resetModel();
    EXPECT_TRUE(model_->tables() == *std::make_unique<ConfigTables>());
    EXPECT_TRUE(model_->flatChannels().empty());
    EXPECT_TRUE(model_->channels(0).empty());
    EXPECT_EQ(test::wholeBytes(model_->deviceParams()), test::wholeBytes(DeviceParamBlock{}));
}

}  // namespace
}  // namespace korvane
