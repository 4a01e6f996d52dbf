#pragma once

#include <string>

#include "runtime/system_mutex.h"

namespace nox_pub::mswin {

// Reads numbers from the registry and keeps its keys open for the next time. May be used from any
// thread. A 32-bit process sees the 32-bit view of a 64-bit system's registry.
class RegistryReader {
  public:
    // HKEY_LOCAL_MACHINE\software, with full access: it needs administrative rights.
    RegistryReader();
    // An existing `path` below another root (an HKEY).
    RegistryReader(void* root, std::string path);
    ~RegistryReader();
    RegistryReader(const RegistryReader&) = delete;
    RegistryReader& operator=(const RegistryReader&) = delete;

    // Value `name` of subkey `key`, a text of at most 1,023 bytes that begins with a decimal
    // number. Both names are ASCII. 1 and the number, or 0 when there is no such text; a subkey
    // that was missing is there afterwards.
    int read(const std::string& key, const std::string& name, long& out);

  private:
    bool openSubkey(const std::string& key);
    void closeSubkey();

    SystemMutex lock_;
    void* root_;
    std::string path_;
    void* software_ = nullptr;
    std::string subkeyName_;
    void* subkey_ = nullptr;
};

}  // namespace nox_pub::mswin
