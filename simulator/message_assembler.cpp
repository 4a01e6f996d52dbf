#include "simulator/message_assembler.h"

#include <algorithm>

#include "device/command_frame.h"

namespace korvane {

namespace {

bool isAnnouncement(ByteView datagram) {
    return datagram.size() == Announcement::size && Announcement::startsWith(datagram.data());
}

}  // namespace

std::optional<IncomingMessage> MessageAssembler::accept(ByteView datagram, const Endpoint& from,
                                                        std::uint64_t nowMs, std::string& note) {
    forgetStalled(nowMs);
    const auto train = trains_.find(from);
    // Eight bytes that complete a train are its end, even if they look like an announcement.
    const bool completes =
        train != trains_.end() &&
        train->second.total - train->second.message.bytes.size() == datagram.size();
    if (isAnnouncement(datagram) && !completes) {
        begin(datagram, from, nowMs, note);
        return std::nullopt;
    }
    if (train != trains_.end()) return append(datagram, from, nowMs, note);
    return IncomingMessage{Bytes(datagram.begin(), datagram.end())};
}

void MessageAssembler::forgetStalled(std::uint64_t nowMs) {
    std::erase_if(trains_, [nowMs](const auto& entry) {
        return nowMs - entry.second.lastHeardMs > patienceMs;
    });
}

void MessageAssembler::makeRoom() {
    if (trains_.size() < trainLimit) return;
    trains_.erase(std::ranges::min_element(
        trains_, {}, [](const auto& entry) { return entry.second.lastHeardMs; }));
}

void MessageAssembler::begin(ByteView announcement, const Endpoint& from, std::uint64_t nowMs,
                             std::string& note) {
    if (trains_.erase(from) != 0) note = "an unfinished train is given up; ";
    const std::size_t total = getBigEndian32(announcement.data() + 4);
    if (total == 0 || total > wire::bufferSize) {
        note += "announcement of " + std::to_string(total) + " bytes ignored";
        return;
    }
    makeRoom();
    Train& train = trains_[from];
    train.total = total;
    train.lastHeardMs = nowMs;
    train.message.announced = true;
}

std::optional<IncomingMessage> MessageAssembler::append(ByteView datagram, const Endpoint& from,
                                                        std::uint64_t nowMs, std::string& note) {
    Train& train = trains_[from];
    if (datagram.size() > train.total - train.message.bytes.size()) {
        note = "more bytes than announced, train ignored";
        trains_.erase(from);
        return std::nullopt;
    }
    train.message.bytes.insert(train.message.bytes.end(), datagram.begin(), datagram.end());
    ++train.message.datagramCount;
    train.lastHeardMs = nowMs;
    if (train.message.bytes.size() < train.total) return std::nullopt;
    IncomingMessage message = std::move(train.message);
    trains_.erase(from);
    return message;
}

}  // namespace korvane
