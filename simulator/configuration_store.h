#pragma once

#include <cstdint>
#include <memory>

#include "device/command_table.h"
#include "simulator/answer.h"
#include "simulator/device_state.h"

namespace korvane {

// The stored configuration and the commands that write and read it (families 1-104, 2000, 3000).
//
// Blocks go straight into the set configuration, so that a save that breaks off leaves the blocks
// sent so far; they are taken only between BeginConfigSet and EndConfigSet. Every get answers from
// the set configuration, applied or not, and needs no BeginConfigGet: the panel sees what it wrote.
class ConfigurationStore {
  public:
    // `defaults` is what RestoreDefaults goes back to; the device parameters are not part of it,
    // since the panel would lose a device whose address changed.
    ConfigurationStore(const DeviceState& initial, const DeviceConfiguration& defaults);

    // The payload has the size that the command's row asks for. Unknown here: UnknownCommand.
    Answer handle(const Command& command, ByteView payload);

    Answer activate();         // the set configuration becomes the applied one
    Answer restoreDefaults();  // for both
    void restart();            // what was set but never applied is lost

    const DeviceState& state() const { return *state_; }
    // The network settings of the last start: applied ones wait for the next.
    const DeviceParamBlock& paramsInForce() const { return paramsInForce_; }
    // Counts the changes of the state.
    std::uint32_t revision() const { return revision_; }

  private:
    Answer handleAuxiliary(CommandCode code, ByteView payload);
    Answer handleSet(const Command& command, ByteView payload);
    Answer handleGet(const Command& command);
    Answer setChannels(ByteView payload);
    std::string whenInForce(const DeviceParamBlock& params) const;
    Answer changed(std::string note = {});

    std::unique_ptr<DeviceState> state_;
    std::unique_ptr<DeviceConfiguration> defaults_;
    DeviceParamBlock paramsInForce_;
    bool receiving_ = false;
    std::uint32_t revision_ = 0;
};

}  // namespace korvane
