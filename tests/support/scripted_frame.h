#pragma once

#include <string>

#include "editors/frame_questions.h"

namespace korvane::test {

// A frame that answers by script and notes what it is asked.
class ScriptedFrame : public FrameQuestions {
  public:
    std::uint8_t frameId() const override { return id; }
    ConfigModel::FramePlace place() const override { return {kind, 0}; }
    int checkSubFrameId(std::uint8_t number) override { return note("sub", number); }
    int checkServiceId(std::uint32_t number) override { return note("service", number); }
    int checkBandwidth(std::uint32_t number) override { return note("bandwidth", number); }
    std::int32_t availableBandwidth() override { return 480'000; }
    void dropTaken(std::uint32_t serviceId, std::vector<InputChannelRecord>& list) const override {
        askedBy = serviceId;
        std::erase_if(list, [this](const auto& channel) { return channel.address[3] == taken; });
    }

    std::uint8_t id = 1, taken = 3;  // the last octet of what another service has
    TableKind kind = TableKind::Continuous;
    std::string refused, asked;  // the question, and all of them
    mutable std::uint32_t askedBy = 0;

  private:
    int note(const std::string& question, std::uint32_t number) {
        asked += question + ' ' + std::to_string(number) + ' ';
        return question == refused ? -1 : 0;
    }
};

}  // namespace korvane::test
