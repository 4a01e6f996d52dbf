#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "device/command_frame.h"
#include "device/device_link.h"

namespace korvane::test {

using Bytes = std::vector<std::uint8_t>;

// An answer or request frame as it travels.
inline Bytes frameOf(std::uint32_t code, std::uint32_t status, const Bytes& payload = {}) {
    Bytes bytes(CommandFrame::size + payload.size());
    CommandFrame{code, status, static_cast<std::uint32_t>(payload.size())}.write(bytes.data());
    std::copy(payload.begin(), payload.end(), bytes.begin() + CommandFrame::size);
    return bytes;
}

inline Bytes announcementOf(std::uint32_t total) {
    const auto bytes = Announcement::make(total);
    return {bytes.begin(), bytes.end()};
}

// A link whose peer follows a script. A receive with a timeout takes the script's next step: a
// datagram, or silence until the timeout. A receive without one sees what is stale in the socket.
// No time passes.
class ScriptedLink : public DeviceLink {
  public:
    struct Sent {
        std::uint32_t address;
        std::uint16_t port;
        std::uint32_t timeoutMs;
        Bytes bytes;
    };

    void answers(Bytes datagram) { script_.push_back(std::move(datagram)); }
    void staysSilent() { script_.push_back(std::nullopt); }
    void hasStale(Bytes datagram) { stale_.push_back(std::move(datagram)); }
    bool scriptPlayed() const { return script_.empty(); }

    bool open() override { return openWorks; }
    void close() override { closed = true; }
    void cancel() override {}
    int send(std::uint32_t address, std::uint16_t port, std::uint32_t timeoutMs, const void* data,
             std::uint16_t length) override {
        before("send", timeoutMs);
        const auto* bytes = static_cast<const std::uint8_t*>(data);
        sent.push_back({address, port, timeoutMs, Bytes(bytes, bytes + length)});
        log += "send ";
        return sendResult.value_or(length);
    }
    int receive(void* buffer, std::size_t capacity, std::uint32_t& received,
                std::uint32_t timeoutMs) override {
        before(timeoutMs == 0 ? "drain" : "receive", timeoutMs);
        if (timeoutMs != 0) receiveTimeouts.push_back(timeoutMs);
        std::optional<Bytes> datagram;
        if (timeoutMs == 0) {
            if (stale_.empty()) return -1;
            datagram = std::move(stale_.front());
            stale_.pop_front();
            log += "drain ";
        } else if (!script_.empty()) {
            datagram = std::move(script_.front());
            script_.pop_front();
        }
        if (!datagram || datagram->size() > capacity) return -1;
        std::copy(datagram->begin(), datagram->end(), static_cast<std::uint8_t*>(buffer));
        received = static_cast<std::uint32_t>(datagram->size());
        return 0;
    }
    bool isReachable(const std::string& host) override {
        before("ping", 0);
        pinged.push_back(host);
        log += "ping ";
        return reachable;
    }
    void sleep(std::uint32_t milliseconds) override {
        before("sleep", milliseconds);
        slept.push_back(milliseconds);
        log += "sleep" + std::to_string(milliseconds) + " ";
        now += milliseconds;
    }
    std::uint32_t ticks() override { return now; }

    // Told what is about to be done, and how long that may take.
    std::function<void(std::string_view call, std::uint32_t ms)> before = [](auto, auto) {};
    bool openWorks = true;
    bool closed = false;
    bool reachable = true;
    std::optional<int> sendResult;  // instead of the length
    std::uint32_t now = 100000;
    std::vector<Sent> sent;
    std::vector<std::uint32_t> receiveTimeouts, slept;
    std::vector<std::string> pinged;
    std::string log;  // what happened, in order

  private:
    std::deque<std::optional<Bytes>> script_;
    std::deque<Bytes> stale_;
};

}  // namespace korvane::test
