#include "runtime/event.h"

#include <windows.h>

#include "runtime/exceptions.h"
#include "text/text.h"

namespace nox_pub::mswin {

Event::Event(const std::string& name) {
    const std::string fullName = "nox_pub:event:" + name;
    const std::wstring wideName = korvane::anyToWide(fullName);
    SetLastError(ERROR_SUCCESS);
    handle_ = CreateEventW(nullptr, TRUE, FALSE, name.empty() ? nullptr : wideName.c_str());
    const DWORD error = GetLastError();
    if (!handle_) throw EventError("cannot create: " + fullName, error);
    existed_ = error == ERROR_ALREADY_EXISTS;
}

Event::~Event() {
    CloseHandle(handle_);
}

void Event::signal() {
    SetEvent(handle_);
}

void Event::reset() {
    ResetEvent(handle_);
}

bool Event::wait(std::uint32_t timeoutMs) const {
    return WaitForSingleObject(handle_, timeoutMs) == WAIT_OBJECT_0;
}

}  // namespace nox_pub::mswin
