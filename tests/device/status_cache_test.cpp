#include <atomic>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

#include "device/status_cache.h"

namespace korvane {
namespace {

// All bytes alike, so that a copy made of two writes shows.
std::unique_ptr<DeviceStatusImage> uniform(int value) {
    auto image = std::make_unique<DeviceStatusImage>();
    std::memset(static_cast<void*>(image.get()), value, sizeof *image);
    return image;
}

bool isUniform(const DeviceStatusImage& image) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(&image);
    return std::memcmp(bytes, bytes + 1, sizeof image - 1) == 0;
}

// Under the thread sanitizer this is also the test of every access to the cache.
TEST(StatusCache, EveryCopyIsWholeWhileThePollerWrites) {
    constexpr int writes = 2000;
    StatusCache cache;
    std::atomic<bool> done{false};
    std::atomic<int> torn{0}, copies{0};
    const auto read = [&] {
        DeviceStatusImage image{};
        StatusSummary summary{};
        std::uint8_t alarms = 0;
        do {
            if (cache.image(image)) {
                ++copies;
                torn += !isUniform(image);
            }
            if (cache.summary(summary)) torn += summary.year != summary.second;
            cache.alarms(alarms);
        } while (!done);
    };
    std::thread first(read), second(read);
    for (int i = 0; i < writes || copies == 0; ++i) {
        const auto number = static_cast<std::uint16_t>(i);
        cache.storeSummary({0, number, 0, 0, 0, 0, 0, number, 0, 0});
        cache.storeImage(*uniform(i % 251));
        if (i % 5 == 0) cache.invalidateImage();
        if (i % 50 == 0) cache.clear();
    }
    done = true;
    first.join();
    second.join();
    EXPECT_EQ(torn, 0);
    EXPECT_GT(copies, 0);
}

}  // namespace
}  // namespace korvane
