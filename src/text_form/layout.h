#pragma once

#include "model/channel_text.h"
#include "model/configuration.h"
#include "model/frame_text.h"
#include "model/frequency_text.h"
#include "text_form/fields.h"

// The text form's records, each field once: its key, its place, and how it is written.

namespace korvane::text_form {

inline constexpr Choice bandwidth{bandwidthNames};

inline constexpr auto frequencyPointFields = [](auto& fields, auto& point) {
    fields("channelNumber", point.channelNumber, number);
    fields("centreFrequency", point.centreFrequency, frequency);
    fields("bandwidth", point.bandwidth, bandwidth);
    fields.carried("carried2", point.carried);
};
inline constexpr Record frequencyPoint{"frequencyPoint", frequencyPointFields};

inline constexpr auto neighbourNetworkFields = [](auto& fields, auto& network) {
    fields("networkLevel", network.level, number);
    fields("networkNumber", network.networkNumber, number);
    fields("channelNumber", network.channelNumber, number);
    fields("centreFrequency", network.centreFrequency, frequency);
    fields("bandwidth", network.bandwidth, bandwidth);
    fields.carried("carried3", network.carried);
};
inline constexpr Record neighbourNetwork{"otherNetwork", neighbourNetworkFields};

inline constexpr auto networkFields = [](auto& fields, auto& block) {
    fields("tableId", block.tableId, number);
    fields("networkLevel", block.level, number);
    fields("countryCode", block.countryCode, gbkText);
    fields("networkNumber", block.networkNumber, number);
    fields("networkName", block, networkName);
    fields("frequencyPoint", block.ownFrequency, frequencyPoint);
    fields.list("otherFrequencyPoints", block.otherFrequencies, block.otherFrequencyCount,
                frequencyPoint);
    fields.list("otherNetworks", block.neighbours, block.neighbourCount, neighbourNetwork);
    fields.carried("word0", block.word0);
    fields.carried("word1", block.word1);
    fields.carried("carried27", block.carried27);
};
inline constexpr Record network{"network", networkFields};

template <class... Types>
bool isOneOf(std::uint8_t type, Types... types) {
    return ((type == static_cast<std::uint8_t>(types)) || ...);
}

inline constexpr auto carriedChannelFields = [](auto& fields, auto& channel) {
    fields.carried("carried2", channel.carried2);
    fields.carried("carried10", channel.carried10);
    fields.carried("carried14", channel.carried14);
    fields.carried("carried17", channel.carried17);
    fields.carried("carried21", channel.carried21);
    fields.carried("carried22", channel.carried22);
    fields.carried("carried24", channel.carried24);
    fields.carried("carried28", channel.carried28);
    fields.carried("carried30", channel.carried30);
    fields.carried("carried34", channel.carried34);
    fields.carried("carried37", channel.carried37);
    fields.carried("carried39", channel.carried39);
    fields.carried("carried40", channel.carried40);
    fields.carried("carried44", channel.carried44);
    fields.carried("carried50", channel.carried50);
    fields.carried("carried60", channel.carried60);
};

// Which fields mean something depends on the type.
inline constexpr auto inputChannelFields = [](auto& fields, auto& channel) {
    using enum ChannelType;
    fields("type", channel.type, Choice{channelTypeTerms});
    const std::uint8_t type = channel.type;
    const bool isVideo = isOneOf(type, Video), isAudio = isOneOf(type, Audio, Dra),
               isStream = isVideo || isAudio;
    fields("channelId", channel.channelId, number);
    fields("receiveAddress", channel, streamAddress);
    fields("receiveMode", channel.receiveMode, number);
    fields.when(isStream, "rtcpSync", channel.rtcpSync, flag);
    fields.when(isStream, "payloadType", channel.payloadType, number);
    fields.when(isVideo, "videoCoding", channel.videoCoding, Choice{videoCodingNames});
    fields.when(isVideo, "videoFrameRateGiven", channel.frameRateGiven, flag);
    fields.when(isVideo, "videoFrameRate", channel.videoFrameRate, Choice{videoFrameRateNames});
    fields.when(isAudio, "audioCoding", channel.audioCoding, Choice{audioCodingNames});
    fields.when(isAudio, "audioParametersGiven", channel.audioParametersGiven, flag);
    fields.when(isAudio, "audioSampleRate", channel.audioSampleRate, Choice{audioSampleRateNames});
    fields.when(isOneOf(type, Esg, Data, Emergency), "streamParameter", channel.streamParameter,
                number);
    fields.when(isOneOf(type, Ecm, Emm), "dataUnitType", channel.dataUnitType, number);
    fields.when(isOneOf(type, Ecm), "maxSendIntervalMs", channel.maxSendIntervalMs, number);
    fields.when(false, "position", channel.position, number);
    carriedChannelFields(fields, channel);
};
inline constexpr Record inputChannel{"inputChannel", inputChannelFields};

inline constexpr auto serviceFields = [](auto& fields, auto& slot) {
    constexpr std::uint8_t firstType = 1;
    auto& head = slot.head;
    fields("subFrameNumber", head.subFrameNumber, number);
    fields("serviceId", head, serviceId);
    fields("serviceType", head.type, Choice{serviceTypeTerms, firstType});
    fields("scrambled", head.scrambled, flag);
    fields("encapsulation", head.encapsulation, Choice{encapsulationTerms});
    fields("esgInternal", head.esgInternal, flag);
    fields("bandwidthLimit", slot.bandwidth, number);
    fields.list("components", slot.components, head.componentCount, inputChannel);
};
inline constexpr Record service{"service", serviceFields};

inline constexpr auto frameFields = [](auto& fields, auto& slot) {
    auto& head = slot.head;
    fields("id", head.id, number);
    fields("rsCodeRate", head.rsRate, Choice{rsCodeRateNames});
    fields("byteInterleaving", head.byteInterleaving, Choice{byteInterleaveTerms});
    fields("ldpcCodeRate", head.ldpcRate, Choice{ldpcRateNames});
    fields("modulation", head.modulation, Choice{modulationNames});
    fields("scrambling", head.scrambling, Choice{scramblingModeTerms});
    fields.list("timeSlots", head.timeSlots, head.timeSlotCount, number);
    fields.list("services", slot.services, head.serviceCount, service);
};
inline constexpr Record frame{"frame", frameFields};

inline constexpr auto multiplexTableFields = [](auto& fields, auto& block) {
    fields("tableId", block.header[0], number);
    fields("channelNumber", block.header[1], number);
    fields.carried("carried2", block.header[2]);
    fields.list("frames", block.frames, block.frameCount, frame);
};
inline constexpr Record multiplexTable{"multiplexTable", multiplexTableFields};

inline constexpr auto serviceFrequencyFields = [](auto& fields, auto& entry) {
    fields("serviceId", entry.serviceId, number);
    fields("channelNumber", entry.channelNumber, number);
    fields.carried("carried3", entry.spare);
};
inline constexpr Record serviceFrequency{"serviceFrequency", serviceFrequencyFields};

inline constexpr auto serviceTableFields = [](auto& fields, auto& block) {
    fields("tableId", block.header[0], number);
    fields.carried("carried1", block.header[1]);
    fields.carried("carried2", block.header[2]);
    fields.carried("carried3", block.header[3]);
    fields.carried("carried4", block.value);
    fields.list("entries", block.entries, block.entryCount, serviceFrequency);
};
inline constexpr Record serviceTable{"serviceTable", serviceTableFields};

inline constexpr auto caSystemFields = [](auto& fields, auto& entry) {
    fields("caSystemId", entry.caSystemId, number);
    fields("serviceId", entry.serviceId, number);
    fields("emmDataUnitType", entry.emmDataUnitType, number);
    fields("ecmDataUnitType", entry.ecmDataUnitType, number);
    fields("ecmTransferMode", entry.ecmTransferMode, number);
    fields.carried("carried7", entry.spare);
};
inline constexpr Record caSystem{"caSystem", caSystemFields};

inline constexpr auto caDescriptionTableFields = [](auto& fields, auto& block) {
    fields("tableId", block.tableId, number);
    fields("sendFlag", block.sendFlag, number);
    fields("sectionCount", block.sectionCount, number);
    fields.list("systems", block.entries, block.entryCount, caSystem);
};
inline constexpr Record caDescriptionTable{"caDescriptionTable", caDescriptionTableFields};

inline constexpr std::array<std::string_view, 2> clockSourceTerms = {"internal", "external"};

inline constexpr auto outputParametersFields = [](auto& fields, auto& block) {
    constexpr std::uint8_t on1Pps = 0x10, on10M = 0x20, onTod = 0x40, others = 0x8F;
    fields("pmsPid", block.pmsPid, number);
    fields("deviceNumber", block.deviceNumber, number);
    fields("timeLabelEnabled", block.timeLabelEnabled, flag);
    fields("updateSequenceAdvance", block.updateSequenceAdvance, number);
    fields("sendNextFrameParameters", block.sendNextFrameParameters, flag);
    fields("transmitDelaySeconds", block.transmitDelaySeconds, number);
    fields("clockSource", block.clockSource, Choice{clockSourceTerms});
    fields("isBackup", block.isBackup, flag);
    fields("backupAddress", block.backupAddress, address);
    fields("alarmOn1pps", block.alarmSwitches, Bit{on1Pps});
    fields("alarmOn10m", block.alarmSwitches, Bit{on10M});
    fields("alarmOnTod", block.alarmSwitches, Bit{onTod});
    fields.carried("alarmSwitches", block.alarmSwitches, HexBits{others});
    fields("systemBitRate", block.systemBitRate, number);
    fields("lastChannelId", block.lastChannelId, number);
    fields.carried("carried6", block.carried6);
    fields.carried("carried20", block.carried20);
    fields.carried("carried40", block.carried40);
};
inline constexpr Record outputParameters{"outputParameters", outputParametersFields};

inline constexpr auto parameters264Fields = [](auto& fields, auto& block) {
    fields("softwareVersion", block.softwareVersion, gbkText);
    fields("hardwareVersion", block.hardwareVersion, gbkText);
    fields.carried("carried0", block.carried0);
    fields.carried("carried2", block.value2);
    fields.carried("carried36", block.carried36);
};
inline constexpr Record parameters264{"parameters264", parameters264Fields};

inline constexpr auto serviceDescriptionFields = [](auto& fields, auto& slot) {
    fields("serviceId", slot.serviceId, number);
    fields("language", slot.language, gbkText);
    fields("serviceName", slot.name, gbkText);
    fields("provider", slot.provider, gbkText);
    fields.carried("carried5", slot.carried5);
    fields.carried("carried1044", slot.carried1044);
};
inline constexpr Record serviceDescription{"serviceDescription", serviceDescriptionFields};

inline constexpr auto devicePortFields = [](auto& fields, auto& port) {
    fields("address", port.address, gbkText);
    fields("subnetMask", port.subnetMask, gbkText);
    fields("gateway", port.gateway, gbkText);
};
inline constexpr Record devicePort{"devicePort", devicePortFields};

inline constexpr auto deviceParametersFields = [](auto& fields, auto& block) {
    fields("controlPort", block.controlPort, devicePort);
    fields("controlMac", block.controlMac, gbkText);
    fields("managementHost", block.managementHost, gbkText);
    fields("servicePort", block.servicePort, devicePort);
    fields("serviceMac", block.serviceMac, gbkText);
};
inline constexpr Record deviceParameters{"deviceParameters", deviceParametersFields};

inline constexpr auto imageHeaderFields = [](auto& fields, auto& header) {
    fields.carried("carried0", header.bytes);
    fields.carried("carried8", header.value);
    fields.carried("carried10", header.bytes10);
    fields.carried("length", header.length);
};
inline constexpr Record imageHeader{"imageHeader", imageHeaderFields};

// The channels of the list. Their positions are their places: what is carried is how far one is
// from its own.
struct ChannelList {
    using Places = void;

    Json write(const FlatChannelList& channels) const {
        Json items = Json::array();
        for (InputChannelRecord channel : channels) {
            channel.position = static_cast<std::uint8_t>(channel.position - items.size());
            items.push_back(inputChannel.write(channel));
        }
        return items;
    }
    void read(const Json& json, FlatChannelList& channels, const std::string& place) const {
        std::array<InputChannelRecord, limits::inputChannels> slots{};
        std::size_t count = 0;
        readSlots(json, slots, count, inputChannel, place);
        for (std::size_t i = 0; i < count; ++i) slots[i].position += static_cast<std::uint8_t>(i);
        channels.assign(slots, count);
    }
    Json schema(const FlatChannelList& channels, Json& definitions) const {
        return slotsSchema(channels.slots(), inputChannel, definitions);
    }
};

// "format": what the text is.
struct Mark {
    static constexpr std::string_view mark = "korvane configuration 1";

    Json write(const Configuration&) const { return mark; }
    void read(const Json& json, Configuration&) const {
        if (json != mark) throw WrongValue{"is not \"" + std::string(mark) + '"'};
    }
    Json schema(const Configuration&) const { return {{"const", mark}}; }
};

inline constexpr auto configurationFields = [](auto& fields, auto& content) {
    auto& image = content.image;
    fields("format", content, Mark{});
    fields("network", image.network, network);
    fields("continuousMultiplexTable", image.continuous, multiplexTable);
    fields("shortTimeMultiplexTable", image.shortTime, multiplexTable);
    fields("continuousServiceTable", image.continuousServices, serviceTable);
    fields("shortTimeServiceTable", image.shortTimeServices, serviceTable);
    fields("caDescriptionTable", image.caDescriptions, caDescriptionTable);
    fields("inputChannels", content.channels, ChannelList{});
    fields.list("serviceDescriptions", content.descriptions.slots, content.descriptions.count,
                serviceDescription);
    fields("outputParameters", image.outputParams, outputParameters);
    fields("parameters264", image.params264, parameters264);
    fields("deviceParameters", content.params, deviceParameters);
    fields("imageHeader", image.header, imageHeader);
    fields.carried("fileReserved", content.fileReserved);
};
inline constexpr Record configuration{"configuration", configurationFields};

}  // namespace korvane::text_form
