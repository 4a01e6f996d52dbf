#include "text_form/remainder.h"

#include <algorithm>
#include <array>

#include "text_form/fields.h"
#include "text_form/hexadecimal.h"

namespace korvane::text_form {
namespace {

using Bytes = std::span<const std::uint8_t>;

struct Piece {
    std::uint32_t offset;
    std::vector<std::uint8_t> bytes;
};

struct Digits {
    Json write(const std::vector<std::uint8_t>& bytes) const { return toHex(bytes); }
    void read(const Json& json, std::vector<std::uint8_t>& bytes) const {
        auto read = fromHex(readString(json));
        if (!read) throw WrongValue{"is not hexadecimal, two digits a byte"};
        bytes = *std::move(read);
    }
    Json schema(const std::vector<std::uint8_t>&) const { return patternSchema(anyHex); }
};

constexpr auto pieceFields = [](auto& fields, auto& run) {
    fields("offset", run.offset, number);
    fields("bytes", run.bytes, Digits{});
};
constexpr Record piece{"piece", pieceFields};

std::size_t firstDifference(Bytes a, Bytes b, std::size_t from) {
    return static_cast<std::size_t>(std::mismatch(a.begin() + static_cast<std::ptrdiff_t>(from),
                                                  a.end(),
                                                  b.begin() + static_cast<std::ptrdiff_t>(from))
                                        .first -
                                    a.begin());
}

// Where a run of differences ends: a few equal bytes inside it are cheaper than a piece of their
// own.
std::size_t endOfRun(Bytes a, Bytes b, std::size_t from) {
    constexpr std::size_t gap = 16;
    std::size_t end = from + 1;
    for (std::size_t next = firstDifference(a, b, end); next < a.size() && next - end < gap;
         next = firstDifference(a, b, end))
        end = next + 1;
    return end;
}

}  // namespace

Json remainderOf(Bytes bytes, Bytes fields) {
    Json pieces = Json::array();
    for (std::size_t from = firstDifference(bytes, fields, 0); from < bytes.size();) {
        const std::size_t end = endOfRun(bytes, fields, from);
        const Bytes run = bytes.subspan(from, end - from);
        pieces.push_back(
            piece.write(Piece{static_cast<std::uint32_t>(from), {run.begin(), run.end()}}));
        from = firstDifference(bytes, fields, end);
    }
    return pieces;
}

void applyRemainder(const Json& remainder, std::span<std::uint8_t> bytes) {
    if (!remainder.is_array()) throw Problem{"remainder", "is not a list"};
    for (std::size_t i = 0; i < remainder.size(); ++i) {
        const std::string place = "remainder[" + std::to_string(i) + ']';
        Piece read{};
        piece.read(remainder[i], read, place);
        if (read.offset > bytes.size() || read.bytes.size() > bytes.size() - read.offset)
            throw Problem{place, "is beyond the end of the configuration"};
        std::ranges::copy(read.bytes, bytes.begin() + read.offset);
    }
}

Json remainderSchema() {
    Json definitions = Json::object();
    piece.schema(Piece{}, definitions);
    return {{"type", "array"}, {"items", definitions[piece.name]}};
}

}  // namespace korvane::text_form
