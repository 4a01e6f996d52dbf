#include "runtime/TroubleShootLib/log_environment.h"

#include <windows.h>

#include "runtime/registry_reader.h"

namespace korvane {
namespace {

class SystemLogEnvironment : public LogEnvironment {
  public:
    LogTime localTime() override {
        SYSTEMTIME now;
        GetLocalTime(&now);
        return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
    }

    std::wstring executablePath() override {
        std::wstring path(MAX_PATH, L'\0');
        for (;;) {
            const auto room = static_cast<DWORD>(path.size());
            const DWORD length = GetModuleFileNameW(nullptr, path.data(), room);
            if (length < room) {
                path.resize(length);
                return path;
            }
            path.resize(path.size() * 2);
        }
    }

    int readNumber(const char* key, const char* name, long& out) override {
        return registry_.read(key, name, out);
    }

  private:
    nox_pub::mswin::RegistryReader registry_;
};

// Lives as long as the module is loaded.
SystemLogEnvironment environment;

}  // namespace

LogEnvironment& systemLogEnvironment() {
    return environment;
}

}  // namespace korvane
