#include "text_form/shared_gbk.h"

#include <algorithm>
#include <cstdint>

#include "text/gbk.h"

namespace korvane::text_form {
namespace {

// Characters of two bytes.
struct Block {
    std::uint8_t firstLead, lastLead, firstTrail, lastTrail;

    bool holds(std::uint8_t lead, std::uint8_t trail) const {
        return lead >= firstLead && lead <= lastLead && trail >= firstTrail && trail <= lastTrail;
    }
};

constexpr Block sharedBlocks[] = {
    // Punctuation, numbered lists, full-width ASCII, kana, Greek, Cyrillic, box drawing.
    {0xA1, 0xA1, 0xA1, 0xFE},
    {0xA2, 0xA2, 0xA1, 0xAA},
    {0xA2, 0xA2, 0xB1, 0xE2},
    {0xA2, 0xA2, 0xE5, 0xEE},
    {0xA2, 0xA2, 0xF1, 0xFC},
    {0xA3, 0xA3, 0xA1, 0xFE},
    {0xA4, 0xA4, 0xA1, 0xF3},
    {0xA5, 0xA5, 0xA1, 0xF6},
    {0xA6, 0xA6, 0xA1, 0xB8},
    {0xA6, 0xA6, 0xC1, 0xD8},
    {0xA7, 0xA7, 0xA1, 0xC1},
    {0xA7, 0xA7, 0xD1, 0xF1},
    {0xA9, 0xA9, 0xA4, 0xEF},
    // Ideographs: those of GB 2312, and GBK's own before and beside them.
    {0xB0, 0xD6, 0xA1, 0xFE},
    {0xD7, 0xD7, 0xA1, 0xF9},
    {0xD8, 0xF7, 0xA1, 0xFE},
    {0x81, 0xA0, 0x40, 0xFE},
    {0xAA, 0xFD, 0x40, 0xA0},
};

bool isSharedCharacter(std::uint8_t lead, std::uint8_t trail) {
    constexpr std::uint8_t neverTrail = 0x7F;
    return trail != neverTrail &&
           std::ranges::any_of(sharedBlocks, [=](const Block& b) { return b.holds(lead, trail); });
}

}  // namespace

bool isShared(std::string_view gbk) {
    while (!gbk.empty()) {
        const auto lead = static_cast<std::uint8_t>(gbk.front());
        const std::size_t size = lead < 0x80 ? 1 : 2;
        if (lead == 0 || gbk.size() < size) return false;
        if (size == 2 && !isSharedCharacter(lead, static_cast<std::uint8_t>(gbk[1]))) return false;
        gbk.remove_prefix(size);
    }
    return true;
}

std::optional<std::string> sharedToUtf8(std::string_view gbk) {
    if (!isShared(gbk)) return std::nullopt;
    return gbkToUtf8(gbk);
}

// Converters take similar characters for ones that are not there.
std::optional<std::string> utf8ToShared(std::string_view utf8) {
    GbkText text = toGbk(utf8);
    if (!text.missing.empty() || sharedToUtf8(text.bytes) != utf8) return std::nullopt;
    return std::move(text.bytes);
}

}  // namespace korvane::text_form
