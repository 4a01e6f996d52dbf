#include "text_form/values.h"

#include <cctype>

#include "model/channel_text.h"
#include "text_form/hexadecimal.h"
#include "text_form/shared_gbk.h"

namespace korvane::text_form {
namespace {

constexpr std::string_view octets = "([0-9]{1,3}\\.){3}[0-9]{1,3}";

std::vector<std::uint8_t> readHex(const Json& json) {
    const auto bytes = fromHex(readString(json));
    if (!bytes) throw WrongValue{"is not hexadecimal, two digits a byte"};
    return *bytes;
}

std::string quoted(const std::string& text) {
    return Json(text).dump();
}

// Nothing for a field that holds more than a text and zeros behind it.
std::optional<std::string> shownText(std::span<const std::uint8_t> field) {
    const auto end = std::ranges::find(field, 0);
    if (std::any_of(end, field.end(), [](std::uint8_t byte) { return byte != 0; })) return {};
    return sharedToUtf8({reinterpret_cast<const char*>(field.data()),
                         static_cast<std::size_t>(end - field.begin())});
}

std::string hexWithoutZeros(std::span<const std::uint8_t> field) {
    while (!field.empty() && field.back() == 0) field = field.first(field.size() - 1);
    return toHex(field);
}

std::string toShared(const std::string& utf8) {
    auto gbk = utf8ToShared(utf8);
    if (!gbk) throw WrongValue{"holds a character that is not GBK on every system"};
    return *std::move(gbk);
}

std::vector<std::uint8_t> textBytes(const Json& json) {
    if (json.is_object() && json.size() == 1 && json.contains("bytes"))
        return readHex(json["bytes"]);
    if (!json.is_string()) throw WrongValue{"is neither a text nor {\"bytes\": hexadecimal}"};
    const std::string gbk = toShared(json.get_ref<const std::string&>());
    return {gbk.begin(), gbk.end()};
}

}  // namespace

Json patternSchema(std::string_view pattern) {
    return {{"type", "string"}, {"pattern", pattern}};
}

Json rangeSchema(std::uint64_t least, std::uint64_t most) {
    return {{"type", "integer"}, {"minimum", least}, {"maximum", most}};
}

Json eitherSchema(Json one, Json other) {
    return {{"anyOf", {std::move(one), std::move(other)}}};
}

std::uint64_t readNumber(const Json& json, std::uint64_t most) {
    if (!json.is_number_unsigned() || json.get<std::uint64_t>() > most)
        throw WrongValue{"is not a whole number from 0 to " + std::to_string(most)};
    return json.get<std::uint64_t>();
}

const std::string& readString(const Json& json) {
    if (!json.is_string()) throw WrongValue{"is not a text"};
    return json.get_ref<const std::string&>();
}

std::size_t Choice::find(std::string_view word) const {
    const auto found = std::ranges::find(words, word);
    if (found != words.end()) return static_cast<std::size_t>(found - words.begin());
    std::string reason = "is none of";
    for (const std::string_view known : words) reason += ' ' + quoted(std::string(known));
    throw WrongValue{reason};
}

void Flag::read(const Json& json, std::uint8_t& value) const {
    if (json.is_boolean())
        value = json.get<bool>();
    else
        number.read(json, value);
}

Json Flag::schema(std::uint8_t value) const {
    return eitherSchema({{"type", "boolean"}}, number.schema(value));
}

void Bit::read(const Json& json, std::uint8_t& value) const {
    if (!json.is_boolean()) throw WrongValue{"is neither true nor false"};
    value = static_cast<std::uint8_t>(json.get<bool>() ? value | mask : value & ~mask);
}

Json HexBits::write(std::uint8_t value) const {
    return hex.write(static_cast<std::uint8_t>(value & mask));
}

void HexBits::read(const Json& json, std::uint8_t& value) const {
    std::uint8_t bits = 0;
    hex.read(json, bits);
    if ((bits & ~mask) != 0) throw WrongValue{"has bits that stand elsewhere"};
    value = static_cast<std::uint8_t>((value & ~mask) | bits);
}

Json HexBits::schema(std::uint8_t value) const {
    return hex.schema(value);
}

std::string Hex::toHex(std::span<const std::uint8_t> bytes) {
    return text_form::toHex(bytes);
}

void Hex::readBytes(const Json& json, std::span<std::uint8_t> bytes) {
    const std::vector<std::uint8_t> read = readHex(json);
    if (read.size() != bytes.size())
        throw WrongValue{"is not " + std::to_string(bytes.size()) + " bytes long"};
    std::ranges::copy(read, bytes.begin());
}

Json Hex::schemaOf(std::size_t size) {
    return patternSchema("^[0-9a-fA-F]{" + std::to_string(2 * size) + "}$");
}

Json Text::writeBytes(std::span<const std::uint8_t> field) {
    if (auto shown = shownText(field)) return *std::move(shown);
    return {{"bytes", hexWithoutZeros(field)}};
}

void Text::readBytes(const Json& json, std::span<std::uint8_t> field) {
    const std::vector<std::uint8_t> bytes = textBytes(json);
    if (bytes.size() > field.size())
        throw WrongValue{"is longer than " + std::to_string(field.size()) + " bytes of GBK"};
    std::ranges::fill(std::ranges::copy(bytes, field.begin()).out, field.end(), std::uint8_t{0});
}

Json Text::schemaOf(std::size_t size) {
    Json bytes = {{"type", "object"},
                  {"properties", {{"bytes", patternSchema(anyHex)}}},
                  {"required", {"bytes"}},
                  {"additionalProperties", false}};
    return eitherSchema({{"type", "string"}, {"maxLength", size}}, std::move(bytes));
}

void NetworkName::read(const Json& json, NetworkBlock& block) const {
    gbkText.read(json, block.name);
    block.nameLength = static_cast<std::uint8_t>(fieldText(block.name).size());
}

void ServiceId::read(const Json& json, ServiceHead& head) const {
    number.read(json, head.serviceId);
    head.serviceIdAgain = head.serviceId;
}

void Address::read(const Json& json, Octets& value) const {
    if (!parseAddress(readString(json), value))
        throw WrongValue{"is no address such as \"192.168.1.20\""};
}

Json Address::schema(const Octets&) const {
    return patternSchema('^' + std::string(octets) + '$');
}

Json ReceiveAddress::write(const InputChannelRecord& channel) const {
    return receiveAddress(channel);
}

void ReceiveAddress::read(const Json& json, InputChannelRecord& channel) const {
    if (!parseReceiveAddress(readString(json), channel))
        throw WrongValue{"is no address and port such as \"239.1.1.1:5000\""};
}

Json ReceiveAddress::schema(const InputChannelRecord&) const {
    return patternSchema('^' + std::string(octets) + ":[0-9]{1,5}$");
}

void Frequency::read(const Json& json, std::uint32_t& value) const {
    if (!parseFrequency(readString(json), value))
        throw WrongValue{"is no frequency such as \"474.125 MHz\", of at most five decimals"};
}

Json Frequency::schema(std::uint32_t) const {
    return patternSchema("^[0-9]{1,5}(\\.[0-9]{1,5})? MHz$");
}

}  // namespace korvane::text_form
