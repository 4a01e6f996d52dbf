#pragma once

#include <cstdint>
#include <deque>
#include <mutex>
#include <string>

#include "device/device_link.h"
#include "simulator/simulated_device.h"

namespace korvane {

// The link to a SimulatedDevice in the same process, with a clock of its own that only sleeping and
// waiting move on: a transfer of many seconds takes no time. Threads may share it as they share a
// real link.
class SimulatorLink : public DeviceLink {
  public:
    // The device outlives the link. Its clock starts at `startMs`.
    explicit SimulatorLink(SimulatedDevice& device, std::uint64_t startMs = 0)
        : device_(device), nowMs_(startMs) {}

    bool open() override;
    void close() override;
    void cancel() override;
    // Datagrams to any port but the device's vanish, whatever the address.
    int send(std::uint32_t address, std::uint16_t port, std::uint32_t timeoutMs, const void* data,
             std::uint16_t length) override;
    int receive(void* buffer, std::size_t capacity, std::uint32_t& received,
                std::uint32_t timeoutMs) override;
    bool isReachable(const std::string& host) override;
    void sleep(std::uint32_t milliseconds) override;
    std::uint32_t ticks() override;

    // What isReachable answers from now on; true at first.
    void setReachable(bool reachable);
    std::uint64_t nowMs() const;

  private:
    void enqueue(std::vector<OutgoingDatagram> datagrams);

    mutable std::mutex mutex_;
    SimulatedDevice& device_;
    std::uint64_t nowMs_;
    std::deque<OutgoingDatagram> pending_;  // by time of arrival
    bool open_ = false;
    bool cancelled_ = false;
    bool reachable_ = true;
};

}  // namespace korvane
