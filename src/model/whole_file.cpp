#include "model/whole_file.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <system_error>
#include <thread>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace korvane {
namespace {

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Close>;

#ifdef _WIN32
File openFile(const std::filesystem::path& path, bool writing) {
    return File(_wfopen(path.c_str(), writing ? L"wb" : L"rb"));
}
bool toDisk(std::FILE* file) {
    return _commit(_fileno(file)) == 0;
}
#else
File openFile(const std::filesystem::path& path, bool writing) {
    return File(std::fopen(path.c_str(), writing ? "wb" : "rb"));
}
bool toDisk(std::FILE* file) {
    return fsync(fileno(file)) == 0;
}
#endif

bool writeFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
    const File file = openFile(path, true);
    return file && std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size() &&
           std::fflush(file.get()) == 0 && toDisk(file.get());
}

// A name beside the file that nothing has: a file of the operator's could be called anything.
std::filesystem::path nameBeside(const std::filesystem::path& path) {
    std::error_code ignored;
    for (int i = 0;; ++i) {
        std::filesystem::path beside = path;
        beside += ".new" + (i == 0 ? std::string() : std::to_string(i));
        if (!std::filesystem::exists(std::filesystem::symlink_status(beside, ignored)))
            return beside;
    }
}

// A scanner or a copying tool may hold either file for a moment, whatever the system calls that.
bool moveInto(const std::filesystem::path& from, const std::filesystem::path& to) {
    using namespace std::chrono_literals;
    const auto deadline = std::chrono::steady_clock::now() + 200ms;
    for (;;) {
        std::error_code error;
        std::filesystem::rename(from, to, error);
        if (!error) return true;
        if (error == std::errc::no_such_file_or_directory ||
            std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(2ms);
    }
}

}  // namespace

int readFile(const std::filesystem::path& path, std::size_t most,
             std::vector<std::uint8_t>& bytes) {
    constexpr std::size_t pieceSize = 1u << 20;
    bytes.clear();
    const File file = openFile(path, false);
    if (!file) return file_result::cannotOpen;
    for (std::size_t got = 1; got != 0 && bytes.size() < most;) {
        const std::size_t before = bytes.size();
        bytes.resize(before + std::min(pieceSize, most - before));
        got = std::fread(bytes.data() + before, 1, bytes.size() - before, file.get());
        bytes.resize(before + got);
    }
    return std::ferror(file.get()) ? file_result::cannotRead : 0;
}

bool replaceFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
    const std::filesystem::path beside = nameBeside(path);
    if (writeFile(beside, bytes) && moveInto(beside, path)) return true;
    std::error_code ignored;
    std::filesystem::remove(beside, ignored);
    return false;
}

}  // namespace korvane
