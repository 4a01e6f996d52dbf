#include "simulator/sample_configuration.h"

#include <cstring>

#include "simulator/gbk_texts.h"
#include "simulator/sample_services.h"

namespace korvane {

namespace {

// MHz as frequencies are kept: in units of 10 Hz.
constexpr std::uint32_t megahertz(std::uint32_t value) {
    return value * 100'000;
}

constexpr std::uint8_t bandwidth8MHz = 0, bandwidth2MHz = 1;

void addNetwork(NetworkInfo& network) {
    network.word0 = {0, 0, 0, 1};
    network.word1 = {0x20, 0x09, 0x04, 0x23};
    network.networkNumber = 10;
    network.tableId = 1;
    network.carried27 = 1;
    network.level = 3;
    network.countryCode = {'C', 'H', 'N', 0};
    network.name = gbk::networkName;
    network.ownFrequency = {sampleChannelNumber, bandwidth8MHz, {}, megahertz(530)};
    network.otherFrequencies.append({16, bandwidth8MHz, {}, megahertz(498)});
    network.otherFrequencies.append({22, bandwidth2MHz, {}, megahertz(546)});
    network.otherFrequencies.append({sampleOtherChannelNumber, bandwidth8MHz, {}, megahertz(562)});
    network.neighbours.append({3, 43, bandwidth8MHz, 0, 11, megahertz(754)});
    network.neighbours.append({4, 31, bandwidth8MHz, 0, 70001, megahertz(658)});
}

void addConditionalAccess(CaDescriptionTable& table) {
    table.tableId = 7;
    table.sendFlag = 1;
    table.sectionCount = 1;
    table.entries.append({0x7F01, sampleCinemaServiceId, 128, 129, 0, 0});
    table.entries.append({0x7F02, sampleMusicServiceId, 130, 131, 1, 0});
}

void setOutput(OutputParamBlock& output, std::size_t channelCount) {
    constexpr std::uint8_t allAlarms = 0x78;
    output.pmsPid = 0x100;
    output.deviceNumber = 1;
    output.timeLabelEnabled = 1;
    output.updateSequenceAdvance = 1;
    output.sendNextFrameParameters = 1;
    output.transmitDelaySeconds = 2;
    output.clockSource = 1;
    output.backupAddress = {192, 168, 1, 102};
    output.alarmSwitches = allAlarms;
    output.systemBitRate = 8'000'000;
    output.lastChannelId = static_cast<std::uint32_t>(channelCount);
}

void setVersions(ParamBlock264& block) {
    block.value2 = 0x0206;
    enterText("V2.0.6", block.softwareVersion);
    enterText("V1.3", block.hardwareVersion);
}

void putChannels(const FlatChannelList& channels, DeviceConfiguration& configuration) {
    configuration.channels[0] = static_cast<std::uint8_t>(channels.size());
    std::uint8_t* target = configuration.channels.data() + 1;
    for (InputChannelRecord channel : channels) {
        toNetworkOrder(channel);
        std::memcpy(target, &channel, sizeof(channel));
        target += sizeof(channel);
    }
}

DeviceParamBlock sampleParams(std::string_view address) {
    DeviceParamBlock params{};
    enterText(address, params.controlPort.address);
    enterText("255.255.255.0", params.controlPort.subnetMask);
    enterText("192.168.1.1", params.controlPort.gateway);
    enterText("192.168.1.10", params.managementHost);
    enterText("001A2B3C4D5E", params.controlMac);
    enterText("192.168.2.101", params.servicePort.address);
    enterText("255.255.255.0", params.servicePort.subnetMask);
    enterText("192.168.2.1", params.servicePort.gateway);
    enterText("001A2B3C4D5F", params.serviceMac);
    return params;
}

}  // namespace

std::unique_ptr<ConfigTables> sampleTables() {
    const FlatChannelList channels = sampleChannels();
    auto tables = std::make_unique<ConfigTables>();
    tables->header = {1, 1, 0, 0, 0, 0, 0, 1};
    tables->headerValue = 0x0103;
    tables->headerLength = 12;
    addNetwork(tables->network);
    addSampleTables(*tables, channels);
    addSampleServiceFrequencies(*tables);
    setVersions(tables->params264);
    addConditionalAccess(tables->caDescriptions);
    setOutput(tables->outputParams, channels.size());
    return tables;
}

std::unique_ptr<DeviceConfiguration> sampleConfiguration() {
    const auto tables = sampleTables();
    auto configuration = std::make_unique<DeviceConfiguration>();
    encodeImage(*tables, configuration->image);
    toNetworkOrder(configuration->image);
    encodeDescriptions(*tables, {}, configuration->descriptions);
    toNetworkOrder(configuration->descriptions);
    putChannels(sampleChannels(), *configuration);
    return configuration;
}

std::unique_ptr<DeviceState> sampleState(std::string_view address) {
    auto state = std::make_unique<DeviceState>();
    state->set = *sampleConfiguration();
    state->applied = state->set;
    state->paramsSet = sampleParams(address);
    state->paramsApplied = state->paramsSet;
    return state;
}

}  // namespace korvane
