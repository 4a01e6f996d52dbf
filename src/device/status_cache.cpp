#include "device/status_cache.h"

namespace korvane {

void StatusCache::clear() {
    const std::lock_guard guard(lock_);
    imageValid_ = summaryValid_ = false;
}

void StatusCache::storeSummary(const StatusSummary& summary) {
    const std::lock_guard guard(lock_);
    summary_ = summary;
    summaryValid_ = true;
}

void StatusCache::storeImage(const DeviceStatusImage& image) {
    const std::lock_guard guard(lock_);
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

}  // namespace korvane
