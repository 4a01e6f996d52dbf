#include "simulator/answer_train.h"

#include <algorithm>

#include "device/command_frame.h"

namespace korvane {

namespace {

// One answer on its way through the faults.
struct Framing {
    std::uint32_t command;
    FaultPlan& faults;
    Random& random;
    std::string& log;

    std::optional<Fault> take(FaultKind kind) {
        auto fault = faults.take(kind, command);
        if (fault) log += " [" + describe(*fault) + "]";
        return fault;
    }
};

constexpr std::uint32_t defaultDelayMs = 1000;
constexpr std::uint32_t defaultLateMs = 3100;  // past the panel's 3,000 ms, before its next try

Bytes frameMessage(const Answer& answer, Framing& framing) {
    Bytes payload = answer.payload;
    if (const auto fault = framing.take(FaultKind::WrongSize))
        payload.resize(fault->value.value_or(static_cast<std::uint32_t>(payload.size()) + 1));
    CommandFrame frame{framing.command, answer.status, static_cast<std::uint32_t>(payload.size())};
    if (const auto fault = framing.take(FaultKind::WrongLength))
        frame.payloadLength = fault->value.value_or(frame.payloadLength + 1);
    if (const auto fault = framing.take(FaultKind::WrongCode))
        frame.code = fault->value.value_or(frame.code + 1);
    Bytes message(CommandFrame::size);
    frame.write(message.data());
    message.insert(message.end(), payload.begin(), payload.end());
    return message;
}

// The announcement leaves together with the first datagram of the train.
std::vector<OutgoingDatagram> split(const Bytes& message, const Endpoint& to, std::uint64_t startMs,
                                    Framing& framing) {
    if (message.size() <= wire::largestDatagram) return {{to, startMs, message}};
    auto total = static_cast<std::uint32_t>(message.size());
    if (const auto fault = framing.take(FaultKind::WrongTotal))
        total = fault->value.value_or(total + 1);
    const auto announcement = Announcement::make(total);
    std::vector<OutgoingDatagram> train = {
        {to, startMs, Bytes(announcement.begin(), announcement.end())}};
    for (std::size_t at = 0; at < message.size(); at += wire::chunkSize) {
        const ByteView chunk =
            ByteView(message).subspan(at, std::min(wire::chunkSize, message.size() - at));
        train.push_back({to, startMs, Bytes(chunk.begin(), chunk.end())});
        startMs += wire::chunkPauseMs;
    }
    if (const auto fault = framing.take(FaultKind::Cut))
        train.resize(std::min<std::size_t>(train.size(), 1 + fault->value.value_or(1)));
    return train;
}

void duplicate(std::vector<OutgoingDatagram>& datagrams, std::uint32_t times) {
    std::vector<OutgoingDatagram> result;
    for (const OutgoingDatagram& datagram : datagrams)
        result.insert(result.end(), 1 + times, datagram);
    datagrams = std::move(result);
}

std::uint64_t delay(Framing& framing) {
    std::uint64_t sum = 0;
    if (const auto fault = framing.take(FaultKind::Delay))
        sum += fault->value.value_or(defaultDelayMs);
    if (const auto fault = framing.take(FaultKind::Late))
        sum += fault->value.value_or(defaultLateMs);
    return sum;
}

}  // namespace

bool strikes(Random& random, std::uint32_t percent) {
    return random() % 100 < percent;
}

std::vector<OutgoingDatagram> frameAnswer(std::uint32_t command, const Answer& answer,
                                          const Endpoint& to, std::uint64_t nowMs,
                                          FaultPlan& faults, Random& random, std::string& log) {
    Framing framing{command, faults, random, log};
    if (framing.take(FaultKind::LostAnswer)) return {};
    const Bytes message = frameMessage(answer, framing);
    auto datagrams = split(message, to, nowMs + delay(framing), framing);
    if (const auto fault = framing.take(FaultKind::Duplicate))
        duplicate(datagrams, fault->value.value_or(1));
    return datagrams;
}

}  // namespace korvane
