#include "ipv4_address.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace korvane::host {

namespace {

// The number at the front of `text`, which it takes off; -1 when there is none up to 255.
int takeNumber(std::string_view& text) {
    const std::size_t digits = std::min(text.find('.'), text.size());
    const std::string_view part = text.substr(0, digits);
    if (part.empty() || part.size() > 3 || (part.size() > 1 && part.front() == '0')) return -1;
    unsigned value = 0;
    const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), value);
    if (error != std::errc{} || end != part.data() + part.size() || value > 255) return -1;
    text.remove_prefix(digits);
    return static_cast<int>(value);
}

}  // namespace

bool isDeviceAddress(std::string_view text) {
    std::array<int, 4> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0) {
            if (text.empty() || text.front() != '.') return false;
            text.remove_prefix(1);
        }
        numbers[i] = takeNumber(text);
        if (numbers[i] < 0) return false;
    }
    return text.empty() && numbers[0] > 0 && numbers[0] < 224;
}

}  // namespace korvane::host
