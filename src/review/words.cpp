#include "review/words.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace korvane::review {
namespace {

struct Term {
    std::string_view key, words, unit;
};

// What the keys alone do not say.
constexpr Term terms[] = {
    {"bandwidthLimit", "bandwidth", " bit/s"},
    {"systemBitRate", "system bit rate", " bit/s"},
    {"maxSendIntervalMs", "maximum send interval", " ms"},
    {"transmitDelaySeconds", "transmit delay", " s"},
    {"word0", "first word", ""},
    {"word1", "second word", ""},
};

const Term* termOf(std::string_view key) {
    const auto* found = std::ranges::find(terms, key, &Term::key);
    return found == std::end(terms) ? nullptr : found;
}

constexpr std::string_view abbreviations[] = {"rs",  "ldpc", "rtcp", "pms",  "pid", "emm", "ecm",
                                              "esg", "ca",   "mac",  "1pps", "10m", "tod"};

bool isUpper(char c) {
    return std::isupper(static_cast<unsigned char>(c)) != 0;
}

bool isDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

std::string changed(std::string_view word, int (*change)(int)) {
    std::string result;
    for (const char c : word) result += static_cast<char>(change(static_cast<unsigned char>(c)));
    return result;
}

std::string shownWord(std::string_view word) {
    const std::string lower = changed(word, std::tolower);
    const bool isShort = std::ranges::find(abbreviations, lower) != std::end(abbreviations);
    return isShort ? changed(word, std::toupper) : lower;
}

// Where the key's next word begins.
std::size_t endOfWord(std::string_view key) {
    std::size_t end = 1;
    while (end < key.size() && !isUpper(key[end]) && (!isDigit(key[end]) || isDigit(key[end - 1])))
        ++end;
    return end;
}

std::string shortened(std::string text) {
    constexpr std::size_t longest = 600;
    if (text.size() <= longest) return text;
    std::size_t end = longest;
    while ((static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    return text.substr(0, end) + "...";
}

bool isBytes(const Json& value) {
    return value.is_object() && value.contains("bytes");
}

}  // namespace

std::string wordsOf(std::string_view key) {
    if (const Term* term = termOf(key)) return std::string(term->words);
    std::string words;
    while (!key.empty()) {
        const std::size_t end = endOfWord(key);
        words += (words.empty() ? "" : " ") + shownWord(key.substr(0, end));
        key.remove_prefix(end);
    }
    return words;
}

std::string unitOf(std::string_view key) {
    const Term* term = termOf(key);
    return term ? std::string(term->unit) : "";
}

std::string valueText(const Json& value) {
    if (value.is_null()) return "none";
    if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
    if (value.is_string()) return shownText(value.get_ref<const std::string&>());
    if (value.is_array()) return rangesText(value.get<std::vector<std::uint8_t>>());
    if (isBytes(value)) return "bytes " + valueText(value["bytes"]);
    return value.dump();
}

// Quoted where it could be taken for something else than it is.
std::string shownText(std::string_view utf8) {
    constexpr char rubout = '\x7F';
    std::string quoted = Json(utf8).dump();
    const bool isPlain = !utf8.empty() && quoted.size() == utf8.size() + 2;
    std::string text = isPlain ? std::string(utf8) : std::move(quoted);
    std::ranges::replace(text, rubout, '?');
    return shortened(std::move(text));
}

std::string rangesText(std::span<const std::uint8_t> numbers) {
    std::string text;
    for (std::size_t i = 0, end = 0; i < numbers.size(); i = end) {
        for (end = i + 1; end < numbers.size() && numbers[end] == numbers[end - 1] + 1;) ++end;
        text += (i == 0 ? "" : ", ") + std::to_string(numbers[i]);
        if (end - i > 1) text += '-' + std::to_string(numbers[end - 1]);
    }
    return text.empty() ? "none" : text;
}

}  // namespace korvane::review
