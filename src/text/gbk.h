#pragma once

#include <string>
#include <string_view>

namespace korvane {

// A text in GBK (code page 936), and the first character that GBK lacks, in UTF-8; empty when all
// are there.
struct GbkText {
    std::string bytes;  // with '?' for what is missing
    std::string missing;
};

// Of a text in UTF-8; bytes that are none count as missing.
GbkText toGbk(std::string_view utf8);

// Bytes that are no GBK become the replacement character.
std::string gbkToUtf8(std::string_view gbk);

}  // namespace korvane
