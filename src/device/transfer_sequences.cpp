#include "device/transfer_sequences.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

#include "device/crc32.h"
#include "model/config_image.h"

namespace korvane {
namespace {

// One command of a sequence over the image, and the steps that it is worth.
struct SendStep {
    int (DeviceClient::*command)(const ConfigImage&);
    std::uint32_t weight;
};
struct FetchStep {
    int (DeviceClient::*command)(ConfigImage&);
    std::uint32_t weight;
};

constexpr std::uint32_t saveTotal = 19;
constexpr std::array<SendStep, 11> saveSteps = {{
    {&DeviceClient::BeginConfigSet, 1},
    {&DeviceClient::SetImageHeader, 1},
    {&DeviceClient::SetImageBlock624, 0},
    {&DeviceClient::SetImageBlockA, 1},
    {&DeviceClient::SetImageBlockC, 1},
    {&DeviceClient::SetImageBlockB, 1},
    {&DeviceClient::SetImageBlockD, 1},
    {&DeviceClient::SetImageBlock264, 1},
    {&DeviceClient::SetImageBlock92, 1},
    {&DeviceClient::SetImageBlock72, 1},
    {&DeviceClient::EndConfigSet, 1},
}};

constexpr std::uint32_t loadTotal = 15;
constexpr std::array<FetchStep, 11> loadSteps = {{
    {&DeviceClient::BeginConfigGet, 1},
    {&DeviceClient::GetImageHeader, 1},
    {&DeviceClient::GetImageBlock624, 1},
    {&DeviceClient::GetImageBlockA, 1},
    {&DeviceClient::GetImageBlockC, 1},
    {&DeviceClient::GetImageBlockB, 1},
    {&DeviceClient::GetImageBlockD, 1},
    {&DeviceClient::GetImageBlock264, 1},
    {&DeviceClient::GetImageBlock92, 1},
    {&DeviceClient::GetImageBlock72, 1},
    {&DeviceClient::EndConfigGet, 0},
}};

template <class Steps>
int runSteps(DeviceClient& client, const Steps& steps, ConfigImage& image, Progress& progress) {
    for (const auto& step : steps) {
        const int result = (client.*step.command)(image);
        if (result != 0) return result;
        if (step.weight != 0) progress.add(step.weight);
    }
    return 0;
}

int sendChannels(DeviceClient& client, ConfigModel& model) {
    FlatChannelList channels = model.flatChannels();
    for (InputChannelRecord& record : channels) toNetworkOrder(record);
    return client.SetInputChannels(channels);
}

int sendDescriptions(DeviceClient& client, const ConfigModel& model) {
    auto image = std::make_unique<ServiceDescriptionImage>();
    encodeDescriptions(model.tables(), *image);
    toNetworkOrder(*image);
    return client.SetServiceDescriptions(*image);
}

// What a load gathers before the model sees any of it; everything in host order.
struct FetchedConfiguration {
    FlatChannelList channels;
    ConfigImage image;
    ServiceDescriptionImage descriptions;
    DeviceParamBlock params;
};

void storeFetched(const FetchedConfiguration& fetched, ConfigModel& model) {
    model.setFlatChannels(fetched.channels);
    decodeImage(fetched.image, model.tables());
    decodeDescriptions(fetched.descriptions, model.tables());
    model.deviceParams() = fetched.params;
}

// The whole file, or nothing when it cannot be read to its end.
std::optional<std::vector<std::uint8_t>> readWhole(std::ifstream& file) {
    file.seekg(0, std::ios::end);
    const std::streamoff size = file.tellg();
    file.seekg(0);
    // Lengths travel as 32 bits, and the checksum takes an int.
    if (size < 0 || size > std::numeric_limits<int>::max()) return std::nullopt;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    file.read(reinterpret_cast<char*>(bytes.data()), size);
    if (file.gcount() != size) return std::nullopt;
    return bytes;
}

int sendPieces(DeviceClient& client, std::span<const std::uint8_t> bytes,
               const std::function<bool()>& stopRequested, Progress& progress) {
    constexpr std::size_t pieceSize = 10240;
    for (std::size_t offset = 0; offset < bytes.size() && !stopRequested();) {
        const auto piece = bytes.subspan(offset, std::min(pieceSize, bytes.size() - offset));
        const int result = client.UpgradeData(static_cast<std::uint32_t>(offset), piece);
        if (result != 0) return result;
        offset += piece.size();
        if (offset < bytes.size()) progress.add(1);
    }
    return 0;
}

// The device writes its flash memory for a while; one that is not done within the time is taken to
// have finished, as it answers nothing else then.
int awaitUpgrade(DeviceClient& client, DeviceLink& link, Progress& progress) {
    constexpr int most = 15;
    constexpr std::uint32_t pauseMs = 1000;
    for (int i = 0; i < most; ++i) {
        link.sleep(pauseMs);
        std::uint8_t state = 0;
        if (client.GetUpgradeState(state) != 0) return upgrade_result::stateUnknown;
        if (state == 0) break;
        progress.add(1);
    }
    return 0;
}

}  // namespace

int runSave(DeviceClient& client, ConfigModel& model, Progress& progress) {
    progress.setTotal(saveTotal);
    model.saveCacheFile();  // a configuration that cannot be kept here can still be sent
    progress.add(1);
    int result = sendChannels(client, model);
    if (result != 0) return result;
    progress.add(1);

    auto image = std::make_unique<ConfigImage>();
    encodeImage(model.tables(), *image);
    toNetworkOrder(*image);
    result = runSteps(client, saveSteps, *image, progress);
    if (result == 0) result = sendDescriptions(client, model);
    if (result != 0) return result;
    progress.add(2);
    result = client.ActivateConfig();
    if (result == 0) progress.add(5);
    return result;
}

int runLoad(DeviceClient& client, ConfigModel& model, Progress& progress) {
    progress.setTotal(loadTotal);
    auto fetched = std::make_unique<FetchedConfiguration>();
    int result = client.GetInputChannels(fetched->channels);
    if (result != 0) return result;
    for (InputChannelRecord& record : fetched->channels) fromNetworkOrder(record);
    progress.add(1);

    result = runSteps(client, loadSteps, fetched->image, progress);
    if (result != 0) return result;
    fromNetworkOrder(fetched->image);
    progress.add(1);
    result = client.GetServiceDescriptions(fetched->descriptions);
    if (result != 0) return result;
    fromNetworkOrder(fetched->descriptions);
    progress.add(2);
    result = client.GetDeviceParams(fetched->params);
    if (result != 0) return result;
    storeFetched(*fetched, model);
    progress.add(1);
    return 0;
}

int runUpgrade(DeviceClient& client, DeviceLink& link, const std::filesystem::path& path,
               const std::function<bool()>& stopRequested, Progress& progress) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return upgrade_result::cannotOpen;
    const auto bytes = readWhole(file);
    if (!bytes) return upgrade_result::cannotRead;

    const auto length = static_cast<std::uint32_t>(bytes->size());
    constexpr std::uint32_t stepBytes = 10240, otherSteps = 25;
    progress.setTotal(length / stepBytes + otherSteps);
    progress.startAt(1);
    const std::u8string name = path.filename().u8string();
    int result = client.BeginUpgrade({name.begin(), name.end()}, length,
                                     Crc32(bytes->data(), static_cast<int>(length)));
    if (result != 0) return result;
    progress.add(1);
    result = sendPieces(client, *bytes, stopRequested, progress);
    if (result == 0) result = client.FinishUpgrade();
    return result != 0 ? result : awaitUpgrade(client, link, progress);
}

}  // namespace korvane
