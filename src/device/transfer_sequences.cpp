#include "device/transfer_sequences.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "device/crc32.h"
#include "device/firmware_file.h"
#include "log/log.h"
#include "model/whole_file.h"

namespace korvane {
namespace {

// One step of a sequence over a configuration, and how much of the whole it counts.
struct Step {
    KnownCommand command;
    int (*run)(DeviceClient&, Configuration&);
    std::uint32_t weight;
};

template <auto Command>
int onImage(DeviceClient& client, Configuration& configuration) {
    return (client.*Command)(configuration.image);
}

int sendChannels(DeviceClient& client, Configuration& configuration) {
    return client.SetInputChannels(configuration.channels);
}
int sendDescriptions(DeviceClient& client, Configuration& configuration) {
    return client.SetServiceDescriptions(configuration.descriptions);
}
int activate(DeviceClient& client, Configuration&) {
    return client.ActivateConfig();
}

// Of a configuration in network order.
constexpr std::array saveSteps = {
    Step{CommandCode::SetInputChannels, &sendChannels, 1},
    Step{CommandCode::BeginConfigSet, &onImage<&DeviceClient::BeginConfigSet>, 1},
    Step{CommandCode::SetImageHeader, &onImage<&DeviceClient::SetImageHeader>, 1},
    Step{CommandCode::SetImageBlock624, &onImage<&DeviceClient::SetImageBlock624>, 0},
    Step{CommandCode::SetImageBlockA, &onImage<&DeviceClient::SetImageBlockA>, 1},
    Step{CommandCode::SetImageBlockC, &onImage<&DeviceClient::SetImageBlockC>, 1},
    Step{CommandCode::SetImageBlockB, &onImage<&DeviceClient::SetImageBlockB>, 1},
    Step{CommandCode::SetImageBlockD, &onImage<&DeviceClient::SetImageBlockD>, 1},
    Step{CommandCode::SetImageBlock264, &onImage<&DeviceClient::SetImageBlock264>, 1},
    Step{CommandCode::SetImageBlock92, &onImage<&DeviceClient::SetImageBlock92>, 1},
    Step{CommandCode::SetImageBlock72, &onImage<&DeviceClient::SetImageBlock72>, 1},
    Step{CommandCode::EndConfigSet, &onImage<&DeviceClient::EndConfigSet>, 1},
    Step{CommandCode::SetServiceDescriptions, &sendDescriptions, 2},
    Step{CommandCode::ActivateConfig, &activate, 5},
};
constexpr std::uint32_t cacheWeight = 1;  // of keeping a copy before a save

int fetchChannels(DeviceClient& client, Configuration& configuration) {
    return client.GetInputChannels(configuration.channels);
}
int fetchDescriptions(DeviceClient& client, Configuration& configuration) {
    return client.GetServiceDescriptions(configuration.descriptions);
}
int fetchParams(DeviceClient& client, Configuration& configuration) {
    return client.GetDeviceParams(configuration.params);
}

constexpr std::array loadSteps = {
    Step{CommandCode::GetInputChannels, &fetchChannels, 1},
    Step{CommandCode::BeginConfigGet, &onImage<&DeviceClient::BeginConfigGet>, 1},
    Step{CommandCode::GetImageHeader, &onImage<&DeviceClient::GetImageHeader>, 1},
    Step{CommandCode::GetImageBlock624, &onImage<&DeviceClient::GetImageBlock624>, 1},
    Step{CommandCode::GetImageBlockA, &onImage<&DeviceClient::GetImageBlockA>, 1},
    Step{CommandCode::GetImageBlockC, &onImage<&DeviceClient::GetImageBlockC>, 1},
    Step{CommandCode::GetImageBlockB, &onImage<&DeviceClient::GetImageBlockB>, 1},
    Step{CommandCode::GetImageBlockD, &onImage<&DeviceClient::GetImageBlockD>, 1},
    Step{CommandCode::GetImageBlock264, &onImage<&DeviceClient::GetImageBlock264>, 1},
    Step{CommandCode::GetImageBlock92, &onImage<&DeviceClient::GetImageBlock92>, 1},
    Step{CommandCode::GetImageBlock72, &onImage<&DeviceClient::GetImageBlock72>, 1},
    Step{CommandCode::EndConfigGet, &onImage<&DeviceClient::EndConfigGet>, 1},
    Step{CommandCode::GetServiceDescriptions, &fetchDescriptions, 2},
    Step{CommandCode::GetDeviceParams, &fetchParams, 1},
};

template <class Steps>
constexpr std::uint32_t totalOf(const Steps& steps) {
    std::uint32_t total = 0;
    for (const Step& step : steps) total += step.weight;
    return total;
}

template <class Steps>
int runSteps(const Steps& steps, DeviceClient& client, Configuration& configuration,
             Progress& progress) {
    for (const Step& step : steps) {
        progress.at(step.command->name);
        const int result = step.run(client, configuration);
        if (result != 0) return result;
        if (step.weight != 0) progress.add(step.weight);
    }
    return 0;
}

int sendPieces(DeviceClient& client, std::span<const std::uint8_t> bytes,
               const std::function<bool()>& stopRequested, Progress& progress) {
    progress.at(commandOf(CommandCode::UpgradeData).name);
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
    progress.at(commandOf(CommandCode::GetUpgradeState).name);
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

int fetchConfiguration(DeviceClient& client, Configuration& configuration, Progress& progress) {
    progress.setTotal(totalOf(loadSteps));
    auto fetched = std::make_unique<Configuration>();
    const int result = runSteps(loadSteps, client, *fetched, progress);
    if (result != 0) return result;
    fromNetworkOrder(*fetched);
    configuration = std::move(*fetched);
    return 0;
}

int sendConfiguration(DeviceClient& client, const Configuration& configuration, Progress& progress,
                      std::uint32_t stepsBefore) {
    progress.setTotal(stepsBefore + totalOf(saveSteps));
    progress.add(stepsBefore);
    const auto sent = std::make_unique<Configuration>(configuration);
    toNetworkOrder(*sent);
    return runSteps(saveSteps, client, *sent, progress);
}

int runSave(DeviceClient& client, const ConfigModel& model, Progress& progress) {
    // A configuration that cannot be kept here can still be sent.
    if (model.saveCacheFile() != 0) logLine(logWarning, "配置缓存文件写入失败");
    return sendConfiguration(client, *model.configuration(), progress, cacheWeight);
}

int runLoad(DeviceClient& client, ConfigModel& model, Progress& progress) {
    const auto fetched = std::make_unique<Configuration>();
    const int result = fetchConfiguration(client, *fetched, progress);
    if (result == 0) model.load(*fetched);
    return result;
}

int runUpgrade(DeviceClient& client, DeviceLink& link, const std::filesystem::path& path,
               const std::function<bool()>& stopRequested, Progress& progress) {
    // Lengths travel as 32 bits, and the checksum takes an int.
    constexpr std::size_t longest = std::numeric_limits<int>::max();
    std::vector<std::uint8_t> bytes;
    progress.at("固件文件");
    const int read = readFile(path, longest + 1, bytes);
    if (read == file_result::cannotOpen) return upgrade_result::cannotOpen;
    if (read != 0 || bytes.size() > longest) return upgrade_result::cannotRead;

    const auto length = static_cast<std::uint32_t>(bytes.size());
    constexpr std::uint32_t stepBytes = 10240, otherSteps = 25;
    progress.setTotal(length / stepBytes + otherSteps);
    progress.startAt(1);
    progress.at(commandOf(CommandCode::BeginUpgrade).name);
    int result = client.BeginUpgrade(fileNameOf(path), length,
                                     Crc32(bytes.data(), static_cast<int>(length)));
    if (result != 0) return result;
    progress.add(1);
    result = sendPieces(client, bytes, stopRequested, progress);
    if (result != 0) return result;
    progress.at(commandOf(CommandCode::FinishUpgrade).name);
    result = client.FinishUpgrade();
    return result != 0 ? result : awaitUpgrade(client, link, progress);
}

}  // namespace korvane
