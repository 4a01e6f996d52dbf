#include "text_form/measures.h"

#include <algorithm>
#include <charconv>

#include "model/channel_text.h"
#include "model/frequency_text.h"

namespace korvane::text_form {
namespace {

// Takes a number off the text's beginning.
template <class T>
bool take(std::string_view& text, T& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc();
}

bool take(std::string_view& text, char character) {
    const bool is = text.starts_with(character);
    if (is) text.remove_prefix(1);
    return is;
}

constexpr std::string_view unit = " MHz";
constexpr std::size_t decimals = 5;

// A fraction's decimals, filled up to five: "125" is 12500.
bool parseFraction(std::string text, std::uint32_t& value) {
    if (text.empty() || text.size() > decimals) return false;
    text.resize(decimals, '0');
    std::string_view rest = text;
    return take(rest, value) && rest.empty();
}

}  // namespace

// What is not written as it would be here (a leading zero, something behind it) is no address.
bool parseAddress(std::string_view text, Ipv4& address) {
    const auto parsed = korvane::parseAddress(text);
    if (!parsed || addressText(*parsed) != text) return false;
    address = *parsed;
    return true;
}

bool parseReceiveAddress(std::string_view text, InputChannelRecord& channel) {
    const std::size_t end = std::min(text.find(':'), text.size());
    std::string_view rest = text.substr(end);
    return parseAddress(text.substr(0, end), channel.address) && take(rest, ':') &&
           take(rest, channel.port) && receiveAddress(channel) == text;
}

bool parseFrequency(std::string_view text, std::uint32_t& frequency) {
    if (!text.ends_with(unit)) return false;
    text.remove_suffix(unit.size());
    std::uint32_t megahertz = 0, fraction = 0;
    if (!take(text, megahertz)) return false;
    if (take(text, '.') ? !parseFraction(std::string(text), fraction) : !text.empty()) return false;
    const std::uint64_t value = std::uint64_t{megahertz} * unitsPerMegahertz + fraction;
    frequency = static_cast<std::uint32_t>(value);
    return frequency == value;
}

std::string frequencyText(std::uint32_t frequency) {
    std::string text = megahertzText(frequency);
    std::string fraction = std::to_string(unitsPerMegahertz + frequency % unitsPerMegahertz);
    fraction.front() = '.';
    fraction.erase(fraction.find_last_not_of('0') + 1);
    return text + (fraction == "." ? "" : fraction) + std::string(unit);
}

}  // namespace korvane::text_form
