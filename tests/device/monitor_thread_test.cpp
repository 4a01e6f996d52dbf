#include "device/monitor_thread.h"

#include <windows.h>

#include <chrono>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

#include "runtime/scripted_log_environment.h"
#include "runtime/system_facts.h"
#include "support/scratch_directory.h"

namespace korvane {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t datagramSize = 8 + 48332;

// A status with one frame, so that a number of each kind of record comes turned round.
Bytes goodDatagram(std::uint8_t mark) {
    Bytes bytes(datagramSize);
    const std::uint8_t start[] = {0, 0, 0x12, 0x34, 0, 0, 0xBC, 0xCC,  // 48,332 bytes follow
                                  0, 0, 1,    mark, 0, 0, 2,    3,    4, 5, 0x78, 1, 0, 0, 0, 6};
    std::memcpy(bytes.data(), start, sizeof start);
    return bytes;
}

class MonitorThreadTest : public testing::Test {
  protected:
    MonitorThreadTest() {
        EXPECT_EQ(UdpOpen(nullptr, 0, 0, sender_), 1);
        environment_.printLog = 1;
    }
    ~MonitorThreadTest() override { UdpClose(sender_); }

    // A port that was free a moment ago. Test programs that run at once begin at different ones.
    static std::uint16_t freePort() {
        auto port = static_cast<std::uint16_t>(20000 + GetCurrentProcessId() % 1000 * 10);
        UdpSocket socket = 0;
        while (UdpOpen(nullptr, port, 0, socket) != 1) ++port;
        UdpClose(socket);
        return port;
    }

    // Sends, and sends again what the listener may have thrown away with its queue, until the
    // condition holds. False when it never does.
    template <class Condition>
    bool sendUntil(const Bytes& bytes, Condition condition) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            EXPECT_EQ(UdpSendTo(sender_, &loopback_, port_, 1000, bytes.data(),
                                static_cast<std::uint16_t>(bytes.size())),
                      static_cast<int>(bytes.size()));
            Sleep(20);
        }
        return true;
    }
    int read() { return monitor_.read(*image_); }
    bool arrives(std::uint8_t mark) {
        return sendUntil(goodDatagram(mark),
                         [&] { return read() == 1 && image_->bytesSent == 0x100u + mark; });
    }
    void expectIgnored(const Bytes& bytes) {
        const auto before = monitor_.ignoredDatagrams();
        EXPECT_TRUE(sendUntil(bytes, [&] { return monitor_.ignoredDatagrams() > before; }));
    }
    std::string logged() const {
        return test::fileBytes(scratch_.path() / "LogFile" / "HostLog2009" / "04-23.log");
    }

    test::ScratchDirectory scratch_;
    test::ScriptedLogEnvironment environment_{scratch_.path() / "Host.exe"};
    TroubleShootLog log_{environment_};
    const std::uint32_t loopback_ = parseIpv4("127.0.0.1");
    const std::uint16_t port_ = freePort();
    UdpSocket sender_ = 0;
    std::unique_ptr<DeviceStatusImage> image_ = std::make_unique<DeviceStatusImage>();
    MonitorThread monitor_{port_, log_};
};

TEST_F(MonitorThreadTest, KeepsTheLastStatusInHostOrder) {
    image_->bytesSent = 99;
    EXPECT_EQ(read(), 0);
    EXPECT_EQ(image_->bytesSent, 0u);
    ASSERT_EQ(monitor_.Start(loopback_), 1);
    for (const std::uint8_t mark : {1, 2}) {
        EXPECT_TRUE(arrives(mark));
        EXPECT_EQ(image_->streamRate, 0x203u);
        EXPECT_EQ(image_->systemRate, 0x405u);
        EXPECT_EQ(image_->alarms, 0x78);
        EXPECT_EQ(image_->frames[0].channelCapacity, 6u);
    }
    EXPECT_EQ(monitor_.ignoredDatagrams(), 0u);
    monitor_.Stop();
    EXPECT_EQ(read(), 1);  // what came stays to be seen
    ASSERT_EQ(monitor_.Start(loopback_), 1);
    EXPECT_EQ(read(), 0);  // but is no news of another start
}

TEST_F(MonitorThreadTest, IgnoresOtherSendersAndWhatIsNoStatus) {
    ASSERT_EQ(monitor_.Start(parseIpv4("127.0.0.2")), 1);
    expectIgnored(goodDatagram(1));
    EXPECT_EQ(read(), 0);
    ASSERT_EQ(monitor_.Start(loopback_), 1);
    Bytes magic = goodDatagram(9), length = magic, cut = magic, shortTruth = magic, longer = magic;
    magic[3] = 0x35;
    length[7] ^= 1;
    cut.resize(datagramSize - 1);
    shortTruth.resize(108);
    shortTruth[6] = 0;
    shortTruth[7] = 100;
    longer.push_back(0);
    for (const Bytes& bytes : {magic, length, cut, shortTruth, longer, Bytes(3)}) {
        expectIgnored(bytes);
        EXPECT_EQ(read(), 0);
    }
    EXPECT_TRUE(arrives(4));
    expectIgnored(length);
    EXPECT_EQ(read(), 1);
    EXPECT_EQ(image_->bytesSent, 0x104u);
}

TEST_F(MonitorThreadTest, LogsItsLifeAndThatItCannotBegin) {
    UdpSocket port = 0;
    monitor_.Stop();
    EXPECT_EQ(logged(), "");
    ASSERT_EQ(monitor_.Start(loopback_), 1);
    monitor_.Stop();
    monitor_.Stop();
    {
        const nox_pub::mswin::test::ExhaustedAddressSpace exhausted;
        EXPECT_EQ(monitor_.Start(loopback_), 0);
    }
    ASSERT_EQ(UdpOpen(nullptr, port_, 0, port), 1) << "it was given back";
    UdpClose(port);
    EXPECT_EQ(
        logged(),
        "09:05:07\xD0\xC5\xCF\xA2 \xBC\xE0\xB2\xE2\xD6\xF7\xCF\xDF\xB3\xCC\xC6\xF4\xB6\xAF\r\n"
        "09:05:07\xD0\xC5\xCF\xA2 \xBC\xE0\xB2\xE2\xD6\xF7\xCF\xDF\xB3\xCC\xCD\xA3\xD6\xB9\r\n"
        "09:05:07\xB4\xED\xCE\xF3 \xBC\xE0\xB2\xE2\xD6\xF7\xCF\xDF\xB3\xCC\xD2\xEC\xB3\xA3\r\n"
        "09:05:07\xD0\xC5\xCF\xA2 creating thread monitor main thread\r\n");
}

TEST_F(MonitorThreadTest, APortThatIsTakenFailsTheStart) {
    MonitorThread other(port_, log_);
    ASSERT_EQ(monitor_.Start(loopback_), 1);
    EXPECT_EQ(other.Start(loopback_), 0);
    monitor_.Stop();
    EXPECT_EQ(other.Start(loopback_), 1);
}

}  // namespace
}  // namespace korvane
