#include "model/config_checks.h"

#include <algorithm>
#include <optional>
#include <string>

namespace korvane {
namespace {

constexpr int passed = 0;

// The last slot number of the last continuous frame that has any; 0 when none has.
unsigned lastTimeSlot(const MultiplexTable& table) {
    const auto& frames = table.frames;
    for (std::size_t i = frames.size(); i-- > 0;)
        if (!frames[i].timeSlots.empty()) return frames[i].timeSlots.back();
    return 0;
}

bool hasService(const MultiplexFrame& frame, std::uint32_t id) {
    return std::any_of(frame.services.begin(), frame.services.end(),
                       [id](const ServiceRecord& service) { return service.serviceId == id; });
}

std::optional<unsigned> digitValue(char c) {
    if (c >= '0' && c <= '9') return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'z') return static_cast<unsigned>(c - 'a' + 10);
    if (c >= 'A' && c <= 'Z') return static_cast<unsigned>(c - 'A' + 10);
    return std::nullopt;
}

}  // namespace

int ConfigChecks::refuse(std::string_view message, int result) {
    prompts_.warning(message);
    return result;
}

int ConfigChecks::checkInputChannelAddress(const Ipv4& address, std::uint16_t port,
                                           bool checkMulticast) {
    if (checkMulticast && checkMulticastAddress(address) != passed) return -1;
    for (const InputChannelRecord& channel : model_.flatChannels())
        if (channel.address == address && channel.port == port)
            return refuse("已有相同IP和端口的输入通道!", -2);
    return passed;
}

int ConfigChecks::checkCountryCode(std::string_view text) {
    return text.size() <= limits::countryCode ? passed : refuse("国家码超过3个字符", -1);
}

int ConfigChecks::checkNetworkName(std::string_view text) {
    return text.size() <= limits::networkName ? passed : refuse("网络名称超过256个字符", -1);
}

int ConfigChecks::checkFrameId(std::uint16_t id) {
    if (id >= limits::frames) return refuse("复用帧标识应在0~39之间", -2);
    for (const MultiplexFrame& frame : model_.tables().continuous.frames)
        if (frame.id == id) return refuse("已有相同标识的复用帧", -1);
    return passed;
}

int ConfigChecks::checkTimeSlotCount(std::uint32_t count) {
    const unsigned end = lastTimeSlot(model_.tables().continuous) + (count & 0xFF);
    if (end < limits::timeSlots) return passed;
    const std::string excess = std::to_string(end - (limits::timeSlots - 1));
    return refuse("已达最大时隙数，超出时隙数(" + excess + ")", -1);
}

int ConfigChecks::checkServiceId(int frameIndex, std::uint32_t id) {
    if (id > 0xFFFF) return refuse("业务标识必须在0~65535之间", -1);
    const auto& frames = model_.tables().continuous.frames;
    for (std::size_t i = 0; i < frames.size(); ++i)
        if (static_cast<int>(i) != frameIndex && hasService(frames[i], id))
            return refuse("已有相同标识的业务", -2);
    return passed;
}

int ConfigChecks::checkServiceFrequencyPair(std::uint16_t serviceId, std::uint8_t channelNumber,
                                            TableKind kind) {
    for (const TableKind one : {TableKind::Continuous, kind})
        for (const ServiceFrequencyEntry& entry : model_.tables().serviceTable(one).entries)
            if (entry.serviceId == serviceId && entry.channelNumber == channelNumber)
                return refuse("已有相同的业务标识和频道号对", -1);
    return passed;
}

int ConfigChecks::checkCaSystem(std::uint16_t caSystemId, std::uint16_t serviceId, bool checkCaId,
                                bool checkServiceId) {
    for (const CaSystemEntry& entry : model_.tables().caDescriptions.entries) {
        if (checkCaId && entry.caSystemId == caSystemId)
            return refuse("已有相同的CA System ID", -1);
        if (checkServiceId && entry.serviceId == serviceId) return refuse("已有相同的业务标识", -2);
    }
    return passed;
}

int ConfigChecks::checkPid(std::uint32_t pid) {
    return pid < 8192 ? passed : refuse("PID必须在0~0x1fff之间", -1);
}

int ConfigChecks::checkMacAddress(std::string_view text) {
    constexpr std::size_t length = 12;
    if (text.size() != length) return refuse("MAC地址必须为12个16进制字符", -1);
    const auto isDigit = [](char c) { return digitValue(c).has_value(); };
    if (!std::all_of(text.begin(), text.end(), isDigit)) return refuse("MAC地址存在非法字符", -2);
    // The low digit alone decides whether the first byte is odd.
    if (*digitValue(text[1]) % 2 != 0) return refuse("MAC地址第1个字节不能为奇数", -3);
    return passed;
}

int ConfigChecks::checkMulticastAddress(const Ipv4& address) {
    if (address == Ipv4{}) return passed;
    return address[0] >= 224 && address[0] <= 239 ? passed : refuse("组播地址不正确!", -1);
}

int ConfigChecks::checkNeighbourNetwork(const NeighbourNetwork& network) {
    for (const NeighbourNetwork& other : model_.tables().network.neighbours)
        if (other.networkNumber == network.networkNumber) return refuse("已有相同网络号的网络", -1);
    return passed;
}

int ConfigChecks::checkFrequencyPoint(const FrequencyPoint& point) {
    const NetworkInfo& network = model_.tables().network;
    if (network.ownFrequency.channelNumber == point.channelNumber)
        return refuse("其他频道不能包含当前网络中的频点", -1);
    for (const FrequencyPoint& other : network.otherFrequencies)
        if (other.channelNumber == point.channelNumber) return refuse("已有相同频道", -1);
    return passed;
}

int ConfigChecks::checkDataUnitType(std::uint8_t type) {
    return type >= 128 && type <= 159 ? passed : refuse("数据单元类型必须在128~159之间", -1);
}

int ConfigChecks::checkDeviceNumber(std::uint32_t number) {
    return number < 65536 ? passed : refuse("设备号必须在0~65535之间", -1);
}

int ConfigChecks::checkSystemBitRate(std::uint32_t bitRate) {
    const std::uint32_t kilobits = bitRate / 1000;
    const bool inRange = kilobits >= limits::leastSystemKbps && kilobits <= limits::mostSystemKbps;
    return inRange ? passed : refuse("系统码率应在1000Kbps~50000Kbps之间", -1);
}

}  // namespace korvane
