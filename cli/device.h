#pragma once

#include <optional>
#include <string>

#include "cli/context.h"
#include "device/device_client.h"
#include "model/configuration.h"

namespace korvane::cli {

// What became of a sequence: its result, and the step at which it ended.
struct Outcome {
    int result;
    std::string step;
};

// One device for as long as a command has to do with it.
class Device {
  public:
    // `address` is dotted. Throws a Failure when there is no socket to be had.
    Device(Context& context, const std::string& address);
    ~Device() { client_.Stop(); }
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    DeviceClient& client() { return client_; }
    const std::string& address() const { return address_; }

    // Each waits first until the last setting has taken effect. A fetch may be interrupted between
    // its steps; a save is safe again only at its end.
    Outcome fetch(Configuration& configuration);
    Outcome send(const Configuration& configuration);
    Outcome upgrade(const std::string& file);

    // Throws the Failure of an outcome that is one.
    void expect(const Outcome& outcome) const;

    // A setting was sent: the next one, and the next fetch, must wait.
    void noteSetting() { lastSetting_ = context_.link.ticks(); }
    enum class Interrupts { Count, Wait };
    // Waits until the last setting has taken effect, and shows it.
    void settle(Interrupts interrupts = Interrupts::Count);

  private:
    void settleFor(std::uint32_t milliseconds, Interrupts interrupts);

    Context& context_;
    DeviceClient client_;
    std::string address_;
    std::optional<std::uint32_t> lastSetting_;  // tick count
};

// The whole configuration of a device, which is only read. Throws a Failure.
std::unique_ptr<Configuration> fetchFrom(Context& context, const std::string& address);

}  // namespace korvane::cli
