#include "device/ping_host.h"

#include <winsock2.h>
#include <windows.h>
#include <iphlpapi.h>
#include <icmpapi.h>

#include <algorithm>
#include <vector>

namespace korvane {
namespace {

// The ICMP helper library: loaded once, and never again when that failed.
struct IcmpLibrary {
    decltype(&::IcmpCreateFile) create = nullptr;
    decltype(&::IcmpSendEcho) sendEcho = nullptr;
    decltype(&::IcmpCloseHandle) closeHandle = nullptr;
    bool loaded = false;

    IcmpLibrary() {
        WSADATA data;
        if (WSAStartup(MAKEWORD(1, 1), &data) != 0) return;
        const HMODULE library = LoadLibraryW(L"ICMP.DLL");
        if (!library) return;
        find(library, "IcmpCreateFile", create);
        find(library, "IcmpSendEcho", sendEcho);
        find(library, "IcmpCloseHandle", closeHandle);
        loaded = create && sendEcho && closeHandle;
    }

    template <class Function>
    static void find(HMODULE library, const char* name, Function& function) {
        function =
            reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    }
};

bool isEcho(const ICMP_ECHO_REPLY& answer, const std::vector<char>& data) {
    if (answer.Status != 0) {
        SetLastError(answer.Status);
        return false;
    }
    if (answer.DataSize != data.size() ||
        !std::equal(data.begin(), data.end(), static_cast<const char*>(answer.Data))) {
        SetLastError(ERROR_UNEXP_NET_ERR);
        return false;
    }
    return true;
}

}  // namespace

std::uint32_t resolveHost(const std::string& host) {
    const IPAddr address = inet_addr(host.c_str());
    if (address != INADDR_NONE) return address;
    const hostent* entry = gethostbyname(host.c_str());
    if (!entry || entry->h_addrtype != AF_INET || !entry->h_addr_list[0]) return INADDR_NONE;
    return *reinterpret_cast<const IPAddr*>(entry->h_addr_list[0]);
}

bool PingHost(const std::string& host, PingReply& reply, std::uint8_t timeToLive,
              std::uint32_t timeoutMs, std::uint32_t dataSize) {
    static const IcmpLibrary icmp;
    if (!icmp.loaded) return false;
    const IPAddr address = resolveHost(host);
    if (address == INADDR_NONE) return false;
    const HANDLE handle = icmp.create();
    if (handle == INVALID_HANDLE_VALUE) return false;

    std::vector<char> data(static_cast<std::uint8_t>(dataSize), 'E');
    IP_OPTION_INFORMATION options{};
    options.Ttl = timeToLive;
    // The system also wants room for an ICMP error, which is eight bytes.
    std::vector<char> answers(sizeof(ICMP_ECHO_REPLY) + std::max<std::size_t>(data.size(), 8));
    const DWORD count =
        icmp.sendEcho(handle, address, data.data(), static_cast<WORD>(data.size()), &options,
                      answers.data(), static_cast<DWORD>(answers.size()), timeoutMs);
    const auto& answer = *reinterpret_cast<const ICMP_ECHO_REPLY*>(answers.data());
    const bool correct = count == 1 && isEcho(answer, data);
    if (correct) reply = {answer.Address, answer.RoundTripTime};
    const DWORD error = GetLastError();
    icmp.closeHandle(handle);
    if (!correct) SetLastError(error);
    return correct;
}

}  // namespace korvane
