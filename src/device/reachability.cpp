#include "device/reachability.h"

#include <winsock2.h>
#include <windows.h>

#include "device/ping_host.h"
#include "device/udp.h"

namespace korvane {

struct Reachability::Task {
    std::string host;
    Lookup lookup;
    std::shared_ptr<Address> found;
    HMODULE code;  // a reference to what the thread runs: the library may be freed meanwhile

    static DWORD WINAPI run(void* task);
    void doIt() const { *found = lookup(host); }
};

// The system's threads begin with a stack that is not aligned as the compiler expects it.
__attribute__((force_align_arg_pointer)) DWORD WINAPI Reachability::Task::run(void* argument) {
    const auto* task = static_cast<Task*>(argument);
    const HMODULE code = task->code;
    task->doIt();
    delete task;
    FreeLibraryAndExitThread(code, 0);
}

void Reachability::watch(const std::string& host) {
    address_ = std::make_shared<Address>(parseIpv4(host.c_str()));
    if (*address_ != unknown || host.empty()) return;
    auto task = std::make_unique<Task>(host, lookup_, address_, nullptr);
    const auto* inside = reinterpret_cast<const wchar_t*>(&Task::run);
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, inside, &task->code);
    const HANDLE thread = CreateThread(nullptr, 0, &Task::run, task.get(), 0, nullptr);
    if (!thread) return void(FreeLibrary(task->code));
    task.release();
    CloseHandle(thread);
}

bool Reachability::answers() const {
    constexpr std::uint8_t timeToLive = 10;
    constexpr std::uint32_t timeoutMs = 150, dataSize = 32;
    in_addr address;
    address.s_addr = this->address();
    if (address.s_addr == unknown) return false;
    PingReply reply{};
    return PingHost(inet_ntoa(address), reply, timeToLive, timeoutMs, dataSize);
}

}  // namespace korvane
