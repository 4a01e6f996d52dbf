#include "review/findings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

#include "model/config_file.h"
#include "support/configurations.h"
#include "support/sample_images.h"

namespace korvane {
namespace {

using Lines = std::vector<std::string>;
using C = Configuration;

Lines findingLines(const Configuration& content) {
    Lines lines;
    for (const auto& [severity, place, sentence] : findingsOf(content))
        lines.push_back((severity == Finding::Severity::Error ? "error " : "warning ") + place +
                        ": " + sentence);
    return lines;
}

FrameSlot& frame(C& c, std::size_t index) {
    return c.image.continuous.frames[index];
}

InputChannelRecord& component(C& c, std::size_t f, std::size_t s, std::size_t index) {
    return frame(c, f).services[s].components[index];
}

void announce(C& c, std::size_t f) {
    FrameHead& head = frame(c, f).head;
    for (std::size_t i = head.serviceCount; i < limits::services; ++i) {
        ServiceSlot& slot = frame(c, f).services[i];
        slot.head = frame(c, f).services[0].head;
        slot.head.subFrameNumber = static_cast<std::uint8_t>(100 + i);
        slot.head.serviceIdAgain = static_cast<std::uint16_t>(1000 + 10 * f + i);
        slot.head.type = static_cast<std::uint8_t>(ServiceType::Esg);
        slot.head.componentCount = 0;
    }
    head.serviceCount = limits::services;
}

TEST(Findings, AreOfOneBrokenRuleEach) {
    struct Case {
        void (*edit)(Configuration& content);
        Lines lines;
    };
    const Case cases[] = {
        {[](C&) {}, {}},
        // The network.
        {[](C& c) { c.image.network.countryCode[3] = 'A'; },
         {"error network: country code CHNA is wrong (\"国家码超过3个字符\")"}},
        {[](C& c) { c.image.network.level = 6; },
         {"error network: network level 6 is not from 0 to 5"}},
        {[](C& c) { c.image.network.ownFrequency.bandwidth = 2; },
         {"error network: the frequency point's bandwidth 2 is not from 0 to 1"}},
        {[](C& c) { c.image.network.otherFrequencies[1].channelNumber = 20; },
         {"error other frequency point 20: the network's own frequency point has this channel "
          "number (\"其他频道不能包含当前网络中的频点\")"}},
        {[](C& c) { c.image.network.otherFrequencies[1].channelNumber = 16; },
         {"error other frequency point 16: another frequency point has this channel number "
          "(\"已有相同频道\")"}},
        {[](C& c) { c.image.network.otherFrequencies[0].bandwidth = 9; },
         {"error other frequency point 16: bandwidth 9 is not from 0 to 1"}},
        {[](C& c) { c.image.network.neighbours[1].networkNumber = 11; },
         {"error other network 11: another network has this number (\"已有相同网络号的网络\")"}},
        {[](C& c) {
             c.image.network.neighbours[0].level = 7;
             c.image.network.neighbours[1].bandwidth = 2;
         },
         {"error other network 11: network level 7 is not from 0 to 5",
          "error other network 70001: bandwidth 2 is not from 0 to 1"}},
        // Frames.
        {[](C& c) { frame(c, 6).head.id = 40; },
         {"error frame 40: id 40 is wrong (\"复用帧标识应在0~39之间\")"}},
        {[](C& c) { frame(c, 6).head.id = 5; },
         {"error frame 5: another frame has this id (\"已有相同标识的复用帧\")"}},
        {[](C& c) { c.image.shortTime.frames[0].head.id = 5; },
         {"error short-time frame 5: another frame has this id (\"已有相同标识的复用帧\")"}},
        {[](C& c) { frame(c, 6).head.timeSlotCount = 0; },
         {"error frame 6: it has no time slots (\"时隙数不能为0\")"}},
        {[](C& c) {
             frame(c, 6).head.rsRate = 4;
             frame(c, 5).head.ldpcRate = 2;
             frame(c, 4).head.modulation = 3;
         },
         {"error frame 4: modulation 3 is not from 0 to 2",
          "error frame 5: LDPC code rate 2 is not from 0 to 1",
          "error frame 6: RS code rate 4 is not from 0 to 3"}},
        {[](C& c) {
             frame(c, 6).head.byteInterleaving = 4;
             frame(c, 5).head.scrambling = 8;
         },
         {"error frame 5: scrambling 8 is not from 0 to 7",
          "error frame 6: byte interleaving 4 is not from 0 to 3"}},
        {[](C& c) { frame(c, 6).services[0].bandwidth = 516'097; },
         {"error frame 6: its services need more than it carries "
          "(\"总业务带宽(516097)超过信道带宽(516096 bps)，溢出带宽(1 bps)\")"}},
        {[](C& c) { frame(c, 6).services[0].bandwidth = 516'096; }, {}},
        {[](C& c) {
             frame(c, 1).services[0].bandwidth = 0xFFFF'FFFF;
             frame(c, 1).services[1].bandwidth = 2;
         },
         {"error frame 1: its services need more than it carries "
          "(\"总业务带宽(4294967297)超过信道带宽(1032192 bps)，溢出带宽(4293935105 bps)\")"}},
        {[](C& c) {
             frame(c, 6).head.timeSlots[3] = 40;
             frame(c, 6).head.timeSlots[1] = 41;
         },
         {"error frame 6: time slots 40-41 are beyond 39 (\"已达最大时隙数，超出时隙数(2)\")"}},
        {[](C& c) {
             frame(c, 6).head.timeSlots[3] = 25;
             frame(c, 5).head.timeSlots[0] = 1;
         },
         {"error frame 5: time slot 1 is taken twice in its table",
          "error frame 6: time slot 25 is taken twice in its table"}},
        {[](C& c) { c.image.shortTime.frames[1].head.timeSlots[0] = 0; },
         {"warning short-time frame 8: time slot 0 is taken by continuous frames, too"}},
        {[](C& c) { c.image.shortTime.frames[0].head.timeSlots[0] = 33; },
         {"error short-time frame 8: time slot 33 is taken twice in its table"}},
        // Services.
        {[](C& c) { frame(c, 6).services[0].head.serviceIdAgain = 3; },
         {"error frame 6, service 3: another service has this id (\"已有相同标识的业务\")",
          "warning continuous service table, pair (106, 20): no frame carries this service "
          "(\"无效业务\")"}},
        {[](C& c) {
             c.image.shortTime.frames[1].services[0].head.serviceIdAgain = 401;
             c.image.shortTimeServices.entryCount = 1;
         },
         {"warning short-time frame 8, service 401: a service of another short-time frame has "
          "this id"}},
        {[](C& c) { frame(c, 3).services[2].head.subFrameNumber = 1; },
         {"error frame 3, service 203: another service of its frame has its sub-frame number "
          "(\"已有相同标识的子帧\")"}},
        {[](C& c) { frame(c, 6).services[0].head.componentCount = 0; },
         {"error frame 6, service 106: it has no components (\"请添加组件\")"}},
        {[](C& c) {
             frame(c, 6).services[0].head.componentCount = 0;
             frame(c, 6).services[0].head.type = 0;
         },
         {"error frame 6, service 106: it has no components (\"请添加组件\")"}},
        {[](C& c) { frame(c, 0).services[0].head.type = 5; },
         {"error frame 0, service 1: it has no component (\"请选择输入通道\")"}},
        {[](C& c) { frame(c, 4).services[1].head.componentCount = 0; }, {}},
        {[](C& c) {
             frame(c, 1).services[0].head.type = 6;
             frame(c, 6).services[0].head.encapsulation = 2;
         },
         {"error frame 1, service 101: service type 6 is not from 0 to 5 (\"请选择业务类型\")",
          "error frame 6, service 106: encapsulation 2 is not from 0 to 1 (\"请选择封装模式\")"}},
        {[](C& c) {
             ServiceSlot& slot = frame(c, 5).services[0];
             slot.components.fill(slot.components[2]);
             slot.head.componentCount = 8;
         },
         {"error frame 5, service 105: all its components are of one type "
          "(\"已达最大组件数(8)\")"}},
        // Components.
        {[](C& c) { component(c, 6, 0, 2).port = 1; },
         {"error frame 6, service 106, component audio 239.1.11.7:1: no input channel has this "
          "stream any more"}},
        {[](C& c) { component(c, 4, 1, 0).port = 1; },
         {"warning frame 4, service 302, component ESG 239.1.13.1:1: no input channel has this "
          "stream any more"}},
        {[](C& c) { component(c, 6, 0, 2).position = 200; }, {}},
        {[](C& c) { component(c, 6, 0, 2).payloadType = 3; },
         {"warning frame 6, service 106, component audio 239.1.11.7:5112: the input channel of "
          "this stream has other data"}},
        {[](C& c) { component(c, 6, 0, 2) = component(c, 1, 0, 1); },
         {"warning frame 6, service 106, component audio 239.1.11.1:5100: another service has "
          "this stream"}},
        {[](C& c) {
             component(c, 6, 0, 2) = c.channels[15];
             frame(c, 3).services[0].head.componentCount = 0;
             frame(c, 3).services[0].head.type = 3;
         },
         {"warning frame 6, service 106, component DRA 239.1.12.1:5200: a service of its type has "
          "no such component"}},
        {[](C& c) { component(c, 3, 1, 0) = component(c, 3, 0, 1); }, {}},
        {[](C& c) { component(c, 3, 1, 0) = component(c, 5, 0, 2); },
         {"warning frame 5, service 105, component ECM 239.1.14.1:6100: another service has this "
          "stream"}},
        // Input channels.
        {[](C& c) { c.channels[26].channelId = 26; },
         {"error input channel 26 (emergency 239.1.17.1:6400): another input channel has this id"}},
        {[](C& c) {
             c.channels[26].address = c.channels[25].address;
             c.channels[26].port = c.channels[25].port;
         },
         {"error input channel 27 (emergency 239.1.16.3:6302): another input channel has this "
          "address and port (\"已有相同IP和端口的输入通道!\")"}},
        {[](C& c) {
             c.channels[26].address = {240, 0, 0, 1};
         },
         {"error input channel 27 (emergency 240.0.0.1:6400): address 240.0.0.1:6400 is wrong "
          "(\"组播地址不正确!\")"}},
        {[](C& c) {
             c.channels[26].address = {};
             c.channels[26].payloadType = 200;
         },
         {}},
        {[](C& c) { c.channels[26].type = 8; },
         {"error input channel 27 (type 8 239.1.17.1:6400): type 8 is not from 0 to 7"}},
        {[](C& c) { c.channels[26].type = 5; },
         {"warning input channel 27 (EMM 239.1.17.1:6400): data unit type 0 is wrong "
          "(\"数据单元类型必须在128~159之间\")"}},
        {[](C& c) {
             auto& channel = c.channels[26];
             channel.type = 0, channel.payloadType = 128, channel.videoCoding = 2;
             channel.videoFrameRate = 4, channel.audioCoding = 9;
         },
         {"error input channel 27 (video 239.1.17.1:6400): payload type 128 is not from 0 to 127",
          "error input channel 27 (video 239.1.17.1:6400): video coding 2 is not from 0 to 1",
          "error input channel 27 (video 239.1.17.1:6400): video frame rate 4 is not from 0 to 3"}},
        {[](C& c) {
             c.channels[26].type = 1;
             c.channels[26].audioCoding = 3;
             c.channels[26].audioSampleRate = 9;
         },
         {"error input channel 27 (audio 239.1.17.1:6400): audio coding 3 is not from 0 to 2",
          "error input channel 27 (audio 239.1.17.1:6400): audio sample rate 9 is not from 0 to "
          "8"}},
        {[](C& c) {
             c.channels[26].type = 2;
             c.channels[26].audioCoding = 1;
         },
         {"error input channel 27 (DRA 239.1.17.1:6400): audio coding 1 is not 0"}},
        // Tables.
        {[](C& c) { c.image.continuousServices.entries[1].serviceId = 101; },
         {"error continuous service table, pair (101, 20): this pair stands there twice "
          "(\"已有相同的业务标识和频道号对\")"}},
        {[](C& c) { c.image.shortTimeServices.entries[1].serviceId = 101; },
         {"error short-time service table, pair (101, 20): this pair stands there twice "
          "(\"已有相同的业务标识和频道号对\")"}},
        {[](C& c) { c.image.shortTimeServices.entries[1].serviceId = 999; },
         {"warning short-time service table, pair (999, 20): no frame carries this service "
          "(\"无效业务\")"}},
        {[](C& c) { c.image.caDescriptions.entries[1].caSystemId = 0x7F01; },
         {"error CA system 32513: another entry has this CA system id "
          "(\"已有相同的CA System ID\")"}},
        {[](C& c) { c.image.caDescriptions.entries[1].serviceId = 105; },
         {"error CA system 32514: another entry has its service id (\"已有相同的业务标识\")"}},
        {[](C& c) { c.image.caDescriptions.entries[1].serviceId = 999; },
         {"warning CA system 32514: no frame carries its service"}},
        {[](C& c) {
             auto& e = c.image.caDescriptions.entries[0];
             e.emmDataUnitType = 127, e.ecmDataUnitType = 160, e.ecmTransferMode = 4;
         },
         {"error CA system 32513: EMM data unit type 127 is wrong "
          "(\"数据单元类型必须在128~159之间\")",
          "error CA system 32513: ECM data unit type 160 is wrong "
          "(\"数据单元类型必须在128~159之间\")",
          "error CA system 32513: ECM transfer mode 4 is not from 0 to 3"}},
        // The device.
        {[](C& c) {
             auto& o = c.image.outputParams;
             o.pmsPid = 8192, o.updateSequenceAdvance = 3, o.clockSource = 2;
         },
         {"error output parameters: PMS PID 8192 is wrong (\"PID必须在0~0x1fff之间\")",
          "error output parameters: update sequence advance 3 is not from 0 to 2",
          "error output parameters: clock source 2 is not from 0 to 1"}},
        {[](C& c) { c.image.outputParams.systemBitRate = 999'999; },
         {"error output parameters: system bit rate in kbit/s: 999 is wrong "
          "(\"系统码率应在1000Kbps~50000Kbps之间\")"}},
        {[](C& c) {
             c.params.controlMac[1] = '1';
             c.params.serviceMac[0] = 0;
         },
         {"error device parameters: the control port's MAC address 011A2B3C4D5E is wrong "
          "(\"MAC地址第1个字节不能为奇数\")",
          "error device parameters: the service port's MAC address \"\" is wrong "
          "(\"MAC地址必须为12个16进制字符\")"}},
    };
    for (const Case& c : cases) {
        const auto content = test::sampleImages();
        c.edit(*content);
        EXPECT_EQ(findingLines(*content), c.lines);
    }
}

TEST(Findings, AreOfWhatThereIsMoreOfThanPlaces) {
    struct Case {
        void (*edit)(Configuration& content);
        const char* line;
    };
    const Case cases[] = {
        {[](C& c) { c.image.network.otherFrequencyCount = 255; },
         "error network: of 255 other frequency points only 16 have a place"},
        {[](C& c) { c.image.network.neighbourCount = 17; },
         "error network: of 17 other networks only 16 have a place"},
        {[](C& c) { c.image.continuous.frameCount = 41; },
         "error continuous multiplex table: of 41 frames only 40 have a place"},
        {[](C& c) { c.image.shortTime.frameCount = 255; },
         "error short-time multiplex table: of 255 frames only 40 have a place"},
        {[](C& c) { frame(c, 6).head.timeSlotCount = 255; },
         "error frame 6: its number of time slots 255 is not from 0 to 40"},
        {[](C& c) { frame(c, 6).head.serviceCount = 9; },
         "error frame 6: its number of services 9 is not from 0 to 8 (\"已达最大子帧数(8)\")"},
        {[](C& c) { frame(c, 6).services[0].head.componentCount = 65535; },
         "error frame 6, service 106: its number of components 65535 is not from 0 to 8 "
         "(\"已达最大组件数(8)\")"},
        {[](C& c) { c.image.continuousServices.entryCount = 41; },
         "error continuous service table: of 41 pairs only 40 have a place "
         "(\"持续业务配置表最多支持40项\")"},
        {[](C& c) { c.image.shortTimeServices.entryCount = 65535; },
         "error short-time service table: of 65535 pairs only 40 have a place"},
        {[](C& c) { c.image.caDescriptions.entryCount = 11; },
         "error CA description table: of 11 systems only 10 have a place"},
        {[](C& c) { c.channelsLeftOut.resize(34); },
         "error input channels: of 61 channels only 60 have a place "
         "(\"超过支持的最大输入通道数\")"},
        {[](C& c) { c.descriptions.count = 41; },
         "error service descriptions: of 41 descriptions only 40 have a place"},
        {[](C& c) {
             for (const std::size_t f : {1, 2, 3, 4, 5}) announce(c, f);
         },
         "warning service descriptions: of 43 services that are described only 40 have a place"},
        {[](C& c) {
             for (const std::size_t f : {1, 2, 3, 4, 5}) announce(c, f);
         },
         "error continuous service table: of 43 pairs that its services need only 40 have a place "
         "(\"持续业务配置表最多支持40项\")"},
    };
    for (const Case& c : cases) {
        const auto content = test::sampleImages();
        c.edit(*content);
        EXPECT_THAT(findingLines(*content), testing::Contains(c.line));
    }
}

TEST(Findings, OfAnyBytesComeToAnEnd) {
    std::mt19937 random(11);
    std::vector<std::uint8_t> file = config_file::encode(*test::sampleImages());
    for (std::size_t i = 36; i < file.size(); ++i) file[i] = static_cast<std::uint8_t>(random());
    int result = -1;
    EXPECT_FALSE(findingsOf(*config_file::decodeWhole(file, result)).empty());
}

}  // namespace
}  // namespace korvane
