#include "model/config_image.h"

#include <cstring>
#include <gtest/gtest.h>
#include <map>

#include "support/bytes.h"
#include "support/configurations.h"

namespace korvane {
namespace {

using test::bytesAt;

std::unique_ptr<ConfigImage> wireImage(const ConfigTables& tables) {
    auto image = std::make_unique<ConfigImage>();
    std::memset(static_cast<void*>(image.get()), 0xEE, sizeof *image);  // encoding must clear it
    encodeImage(tables, *image);
    toNetworkOrder(*image);
    return image;
}

TEST(ConfigImage, HeaderAndNetworkStandWhereTheDeviceReadsThem) {
    auto tables = std::make_unique<ConfigTables>();
    tables->header = {0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17};
    tables->headerValue = 0x1819;
    tables->header10 = {0x1A, 0x1B};
    tables->headerLength = 0x0C;
    NetworkInfo& network = tables->network;
    network.word0 = {1, 2, 3, 4};
    network.word1 = {5, 6, 7, 8};
    network.networkNumber = 0x1234;
    network.tableId = 1;
    network.carried27 = 0x77;
    network.level = 5;
    network.countryCode = {'C', 'H', 'N', '\0'};
    network.name = "\xB1\xB1\xBE\xA9";  // 北京
    network.ownFrequency = {21, 1, {0xA, 0xB}, 47400000};
    network.otherFrequencies.append({22, 0, {}, 48200000});
    network.neighbours.append({2, 23, 1, 0x99, 0x01020304, 49000000});

    const auto image = wireImage(*tables);
    EXPECT_EQ(bytesAt(*image, 0, 16), "10 11 12 13 14 15 16 17 18 19 1A 1B 0C 00 00 00");
    EXPECT_EQ(bytesAt(*image, 16, 8), "01 02 03 04 05 06 07 08");
    EXPECT_EQ(bytesAt(*image, 24, 5), "12 34 01 77 05");
    EXPECT_EQ(bytesAt(*image, 29, 10), "43 48 4E 00 04 B1 B1 BE A9 00");
    EXPECT_EQ(bytesAt(*image, 290, 14), "00 00 15 01 0A 0B 02 D3 44 40 01 00 00 00");
    EXPECT_EQ(bytesAt(*image, 304, 9), "16 00 00 00 02 DF 79 40 00");
    EXPECT_EQ(bytesAt(*image, 432, 16), "01 00 00 00 02 17 01 99 01 02 03 04 02 EB AE 40");
}

TEST(ConfigImage, FramesServicesAndComponentsStandWhereTheDeviceReadsThem) {
    auto tables = std::make_unique<ConfigTables>();
    tables->continuous.header = {2, 21, 0x40};
    ServiceRecord record = test::service(1, 0x0102);
    record.scrambled = 0x0F;
    record.type = 0xA1;
    record.encapsulation = 0xA2;
    record.esgInternal = 0xA3;
    record.bandwidth = 0x00061A80;  // 400 kbit/s
    InputChannelRecord component = test::channel(ChannelType::Video, 9, 0x1388);
    component.position = 3;
    component.carried22 = 0x2223;
    component.carried28 = 0x2829;
    component.carried30 = 0x3031;
    component.videoFrameRate = 0x0002;
    component.carried40 = 0x4041;
    component.audioSampleRate = 0x0007;
    component.carried44 = 0x44454647;
    component.channelId = 0x52535455;
    component.maxSendIntervalMs = 1000;
    record.components.append(component);
    MultiplexFrame frame = test::frame(4, {record});
    frame.rsRate = 1;
    frame.byteInterleaving = 2;
    frame.ldpcRate = 1;
    frame.modulation = 2;
    frame.scrambling = 7;
    frame.timeSlots.append(5);
    frame.timeSlots.append(6);
    tables->continuous.frames.append(test::frame(0));
    tables->continuous.frames.append(frame);
    tables->shortTime.header = {4, 21, 0x41};
    tables->shortTime.frames.append(frame);

    const auto image = wireImage(*tables);
    EXPECT_EQ(bytesAt(*image, 640, 4), "02 15 40 02");
    const std::size_t slot = 640 + 4 + 7856;
    EXPECT_EQ(bytesAt(*image, slot, 10), "04 01 02 01 02 07 02 05 06 00");
    EXPECT_EQ(bytesAt(*image, slot + 47, 1), "01");
    const std::size_t service = slot + 48;
    EXPECT_EQ(bytesAt(*image, service, 12), "01 0F 01 02 01 02 00 01 A2 A1 A3 00");
    EXPECT_EQ(bytesAt(*image, service + 12, 16), "00 03 00 00 E1 01 02 09 13 88 00 00 00 00 00 00");
    EXPECT_EQ(bytesAt(*image, service + 12 + 20, 14), "00 00 22 23 00 00 00 00 28 29 30 31 00 02");
    EXPECT_EQ(bytesAt(*image, service + 12 + 40, 20),
              "40 41 00 07 44 45 46 47 00 00 00 00 52 53 54 55 00 00 03 E8");
    EXPECT_EQ(bytesAt(*image, service + 972, 4), "00 06 1A 80");
    EXPECT_EQ(bytesAt(*image, 314884, 4), "04 15 41 01");
    EXPECT_EQ(bytesAt(*image, 314884 + 4, 8), "04 01 02 01 02 07 02 05");
}

TEST(ConfigImage, TheRemainingBlocksStandWhereTheDeviceReadsThem) {
    auto tables = std::make_unique<ConfigTables>();
    tables->continuousServices = {{3, 1, 2, 9}, 0x0506, {}};
    tables->continuousServices.entries.append({0x0102, 21, 0x7F});
    tables->shortTimeServices = {{5, 0, 0, 0}, 7, {}};
    tables->params264.value2 = 0x0203;
    std::memcpy(tables->params264.softwareVersion.data(), "V2.10", 5);
    std::memcpy(tables->params264.hardwareVersion.data(), "H1", 2);
    tables->params264.carried36[227] = 0xFE;
    tables->caDescriptions.tableId = 6;
    tables->caDescriptions.sendFlag = 1;
    tables->caDescriptions.sectionCount = 4;
    tables->caDescriptions.entries.append({0x0B01, 0x0102, 128, 159, 1, 0x55});
    OutputParamBlock& output = tables->outputParams;
    output.pmsPid = 0x1FFE;
    output.deviceNumber = 0x0A0B;
    output.backupAddress = {10, 1, 2, 3};
    output.alarmSwitches = 0x78;
    output.systemBitRate = 8000000;
    output.carried40[31] = 0xFD;

    const auto image = wireImage(*tables);
    EXPECT_EQ(bytesAt(*image, 629128, 13), "03 01 02 09 05 06 00 01 01 02 15 7F 00");
    EXPECT_EQ(bytesAt(*image, 629296, 9), "05 00 00 00 00 07 00 00 00");
    EXPECT_EQ(bytesAt(*image, 629464, 10), "00 00 02 03 56 32 2E 31 30 00");
    EXPECT_EQ(bytesAt(*image, 629464 + 20, 3), "48 31 00");
    EXPECT_EQ(bytesAt(*image, 629727, 1), "FE");
    EXPECT_EQ(bytesAt(*image, 629728, 21),
              "06 00 01 00 00 00 00 01 04 00 00 00 0B 01 01 02 80 9F 01 55 00");
    EXPECT_EQ(bytesAt(*image, 629820, 4), "1F FE 0A 0B");
    EXPECT_EQ(bytesAt(*image, 629820 + 11, 9), "0A 01 02 03 78 00 7A 12 00");
    EXPECT_EQ(bytesAt(*image, 629891, 5), "FD 00 00 00 00");
}

// The big-endian fields as (offset, width), written down independently of the code's visitor.
std::map<std::size_t, std::size_t> bigEndianFields() {
    std::map<std::size_t, std::size_t> fields = {{8, 2}, {24, 2}, {296, 4}};
    for (std::size_t i = 0; i < 16; ++i) {
        fields[304 + 8 * i + 4] = 4;
        fields[436 + 12 * i + 4] = 4;
        fields[436 + 12 * i + 8] = 4;
    }
    for (const std::size_t block : {640, 314884}) {
        for (std::size_t service = 0; service < 40 * 8; ++service) {
            const std::size_t slot = block + 4 + service / 8 * 7856 + 48 + service % 8 * 976;
            for (const std::size_t offset : {2, 4, 6}) fields[slot + offset] = 2;
            fields[slot + 972] = 4;
            for (std::size_t record = slot + 12; record < slot + 972; record += 120) {
                for (const std::size_t offset : {8, 22, 28, 30, 32, 40, 42})
                    fields[record + offset] = 2;
                for (const std::size_t offset : {44, 52, 56}) fields[record + offset] = 4;
            }
        }
    }
    for (const std::size_t block : {629128, 629296}) {
        fields[block + 4] = fields[block + 6] = 2;
        for (std::size_t i = 0; i < 40; ++i) fields[block + 8 + 4 * i] = 2;
    }
    fields[629464 + 2] = 2;
    fields[629728 + 6] = 2;
    for (std::size_t i = 0; i < 10; ++i)
        fields[629728 + 12 + 8 * i] = fields[629728 + 12 + 8 * i + 2] = 2;
    fields[629820] = fields[629822] = 2;
    fields[629836] = 4;
    return fields;
}

TEST(ConfigImage, ExactlyTheBigEndianFieldsAreTurned) {
    std::vector<std::uint8_t> bytes(sizeof(ConfigImage));
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 7 + i / 256);
    auto image = std::make_unique<ConfigImage>();
    std::memcpy(static_cast<void*>(image.get()), bytes.data(), bytes.size());

    for (const auto& [offset, width] : bigEndianFields())
        std::reverse(bytes.begin() + offset, bytes.begin() + offset + width);
    toNetworkOrder(*image);
    EXPECT_EQ(std::memcmp(image.get(), bytes.data(), bytes.size()), 0);

    for (const auto& [offset, width] : bigEndianFields())
        std::reverse(bytes.begin() + offset, bytes.begin() + offset + width);
    fromNetworkOrder(*image);
    EXPECT_EQ(std::memcmp(image.get(), bytes.data(), bytes.size()), 0);
}

class ImageIdentity : public testing::TestWithParam<int> {};

TEST_P(ImageIdentity, EncodingWhatWasDecodedGivesTheSameImage) {
    const auto original = test::randomImage(static_cast<unsigned>(GetParam()), GetParam() == 0);
    auto tables = std::make_unique<ConfigTables>();
    decodeImage(*test::randomImage(1000), *tables);  // what was there before leaves no trace
    decodeImage(*original, *tables);
    auto again = std::make_unique<ConfigImage>();
    std::memset(static_cast<void*>(again.get()), 0xEE, sizeof *again);
    encodeImage(*tables, *again);
    EXPECT_EQ(std::memcmp(original.get(), again.get(), sizeof *again), 0);
}

INSTANTIATE_TEST_SUITE_P(RandomImages, ImageIdentity, testing::Range(0, 12));

TEST(ConfigImage, CountsAboveTheirArraysAreHeldToThem) {
    auto image = std::make_unique<ConfigImage>();
    std::memset(static_cast<void*>(image.get()), 0xFF, sizeof *image);
    auto tables = std::make_unique<ConfigTables>();
    decodeImage(*image, *tables);
    EXPECT_EQ(tables->network.name.size(), 256u);
    EXPECT_EQ(tables->network.otherFrequencies.size(), 16u);
    EXPECT_EQ(tables->network.neighbours.size(), 16u);
    EXPECT_EQ(tables->continuousServices.entries.size(), 40u);
    EXPECT_EQ(tables->caDescriptions.entries.size(), 10u);
}

TEST(ConfigImage, NamesAreTakenToTheirTerminatorAndOfTwoServiceIdsTheSecondCounts) {
    auto image = std::make_unique<ConfigImage>();
    std::memcpy(image->network.name.data(), "abc", 3);
    image->network.nameLength = 200;
    image->continuous.frameCount = 1;
    image->continuous.frames[0].head.serviceCount = 1;
    image->continuous.frames[0].services[0].head.serviceId = 5;
    image->continuous.frames[0].services[0].head.serviceIdAgain = 6;
    auto tables = std::make_unique<ConfigTables>();
    decodeImage(*image, *tables);
    EXPECT_EQ(tables->network.name, "abc");
    EXPECT_EQ(tables->continuous.frames[0].services[0].serviceId, 6);

    tables->network.name.assign(300, 'x');
    encodeImage(*tables, *image);
    EXPECT_EQ(image->network.nameLength, 0);  // 256 wraps
    EXPECT_EQ(bytesAt(*image, 288, 4), "78 78 00 00");
}

TEST(Descriptions, SkipTheFirstContinuousFrameAndKeepTheTablesOrder) {
    auto tables = std::make_unique<ConfigTables>();
    tables->continuous.frames.append(test::frame(0, {test::service(1, 100)}));
    tables->continuous.frames.append(
        test::frame(1, {test::service(1, 201), test::service(2, 202)}));
    tables->shortTime.frames.append(test::frame(0, {test::service(1, 301)}));
    tables->continuous.frames[1].services[0].description.language = {'z', 'h', 'o'};
    auto image = std::make_unique<ServiceDescriptionImage>();
    encodeDescriptions(*tables, {}, *image);
    toNetworkOrder(*image);
    EXPECT_EQ(bytesAt(*image, 0, 6), "00 C9 7A 68 6F 00");
    EXPECT_EQ(bytesAt(*image, 1046, 2), "00 CA");
    EXPECT_EQ(bytesAt(*image, 2 * 1046, 2), "01 2D");
    EXPECT_EQ(bytesAt(*image, 41840, 6), "00 00 00 03 00 00");

    decodeImage(*test::randomImage(1, true), *tables);
    encodeDescriptions(*tables, {}, *image);
    EXPECT_EQ(image->count, 40u);
}

TEST(Descriptions, AreMatchedByServiceIdInTheContinuousTableOnly) {
    auto tables = std::make_unique<ConfigTables>();
    tables->continuous.frames.append(test::frame(0, {test::service(1, 7), test::service(2, 8)}));
    tables->continuous.frames.append(test::frame(1, {test::service(1, 7)}));
    tables->shortTime.frames.append(test::frame(0, {test::service(1, 7)}));
    const ServiceDescription kept = tables->shortTime.frames[0].services[0].description;
    auto image = std::make_unique<ServiceDescriptionImage>();
    image->slots[0].serviceId = image->slots[1].serviceId = 7;
    image->slots[0].name[0] = 'A';
    image->slots[1].name[0] = 'B';
    image->slots[2].serviceId = 8;
    image->count = 2;
    decodeDescriptions(*image, *tables);
    EXPECT_EQ(tables->continuous.frames[0].services[0].description, image->slots[0]);
    EXPECT_EQ(tables->continuous.frames[1].services[0].description, image->slots[0]);
    EXPECT_EQ(tables->continuous.frames[0].services[1].description, ServiceDescription{});
    EXPECT_EQ(tables->shortTime.frames[0].services[0].description, kept);

    image->count = 0xFFFFFFFF;
    decodeDescriptions(*image, *tables);
    EXPECT_EQ(tables->continuous.frames[0].services[1].description, image->slots[2]);
}

// Decoding leaves them empty; a save must not.
TEST(Descriptions, OfShortTimeServicesAreThoseThatCameLastUntilTheyHaveTheirOwn) {
    const auto model = std::make_unique<ConfigModel>();
    auto from = std::make_unique<Configuration>();
    auto tables = std::make_unique<ConfigTables>();
    tables->continuous.frames.append(test::frame(0));
    tables->continuous.frames.append(test::frame(1, {test::service(1, 9)}));
    tables->shortTime.frames.append(test::frame(2, {test::service(1, 7), test::service(2, 8)}));
    encodeImage(*tables, from->image);
    for (std::uint16_t i = 0; i < 3; ++i) {
        from->descriptions.slots[i].serviceId = static_cast<std::uint16_t>(9 - i);
        from->descriptions.slots[i].name[0] = static_cast<char>('A' + i);
    }
    from->descriptions.count = 2;  // of 9 and 8; what is behind is none
    model->load(*from);
    const auto names = [&model] {
        const auto sent = model->configuration();
        std::string text;
        for (std::uint32_t i = 0; i < sent->descriptions.count; ++i)
            text += sent->descriptions.slots[i].name[0] ? sent->descriptions.slots[i].name[0] : '-';
        return text;
    };
    EXPECT_EQ(names(), "A-B");
    ServiceRecord service = model->tables().shortTime.frames[0].services[1];
    EXPECT_EQ(model->description(TableKind::ShortTime, service).name[0], 'B');
    EXPECT_EQ(model->description(TableKind::Continuous, service).name[0], '\0');
    service.description.name[0] = 'o';
    ASSERT_EQ(model->updateService(TableKind::ShortTime, 0, 1, service), 0);
    EXPECT_EQ(names(), "A-o");
    from->descriptions = {};
    model->load(*from);
    EXPECT_EQ(names(), "---") << "these came last";
}

}  // namespace
}  // namespace korvane
