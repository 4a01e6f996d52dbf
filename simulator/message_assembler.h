#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "simulator/datagram.h"

namespace korvane {

// A whole request, from one datagram or from an announced train.
struct IncomingMessage {
    Bytes bytes;
    std::size_t datagramCount = 1;  // announcement included
    bool announced = false;
};

// Puts announced trains together again, each sender's own. Holds at most `trainLimit` unfinished
// trains: the one that has waited longest gives way.
class MessageAssembler {
  public:
    // A train that pauses longer than this is given up: the sender has stopped or lost a datagram.
    static constexpr std::uint64_t patienceMs = 2000;
    static constexpr std::size_t trainLimit = 16;

    // The message that this datagram completes. Without one, `note` says what the datagram was; it
    // stays empty for the expected middle of a train.
    std::optional<IncomingMessage> accept(ByteView datagram, const Endpoint& from,
                                          std::uint64_t nowMs, std::string& note);

    void clear() { trains_.clear(); }

  private:
    struct Train {
        std::size_t total = 0;
        std::uint64_t lastHeardMs = 0;
        IncomingMessage message;
    };

    void forgetStalled(std::uint64_t nowMs);
    void makeRoom();
    void begin(ByteView announcement, const Endpoint& from, std::uint64_t nowMs, std::string& note);
    std::optional<IncomingMessage> append(ByteView datagram, const Endpoint& from,
                                          std::uint64_t nowMs, std::string& note);

    std::map<Endpoint, Train> trains_;
};

}  // namespace korvane
