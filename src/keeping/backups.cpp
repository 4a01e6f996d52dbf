#include "keeping/backups.h"

#include <algorithm>
#include <system_error>
#include <vector>

#include "model/config_file.h"
#include "model/whole_file.h"

namespace korvane {
namespace {

namespace fs = std::filesystem;

// "-YYYYMMDD-HHMMSS.dat", local time; empty for a time that there is no name for.
std::u8string ending(std::time_t time) {
    char text[32] = {};
    const std::tm* const parts = std::localtime(&time);
    if (!parts || std::strftime(text, sizeof text, "-%Y%m%d-%H%M%S.dat", parts) == 0) return {};
    return {text, text + std::char_traits<char>::length(text)};
}

// The form of an ending, 0 for a digit.
constexpr std::u8string_view form = u8"-00000000-000000.dat";

bool holds(const fs::path& file, std::span<const std::uint8_t> bytes) {
    std::vector<std::uint8_t> held;
    return readFile(file, config_file::longestFile, held) == 0 && std::ranges::equal(held, bytes);
}

}  // namespace

bool Backups::isOurs(const fs::path& file) const {
    std::u8string name = file.filename().u8string();
    if (!name.starts_with(key_)) return false;
    name.erase(0, key_.size());
    for (char8_t& c : name)
        if (c >= u8'0' && c <= u8'9') c = u8'0';
    return name == form;
}

// In the order of their times.
std::vector<fs::path> Backups::files() const {
    std::vector<fs::path> found;
    std::error_code problem;
    for (fs::directory_iterator one(folder_, problem), end; !problem && one != end;
         one.increment(problem))
        if (isOurs(one->path())) found.push_back(one->path());
    std::ranges::sort(found);
    return found;
}

// Two within a second: the later one is named by the second after.
fs::path Backups::freeName(std::time_t time) const {
    std::error_code ignored;
    for (;; ++time) {
        const fs::path file = folder_ / (key_ + ending(time));
        if (!fs::exists(file, ignored)) return file;
    }
}

// A clock that was set back must not make the newest one the oldest.
void Backups::removeOldest(const fs::path& newest) const {
    auto kept = files();
    std::erase(kept, newest);
    std::error_code ignored;
    for (std::size_t i = 0; i + most <= kept.size(); ++i) fs::remove(kept[i], ignored);
}

bool Backups::keep(std::span<const std::uint8_t> configuration, std::time_t time) const {
    if (key_.empty()) return false;
    std::error_code ignored;
    fs::create_directories(folder_, ignored);
    if (const auto kept = files(); !kept.empty() && holds(kept.back(), configuration)) return true;
    const fs::path file = freeName(time);
    if (!replaceFile(file, configuration)) return false;
    removeOldest(file);
    return true;
}

}  // namespace korvane
