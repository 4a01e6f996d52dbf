#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

#include "device/status_cache.h"
#include "model/object_bytes.h"

namespace korvane {
namespace {

// All bytes of an image are alike, so that a copy made of two writes shows. Under the thread
// sanitizer this is also the test of every access to the cache.
TEST(StatusCache, EveryCopyIsWholeWhileThePollerWrites) {
    StatusCache cache;
    std::atomic<int> torn{0}, copies{0};
    std::thread reader([&] {
        const auto image = std::make_unique<DeviceStatusImage>();
        StatusSummary summary{};
        for (std::uint8_t alarms = 0; copies < 1000; cache.alarms(alarms)) {
            if (cache.summary(summary)) torn += summary.year != summary.second;
            if (!cache.image(*image)) continue;
            const auto bytes = bytesOf(*image);
            torn += !std::equal(bytes.begin() + 1, bytes.end(), bytes.begin());
            ++copies;
        }
    });
    const auto image = std::make_unique<DeviceStatusImage>();
    for (int i = 0; copies < 1000; ++i) {
        const auto number = static_cast<std::uint16_t>(i);
        cache.storeSummary({0, number, 0, 0, 0, 0, 0, number, 0, 0});
        std::ranges::fill(writableBytesOf(*image), static_cast<std::uint8_t>(i));
        cache.storeImage(*image);
        if (i % 50 == 0) cache.clear();
    }
    reader.join();
    EXPECT_EQ(torn, 0);
}

}  // namespace
}  // namespace korvane
