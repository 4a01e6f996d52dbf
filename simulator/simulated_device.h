#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "simulator/answer_train.h"
#include "simulator/configuration_store.h"
#include "simulator/fault_plan.h"
#include "simulator/message_assembler.h"
#include "simulator/status_generator.h"
#include "simulator/upgrade_receiver.h"

namespace korvane {

// Local time of day, for the device's clock.
struct WallTime {
    std::uint16_t year = 0, month = 0, day = 0;  // month and day from 1
    std::uint16_t weekday = 0;                   // 0 is Sunday
    std::uint16_t hour = 0, minute = 0, second = 0;
};

struct SimulationSettings {
    std::uint32_t seed = 1;          // of everything that happens by chance
    std::uint32_t rebootMs = 15000;  // silence after RebootDevice
    std::uint32_t upgradePolls = 3;  // answers "still working" after FinishUpgrade
};

// What the device did, told once per request or stray datagram.
struct DeviceEvent {
    enum class Kind { Request, Poll, Stray };  // Poll: one of the status queries that never end
    Kind kind = Kind::Stray;
    Endpoint from;
    std::uint32_t command = 0;  // of a request
    std::uint32_t status = 0;   // of its answer
    bool answered = false;
    std::string text;  // one line: what came, what went out, what the faults did to it
};

// The device without sockets and clock: datagrams and times go in, datagrams and the times at which
// they are to leave come out. Nothing that arrives can make it fail. One thread at a time.
class SimulatedDevice {
  public:
    using Clock = std::function<WallTime()>;
    using EventSink = std::function<void(const DeviceEvent&)>;

    // Starts with `initial`; RestoreDefaults goes back to `defaults`. Copies both.
    SimulatedDevice(const DeviceState& initial, const DeviceConfiguration& defaults,
                    const SimulationSettings& settings, Clock clock);
    // With the sample configuration for both, and a clock that stands still.
    explicit SimulatedDevice(const SimulationSettings& settings = {});

    // One datagram that arrived at `nowMs`; times never run back.
    std::vector<OutgoingDatagram> receive(ByteView datagram, const Endpoint& from,
                                          std::uint64_t nowMs);

    void reboot(std::uint64_t nowMs);
    bool isRebooting(std::uint64_t nowMs) const { return nowMs < silentUntilMs_; }

    const DeviceState& state() const { return store_.state(); }
    // Those in force, in one line.
    std::string networkSettings() const;
    // Changes whenever state() does.
    std::uint32_t revision() const { return store_.revision(); }

    FaultPlan& faults() { return faults_; }
    StatusGenerator& status() { return status_; }
    void onEvent(EventSink sink) { sink_ = std::move(sink); }

  private:
    struct Exchange;

    std::vector<OutgoingDatagram> serve(const IncomingMessage& message, const Endpoint& from,
                                        std::uint64_t nowMs);
    Answer answerTo(std::uint32_t code, ByteView payload, std::uint64_t nowMs);
    Answer execute(const Command& command, ByteView payload, std::uint64_t nowMs);
    Answer heartbeat();
    Answer deviceStatus(std::uint64_t nowMs);
    Answer summary(std::uint8_t kind);
    std::vector<OutgoingDatagram> respond(const Exchange& exchange, const Answer& answer,
                                          std::string& log);
    void tellStray(const Endpoint& from, std::string text);
    void tellRequest(const Exchange& exchange, const Answer* answer, const std::string& log);
    void applyConfiguration(std::uint64_t nowMs);

    SimulationSettings settings_;
    Clock clock_;
    ConfigurationStore store_;
    UpgradeReceiver upgrade_;
    StatusGenerator status_;
    MessageAssembler assembler_;
    FaultPlan faults_;
    Random random_;
    EventSink sink_;
    std::uint64_t silentUntilMs_ = 0;
    std::uint16_t heartbeats_ = 0;
};

}  // namespace korvane
