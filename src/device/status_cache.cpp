#include "device/status_cache.h"

namespace korvane {

void StatusCache::clear(std::uint32_t now) {
    const std::lock_guard guard(lock_);
    imageTime_ = now;
    imageValid_ = summaryValid_ = false;
}

void StatusCache::storeSummary(const StatusSummary& summary) {
    const std::lock_guard guard(lock_);
    summary_ = summary;
    summaryValid_ = true;
}

void StatusCache::storeImage(const DeviceStatusImage& image, std::uint32_t now) {
    const std::lock_guard guard(lock_);
    imageTime_ = now;
    image_ = image;
    imageValid_ = true;
}

void StatusCache::invalidateImage() {
    const std::lock_guard guard(lock_);
    imageValid_ = false;
}

bool StatusCache::summary(StatusSummary& out) const {
    const std::lock_guard guard(lock_);
    if (summaryValid_) out = summary_;
    return summaryValid_;
}

bool StatusCache::image(DeviceStatusImage& out) const {
    const std::lock_guard guard(lock_);
    if (imageValid_) out = image_;
    return imageValid_;
}

bool StatusCache::alarms(std::uint8_t& out) const {
    const std::lock_guard guard(lock_);
    if (imageValid_) out = image_.alarms;
    return imageValid_;
}

bool StatusCache::alarmBits(std::vector<bool>& out) const {
    std::uint8_t bits = 0;
    if (!alarms(bits)) return false;
    for (int bit = 0; bit < 8; ++bit) out.push_back((bits >> bit & 1) != 0);
    return true;
}

std::uint32_t StatusCache::imageTime() const {
    const std::lock_guard guard(lock_);
    return imageTime_;
}

}  // namespace korvane
