#include "cli/table_file.h"

#include <fstream>

namespace korvane::cli {

TableFile::TableFile(std::filesystem::path path, std::string head)
    : path_(std::move(path)), head_(std::move(head)) {}

// What must stand before the next row.
std::string TableFile::missingStart() const {
    std::ifstream file(path_, std::ios::binary | std::ios::ate);
    if (!file || file.tellg() <= 0) return head_;
    file.seekg(-1, std::ios::end);
    return file.get() == '\n' ? "" : "\n";
}

bool TableFile::append(const std::string& row) const {
    const std::string text = missingStart() + row;
    std::ofstream file(path_, std::ios::binary | std::ios::app);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    return !file.fail();
}

}  // namespace korvane::cli
