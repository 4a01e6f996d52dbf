#include "runtime/system_mutex.h"

#include <windows.h>

namespace nox_pub::mswin {

SystemMutex::SystemMutex() : handle_(CreateMutexW(nullptr, FALSE, nullptr)) {}

SystemMutex::~SystemMutex() {
    CloseHandle(handle_);
}

void SystemMutex::lock() {
    WaitForSingleObject(handle_, INFINITE);
}

void SystemMutex::unlock() {
    ReleaseMutex(handle_);
}

}  // namespace nox_pub::mswin
