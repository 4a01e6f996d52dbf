#include "model/ipv4.h"

#include <algorithm>
#include <charconv>

namespace korvane {
namespace {

// Takes the number and the point behind it off the front of `text`.
bool takeOctet(std::string_view& text, std::uint8_t& octet) {
    const std::size_t length = std::min(text.find('.'), text.size());
    const auto [end, error] = std::from_chars(text.data(), text.data() + length, octet);
    if (length > 3 || error != std::errc{} || end != text.data() + length) return false;
    text.remove_prefix(length);
    return true;
}

}  // namespace

std::string addressText(const Ipv4& address) {
    std::string text;
    for (const std::uint8_t octet : address) text += std::to_string(octet) + '.';
    text.pop_back();
    return text;
}

std::optional<Ipv4> parseAddress(std::string_view text) {
    Ipv4 address{};
    for (std::uint8_t& octet : address) {
        if (&octet != &address.front()) {
            if (!text.starts_with('.')) return std::nullopt;
            text.remove_prefix(1);
        }
        if (!takeOctet(text, octet)) return std::nullopt;
    }
    if (!text.empty()) return std::nullopt;
    return address;
}

}  // namespace korvane
