#include "device/transfer_sequences.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "device/crc32.h"
#include "model/whole_file.h"

namespace korvane {
namespace {

// One step of a sequence over a configuration, and how much of the whole it counts.
struct Step {
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
    Step{&sendChannels, 1},
    Step{&onImage<&DeviceClient::BeginConfigSet>, 1},
    Step{&onImage<&DeviceClient::SetImageHeader>, 1},
    Step{&onImage<&DeviceClient::SetImageBlock624>, 0},
    Step{&onImage<&DeviceClient::SetImageBlockA>, 1},
    Step{&onImage<&DeviceClient::SetImageBlockC>, 1},
    Step{&onImage<&DeviceClient::SetImageBlockB>, 1},
    Step{&onImage<&DeviceClient::SetImageBlockD>, 1},
    Step{&onImage<&DeviceClient::SetImageBlock264>, 1},
    Step{&onImage<&DeviceClient::SetImageBlock92>, 1},
    Step{&onImage<&DeviceClient::SetImageBlock72>, 1},
    Step{&onImage<&DeviceClient::EndConfigSet>, 1},
    Step{&sendDescriptions, 2},
    Step{&activate, 5},
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
// The image is complete; it is read once all has arrived.
int completeImage(DeviceClient&, Configuration&) {
    return 0;
}

constexpr std::array loadSteps = {
    Step{&fetchChannels, 1},
    Step{&onImage<&DeviceClient::BeginConfigGet>, 1},
    Step{&onImage<&DeviceClient::GetImageHeader>, 1},
    Step{&onImage<&DeviceClient::GetImageBlock624>, 1},
    Step{&onImage<&DeviceClient::GetImageBlockA>, 1},
    Step{&onImage<&DeviceClient::GetImageBlockC>, 1},
    Step{&onImage<&DeviceClient::GetImageBlockB>, 1},
    Step{&onImage<&DeviceClient::GetImageBlockD>, 1},
    Step{&onImage<&DeviceClient::GetImageBlock264>, 1},
    Step{&onImage<&DeviceClient::GetImageBlock92>, 1},
    Step{&onImage<&DeviceClient::GetImageBlock72>, 1},
    Step{&onImage<&DeviceClient::EndConfigGet>, 0},
    Step{&completeImage, 1},
    Step{&fetchDescriptions, 2},
    Step{&fetchParams, 1},
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
        const int result = step.run(client, configuration);
        if (result != 0) return result;
        if (step.weight != 0) progress.add(step.weight);
    }
    return 0;
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

int runSave(DeviceClient& client, const ConfigModel& model, Progress& progress) {
    progress.setTotal(cacheWeight + totalOf(saveSteps));
    model.saveCacheFile();  // a configuration that cannot be kept here can still be sent
    progress.add(cacheWeight);
    const auto configuration = model.configuration();
    toNetworkOrder(*configuration);
    return runSteps(saveSteps, client, *configuration, progress);
}

int runLoad(DeviceClient& client, ConfigModel& model, Progress& progress) {
    progress.setTotal(totalOf(loadSteps));
    const auto fetched = std::make_unique<Configuration>();
    const int result = runSteps(loadSteps, client, *fetched, progress);
    if (result != 0) return result;
    fromNetworkOrder(*fetched);
    model.load(*fetched);
    return 0;
}

int runUpgrade(DeviceClient& client, DeviceLink& link, const std::filesystem::path& path,
               const std::function<bool()>& stopRequested, Progress& progress) {
    // Lengths travel as 32 bits, and the checksum takes an int.
    constexpr std::size_t longest = std::numeric_limits<int>::max();
    std::vector<std::uint8_t> bytes;
    const int read = readFile(path, longest + 1, bytes);
    if (read == file_result::cannotOpen) return upgrade_result::cannotOpen;
    if (read != 0 || bytes.size() > longest) return upgrade_result::cannotRead;

    const auto length = static_cast<std::uint32_t>(bytes.size());
    constexpr std::uint32_t stepBytes = 10240, otherSteps = 25;
    progress.setTotal(length / stepBytes + otherSteps);
    progress.startAt(1);
    const std::u8string name = path.filename().u8string();
    int result = client.BeginUpgrade({name.begin(), name.end()}, length,
                                     Crc32(bytes.data(), static_cast<int>(length)));
    if (result != 0) return result;
    progress.add(1);
    result = sendPieces(client, bytes, stopRequested, progress);
    if (result == 0) result = client.FinishUpgrade();
    return result != 0 ? result : awaitUpgrade(client, link, progress);
}

}  // namespace korvane
