#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>

#include "device/device_link.h"
#include "device/udp.h"

namespace korvane {

// The link over real UDP sockets. `ping` answers for isReachable: on Windows that is PingHost.
// Used by one thread at a time, but for cancel().
class UdpDeviceLink : public DeviceLink {
  public:
    using Ping = std::function<bool(const std::string& host)>;

    explicit UdpDeviceLink(Ping ping) : ping_(std::move(ping)) {}
    ~UdpDeviceLink() override { close(); }
    UdpDeviceLink(const UdpDeviceLink&) = delete;
    UdpDeviceLink& operator=(const UdpDeviceLink&) = delete;

    bool open() override;
    void close() override;
    void cancel() override;
    int send(std::uint32_t address, std::uint16_t port, std::uint32_t timeoutMs, const void* data,
             std::uint16_t length) override;
    int receive(void* buffer, std::size_t capacity, std::uint32_t& received,
                std::uint32_t timeoutMs) override;
    bool isReachable(const std::string& host) override;
    void sleep(std::uint32_t milliseconds) override;
    std::uint32_t ticks() override;

  private:
    Ping ping_;
    UdpSocket socket_ = 0;
    std::atomic<bool> cancelled_{false};
    std::mutex sleepMutex_;
    std::condition_variable woken_;
};

}  // namespace korvane
