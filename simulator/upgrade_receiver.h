#pragma once

#include <cstdint>
#include <string>

#include "device/command_table.h"
#include "simulator/answer.h"

namespace korvane {

// Takes one firmware file: BeginUpgrade, UpgradeData in order, FinishUpgrade, then GetUpgradeState
// until the file is "written". The file itself is checked and thrown away.
class UpgradeReceiver {
  public:
    static constexpr std::size_t largestFile = 64u << 20;
    static constexpr std::size_t nameSize = 256;

    // pollsUntilFinished: how often GetUpgradeState answers "still working" after FinishUpgrade.
    explicit UpgradeReceiver(std::uint32_t pollsUntilFinished)
        : pollsUntilFinished_(pollsUntilFinished) {}

    // One of the four upgrade commands; anything else is UnknownCommand.
    Answer handle(CommandCode code, ByteView payload);

    // A restart drops whatever was under way.
    void reset();

  private:
    enum class Phase { Idle, Receiving, Working };

    Answer begin(ByteView payload);
    Answer take(ByteView payload);
    Answer finish();
    Answer state();

    std::uint32_t pollsUntilFinished_;
    Phase phase_ = Phase::Idle;
    std::string name_;
    std::size_t size_ = 0;
    std::uint32_t checksum_ = 0;
    Bytes received_;
    std::uint32_t pollsLeft_ = 0;
};

}  // namespace korvane
