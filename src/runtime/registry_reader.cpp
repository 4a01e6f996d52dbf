#include "runtime/registry_reader.h"

#include <windows.h>

#include <cstdlib>
#include <mutex>
#include <utility>

namespace nox_pub::mswin {
namespace {

HKEY native(void* key) {
    return static_cast<HKEY>(key);
}

void* open(void* root, const std::string& path) {
    HKEY key = nullptr;
    const LONG error = RegOpenKeyExA(native(root), path.c_str(), 0, KEY_ALL_ACCESS, &key);
    return error == ERROR_SUCCESS ? key : nullptr;
}

void* openOrCreate(void* parent, const std::string& name) {
    HKEY key = nullptr;
    const LONG error = RegCreateKeyExA(native(parent), name.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                                       nullptr, &key, nullptr);
    return error == ERROR_SUCCESS ? key : nullptr;
}

}  // namespace

RegistryReader::RegistryReader() : RegistryReader(HKEY_LOCAL_MACHINE, "software") {}

RegistryReader::RegistryReader(void* root, std::string path)
    : root_(root), path_(std::move(path)) {}

RegistryReader::~RegistryReader() {
    closeSubkey();
    if (software_) RegCloseKey(native(software_));
}

int RegistryReader::read(const std::string& key, const std::string& name, long& out) {
    const std::lock_guard guard(lock_);
    if (!openSubkey(key)) return 0;
    char text[1024];
    DWORD size = sizeof text - 1;
    const LONG error = RegQueryValueExA(native(subkey_), name.c_str(), nullptr, nullptr,
                                        reinterpret_cast<BYTE*>(text), &size);
    // Somebody removed the key that we keep; it may be there again next time.
    if (error == ERROR_KEY_DELETED) closeSubkey();
    if (error != ERROR_SUCCESS) return 0;
    text[size] = '\0';
    out = std::strtol(text, nullptr, 10);
    return 1;
}

// The root is opened with the first read, not at load time: the loader's lock is no place to wait
// for the registry.
bool RegistryReader::openSubkey(const std::string& key) {
    if (subkey_ && lstrcmpiA(key.c_str(), subkeyName_.c_str()) == 0) return true;
    closeSubkey();
    if (!software_) software_ = open(root_, path_);
    if (!software_) return false;
    subkey_ = openOrCreate(software_, key);
    if (subkey_) subkeyName_ = key;
    return subkey_ != nullptr;
}

void RegistryReader::closeSubkey() {
    if (subkey_) RegCloseKey(native(std::exchange(subkey_, nullptr)));
}

}  // namespace nox_pub::mswin
