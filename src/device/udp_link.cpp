#include "device/udp_link.h"

#include <algorithm>
#include <chrono>

namespace korvane {

bool UdpDeviceLink::open() {
    close();
    cancelled_ = false;
    return UdpOpen(nullptr, 0, 0, socket_) == 1;
}

void UdpDeviceLink::close() {
    UdpClose(socket_);
    socket_ = 0;
}

void UdpDeviceLink::cancel() {
    {
        const std::lock_guard guard(sleepMutex_);
        cancelled_ = true;
    }
    woken_.notify_all();
}

int UdpDeviceLink::send(std::uint32_t address, std::uint16_t port, std::uint32_t timeoutMs,
                        const void* data, std::uint16_t length) {
    if (cancelled_ || socket_ == 0) return -1;
    return UdpSendTo(socket_, &address, port, timeoutMs, data, length);
}

int UdpDeviceLink::receive(void* buffer, std::size_t capacity, std::uint32_t& received,
                           std::uint32_t timeoutMs) {
    // A system wait cannot be cut short from another thread on every system, so a long one is
    // made of short ones.
    constexpr std::uint32_t sliceMs = 50;
    const std::uint32_t start = ticks();
    for (;;) {
        if (cancelled_ || socket_ == 0) return -1;
        const std::uint32_t elapsed = ticks() - start;
        const std::uint32_t left = timeoutMs - std::min(elapsed, timeoutMs);
        const int ready = UdpWait(socket_, std::min(left, sliceMs), UdpDirection::Readable);
        if (ready == 0) return UdpRecvFrom(socket_, buffer, capacity, received, 0);
        if (ready == -1 || left == 0) return -1;
    }
}

bool UdpDeviceLink::isReachable(const std::string& host) {
    return !cancelled_ && ping_(host);
}

void UdpDeviceLink::sleep(std::uint32_t milliseconds) {
    std::unique_lock lock(sleepMutex_);
    woken_.wait_for(lock, std::chrono::milliseconds(milliseconds),
                    [this] { return cancelled_.load(); });
}

std::uint32_t UdpDeviceLink::ticks() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

}  // namespace korvane
