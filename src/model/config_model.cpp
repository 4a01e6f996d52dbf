#include "model/config_model.h"

#include <memory>

#include "model/config_image.h"

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
    setFlatChannels({});
    decodeImage(*std::make_unique<ConfigImage>(), tables_);
    deviceParams_ = {};
}

int ConfigModel::saveCacheFile() {
    const std::filesystem::path path = cacheFile();
    return path.empty() ? -1 : saveConfigFile(path);
}

int ConfigModel::loadCacheFile() {
    const std::filesystem::path path = cacheFile();
    return path.empty() ? -1 : loadConfigFile(path, true);
}

// Empty when the key cannot be a file's name: without one, or with one that would lead out of the
// directory, the configuration is not cached.
std::filesystem::path ConfigModel::cacheFile() const {
    if (deviceKey_.empty() || deviceKey_.find_first_of("\\/:*?\"<>|") != std::string::npos)
        return {};
    const std::u8string name(deviceKey_.begin(), deviceKey_.end());
    return cacheDirectory_ / std::filesystem::path(name + u8".dat");
}

}  // namespace korvane
