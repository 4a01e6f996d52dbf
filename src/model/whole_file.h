#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

// The one place that knows the disk. Files are read and written whole.

namespace korvane {

namespace file_result {
inline constexpr int cannotOpen = -1;
inline constexpr int cannotRead = -2;
}  // namespace file_result

// The file's bytes, at most the first `most` of them. 0, cannotOpen or cannotRead.
int readFile(const std::filesystem::path& path, std::size_t most, std::vector<std::uint8_t>& bytes);

// Makes the file hold exactly these bytes. They are written beside it, to the disk itself, and then
// moved into its place: a full disk or a power cut leaves the old file. False when that failed, and
// then nothing is left behind. No other file is touched.
bool replaceFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes);

}  // namespace korvane
