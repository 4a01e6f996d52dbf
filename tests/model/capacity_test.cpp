#include "model/capacity.h"

#include <array>
#include <bit>
#include <gtest/gtest.h>
#include <vector>

namespace korvane {
namespace {

MultiplexFrame frameWith(int rs, int ldpc, int modulation, std::size_t slots,
                         const std::vector<std::uint32_t>& bandwidths = {}) {
    MultiplexFrame frame;
    frame.rsRate = static_cast<std::uint8_t>(rs);
    frame.ldpcRate = static_cast<std::uint8_t>(ldpc);
    frame.modulation = static_cast<std::uint8_t>(modulation);
    frame.timeSlots.resize(slots);
    for (const std::uint32_t bandwidth : bandwidths) {
        ServiceRecord service;
        service.bandwidth = bandwidth;
        frame.services.append(service);
    }
    return frame;
}

// The device's own computation: 32-bit integers, then extended precision with a constant a little
// above 1/1,920, truncated.
std::int64_t asTheDeviceComputes(int rs, int ldpc, int modulation, std::size_t slots) {
    constexpr int rsK[] = {240, 224, 192, 176}, bits[] = {1, 2, 4};
    constexpr float rate[] = {0.5F, 0.75F};
    const auto perSecond = std::bit_cast<float>(0x3A088889u);
    const int product = bits[modulation] * rsK[rs] * 138240;
    return static_cast<std::int64_t>(static_cast<long double>(product) * rate[ldpc] *
                                     static_cast<int>(slots) * perSecond);
}

TEST(Capacity, EqualsTheDevicesComputationForEveryCombination) {
    for (int rs = 0; rs < 4; ++rs)
        for (int ldpc = 0; ldpc < 2; ++ldpc)
            for (int modulation = 0; modulation < 3; ++modulation)
                for (std::size_t slots = 0; slots <= 40; ++slots)
                    ASSERT_EQ(frameCapacity(frameWith(rs, ldpc, modulation, slots)),
                              asTheDeviceComputes(rs, ldpc, modulation, slots))
                        << rs << ' ' << ldpc << ' ' << modulation << ' ' << slots;
}

TEST(Capacity, OfIndexesThatNameNothingIsZero) {
    for (const auto& [rs, ldpc, modulation] : {std::array{4, 0, 0}, {0, 2, 0}, {0, 0, 3}})
        EXPECT_EQ(frameCapacity(frameWith(rs, ldpc, modulation, 40)), 0);
}

TEST(Bandwidth, OfOneServiceMayTakeExactlyWhatTheOthersLeave) {
    // 516,096 bit/s, of which the second service has 100,000.
    const MultiplexFrame frame = frameWith(1, 0, 1, 4, {300000, 100000});
    std::int32_t available = 0;
    EXPECT_FALSE(serviceBandwidthOverflows(frame, 0, 416096, &available));
    EXPECT_EQ(available, 416096);
    EXPECT_TRUE(serviceBandwidthOverflows(frame, 0, 416097));
    EXPECT_FALSE(serviceBandwidthOverflows(frame, 2, 116096, &available));  // one being added
    EXPECT_EQ(available, 116096);
    EXPECT_TRUE(serviceBandwidthOverflows(frame, 2, 116097));
    EXPECT_TRUE(serviceBandwidthOverflows(frameWith(0, 0, 0, 0), 0, 1));
    EXPECT_FALSE(serviceBandwidthOverflows(frameWith(0, 0, 0, 0), 0, 0));
}

TEST(Bandwidth, OfAllServicesIsComparedWithTheCapacity) {
    std::uint32_t total = 0;
    std::int32_t difference = 0;
    EXPECT_FALSE(totalBandwidthOverflows(frameWith(0, 0, 0, 1, {69119, 1}), total, &difference));
    EXPECT_EQ(total, 69120u);
    EXPECT_EQ(difference, 0);
    EXPECT_TRUE(totalBandwidthOverflows(frameWith(0, 0, 0, 1, {69121}), total, &difference));
    EXPECT_EQ(difference, 1);
    EXPECT_FALSE(totalBandwidthOverflows(frameWith(0, 0, 0, 1), total, &difference));
    EXPECT_EQ(difference, 69120);
}

TEST(Bandwidth, SumsWrapAt32Bits) {
    std::uint32_t total = 0;
    const MultiplexFrame frame = frameWith(0, 0, 0, 1, {0x80000000u, 0x80000000u, 5});
    EXPECT_FALSE(totalBandwidthOverflows(frame, total));
    EXPECT_EQ(total, 5u);
    std::int32_t available = 0;
    EXPECT_FALSE(serviceBandwidthOverflows(frame, 2, 69120, &available));
    EXPECT_EQ(available, 69120);
    // A request from 2^31 up is negative in the comparison.
    EXPECT_FALSE(serviceBandwidthOverflows(frame, 2, 0x80000000u));
}

}  // namespace
}  // namespace korvane
