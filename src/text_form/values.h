#pragma once

#include <algorithm>
#include <concepts>
#include <limits>
#include <span>

#include "model/config_image.h"
#include "model/object_bytes.h"
#include "text_form/json.h"
#include "text_form/measures.h"

// How single values are written. Each kind has
//
//     Json write(const T& value)
//     void read(const Json& json, T& value)    throws a WrongValue
//     Json schema(const T&)                    what write() writes and read() takes

namespace korvane::text_form {

// Why a value is refused, in words that follow its place.
struct WrongValue {
    std::string reason;
};

inline constexpr std::string_view anyHex = "^([0-9a-fA-F]{2})*$";

// {"type": type, "pattern": pattern}
Json patternSchema(std::string_view pattern);
Json rangeSchema(std::uint64_t least, std::uint64_t most);
Json eitherSchema(Json one, Json other);

// From 0 on. Throws for what is no such number, or larger.
std::uint64_t readNumber(const Json& json, std::uint64_t most);
// Throws for what is no text.
const std::string& readString(const Json& json);

struct Number {
    template <std::unsigned_integral T>
    Json write(T value) const {
        return value;
    }
    template <std::unsigned_integral T>
    void read(const Json& json, T& value) const {
        value = static_cast<T>(readNumber(json, std::numeric_limits<T>::max()));
    }
    template <std::unsigned_integral T>
    Json schema(T) const {
        return rangeSchema(0, std::numeric_limits<T>::max());
    }
};
inline constexpr Number number;

// By its word; a value that has none, by number. The words stand for the values from `first` on.
struct Choice {
    std::span<const std::string_view> words;
    std::uint8_t first = 0;

    template <std::unsigned_integral T>
    Json write(T value) const {
        const std::size_t index = static_cast<std::size_t>(value) - first;
        return index < words.size() ? Json(words[index]) : Json(value);
    }
    template <std::unsigned_integral T>
    void read(const Json& json, T& value) const {
        if (json.is_string())
            value = static_cast<T>(find(json.get_ref<const std::string&>()) + first);
        else
            number.read(json, value);
    }
    template <std::unsigned_integral T>
    Json schema(T value) const {
        return eitherSchema({{"enum", words}}, number.schema(value));
    }

  private:
    std::size_t find(std::string_view word) const;
};

// true and false for 1 and 0; other values by number.
struct Flag {
    Json write(std::uint8_t value) const { return value > 1 ? Json(value) : Json(value == 1); }
    void read(const Json& json, std::uint8_t& value) const;
    Json schema(std::uint8_t value) const;
};
inline constexpr Flag flag;

// One bit of a byte, the others being described elsewhere.
struct Bit {
    std::uint8_t mask;

    Json write(std::uint8_t value) const { return (value & mask) != 0; }
    void read(const Json& json, std::uint8_t& value) const;
    Json schema(std::uint8_t) const { return {{"type", "boolean"}}; }
};

// The bits of a mask, in hexadecimal.
struct HexBits {
    std::uint8_t mask;

    Json write(std::uint8_t value) const;
    void read(const Json& json, std::uint8_t& value) const;
    Json schema(std::uint8_t) const;
};

// What has no known meaning: hexadecimal, numbers with their most significant digit in front.
struct Hex {
    template <class T>
    Json write(T value) const {
        turnNumber(value);
        return toHex(bytesOf(value));
    }
    template <class T>
    void read(const Json& json, T& value) const {
        readBytes(json, writableBytesOf(value));
        turnNumber(value);
    }
    template <class T>
    Json schema(const T&) const {
        return schemaOf(sizeof(T));
    }

  private:
    template <class T>
    static void turnNumber(T& value) {
        if constexpr (std::integral<T>) std::ranges::reverse(writableBytesOf(value));
    }
    static std::string toHex(std::span<const std::uint8_t> bytes);
    static void readBytes(const Json& json, std::span<std::uint8_t> bytes);
    static Json schemaOf(std::size_t size);
};
inline constexpr Hex hex;

// A zero-terminated text; as {"bytes": hexadecimal} where it is none that all systems read alike.
struct Text {
    template <class Character, std::size_t Size>
    Json write(const std::array<Character, Size>& field) const {
        return writeBytes(bytesOf(field));
    }
    template <class Character, std::size_t Size>
    void read(const Json& json, std::array<Character, Size>& field) const {
        readBytes(json, writableBytesOf(field));
    }
    template <class Character, std::size_t Size>
    Json schema(const std::array<Character, Size>&) const {
        return schemaOf(Size);
    }

  private:
    static Json writeBytes(std::span<const std::uint8_t> field);
    static void readBytes(const Json& json, std::span<std::uint8_t> field);
    static Json schemaOf(std::size_t size);
};
inline constexpr Text gbkText;

// A network's name, whose length stands beside it.
struct NetworkName {
    Json write(const NetworkBlock& block) const { return gbkText.write(block.name); }
    void read(const Json& json, NetworkBlock& block) const;
    Json schema(const NetworkBlock& block) const { return gbkText.schema(block.name); }
};
inline constexpr NetworkName networkName;

// A service's id, which it holds twice; of two that differ the second counts.
struct ServiceId {
    Json write(const ServiceHead& head) const { return head.serviceIdAgain; }
    void read(const Json& json, ServiceHead& head) const;
    Json schema(const ServiceHead& head) const { return number.schema(head.serviceId); }
};
inline constexpr ServiceId serviceId;

struct Address {
    using Octets = std::array<std::uint8_t, 4>;
    Json write(const Octets& octets) const { return addressText(octets); }
    void read(const Json& json, Octets& octets) const;
    Json schema(const Octets&) const;
};
inline constexpr Address address;

struct ReceiveAddress {
    Json write(const InputChannelRecord& channel) const;
    void read(const Json& json, InputChannelRecord& channel) const;
    Json schema(const InputChannelRecord&) const;
};
inline constexpr ReceiveAddress streamAddress;

struct Frequency {
    Json write(std::uint32_t frequency) const { return frequencyText(frequency); }
    void read(const Json& json, std::uint32_t& frequency) const;
    Json schema(std::uint32_t) const;
};
inline constexpr Frequency frequency;

}  // namespace korvane::text_form
