#include "model/config_file.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>

#include "model/channel_text.h"
#include "model/config_model.h"
#include "model/object_bytes.h"
#include "model/whole_file.h"
#include "support/bytes.h"
#include "support/configurations.h"
#include "support/scratch_directory.h"

namespace korvane {
namespace {

using test::bytesAt;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t head = 36, record = 120;

void put(Bytes& file, std::size_t offset, std::initializer_list<int> bytes) {
    for (const int byte : bytes) file.at(offset++) = static_cast<std::uint8_t>(byte);
}

// The places of a layout as numbers, apart from the structs that read and write it.
struct Layout {
    const char* name;
    int mark;  // low byte of the version
    std::size_t image, shortTime, frame, service, services, tail;

    std::size_t params(std::size_t channels) const { return head + channels * record + image; }
    std::size_t descriptions(std::size_t channels) const { return params(channels) + 144; }
    std::size_t end(std::size_t channels) const { return descriptions(channels) + 41944; }
    // A whole file with nothing but zeros behind its head.
    Bytes emptyFile(int channels) const {
        Bytes file(end(static_cast<std::size_t>(channels)));
        put(file, 0, {mark, 0x10});
        put(file, 32, {channels});
        return file;
    }
};
constexpr Layout current = {"Current", 0x0C, 629896, 314884, 7856, 976, 8, 629128};
constexpr Layout older = {"Older", 0x0B, 163976, 81924, 2032, 496, 4, 163208};

std::unique_ptr<ConfigModel> loaded(const Bytes& file) {
    auto content = std::make_unique<Configuration>();
    EXPECT_EQ(config_file::decode(file, *content), 0);
    auto model = std::make_unique<ConfigModel>();
    model->load(*content);
    return model;
}

class EachLayout : public testing::TestWithParam<Layout> {};

TEST_P(EachLayout, IsReadFromItsPlaces) {
    const Layout& layout = GetParam();
    Bytes file = layout.emptyFile(2);
    put(file, head + record + 4, {225, 1, 2, 9, 0x88, 0x13});
    const std::size_t image = head + 2 * record;
    put(file, image + 1, {9});            // transfer byte
    put(file, image + 24, {0x34, 0x12});  // network number, low byte first
    put(file, image + 640, {2, 21, 0, 2});
    const std::size_t frame = image + 644 + layout.frame;
    put(file, frame, {7, 1, 0, 1, 2, 0, 2, 5, 6});
    put(file, frame + 47, {static_cast<int>(layout.services)});
    const std::size_t last = frame + 48 + (layout.services - 1) * layout.service;
    put(file, last, {8, 0, 0x2C, 0x01, 0x2C, 0x01, 1, 0, 0xB2, 0xB1, 0xB3});
    put(file, last + 12, {2, 0, 0, 0, 225, 1, 1, 9, 0x88, 0x13});
    put(file, last + layout.service - 4, {0x80, 0x1A, 0x06, 0x00});
    put(file, image + layout.shortTime, {4, 22, 0, 1, 3});
    const std::size_t tail = image + layout.tail;
    put(file, tail, {3, 0, 0, 0, 0, 0, 1, 0, 0x2C, 0x01, 21, 0});  // CSCT
    put(file, tail + 168, {5, 0, 0, 0, 0, 0, 1, 0, 0x2D, 0x01, 22, 0});
    put(file, tail + 336 + 4, {'V', '2'});  // 264-byte block
    put(file, tail + 336 + 264 + 6, {1});   // CA block
    put(file, tail + 336 + 264 + 12, {0x01, 0x0B});
    put(file, tail + 336 + 264 + 92 + 16, {0x00, 0x12, 0x7A, 0x00});  // system bit rate
    put(file, layout.params(2), {'1', '0', '.', '1'});
    put(file, layout.descriptions(2), {0x2C, 0x01, 'z', 'h', 'o', 0, 0, 0, 'N'});
    put(file, layout.end(2) - 104, {1});

    const auto model = loaded(file);
    EXPECT_EQ(model->flatChannels()[1].address[3], 9);
    EXPECT_EQ(model->flatChannels()[1].port, 5000);
    const ConfigTables& tables = model->tables();
    EXPECT_EQ(tables.header[1], 9);
    EXPECT_EQ(tables.network.networkNumber, 0x1234);
    ASSERT_EQ(tables.continuous.frames.size(), 2u);
    const MultiplexFrame& second = tables.continuous.frames[1];
    EXPECT_EQ(second.id, 7);
    EXPECT_EQ(second.modulation, 2);
    EXPECT_EQ(second.timeSlots[1], 6);
    ASSERT_EQ(second.services.size(), layout.services);
    const ServiceRecord& service = second.services.back();
    EXPECT_EQ(service.subFrameNumber, 8);
    EXPECT_EQ(service.serviceId, 300);
    EXPECT_EQ(service.type, 0xB1);
    EXPECT_EQ(service.encapsulation, 0xB2);
    EXPECT_EQ(service.esgInternal, 0xB3);
    EXPECT_EQ(service.components[0].port, 5000);
    EXPECT_EQ(service.components[0].address[3], 9);
    EXPECT_EQ(service.bandwidth, 400000u);
    EXPECT_EQ(service.description.name[0], 'N');
    EXPECT_EQ(tables.shortTime.header[1], 22);
    EXPECT_EQ(tables.shortTime.frames[0].id, 3);
    EXPECT_EQ(tables.continuousServices.entries[0].serviceId, 300);
    EXPECT_EQ(tables.shortTimeServices.entries[0].serviceId, 301);
    EXPECT_EQ(tables.params264.softwareVersion[1], '2');
    EXPECT_EQ(tables.caDescriptions.entries[0].caSystemId, 0x0B01);
    EXPECT_EQ(tables.outputParams.systemBitRate, 8000000u);
    EXPECT_STREQ(model->deviceParams().controlPort.address.data(), "10.1");
}

// Counts beyond their arrays count as the array's size, and what is behind the end is not there.
TEST_P(EachLayout, HoldsItsCountsToWhatItHas) {
    const Layout& layout = GetParam();
    Bytes file = layout.emptyFile(0);
    for (const std::size_t block : {std::size_t{640}, layout.shortTime}) {
        put(file, head + block + 3, {0xFF});
        for (std::size_t frame = 0; frame < 40; ++frame) {
            const std::size_t slot = head + block + 4 + frame * layout.frame;
            put(file, slot, {1, 0, 0, 0, 0, 0, 0xFF});
            put(file, slot + 47, {0xFF});
            put(file, slot + 48 + (layout.services - 1) * layout.service + 6, {0xFF, 0xFF});
        }
    }
    file.resize(file.size() + 1000, 0xEE);
    const auto model = loaded(file);
    for (const TableKind kind : {TableKind::Continuous, TableKind::ShortTime}) {
        const auto& frames = model->tables().table(kind).frames;
        ASSERT_EQ(frames.size(), 40u);
        EXPECT_EQ(frames[39].timeSlots.size(), 40u);
        ASSERT_EQ(frames[39].services.size(), layout.services);
        EXPECT_EQ(frames[39].services.back().components.size(), layout.services);
    }
}

// Noise in every byte, counts included, but that of the channels.
Bytes noisyFile(const Layout& layout, int channels) {
    Bytes file = layout.emptyFile(channels);
    std::mt19937 random(7);
    for (std::size_t i = 4; i < file.size(); ++i)
        if (i < 32 || i >= head) file[i] = static_cast<std::uint8_t>(random());
    return file;
}

TEST(CurrentLayout, ComesBackByteForByte) {
    const Bytes file = noisyFile(current, 3);
    int result = -1;
    const auto content = config_file::decodeWhole(file, result);
    ASSERT_TRUE(content);
    EXPECT_TRUE(config_file::encode(*content) == file);
}

// What is not whole becomes a whole file of the current layout: the panel makes the same of both.
TEST_P(EachLayout, BecomesWhole) {
    const Layout& layout = GetParam();
    for (const std::size_t size : {std::size_t{900}, layout.params(61), layout.end(61)}) {
        Bytes file = noisyFile(layout, size == 900 ? 1 : 61);
        file.resize(size);
        int result = -1;
        const auto content = config_file::decodeWhole(file, result);
        ASSERT_TRUE(content) << size;
        EXPECT_EQ(content->channelsLeftOut.size(), size == 900 ? 0u : 1u);
        const Bytes whole = config_file::encode(*content);
        EXPECT_EQ(whole.size(), current.end(content->channels.size()));
        EXPECT_TRUE(config_file::encode(*loaded(whole)->configuration()) ==
                    config_file::encode(*loaded(file)->configuration()))
            << size;
    }
    int result = 0;
    EXPECT_FALSE(config_file::decodeWhole(Bytes(35), result));
    EXPECT_EQ(result, config_file::badChannelCount);
}

// A service's name where the file ends before the descriptions.
TEST_P(EachLayout, WithoutDescriptionsEachServiceGetsTheDefaultOne) {
    const Layout& layout = GetParam();
    Bytes file = layout.emptyFile(0);
    put(file, head + 640 + 3, {2});
    for (const std::size_t frame : {std::size_t{0}, layout.frame}) {
        put(file, head + 644 + frame, {1});
        put(file, head + 644 + frame + 47, {1});
        put(file, head + 644 + frame + 48 + 4, {0x2E, 0x01});
    }
    for (const std::size_t missing : {1u, 41944u}) {
        file.resize(layout.end(0) - missing);
        const auto model = loaded(file);
        const auto& frames = model->tables().continuous.frames;
        EXPECT_EQ(frames[0].services[0].description, ServiceDescription{});
        const ServiceDescription& description = frames[1].services[0].description;
        EXPECT_EQ(description.serviceId, 302);
        EXPECT_EQ(fieldText(description.name), std::string("\xBD\xDA\xC4\xBF") + "302");  // 节目
        EXPECT_EQ(fieldText(description.provider), "\xC4\xDA\xB2\xBF\xC9\xFA\xB3\xC9");  // 内部生成
    }
}

INSTANTIATE_TEST_SUITE_P(Files, EachLayout, testing::Values(current, older),
                         [](const auto& layout) { return layout.param.name; });

// Frame 0 of the older layout: the services that it had, then more until there are eight.
TEST(OlderLayout, FillsFrame0) {
    struct Case {
        int had, kept, firstAdded, firstSubFrame;
    };
    for (const Case& c : {Case{0, 0, 0, 0}, Case{1, 1, 501, 2}, Case{3, 3, 521, 4},
                          Case{4, 4, 531, 5}, Case{0xFF, 4, 531, 5}}) {
        Bytes file = older.emptyFile(0);
        for (const std::size_t block : {std::size_t{640}, older.shortTime}) {
            put(file, head + block + 3, {1});
            const std::size_t frame = head + block + 4;
            put(file, frame + 47, {c.had});
            for (int i = 0; i < c.kept; ++i) {
                const int id = 500 + 10 * i;
                put(file, frame + 48 + static_cast<std::size_t>(i) * 496,
                    {i + 1, 0, 99, 99, id & 0xFF, id >> 8});
            }
        }
        const auto model = loaded(file);
        for (const TableKind kind : {TableKind::Continuous, TableKind::ShortTime}) {
            const auto& services = model->tables().table(kind).frames[0].services;
            ASSERT_EQ(services.size(), 8u) << c.had;
            for (int i = 0; i < 8; ++i) {
                const auto& service = services[static_cast<std::size_t>(i)];
                const int added = i - c.kept;
                EXPECT_EQ(service.serviceId, added < 0 ? 500 + 10 * i : c.firstAdded + added);
                EXPECT_EQ(service.subFrameNumber, added < 0 ? i + 1 : c.firstSubFrame + added);
                EXPECT_TRUE(service.components.empty());
            }
        }
    }
}

// A configuration with something in each of its parts.
std::unique_ptr<Configuration> someConfiguration() {
    const auto model = std::make_unique<ConfigModel>();
    FlatChannelList channels;
    channels.append(test::channel(ChannelType::Emergency, 1, 7001));
    channels.append(test::channel(ChannelType::Video, 2, 7002));
    model->setFlatChannels(channels);
    test::editTables(*model, [](ConfigTables& tables) {
        decodeImage(*test::randomImage(6), tables);
        setDefaultDescriptions(tables);
    });
    DeviceParamBlock params{};
    std::strcpy(params.controlPort.address.data(), "10.0.0.5");
    model->setDeviceParams(params);
    return model->configuration();
}

TEST(CurrentLayout, IsWrittenToItsPlaces) {
    const auto configuration = someConfiguration();
    const Bytes file = config_file::encode(*configuration);
    ASSERT_EQ(file.size(), current.end(2));
    EXPECT_EQ(bytesAt(file[0], 0, 8), "0C 10 00 00 00 00 00 00");
    EXPECT_EQ(bytesAt(file[0], 28, 8), "00 00 00 00 02 00 00 00");
    // The video channel comes first: types in order, positions in byte 1, the port low byte first.
    EXPECT_EQ(bytesAt(file[0], 36, 13), "00 00 00 00 E1 01 02 02 5A 1B 00 00 00");
    EXPECT_EQ(bytesAt(file[0], 36 + 120, 13), "00 01 00 00 E1 01 02 01 59 1B 00 00 07");
    EXPECT_EQ(std::memcmp(&file[36 + 240], test::randomImage(6).get(), 629896), 0);
    EXPECT_EQ(std::memcmp(&file[current.params(2)], "10.0.0.5", 9), 0);
    // The first description is that of the second frame's first service; its id's low byte leads.
    const std::uint16_t id = configuration->image.continuous.frames[1].services[0].head.serviceId;
    EXPECT_EQ(file[current.descriptions(2)], id & 0xFF);
    EXPECT_EQ(file[current.descriptions(2) + 1], id >> 8);
    EXPECT_EQ(bytesAt(file[0], current.end(2) - 104, 4), "28 00 00 00");

    auto back = std::make_unique<Configuration>();
    ASSERT_EQ(config_file::decode(file, *back), 0);
    EXPECT_TRUE(config_file::encode(*back) == file);
}

TEST(Loading, RefusesWhatItCannotReadAndThenSaysHowMuchItTook) {
    ChannelsLeftOut leftOut;
    struct Case {
        const char* what;
        std::initializer_list<int> mark, count;
        std::size_t size;
        int result;
    };
    const Case cases[] = {
        {"cut head", {0x0C, 0x10}, {0}, 35, -3},
        {"61 channels, and then half an image", {0x0C, 0x10}, {61}, 100000, -3},
        {"count below 2^31", {0x0C, 0x10}, {0xFF, 0xFF, 0xFF, 0x7F}, 1000, -3},
        {"count above 2^31", {0x0C, 0x10}, {0xFF, 0xFF, 0xFF, 0xFF}, 1000, -3},
        {"one byte short of three", {0x0C, 0x10}, {3}, head + 3 * record - 1, -3},
        {"unknown version", {0x0D, 0x10}, {1}, 1000, -2},
    };
    const test::ScratchDirectory scratch;
    const auto path = scratch.path() / "x.dat";
    for (const Case& c : cases) {
        Bytes file(100000);
        put(file, 0, c.mark);
        put(file, 32, c.count);
        put(file, head + 12, {2});
        file.resize(c.size);
        ASSERT_TRUE(replaceFile(path, file));
        const auto model = std::make_unique<ConfigModel>();
        const auto before = someConfiguration();
        model->load(*before);
        EXPECT_EQ(model->loadConfigFile(path, true, leftOut), c.result) << c.what;
        const auto after = model->configuration();
        if (c.result == -2) {
            ASSERT_EQ(model->flatChannels().size(), 1u) << "the channels are the file's";
            EXPECT_EQ(model->channels(2).size(), 1u);
            after->channels = before->channels;
        }
        EXPECT_TRUE(config_file::encode(*after) == config_file::encode(*before)) << c.what;
    }
    EXPECT_EQ(std::make_unique<ConfigModel>()->loadConfigFile(scratch.path() / "missing.dat", true,
                                                              leftOut),
              -1);
    EXPECT_EQ(std::make_unique<ConfigModel>()->loadConfigFile(scratch.path(), true, leftOut), -1);
}

// Made for another panel, or by hand. A count that would make channels of the image is a wrong one.
TEST_P(EachLayout, OfMoreThan60ChannelsTheFirstAreTakenAndTheRestNamed) {
    const Layout& layout = GetParam();
    Bytes file = layout.emptyFile(62);
    put(file, head + 61 * record + 4, {225, 1, 2, 9, 0x88, 0x13});
    put(file, head + 62 * record + 24, {0x34, 0x12});  // network number
    for (const std::size_t end : {layout.params(62), layout.descriptions(62), layout.end(62)}) {
        for (const int offBy : {-1, 0, 1}) {
            Bytes cut = file;
            cut.resize(end + static_cast<std::size_t>(offBy));
            const auto content = std::make_unique<Configuration>();
            ASSERT_EQ(config_file::decode(cut, *content), offBy == 0 ? 0 : -3) << end;
            if (offBy != 0) continue;
            EXPECT_EQ(content->channels.size(), 60u);
            ASSERT_EQ(content->channelsLeftOut.size(), 2u);
            EXPECT_EQ(channelName(content->channelsLeftOut[1]), "视频 225.1.2.9:5000");
            EXPECT_EQ(content->image.network.networkNumber, 0x1234);
        }
    }
}

TEST(Loading, TakesTheDeviceParametersWhenAskedToAndRecordsOfNoKnownTypeNever) {
    ChannelsLeftOut leftOut;
    const test::ScratchDirectory scratch;
    const auto path = scratch.path() / "x.dat";
    auto configuration = someConfiguration();
    configuration->channels[0].type = 8;
    ASSERT_TRUE(replaceFile(path, config_file::encode(*configuration)));
    for (const bool asked : {true, false}) {
        const auto model = std::make_unique<ConfigModel>();
        DeviceParamBlock params{};
        std::strcpy(params.controlPort.address.data(), "10.9.9.9");
        model->setDeviceParams(params);
        ASSERT_EQ(model->loadConfigFile(path, asked, leftOut), 0);
        EXPECT_STREQ(model->deviceParams().controlPort.address.data(),
                     asked ? "10.0.0.5" : "10.9.9.9");
        ASSERT_EQ(model->flatChannels().size(), 1u);
        EXPECT_EQ(model->flatChannels()[0].position, 0);
        EXPECT_EQ(model->channels(7).size(), 1u);
    }
}

TEST(Cache, IsNamedAfterTheDeviceAndTakenWholeOrNotAtAll) {
    ChannelsLeftOut leftOut;
    const test::ScratchDirectory scratch;
    const auto path = scratch.path() / "10.0.0.5.dat";
    const auto model = std::make_unique<ConfigModel>();
    model->load(*someConfiguration());
    model->setCacheDirectory(scratch.path());
    for (const char* key : {"", "../10.0.0.5", "a:b"}) {
        model->setDeviceKey(key);
        EXPECT_LT(model->saveCacheFile(), 0) << key;
    }
    model->setDeviceKey("10.0.0.5");
    EXPECT_EQ(model->saveCacheFile(), 0);
    const Bytes file = config_file::encode(*model->configuration());
    model->resetModel();
    EXPECT_EQ(model->loadCacheFile(leftOut), 0);
    EXPECT_TRUE(config_file::encode(*model->configuration()) == file);

    const Bytes empty = config_file::encode(*std::make_unique<ConfigModel>()->configuration());
    for (const int version : {0x0D, 0x0C}) {
        Bytes bad(file.begin(), file.begin() + head + record);
        put(bad, 0, {version});
        ASSERT_TRUE(replaceFile(path, bad));
        EXPECT_LT(model->loadCacheFile(leftOut), 0);
        EXPECT_TRUE(config_file::encode(*model->configuration()) == empty) << version;
    }
}

}  // namespace
}  // namespace korvane
