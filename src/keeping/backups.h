#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace korvane {

// Older configurations of one device: ordinary configuration files "<key>-YYYYMMDD-HHMMSS.dat" in a
// folder that other devices may share.
class Backups {
  public:
    static constexpr std::size_t most = 10;  // of each device: the oldest go

    // Nothing is kept of a device without a key. The folder is made with the first file.
    Backups(std::filesystem::path folder, std::u8string key)
        : folder_(std::move(folder)), key_(std::move(key)) {}

    const std::filesystem::path& folder() const { return folder_; }

    // Keeps one, named by its time; the one that was kept last is not kept again. False when the
    // disk took none.
    bool keep(std::span<const std::uint8_t> configuration, std::time_t time) const;

  private:
    std::vector<std::filesystem::path> files() const;
    bool isOurs(const std::filesystem::path& file) const;
    std::filesystem::path freeName(std::time_t time) const;
    void removeOldest(const std::filesystem::path& newest) const;

    std::filesystem::path folder_;
    std::u8string key_;
};

}  // namespace korvane
