#include "review/differences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

#include "model/config_file.h"
#include "support/configurations.h"
#include "support/sample_images.h"
#include "text_form/text_form.h"

namespace korvane {
namespace {

using text_form::Json;
using Content = std::unique_ptr<Configuration>;
using Lines = std::vector<std::string>;

void expectPatched(const Configuration& a, const Configuration& b) {
    const std::string patch = patchOf(a, b);
    EXPECT_EQ(text_form::textOf(text_form::toTree(a).patch(Json::parse(patch))),
              text_form::write(b));
    EXPECT_EQ(patch == "[]\n", config_file::encode(a) == config_file::encode(b));
}

TEST(Differences, AreToldInAPersonsWords) {
    struct Case {
        void (*edit)(Configuration& content);
        Lines lines;
    };
    using C = Configuration;
    const Case cases[] = {
        {[](C&) {}, {}},
        {[](C& c) { c.image.continuous.frames[3].services[1].bandwidth = 512'000; },
         {"frame 3, service 202: bandwidth 160000 → 512000 bit/s"}},
        {[](C& c) { c.image.shortTime.frames[0].head.modulation = 2; },
         {"short-time frame 7: modulation QPSK → 16QAM"}},
        {[](C& c) { c.image.continuous.frames[1].head.timeSlotCount = 7; },
         {"frame 1: time slots 1-8 → 1-7", "bytes of no field at 8514 (08) added"}},
        {[](C& c) { std::swap(c.image.continuous.frames[2], c.image.continuous.frames[4]); },
         {"frame 2 moved from place 3 to 5", "frame 4 moved from place 5 to 3"}},
        {[](C& c) {
             std::rotate(&c.image.continuous.frames[1], &c.image.continuous.frames[2],
                         &c.image.continuous.frames[5]);
         },
         {"frame 1 moved from place 2 to 5"}},
        {[](C& c) {
             auto& services = c.image.continuous.frames[3].services;
             std::swap(services[0], services[1]);
         },
         {"frame 3, service 202 moved from place 2 to 1"}},
        {[](C& c) {
             auto& frames = c.image.continuous.frames;
             frames[5].services[1] = frames[6].services[0];
             frames[5].services[1].head.scrambled = 1;
             frames[5].head.serviceCount = 2;
             frames[6].services[0] = {};
             frames[6].head.serviceCount = 0;
         },
         {"service 106 moved from frame 6 to frame 5", "frame 5, service 106: scrambled no → yes"}},
        {[](C& c) {
             c.image.continuous.frames[6].head.serviceCount = 0;
             c.image.continuous.frames[6].services[0] = {};
         },
         {"frame 6, service 106 (media) removed"}},
        {[](C& c) { c.image.continuous.frames[3].services[0].components[0].payloadType = 98; },
         {"frame 3, service 201, component 16: payload type 97 → 98"}},
        {[](C& c) {
             c.image.shortTime.frameCount = 0;
             c.image.shortTime.frames = {};
         },
         {"short-time frame 7 removed", "short-time frame 8 removed"}},
        {[](C& c) {
             c.channels[0].port = 5555;
             c.channels.append(test::channel(ChannelType::Video, 9, 99));
         },
         {"input channel 1: receive address 239.1.10.1:5000 → 239.1.10.1:5555",
          "input channel 0 (video, 225.1.2.9:99) added"}},
        {[](C& c) { c.channels[0].channelId = 2; },
         {"input channel 1 (video, 239.1.10.1:5000) removed",
          "input channel 2: receive address 239.1.10.2:5002 → 239.1.10.1:5000",
          "input channel 2: video frame rate given yes → no",
          "input channel 2: video frame rate 30Hz → 25Hz",
          "input channel 2 #2 (video, 239.1.10.2:5002) added"}},
        {[](C& c) {
             c.image.network.ownFrequency.centreFrequency += 12'500;
             c.image.network.name[0] = '\x1B';
             c.image.network.countryCode = {};
         },
         {"network: country code CHN → \"\"",
          "network: network name 示范城市移动多媒体广播网 → bytes "
          "1bbeb7b6b3c7cad0d2c6b6afb6e0c3bdcce5b9e3b2a5cdf8",
          "network, frequency point: centre frequency 530 MHz → 530.125 MHz"}},
        {[](C& c) {
             c.image.network.otherFrequencies[0].bandwidth = 1;
             c.image.network.neighbours[1].level = 1;
         },
         {"other frequency point 16: bandwidth 8M → 2M",
          "other network 70001: network level 4 → 1"}},
        {[](C& c) { c.image.continuousServices.entries[0].channelNumber = 9; },
         {"continuous service table, pair (101, 20) removed",
          "continuous service table, pair (101, 9) added"}},
        {[](C& c) { c.image.caDescriptions.entries[0].ecmDataUnitType = 140; },
         {"CA system 32513: ECM data unit type 129 → 140"}},
        {[](C& c) {
             c.image.outputParams.isBackup = 1;
             c.image.outputParams.alarmSwitches ^= 0x28;
         },
         {"output parameters: is backup no → yes", "output parameters: alarm on 10M yes → no",
          "output parameters: alarm switches 08 → none"}},
        {[](C& c) {
             c.fileReserved[27] = 1;
             c.image.reserved[3] = 255;
         },
         {"file reserved none → 00000000000000000000000000000000000000000000000000000001",
          "bytes of no field at 629895 (ff) added"}},
        {[](C& c) {
             c.params.serviceMac[0] = '2';
             c.descriptions.slots[0].carried1044 = 1;
         },
         {"description of service 101: carried 1044 none → 0001",
          "device parameters: service MAC 001A2B3C4D5F → 201A2B3C4D5F"}},
    };
    const Content a = test::sampleImages();
    for (const Case& c : cases) {
        const Content b = test::sampleImages();
        c.edit(*b);
        EXPECT_EQ(differencesOf(*a, *b), c.lines);
        expectPatched(*a, *b);
        expectPatched(*b, *a);
    }
}

Content randomContent(unsigned seed) {
    auto content = std::make_unique<Configuration>();
    content->image = *test::randomImage(seed);
    for (unsigned i = 0; i < seed % 61; ++i)
        content->channels.append(content->image.shortTime.frames[i % 8].services[0].components[0]);
    return content;
}

// One byte of the file, anywhere but in its version and its count of channels.
Content withAnotherByte(const Configuration& content, std::mt19937& random) {
    std::vector<std::uint8_t> file = config_file::encode(content);
    const std::size_t place = 36 + random() % (file.size() - 36);
    file[place] = static_cast<std::uint8_t>(file[place] + 1 + random() % 255);
    int result = -1;
    return config_file::decodeWhole(file, result);
}

TEST(Differences, AreNoneExactlyWhenEveryByteIsTheSame) {
    std::mt19937 random(7);
    for (unsigned seed = 0; seed < 2; ++seed) {
        const Content a = seed == 0 ? test::sampleImages() : randomContent(seed * 10);
        EXPECT_THAT(differencesOf(*a, *a), testing::IsEmpty());
        expectPatched(*a, *a);
        for (int i = 0; i < 4; ++i) {
            const Content b = withAnotherByte(*a, random);
            EXPECT_THAT(differencesOf(*a, *b), Not(testing::IsEmpty()));
            expectPatched(*a, *b);
        }
    }
}

TEST(Patch, SaysNoMoreThanItMust) {
    const Content a = test::sampleImages(), b = test::sampleImages();
    MultiplexBlock& table = b->image.continuous;
    std::copy(&table.frames[3], &table.frames[7], &table.frames[2]);
    table.frames[--table.frameCount] = {};
    table.frames[2].services[1].head.scrambled = 1;
    EXPECT_EQ(Json::parse(patchOf(*b, *a)).size(), 2u);
    EXPECT_EQ(Json::parse(patchOf(*a, *a)), Json::array());
    table.frames[2].services[1].head.scrambled = 0;
    EXPECT_EQ(Json::parse(patchOf(*a, *b)),
              Json::parse(R"([{"op": "remove", "path": "/continuousMultiplexTable/frames/2"}])"));
}

}  // namespace
}  // namespace korvane
