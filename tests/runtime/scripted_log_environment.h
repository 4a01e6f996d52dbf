#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>

#include "runtime/TroubleShootLib/log_environment.h"

namespace korvane::test {

// Empty when there is no such file.
inline std::string fileBytes(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// 23 April 2009, 09:05:07, with nothing in the registry, until a test says otherwise.
class ScriptedLogEnvironment : public LogEnvironment {
  public:
    explicit ScriptedLogEnvironment(std::filesystem::path program)
        : executable(std::move(program)) {}

    LogTime localTime() override {
        if (onTime) onTime();
        return now;
    }
    std::wstring executablePath() override {
        if (!executable) throw std::runtime_error("no path");
        return executable->wstring();
    }
    int readNumber(const char* key, const char* name, long& out) override {
        ++reads;
        asked = std::string(key) + "/" + name;
        if (!printLog) return 0;
        out = *printLog;
        return 1;
    }

    LogTime now{2009, 4, 23, 9, 5, 7};
    std::optional<std::filesystem::path> executable;
    std::optional<long> printLog;
    std::function<void()> onTime;
    std::string asked;
    int reads = 0;
};

}  // namespace korvane::test
