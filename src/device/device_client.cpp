#include "device/device_client.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "device/udp.h"
#include "log/log.h"

namespace korvane {

using namespace link_result;

namespace {

constexpr std::uint32_t defaultSendTimeoutMs = 2000;
constexpr std::uint32_t defaultReceiveTimeoutMs = 3000;

int statusResult(std::uint32_t status) {
    return static_cast<int>(std::min<std::uint32_t>(status, INT_MAX));
}

// Whether `length` payload bytes are a count byte and whole records, and hold as many as counted;
// the count is first cut to what the panel keeps.
bool cutRecordList(std::uint8_t* payload, std::uint32_t length) {
    constexpr std::uint32_t recordSize = sizeof(InputChannelRecord);
    if (length == 0 || (length - 1) % recordSize != 0) return false;
    payload[0] = std::min<std::uint8_t>(payload[0], limits::inputChannels);
    return payload[0] <= (length - 1) / recordSize;
}

void logFailure(std::uint32_t code, int result, std::uint32_t attempts) {
    const Command* command = findCommand(code);
    const std::string name(command ? command->name : "?");
    logLine(
        logWarning,
        result > 0 ? "命令%u %s: 设备拒绝, 状态%d, 尝试%u次" : "命令%u %s: 失败, 结果%d, 尝试%u次",
        code, name.c_str(), result, attempts);
}

}  // namespace

DeviceClient::DeviceClient(DeviceLink& link)
    : link_(link),
      sendTimeoutMs_(defaultSendTimeoutMs),
      receiveTimeoutMs_(defaultReceiveTimeoutMs),
      request_(std::make_unique<std::uint8_t[]>(wire::bufferSize)),
      response_(std::make_unique<std::uint8_t[]>(wire::bufferSize)) {}

int DeviceClient::Start(const std::string& address) {
    const std::lock_guard guard(lock_);
    attempts = defaultAttempts;
    SetTimeout(0, Timeout::Defaults);
    open_ = link_.open();
    if (!open_) return openFailed;
    addressText_ = address;
    address_ = parseIpv4(address.c_str());
    return 0;
}

int DeviceClient::Stop() {
    link_.cancel();
    const std::lock_guard guard(lock_);
    link_.close();
    open_ = false;
    return 0;
}

void DeviceClient::SetTimeout(std::uint32_t value, Timeout which) {
    switch (which) {
        case Timeout::Send:
            sendTimeoutMs_ = value;
            break;
        case Timeout::Receive:
            receiveTimeoutMs_ = value;
            break;
        case Timeout::Defaults:
            sendTimeoutMs_ = defaultSendTimeoutMs;
            receiveTimeoutMs_ = defaultReceiveTimeoutMs;
            break;
    }
}

int DeviceClient::Exchange(std::uint32_t code, std::span<const std::uint8_t> request,
                           std::span<std::uint8_t> response) {
    const Outcome outcome = exchangeQuietly(code, request, response);
    if (outcome.result != 0) logFailure(code, outcome.result, outcome.attempts);
    return outcome.result;
}

DeviceClient::Outcome DeviceClient::exchangeQuietly(std::uint32_t code,
                                                    std::span<const std::uint8_t> request,
                                                    std::span<std::uint8_t> response) {
    const std::lock_guard guard(lock_);
    if (!open_) return {sendFailed, 0};
    const std::size_t length = buildRequest(code, request);
    if (length == 0) return {sendFailed, 0};
    Outcome outcome = transferWithRetries(length);
    if (outcome.result == 0) outcome.result = decodeAnswer(code, response);
    return outcome;
}

void DeviceClient::abandonExchange() {
    lock_.lock();
    attempts = defaultAttempts;
    SetTimeout(0, Timeout::Defaults);
    lock_.unlockFully();
}

// The frame's length, or 0 when it does not fit the buffer.
std::size_t DeviceClient::buildRequest(std::uint32_t code, std::span<const std::uint8_t> payload) {
    if (!findCommand(code)) payload = {};
    if (payload.size() > wire::bufferSize - CommandFrame::size) return 0;
    CommandFrame{code, 0, static_cast<std::uint32_t>(payload.size())}.write(request_.get());
    std::copy(payload.begin(), payload.end(), request_.get() + CommandFrame::size);
    return CommandFrame::size + payload.size();
}

DeviceClient::Outcome DeviceClient::transferWithRetries(std::size_t requestLength) {
    constexpr std::uint32_t retryPauseMs = 300;
    // Without any attempt there is no answer to read either.
    received_ = 0;
    std::fill_n(response_.get(), CommandFrame::size, std::uint8_t{0});
    Outcome outcome{0, 0};
    while (outcome.attempts < attempts) {
        if (++outcome.attempts > 1) link_.sleep(retryPauseMs);
        outcome.result = transfer(requestLength);
        if (outcome.result == 0) break;
        if (outcome.attempts == 1 && attempts > 1 && !link_.isReachable(addressText_))
            return {unreachable, 1};
    }
    return outcome;
}

int DeviceClient::transfer(std::size_t requestLength) {
    drain();
    const int sent = sendRequest(requestLength);
    return sent != 0 ? sent : receiveAnswer();
}

// Late answers of earlier exchanges must not pass for the next one's. A peer that never stops
// sending must not keep us here either, so no more are thrown away than the socket's buffer holds.
void DeviceClient::drain() {
    constexpr int most = 4096;
    std::uint32_t ignored = 0;
    for (int i = 0; i < most; ++i)
        if (link_.receive(response_.get(), wire::largestDatagram, ignored, 0) != 0) return;
}

int DeviceClient::sendRequest(std::size_t length) {
    constexpr std::uint32_t writableTimeoutMs = 1000;
    int result = 0;
    if (length > wire::largestDatagram) {
        const auto total = static_cast<std::uint32_t>(length);
        const auto announcement = Announcement::make(total);
        result = link_.send(address_, wire::devicePort, sendTimeoutMs_, announcement.data(),
                            Announcement::size);
        if (result >= 0)
            result = UdpSendChunked(link_, address_, wire::devicePort, request_.get(), total,
                                    wire::chunkSize);
    } else {
        // The length travels in 16 bits: exactly 65,536 bytes leave as an empty datagram.
        result = link_.send(address_, wire::devicePort, writableTimeoutMs, request_.get(),
                            static_cast<std::uint16_t>(length));
    }
    // A send that the system refused is positive and no failure: the missing answer will tell.
    return result < 0 ? sendFailed : 0;
}

int DeviceClient::receiveAnswer() {
    std::fill_n(response_.get(), CommandFrame::size, std::uint8_t{0});
    std::uint32_t length = 0;
    if (link_.receive(response_.get(), wire::largestDatagram, length, receiveTimeoutMs_) != 0)
        return noAnswer;
    received_ = length;
    if (!Announcement::startsWith(response_.get())) return 0;
    return receiveTrain(getBigEndian32(response_.get() + 4));
}

int DeviceClient::receiveTrain(std::size_t total) {
    constexpr std::uint32_t pieceTimeoutMs = 2000;
    // A device that drips its pieces, each in time, would hold the link for half an hour.
    constexpr std::uint32_t trainTimeoutMs = 30000;
    if (total == 0) return 0;  // a whole answer of nothing; decoding finds no frame in it
    if (total > wire::bufferSize) return noAnswer;
    const std::uint32_t begin = link_.ticks();
    received_ = 0;
    while (received_ < total) {
        const std::uint32_t elapsed = link_.ticks() - begin;
        if (elapsed >= trainTimeoutMs) return noAnswer;
        const std::size_t room = std::min(wire::largestDatagram, wire::bufferSize - received_);
        std::uint32_t length = 0;
        if (link_.receive(response_.get() + received_, room, length,
                          std::min(pieceTimeoutMs, trainTimeoutMs - elapsed)) != 0)
            return noAnswer;
        received_ += length;
    }
    // More than announced: a piece came twice, and what stands behind it is shifted.
    return received_ == total ? 0 : noAnswer;
}

int DeviceClient::decodeAnswer(std::uint32_t code, std::span<std::uint8_t> response) {
    const CommandFrame frame = CommandFrame::read(response_.get());
    // With no attempt made there is no frame to find fault with, and its zeros are no answer.
    if (received_ < CommandFrame::size || frame.code != code) return sendFailed;

    const Command* command = findCommand(code);
    const AnswerRule rule = command ? command->rule : AnswerRule::StatusOnly;
    const int status = statusResult(frame.status);
    if (rule == AnswerRule::StatusOnly) return status;
    if (status != 0 && rule != AnswerRule::ExactSize) return status;

    // A length that the datagrams do not bear out is as wrong as one that the command does not
    // have.
    std::uint8_t* payload = response_.get() + CommandFrame::size;
    const bool whole = frame.payloadLength <= received_ - CommandFrame::size;
    std::size_t size = command->answerSize;
    if (rule == AnswerRule::RecordList) {
        if (!whole || !cutRecordList(payload, frame.payloadLength)) return sendFailed;
        size = 1 + payload[0] * sizeof(InputChannelRecord);
    } else if (!whole || frame.payloadLength != size) {
        return wrongLength;
    }
    // What comes with a refusal is not handed on: nobody could use it, and a failure changes
    // nothing.
    if (status == 0) std::copy_n(payload, std::min(size, response.size()), response.begin());
    return status;
}

}  // namespace korvane
