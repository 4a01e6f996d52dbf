#pragma once

#include <cstdint>
#include <vector>

#include "model/config_model.h"

namespace korvane {

// What a sub-frame's dialog asks of the frame that it belongs to: of its working copy, as far as it
// has been entered, without the sub-frame that is edited. A check that fails has said why.
class FrameQuestions {
  public:
    virtual ~FrameQuestions() = default;

    virtual std::uint8_t frameId() const = 0;
    virtual ConfigModel::FramePlace place() const = 0;

    // 0; -1: another sub-frame has it.
    virtual int checkSubFrameId(std::uint8_t id) = 0;
    // 0; -1: another sub-frame has it; -2: none of a service, or one of another frame.
    virtual int checkServiceId(std::uint32_t id) = 0;
    // 0; 1: more than the other sub-frames leave, in bit/s, or the frame has no time slots.
    virtual int checkBandwidth(std::uint32_t bandwidth) = 0;
    // What they leave, in bit/s; negative when they need more than there is.
    virtual std::int32_t availableBandwidth() = 0;
    // Takes out what components of sub-frames with another service id are, keeping the order.
    virtual void dropTaken(std::uint32_t serviceId,
                           std::vector<InputChannelRecord>& candidates) const = 0;
};

}  // namespace korvane
