#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "simulator/datagram.h"

namespace korvane {

// The status words with which this device refuses. The panel only passes them on.
enum class Refusal : std::uint32_t {
    UnknownCommand = 1,
    WrongSize = 2,      // the payload, or the frame's length field, is not what the command needs
    OutOfSequence = 3,  // a block outside begin and end, an upgrade piece without an upgrade, …
    WrongValue = 4,
    WrongFileName = 5,
    WrongOffset = 6,
    WrongChecksum = 7,
};

// What the device has to say to one request, before it is framed.
struct Answer {
    std::uint32_t status = 0;  // 0 is done
    Bytes payload;
    std::string note;  // for the log: what was done, or why it was not

    static Answer done(std::string note = {}) { return {0, {}, std::move(note)}; }
    static Answer with(Bytes payload, std::string note = {}) {
        return {0, std::move(payload), std::move(note)};
    }
    // Without payload, whatever the command's answer would carry.
    static Answer refused(Refusal why, std::string note) {
        return {static_cast<std::uint32_t>(why), {}, std::move(note)};
    }
};

}  // namespace korvane
