#include "simulator/simulated_device.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "device/command_frame.h"
#include "simulator/network_settings.h"
#include "simulator/sample_configuration.h"

namespace korvane {

namespace {

bool isPoll(std::uint32_t code) {
    return code >= static_cast<std::uint32_t>(CommandCode::GetHeartbeat) &&
           code <= static_cast<std::uint32_t>(CommandCode::GetStatusSummary);
}

std::string nameOf(std::uint32_t code) {
    const Command* command = findCommand(code);
    const std::string number = std::to_string(code);
    return command ? std::string(command->name) + " (" + number + ")" : "command " + number;
}

// What a datagram or train is that begins like no frame of this device, or nothing for a frame. A
// chunk of a train whose announcement got lost looks like a short frame or like none at all; a real
// frame whose length field is wrong is refused instead.
std::string strayReason(const Bytes& message) {
    constexpr std::size_t longestSingle = wire::largestDatagram - CommandFrame::size;
    if (message.size() < CommandFrame::size) return "too short for a frame";
    const CommandFrame frame = CommandFrame::read(message.data());
    if (frame.payloadLength == message.size() - CommandFrame::size) return {};
    if (frame.payloadLength > longestSingle) return "part of a train that was not announced";
    return findCommand(frame.code) ? std::string() : "no frame";
}

}  // namespace

struct SimulatedDevice::Exchange {
    Endpoint from;
    std::uint32_t code = 0;
    std::size_t payloadSize = 0;
    std::size_t datagramCount = 1;
    std::uint64_t nowMs = 0;
    std::optional<Fault> loss;
};

SimulatedDevice::SimulatedDevice(const DeviceState& initial, const DeviceConfiguration& defaults,
                                 const SimulationSettings& settings, Clock clock)
    : settings_(settings),
      clock_(std::move(clock)),
      store_(initial, defaults),
      upgrade_(settings.upgradePolls),
      status_(settings.seed),
      random_(settings.seed) {
    status_.restart(*decodeConfiguration(store_.state().applied), 0);
}

SimulatedDevice::SimulatedDevice(const SimulationSettings& settings)
    : SimulatedDevice(*sampleState("127.0.0.1"), *sampleConfiguration(), settings,
                      [] { return WallTime{2009, 4, 23, 4, 8, 5, 9}; }) {}

std::vector<OutgoingDatagram> SimulatedDevice::receive(ByteView datagram, const Endpoint& from,
                                                       std::uint64_t nowMs) {
    if (isRebooting(nowMs)) {
        tellStray(from, std::to_string(datagram.size()) + " bytes ignored: restarting");
        return {};
    }
    std::string note;
    const auto message = assembler_.accept(datagram, from, nowMs, note);
    if (!note.empty()) tellStray(from, note);
    if (!message) return {};
    const std::string stray = strayReason(message->bytes);
    if (!stray.empty()) {
        tellStray(from, std::to_string(message->bytes.size()) + " bytes ignored: " + stray);
        return {};
    }
    return serve(*message, from, nowMs);
}

std::vector<OutgoingDatagram> SimulatedDevice::serve(const IncomingMessage& message,
                                                     const Endpoint& from, std::uint64_t nowMs) {
    const CommandFrame frame = CommandFrame::read(message.bytes.data());
    const ByteView payload = ByteView(message.bytes).subspan(CommandFrame::size);
    Exchange exchange{from, frame.code, payload.size(), message.datagramCount, nowMs, {}};
    if (faults_.take(FaultKind::Silence, frame.code)) {
        tellRequest(exchange, nullptr, " [silence]");
        return {};
    }
    exchange.loss = faults_.take(FaultKind::Loss, frame.code);
    for (std::size_t i = 0; exchange.loss && i < message.datagramCount; ++i) {
        if (!strikes(random_, exchange.loss->value.value_or(100))) continue;
        tellRequest(exchange, nullptr, " [" + describe(*exchange.loss) + ": request lost]");
        return {};
    }
    std::string log;
    Answer answer;
    if (const auto refusal = faults_.take(FaultKind::Refuse, frame.code)) {
        log += " [" + describe(*refusal) + "]";
        answer.status = refusal->value.value_or(255);
    } else if (frame.payloadLength != payload.size()) {
        answer = Answer::refused(Refusal::WrongSize,
                                 "length field says " + std::to_string(frame.payloadLength));
    } else {
        answer = answerTo(frame.code, payload, nowMs);
    }
    auto datagrams = respond(exchange, answer, log);
    tellRequest(exchange, &answer, log);
    return datagrams;
}

Answer SimulatedDevice::answerTo(std::uint32_t code, ByteView payload, std::uint64_t nowMs) {
    const Command* command = findCommand(code);
    if (!command) return Answer::refused(Refusal::UnknownCommand, "unknown");
    if (command->requestSize != Command::variable && command->requestSize != payload.size())
        return Answer::refused(Refusal::WrongSize,
                               std::to_string(command->requestSize) + " bytes expected");
    return execute(*command, payload, nowMs);
}

Answer SimulatedDevice::execute(const Command& command, ByteView payload, std::uint64_t nowMs) {
    switch (command.code) {
        case CommandCode::ActivateConfig:
        case CommandCode::RestoreDefaults: {
            Answer answer = command.code == CommandCode::ActivateConfig ? store_.activate()
                                                                        : store_.restoreDefaults();
            if (answer.status == 0) applyConfiguration(nowMs);
            return answer;
        }
        case CommandCode::RebootDevice:
            reboot(nowMs);
            return Answer::done("silent for " + std::to_string(settings_.rebootMs) + " ms, then " +
                                networkSettings());
        case CommandCode::GetHeartbeat:
            return heartbeat();
        case CommandCode::GetDeviceStatus:
            return deviceStatus(nowMs);
        case CommandCode::GetStatusSummary:
            return summary(payload[0]);
        case CommandCode::BeginUpgrade:
        case CommandCode::UpgradeData:
        case CommandCode::FinishUpgrade:
        case CommandCode::GetUpgradeState:
            return upgrade_.handle(command.code, payload);
        default:
            return store_.handle(command, payload);
    }
}

void SimulatedDevice::reboot(std::uint64_t nowMs) {
    silentUntilMs_ = nowMs + settings_.rebootMs;
    store_.restart();
    upgrade_.reset();
    assembler_.clear();
    heartbeats_ = 0;
    status_.restart(*decodeConfiguration(store_.state().applied), silentUntilMs_);
}

// Of the real device: this one goes on answering where it was started.
std::string SimulatedDevice::networkSettings() const {
    return describe(store_.paramsInForce());
}

void SimulatedDevice::applyConfiguration(std::uint64_t nowMs) {
    status_.advance(nowMs);
    status_.configure(*decodeConfiguration(store_.state().applied), nowMs);
}

Answer SimulatedDevice::heartbeat() {
    ++heartbeats_;
    return Answer::with(
        {static_cast<std::uint8_t>(heartbeats_ >> 8), static_cast<std::uint8_t>(heartbeats_)});
}

Answer SimulatedDevice::deviceStatus(std::uint64_t nowMs) {
    status_.advance(nowMs);
    const auto image = std::make_unique<DeviceStatusImage>();
    status_.write(*image);
    toNetworkOrder(*image);
    Bytes payload(sizeof(DeviceStatusImage));
    std::memcpy(payload.data(), image.get(), payload.size());
    return Answer::with(std::move(payload));
}

// The first word repeats what was asked for; the day of the week stands between day and hour.
Answer SimulatedDevice::summary(std::uint8_t kind) {
    const WallTime now = clock_();
    StatusSummary summary{kind,     now.year,   now.month,  now.day, now.weekday,
                          now.hour, now.minute, now.second, 0,       0};
    toNetworkOrder(summary);
    Bytes payload(StatusSummary::wireSize);
    std::memcpy(payload.data(), &summary, payload.size());
    return Answer::with(std::move(payload));
}

std::vector<OutgoingDatagram> SimulatedDevice::respond(const Exchange& exchange,
                                                       const Answer& answer, std::string& log) {
    auto datagrams =
        frameAnswer(exchange.code, answer, exchange.from, exchange.nowMs, faults_, random_, log);
    if (!exchange.loss) return datagrams;
    const auto lost = std::erase_if(datagrams, [&](const OutgoingDatagram&) {
        return strikes(random_, exchange.loss->value.value_or(100));
    });
    log += " [" + describe(*exchange.loss) + ": " + std::to_string(lost) + " datagrams lost]";
    return datagrams;
}

void SimulatedDevice::tellStray(const Endpoint& from, std::string text) {
    if (sink_) sink_({DeviceEvent::Kind::Stray, from, 0, 0, false, std::move(text)});
}

void SimulatedDevice::tellRequest(const Exchange& exchange, const Answer* answer,
                                  const std::string& log) {
    if (!sink_) return;
    std::string text =
        nameOf(exchange.code) + ", " + std::to_string(exchange.payloadSize) + " bytes";
    if (exchange.datagramCount > 1)
        text += " in " + std::to_string(exchange.datagramCount) + " datagrams";
    if (!answer) {
        text += " -> nothing";
    } else if (answer->status != 0) {
        text += " -> refused, status " + std::to_string(answer->status);
    } else {
        text += " -> done, " + std::to_string(answer->payload.size()) + " bytes";
    }
    if (answer && !answer->note.empty()) text += " (" + answer->note + ")";
    const auto kind = isPoll(exchange.code) ? DeviceEvent::Kind::Poll : DeviceEvent::Kind::Request;
    sink_({kind, exchange.from, exchange.code, answer ? answer->status : 0, answer != nullptr,
           text + log});
}

}  // namespace korvane
