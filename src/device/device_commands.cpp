#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "device/device_client.h"
#include "model/byte_order.h"
#include "model/object_bytes.h"

// The commands of DeviceClient: what each puts into its request and takes from its answer.

namespace korvane {
namespace {

// Command 2001's and 3001's own order of the header: the length byte, then image bytes 0-11.
using HeaderPayload = std::array<std::uint8_t, detail::headerSize>;

}  // namespace

int DeviceClient::exchange(KnownCommand command, std::span<const std::uint8_t> request,
                           std::span<std::uint8_t> response) {
    return Exchange(static_cast<std::uint32_t>(command->code), request, response);
}

// Not in the log: it comes again every two seconds.
int DeviceClient::statusExchange(KnownCommand command, std::uint32_t timeoutMs,
                                 std::span<const std::uint8_t> request,
                                 std::span<std::uint8_t> response) {
    const std::lock_guard guard(lock_);
    attempts = 1;
    SetTimeout(timeoutMs, Timeout::Receive);
    const auto code = static_cast<std::uint32_t>(command->code);
    const int result = exchangeQuietly(code, request, response).result;
    SetTimeout(0, Timeout::Defaults);
    attempts = defaultAttempts;
    return result;
}

int DeviceClient::sendBlock(KnownCommand command, const ConfigImage& image) {
    return exchange(command, bytesOf(image).subspan(command->imageOffset, command->requestSize));
}

int DeviceClient::fetchBlock(KnownCommand command, ConfigImage& image) {
    return exchange(command, {},
                    writableBytesOf(image).subspan(command->imageOffset, command->answerSize));
}

int DeviceClient::SetInputChannels(const FlatChannelList& channels) {
    std::array<std::uint8_t, detail::channelListLimit> payload{};
    payload[0] = static_cast<std::uint8_t>(channels.size());
    const std::size_t recordBytes = channels.size() * sizeof(InputChannelRecord);
    std::memcpy(payload.data() + 1, channels.begin(), recordBytes);
    return exchange(CommandCode::SetInputChannels, std::span(payload).first(1 + recordBytes));
}

int DeviceClient::GetInputChannels(FlatChannelList& channels) {
    std::array<std::uint8_t, detail::channelListLimit> payload{};
    const int result = exchange(CommandCode::GetInputChannels, {}, payload);
    if (result != 0) return result;
    channels.resize(payload[0]);
    std::memcpy(static_cast<void*>(channels.begin()), payload.data() + 1,
                channels.size() * sizeof(InputChannelRecord));
    return 0;
}

int DeviceClient::SetDeviceParams(const DeviceParamBlock& params) {
    return exchange(CommandCode::SetDeviceParams, bytesOf(params));
}
int DeviceClient::GetDeviceParams(DeviceParamBlock& params) {
    return exchange(CommandCode::GetDeviceParams, {}, writableBytesOf(params));
}
int DeviceClient::ApplyDeviceParams() {
    return exchange(CommandCode::ApplyDeviceParams);
}

int DeviceClient::SetServiceDescriptions(const ServiceDescriptionImage& image) {
    return exchange(CommandCode::SetServiceDescriptions, bytesOf(image));
}
int DeviceClient::GetServiceDescriptions(ServiceDescriptionImage& image) {
    return exchange(CommandCode::GetServiceDescriptions, {}, writableBytesOf(image));
}

int DeviceClient::BeginConfigSet(const ConfigImage& image) {
    return exchange(CommandCode::BeginConfigSet, bytesOf(image.header.bytes[1]));
}
int DeviceClient::SetImageHeader(const ConfigImage& image) {
    HeaderPayload payload{image.header.length};
    std::memcpy(payload.data() + 1, &image.header, detail::headerBytes);
    return exchange(CommandCode::SetImageHeader, payload);
}
int DeviceClient::SetImageBlock624(const ConfigImage& image) {
    return sendBlock(CommandCode::SetImageBlock624, image);
}
int DeviceClient::SetImageBlockA(const ConfigImage& image) {
    return sendBlock(CommandCode::SetImageBlockA, image);
}
int DeviceClient::SetImageBlockC(const ConfigImage& image) {
    return sendBlock(CommandCode::SetImageBlockC, image);
}
int DeviceClient::SetImageBlock264(const ConfigImage& image) {
    return sendBlock(CommandCode::SetImageBlock264, image);
}
int DeviceClient::SetImageBlock92(const ConfigImage& image) {
    return sendBlock(CommandCode::SetImageBlock92, image);
}
int DeviceClient::SetImageBlock72(const ConfigImage& image) {
    return sendBlock(CommandCode::SetImageBlock72, image);
}
int DeviceClient::SetImageBlockB(const ConfigImage& image) {
    return sendBlock(CommandCode::SetImageBlockB, image);
}
int DeviceClient::SetImageBlockD(const ConfigImage& image) {
    return sendBlock(CommandCode::SetImageBlockD, image);
}
int DeviceClient::EndConfigSet(const ConfigImage& image) {
    return exchange(CommandCode::EndConfigSet, bytesOf(image.header.bytes[1]));
}

int DeviceClient::BeginConfigGet(ConfigImage& image) {
    return exchange(CommandCode::BeginConfigGet, bytesOf(image.header.bytes[1]));
}
int DeviceClient::GetImageHeader(ConfigImage& image) {
    HeaderPayload payload{};
    const int result = exchange(CommandCode::GetImageHeader, {}, payload);
    if (result != 0) return result;
    image.header.length = payload[0];
    std::memcpy(&image.header, payload.data() + 1, detail::headerBytes);
    return 0;
}
int DeviceClient::GetImageBlock624(ConfigImage& image) {
    return fetchBlock(CommandCode::GetImageBlock624, image);
}
int DeviceClient::GetImageBlockA(ConfigImage& image) {
    return fetchBlock(CommandCode::GetImageBlockA, image);
}
int DeviceClient::GetImageBlockC(ConfigImage& image) {
    return fetchBlock(CommandCode::GetImageBlockC, image);
}
int DeviceClient::GetImageBlock264(ConfigImage& image) {
    return fetchBlock(CommandCode::GetImageBlock264, image);
}
int DeviceClient::GetImageBlock92(ConfigImage& image) {
    return fetchBlock(CommandCode::GetImageBlock92, image);
}
int DeviceClient::GetImageBlock72(ConfigImage& image) {
    return fetchBlock(CommandCode::GetImageBlock72, image);
}
int DeviceClient::GetImageBlockB(ConfigImage& image) {
    return fetchBlock(CommandCode::GetImageBlockB, image);
}
int DeviceClient::GetImageBlockD(ConfigImage& image) {
    return fetchBlock(CommandCode::GetImageBlockD, image);
}
int DeviceClient::EndConfigGet(ConfigImage& image) {
    return exchange(CommandCode::EndConfigGet, bytesOf(image.header.bytes[1]));
}

int DeviceClient::SetImageBlock2002(const Block2002& block) {
    return exchange(CommandCode::SetImageBlock2002, bytesOf(block));
}
int DeviceClient::GetImageBlock2002(Block2002& block) {
    return exchange(CommandCode::GetImageBlock2002, {}, writableBytesOf(block));
}

int DeviceClient::ActivateConfig() {
    return exchange(CommandCode::ActivateConfig);
}
int DeviceClient::RebootDevice() {
    return exchange(CommandCode::RebootDevice);
}
int DeviceClient::RestoreDefaults() {
    return exchange(CommandCode::RestoreDefaults);
}

int DeviceClient::GetHeartbeat(std::uint16_t& value) {
    std::uint16_t received = 0;
    const int result =
        statusExchange(CommandCode::GetHeartbeat, 500, {}, writableBytesOf(received));
    if (result != 0) return result;
    turn(received);
    value = received;
    return 0;
}
int DeviceClient::GetDeviceStatus(DeviceStatusImage& image) {
    return statusExchange(CommandCode::GetDeviceStatus, 1000, {}, writableBytesOf(image));
}
int DeviceClient::GetStatusSummary(std::uint8_t selector, StatusSummary& summary) {
    return statusExchange(CommandCode::GetStatusSummary, 500, bytesOf(selector),
                          writableBytesOf(summary));
}

int DeviceClient::BeginUpgrade(const std::string& name, std::uint32_t length, std::uint32_t crc) {
    constexpr std::size_t nameField = 256;
    std::array<std::uint8_t, nameField + 8> payload{};
    std::copy_n(name.begin(), std::min(name.size(), nameField - 1), payload.begin());
    putBigEndian32(payload.data() + nameField, length);
    putBigEndian32(payload.data() + nameField + 4, crc);
    return exchange(CommandCode::BeginUpgrade, payload);
}
int DeviceClient::UpgradeData(std::uint32_t offset, std::span<const std::uint8_t> piece) {
    std::vector<std::uint8_t> payload(8 + piece.size());
    putBigEndian32(payload.data(), offset);
    putBigEndian32(payload.data() + 4, static_cast<std::uint32_t>(piece.size()));
    std::copy(piece.begin(), piece.end(), payload.begin() + 8);
    return exchange(CommandCode::UpgradeData, payload);
}
int DeviceClient::FinishUpgrade() {
    return exchange(CommandCode::FinishUpgrade);
}
int DeviceClient::GetUpgradeState(std::uint8_t& state) {
    return exchange(CommandCode::GetUpgradeState, {}, writableBytesOf(state));
}

}  // namespace korvane
