#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace korvane::test {

// An empty directory of the test's own, removed with all it holds at the end.
class ScratchDirectory {
  public:
    ScratchDirectory()
        : path_(std::filesystem::temp_directory_path() /
                ("korvane-test-" + std::to_string(std::random_device{}()))) {
        std::filesystem::create_directories(path_);
    }
    ~ScratchDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

}  // namespace korvane::test
