#include "simulator/event_log.h"

#include <array>
#include <cstring>

namespace korvane {

std::optional<LogLevel> parseLogLevel(std::string_view text) {
    if (text == "quiet") return LogLevel::Quiet;
    if (text == "normal") return LogLevel::Normal;
    if (text == "all") return LogLevel::All;
    return std::nullopt;
}

std::string endpointText(const Endpoint& endpoint) {
    std::array<std::uint8_t, 4> octets;
    std::memcpy(octets.data(), &endpoint.address, octets.size());
    std::string text;
    for (const std::uint8_t octet : octets) {
        if (!text.empty()) text += '.';
        text += std::to_string(octet);
    }
    text += ':';
    return text += std::to_string(endpoint.port);
}

void EventLog::write(const DeviceEvent& event) {
    if (level_ == LogLevel::Quiet) return;
    if (level_ == LogLevel::Normal && event.kind == DeviceEvent::Kind::Poll) return;
    out_ << time_() << ' ' << endpointText(event.from) << ' ' << event.text << std::endl;
}

}  // namespace korvane
