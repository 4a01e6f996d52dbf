#include "simulator/upgrade_receiver.h"

#include <algorithm>

#include "device/command_frame.h"
#include "device/crc32.h"
#include "device/firmware_file.h"

namespace korvane {

namespace {

std::string nameIn(ByteView field) {
    const auto end = std::ranges::find(field, std::uint8_t{0});
    return std::string(field.begin(), end);
}

}  // namespace

Answer UpgradeReceiver::handle(CommandCode code, ByteView payload) {
    switch (code) {
        case CommandCode::BeginUpgrade:
            return begin(payload);
        case CommandCode::UpgradeData:
            return take(payload);
        case CommandCode::FinishUpgrade:
            return finish();
        case CommandCode::GetUpgradeState:
            return state();
        default:
            return Answer::refused(Refusal::UnknownCommand, "not a command of the upgrade");
    }
}

void UpgradeReceiver::reset() {
    phase_ = Phase::Idle;
    received_ = {};
}

Answer UpgradeReceiver::begin(ByteView payload) {
    const std::string name = nameIn(payload.first(nameSize));
    const std::size_t size = getBigEndian32(payload.data() + nameSize);
    if (!isFirmwareName(name))
        return Answer::refused(Refusal::WrongFileName, "not a firmware file of this device");
    if (size == 0 || size > largestFile)
        return Answer::refused(Refusal::WrongValue, "a file of " + std::to_string(size) + " bytes");
    phase_ = Phase::Receiving;
    name_ = name;
    size_ = size;
    checksum_ = getBigEndian32(payload.data() + nameSize + 4);
    received_.clear();
    return Answer::done(name + ", " + std::to_string(size) + " bytes");
}

// A piece that is here already comes again when the answer to it was lost.
Answer UpgradeReceiver::take(ByteView payload) {
    constexpr std::size_t headSize = 8;
    if (phase_ != Phase::Receiving)
        return Answer::refused(Refusal::OutOfSequence, "no BeginUpgrade before");
    if (payload.size() <= headSize)
        return Answer::refused(Refusal::WrongSize, "a piece without bytes");
    const std::size_t offset = getBigEndian32(payload.data());
    const std::size_t length = getBigEndian32(payload.data() + 4);
    const ByteView piece = payload.subspan(headSize);
    if (length != piece.size())
        return Answer::refused(Refusal::WrongSize, "the piece's length does not fit");
    if (offset > received_.size() || length > size_ - offset)
        return Answer::refused(
            Refusal::WrongOffset,
            "offset " + std::to_string(offset) + ", expected " + std::to_string(received_.size()));
    received_.resize(std::max(received_.size(), offset + length));
    std::ranges::copy(piece, received_.begin() + static_cast<std::ptrdiff_t>(offset));
    return Answer::done(std::to_string(received_.size()) + " of " + std::to_string(size_) +
                        " bytes");
}

Answer UpgradeReceiver::finish() {
    if (phase_ == Phase::Working) return Answer::done("finished before");
    if (phase_ != Phase::Receiving)
        return Answer::refused(Refusal::OutOfSequence, "no BeginUpgrade before");
    if (received_.size() != size_)
        return Answer::refused(Refusal::OutOfSequence,
                               std::to_string(size_ - received_.size()) + " bytes are missing");
    const bool intact = Crc32(received_.data(), static_cast<int>(size_)) == checksum_;
    reset();
    if (!intact) return Answer::refused(Refusal::WrongChecksum, "checksum of " + name_ + " wrong");
    phase_ = Phase::Working;
    pollsLeft_ = pollsUntilFinished_;
    return Answer::done(name_ + " received whole, checksum right");
}

Answer UpgradeReceiver::state() {
    if (phase_ == Phase::Idle) return Answer::with({0}, "no upgrade under way");
    if (phase_ == Phase::Working && pollsLeft_ == 0) {
        phase_ = Phase::Idle;
        return Answer::with({0}, name_ + " written");
    }
    if (phase_ == Phase::Working) --pollsLeft_;
    return Answer::with({1}, "still working");
}

}  // namespace korvane
