#include "device/icmp_socket.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdint>

#include "device/udp.h"

namespace korvane {
namespace {

// The system fills in the identifier and the checksum of such a socket's messages, and hands it the
// answers to its own alone.
using EchoMessage = std::array<std::uint8_t, 40>;  // a head of eight bytes, and letters 'E'
constexpr std::uint8_t echoRequest = 8, echoReply = 0;

class IcmpSocket {
  public:
    IcmpSocket() : descriptor_(socket(AF_INET, SOCK_DGRAM, IPPROTO_ICMP)) {}
    ~IcmpSocket() {
        if (descriptor_ >= 0) close(descriptor_);
    }
    IcmpSocket(const IcmpSocket&) = delete;
    IcmpSocket& operator=(const IcmpSocket&) = delete;

    bool ask(std::uint32_t address) const;
    bool hearsReply(int timeoutMs) const;

  private:
    int descriptor_;
};

bool IcmpSocket::ask(std::uint32_t address) const {
    EchoMessage message;
    message.fill('E');
    message[0] = echoRequest;
    message[1] = 0;
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_addr.s_addr = address;
    return descriptor_ >= 0 && sendto(descriptor_, message.data(), message.size(), 0,
                                      reinterpret_cast<const sockaddr*>(&to),
                                      sizeof to) == static_cast<ssize_t>(message.size());
}

bool IcmpSocket::hearsReply(int timeoutMs) const {
    pollfd waiting{descriptor_, POLLIN, 0};
    EchoMessage message;
    return poll(&waiting, 1, timeoutMs) == 1 &&
           recv(descriptor_, message.data(), message.size(), 0) > 0 && message[0] == echoReply;
}

}  // namespace

Echo echoOf(const std::string& host) {
    constexpr int timeoutMs = 150;
    const IcmpSocket icmp;
    if (!icmp.ask(parseIpv4(host.c_str()))) return Echo::Unknown;
    return icmp.hearsReply(timeoutMs) ? Echo::Answered : Echo::None;
}

}  // namespace korvane
