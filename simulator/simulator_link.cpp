#include "simulator/simulator_link.h"

#include <algorithm>
#include <cstring>

#include "device/command_frame.h"

namespace korvane {

namespace {

// 127.0.0.1 in the byte order of an in-memory IPv4 address; the port is as good as any.
constexpr std::array<std::uint8_t, 4> loopback = {127, 0, 0, 1};
constexpr std::uint16_t clientPort = 50000;

Endpoint client() {
    Endpoint endpoint{0, clientPort};
    std::memcpy(&endpoint.address, loopback.data(), loopback.size());
    return endpoint;
}

}  // namespace

bool SimulatorLink::open() {
    const std::lock_guard lock(mutex_);
    open_ = true;
    cancelled_ = false;
    pending_.clear();
    return true;
}

void SimulatorLink::close() {
    const std::lock_guard lock(mutex_);
    open_ = false;
    pending_.clear();
}

void SimulatorLink::cancel() {
    const std::lock_guard lock(mutex_);
    cancelled_ = true;
}

void SimulatorLink::enqueue(std::vector<OutgoingDatagram> datagrams) {
    for (OutgoingDatagram& datagram : datagrams) {
        const auto place =
            std::ranges::upper_bound(pending_, datagram.sendAtMs, {}, &OutgoingDatagram::sendAtMs);
        pending_.insert(place, std::move(datagram));
    }
}

int SimulatorLink::send(std::uint32_t, std::uint16_t port, std::uint32_t, const void* data,
                        std::uint16_t length) {
    const std::lock_guard lock(mutex_);
    if (!open_ || cancelled_) return -1;
    const auto* first = static_cast<const std::uint8_t*>(data);
    if (port == wire::devicePort) enqueue(device_.receive({first, length}, client(), nowMs_));
    return length;
}

int SimulatorLink::receive(void* buffer, std::size_t capacity, std::uint32_t& received,
                           std::uint32_t timeoutMs) {
    const std::lock_guard lock(mutex_);
    if (!open_ || cancelled_) return -1;
    if (pending_.empty() || pending_.front().sendAtMs > nowMs_ + timeoutMs) {
        nowMs_ += timeoutMs;
        return -1;
    }
    const OutgoingDatagram datagram = std::move(pending_.front());
    pending_.pop_front();
    nowMs_ = std::max(nowMs_, datagram.sendAtMs);
    if (datagram.bytes.size() > capacity) return -1;
    std::memcpy(buffer, datagram.bytes.data(), datagram.bytes.size());
    received = static_cast<std::uint32_t>(datagram.bytes.size());
    return 0;
}

bool SimulatorLink::isReachable(const std::string&) {
    const std::lock_guard lock(mutex_);
    return reachable_ && !cancelled_;
}

void SimulatorLink::sleep(std::uint32_t milliseconds) {
    const std::lock_guard lock(mutex_);
    if (!cancelled_) nowMs_ += milliseconds;
}

std::uint32_t SimulatorLink::ticks() {
    return static_cast<std::uint32_t>(nowMs());
}

void SimulatorLink::setReachable(bool reachable) {
    const std::lock_guard lock(mutex_);
    reachable_ = reachable;
}

std::uint64_t SimulatorLink::nowMs() const {
    const std::lock_guard lock(mutex_);
    return nowMs_;
}

}  // namespace korvane
