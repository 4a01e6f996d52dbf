#pragma once

#include <filesystem>
#include <string>

namespace korvane::cli {

// A file of rows that grows. Each row goes out with one write, so whoever interrupts the program
// leaves whole rows; one that a power cut tore is closed before the next.
class TableFile {
  public:
    TableFile(std::filesystem::path path, std::string head);

    // False when it could not be written.
    bool append(const std::string& row) const;

  private:
    std::string missingStart() const;

    std::filesystem::path path_;
    std::string head_;
};

}  // namespace korvane::cli
