#include "model/config_model.h"

#include <memory>
#include <utility>

#include "model/config_file.h"
#include "model/whole_file.h"

namespace korvane {

void ConfigModel::setFlatChannels(const FlatChannelList& channels) {
    for (FlatChannelList& list : channels_) list.clear();
    for (const InputChannelRecord& record : channels)
        if (record.type < channels_.size()) channels_[record.type].append(record);
    rebuildFlatChannels();
}

void ConfigModel::rebuildFlatChannels() {
    flatChannels_.clear();
    for (FlatChannelList& list : channels_) {
        for (InputChannelRecord& record : list) {
            record.position = static_cast<std::uint8_t>(flatChannels_.size());
            flatChannels_.append(record);
        }
    }
}

void ConfigModel::resetModel() {
    load(*std::make_unique<Configuration>());
}

void ConfigModel::load(const Configuration& from, bool withDeviceParams) {
    setFlatChannels(from.channels);
    decodeImage(from.image, tables_);
    if (withDeviceParams) deviceParams_ = from.params;
    lastDescriptions_ = from.descriptions;
    if (from.hasDescriptions)
        decodeDescriptions(from.descriptions, tables_);
    else
        setDefaultDescriptions(tables_);
}

std::unique_ptr<Configuration> ConfigModel::configuration() const {
    auto result = std::make_unique<Configuration>();
    result->channels = flatChannels_;
    encodeImage(tables_, result->image);
    result->params = deviceParams_;
    encodeDescriptions(tables_, lastDescriptions_, result->descriptions);
    return result;
}

int ConfigModel::saveConfigFile(const std::filesystem::path& path) const {
    const auto bytes = config_file::encode(*configuration());
    return replaceFile(path, bytes) ? config_file::ok : config_file::cannotOpen;
}

int ConfigModel::loadConfigFile(const std::filesystem::path& path, bool withDeviceParams,
                                ChannelsLeftOut& leftOut) {
    std::vector<std::uint8_t> bytes;
    if (readFile(path, config_file::longestFile, bytes) != 0) return config_file::cannotOpen;
    const auto content = std::make_unique<Configuration>();
    content->params = deviceParams_;
    const int result = config_file::decode(bytes, *content);
    if (result == config_file::unknownVersion) setFlatChannels(content->channels);
    if (result == config_file::ok) load(*content, withDeviceParams);
    leftOut = std::move(content->channelsLeftOut);
    return result;
}

int ConfigModel::saveCacheFile() const {
    const std::filesystem::path path = deviceFile(u8".dat");
    return path.empty() ? config_file::cannotOpen : saveConfigFile(path);
}

int ConfigModel::loadCacheFile(ChannelsLeftOut& leftOut) {
    const std::filesystem::path path = deviceFile(u8".dat");
    const int result = path.empty() ? config_file::cannotOpen : loadConfigFile(path, true, leftOut);
    if (result != config_file::ok) resetModel();
    return result;
}

// Without a key, or with one that would lead out of the directory, nothing is kept.
std::filesystem::path ConfigModel::deviceFile(std::u8string_view ending) const {
    if (deviceKey_.empty() || deviceKey_.find_first_of("\\/:*?\"<>|") != std::string::npos)
        return {};
    std::u8string name(deviceKey_.begin(), deviceKey_.end());
    return cacheDirectory_ / std::filesystem::path(name.append(ending));
}

}  // namespace korvane
