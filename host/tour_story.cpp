#include "tour_story.h"

#include "tour_editing.h"

namespace korvane::host {

namespace {

enum ChannelControl : int {
    showInputChannels = 21,
    channelTypes = 1000,
    channels = 1005,
    channelAddress = 1010,
    payloadType = 1032,
    port = 1021,
    frameRate = 1109,
    frameRateGiven = 1110,
    dataUnitType = 1026,
};
constexpr FormVisit videoChannel = {"视频通道参数配置", "1041-video-channel"};
constexpr FormVisit audioChannel = {"音频通道参数配置", "1043-audio-channel"};
constexpr FormVisit ecmChannel = {"ECM通道参数配置", "1097-ecm-channel"};
constexpr int audio = 1, ecm = 4, dataBroadcast = 6;  // of the types

enum NetworkControl : int {
    networkLevel = 1001,
    networkName = 1006,
    channelNumber = 1009,
    centreFrequency = 1011,
    bandwidth = 1015,
    neighbourNumber = 1045,
    neighbourFrequency = 1054,
    frequencyPoints = 1068,
    neighbours = 1075,
    pairServiceId = 1096,
    pairs = 1106,
};
constexpr FormVisit frequencyPoint = {"频点信息", "1056-frequency-point"};
constexpr FormVisit neighbourNetwork = {"网络信息", "1059-neighbour-network"};
constexpr FormVisit serviceFrequency = {"业务频点关联配置", "1002-service-frequency"};

enum CaControl : int {
    ecmUnitType = 1016,
    emmUnitType = 1013,
    caSystems = 1048,
    caSystemId = 1049,
    ecmTransferMode = 1073,
    caServiceId = 1096,
    caSectionCount = 1123,
};
constexpr FormVisit caSystem = {"加密授权系统配置", "1095-ca-system"};

}  // namespace

void editChannels(Tour& tour) {
    HWND list = tour.robot().waitControl(openPage(tour, showInputChannels), channels);
    HWND form = openNew(tour, list, videoChannel);
    refuse(tour, form, {{channelAddress, "239.1.10.1"}, {port, "5000"}, {payloadType, "96"}},
           "已有相同IP和端口的输入通道!", "refusal-channel-address");
    accept(tour, form, videoChannel,
           {{channelAddress, "239.1.10.50"},
            {port, "5050"},
            {frameRateGiven, "1"},
            {frameRate, "30Hz"}});
    expectRow(tour, list, 7, {"7", "RTP", "239.1.10.50:5050", "H.264"});
    tour.picture(tour.host(), "1003-input-channels-edited");
    tour.robot().selectListBox(onPage(tour, channelTypes), dataBroadcast);
    removeRow(tour, list, lastRow(tour, list));
}

// All others serve frames that are there.
void addServiceChannels(Tour& tour) {
    HWND page = openPage(tour, showInputChannels);
    const auto select = [&](int type) {
        tour.robot().selectListBox(tour.robot().waitControl(page, channelTypes), type);
        return tour.robot().waitControl(page, channels);
    };
    accept(tour, openNew(tour, select(audio), audioChannel), audioChannel,
           {{channelAddress, "239.1.11.50"}, {port, "5150"}, {payloadType, "97"}});
    accept(tour, openNew(tour, select(ecm), ecmChannel), ecmChannel,
           {{channelAddress, "239.1.14.50"}, {port, "6150"}, {dataUnitType, "133"}});
    expectRow(tour, select(ecm), 2, {"2", "UDP", "239.1.14.50:6150"});
}

// What is typed into the page itself is taken when another one is opened.
void editNetwork(Tour& tour) {
    tour.robot().fill(openTable(tour, "网络信息表"), {{networkName, "端到端测试网"}});
    tour.note("端到端测试网");
}

void editFrequencyPoints(Tour& tour) {
    HWND list = onPage(tour, frequencyPoints);
    HWND form = openNew(tour, list, frequencyPoint);
    refuse(tour, form, {{channelNumber, "16"}, {centreFrequency, "666"}, {bandwidth, "2M"}},
           "已有相同频道", "refusal-frequency-point");
    accept(tour, form, frequencyPoint, {{channelNumber, "30"}});
    expectRow(tour, list, 3, {"30", "666", "2M"});
    removeRow(tour, list, 1);
}

void addNeighbourNetwork(Tour& tour) {
    HWND list = onPage(tour, neighbours);
    accept(tour, openNew(tour, list, neighbourNetwork), neighbourNetwork,
           {{networkLevel, "二级"},
            {neighbourNumber, "12"},
            {channelNumber, "44"},
            {neighbourFrequency, "762"}});
    expectRow(tour, list, 2, {"12", "二级", "44", "762", "8M"});
    tour.picture(tour.host(), "1036-0-1047-network-information-edited");
}

void editServiceFrequencies(Tour& tour) {
    openTable(tour, "持续业务配置表");
    HWND list = onPage(tour, pairs);
    accept(tour, openNew(tour, list, serviceFrequency), serviceFrequency,
           {{pairServiceId, "103"}, {channelNumber, "24"}});
    removeRow(tour, list, 12);
    expectRow(tour, list, 13, {"103", "24", "2"});
    tour.picture(tour.host(), "1036-2-1052-continuous-services-edited");
}

void addCaSystem(Tour& tour) {
    openTable(tour, "加密授权描述表");
    HWND list = onPage(tour, caSystems);
    HWND form = openNew(tour, list, caSystem);
    refuse(tour, form, {{caSystemId, "32600"}, {caServiceId, "106"}, {emmUnitType, "160"}},
           "数据单元类型必须在128~159之间", "refusal-unit-type");
    accept(tour, form, caSystem,
           {{emmUnitType, "140"}, {ecmUnitType, "141"}, {ecmTransferMode, "2"}});
    expectRow(tour, list, 2, {"2", "32600", "106", "140", "141", "2"});
}

void editCaSystem(Tour& tour) {
    HWND list = onPage(tour, caSystems);
    accept(tour, openRow(tour, list, 1, caSystem), caSystem,
           {{emmUnitType, "159"}, {ecmTransferMode, "3"}});
    openByKeys(tour, list, 1, caSystem);
    expectRow(tour, list, 1, {"1", "32514", "201", "159", "131", "3"});
}

// What is typed into the page itself is taken by the save.
void removeCaSystem(Tour& tour) {
    HWND list = onPage(tour, caSystems);
    removeRow(tour, list, 0);
    expectRow(tour, list, 0, {"0", "32514", "201", "159", "131", "3"});
    tour.robot().fill(GetParent(list), {{caSectionCount, "2"}});
    tour.picture(tour.host(), "1036-5-1092-conditional-access-edited");
}

}  // namespace korvane::host
