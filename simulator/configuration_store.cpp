#include "simulator/configuration_store.h"

#include <algorithm>
#include <cstring>

#include "model/object_bytes.h"
#include "simulator/network_settings.h"

namespace korvane {

namespace {

using detail::headerBytes;

template <class T>
Answer answerWith(const T& object, std::string note = {}) {
    const auto bytes = bytesOf(object);
    return Answer::with(Bytes(bytes.begin(), bytes.end()), std::move(note));
}

template <class T>
void copyInto(T& object, ByteView payload) {
    std::ranges::copy(payload, writableBytesOf(object).begin());
}

Answer unknown() {
    return Answer::refused(Refusal::UnknownCommand, "not a command of the configuration");
}

}  // namespace

ConfigurationStore::ConfigurationStore(const DeviceState& initial,
                                       const DeviceConfiguration& defaults)
    : state_(std::make_unique<DeviceState>(initial)),
      defaults_(std::make_unique<DeviceConfiguration>(defaults)),
      paramsInForce_(initial.paramsApplied) {}

Answer ConfigurationStore::changed(std::string note) {
    ++revision_;
    return Answer::done(std::move(note));
}

Answer ConfigurationStore::handle(const Command& command, ByteView payload) {
    const auto code = static_cast<std::uint32_t>(command.code);
    if (code < 2000) return handleAuxiliary(command.code, payload);
    if (code < 3000) return handleSet(command, payload);
    return handleGet(command);
}

Answer ConfigurationStore::handleAuxiliary(CommandCode code, ByteView payload) {
    switch (code) {
        case CommandCode::SetInputChannels:
            return setChannels(payload);
        case CommandCode::GetInputChannels: {
            const ByteView list = state_->set.channelList();
            return Answer::with(Bytes(list.begin(), list.end()),
                                std::to_string(list[0]) + " channels");
        }
        case CommandCode::SetDeviceParams:
            copyInto(state_->paramsSet, payload);
            return changed(describe(state_->paramsSet));
        case CommandCode::GetDeviceParams:
            return answerWith(state_->paramsSet, whenInForce(state_->paramsSet));
        case CommandCode::ApplyDeviceParams:
            state_->paramsApplied = state_->paramsSet;
            return changed("device parameters applied, " + whenInForce(state_->paramsApplied));
        case CommandCode::SetServiceDescriptions:
            copyInto(state_->set.descriptions, payload);
            return changed();
        case CommandCode::GetServiceDescriptions:
            return answerWith(state_->set.descriptions);
        default:
            return unknown();
    }
}

std::string ConfigurationStore::whenInForce(const DeviceParamBlock& params) const {
    return std::ranges::equal(bytesOf(params), bytesOf(paramsInForce_))
               ? "in force"
               : "in force after a restart";
}

Answer ConfigurationStore::setChannels(ByteView payload) {
    if (payload.empty() || payload[0] > limits::inputChannels)
        return Answer::refused(Refusal::WrongValue, "no count, or one above 60");
    if (payload.size() != 1 + payload[0] * sizeof(InputChannelRecord))
        return Answer::refused(Refusal::WrongSize, "the count does not fit the length");
    auto& channels = state_->set.channels;
    channels.fill(0);
    std::ranges::copy(payload, channels.begin());
    return changed(std::to_string(payload[0]) + " channels");
}

Answer ConfigurationStore::handleSet(const Command& command, ByteView payload) {
    if (command.code == CommandCode::BeginConfigSet) {
        receiving_ = true;
        return Answer::done();
    }
    if (!receiving_) return Answer::refused(Refusal::OutOfSequence, "no BeginConfigSet before");
    ConfigImage& image = state_->set.image;
    switch (command.code) {
        case CommandCode::EndConfigSet:
            receiving_ = false;
            return Answer::done();
        case CommandCode::SetImageHeader:
            image.header.length = payload[0];
            std::memcpy(&image.header, payload.data() + 1, headerBytes);
            return changed();
        case CommandCode::SetImageBlock2002:
            std::ranges::copy(payload, state_->set.block2002.begin());
            return changed();
        default:
            if (!command.isBlock()) return unknown();
            std::ranges::copy(payload, writableBytesOf(image).begin() + command.imageOffset);
            return changed();
    }
}

Answer ConfigurationStore::handleGet(const Command& command) {
    const ConfigImage& image = state_->set.image;
    switch (command.code) {
        case CommandCode::BeginConfigGet:
        case CommandCode::EndConfigGet:
            return Answer::done();
        case CommandCode::GetImageHeader: {
            Bytes header(1 + headerBytes);
            header[0] = image.header.length;
            std::memcpy(header.data() + 1, &image.header, headerBytes);
            return Answer::with(std::move(header));
        }
        case CommandCode::GetImageBlock2002:
            return answerWith(state_->set.block2002);
        default: {
            if (!command.isBlock()) return unknown();
            const ByteView block = bytesOf(image).subspan(command.imageOffset, command.answerSize);
            return Answer::with(Bytes(block.begin(), block.end()));
        }
    }
}

Answer ConfigurationStore::activate() {
    if (receiving_) return Answer::refused(Refusal::OutOfSequence, "no EndConfigSet before");
    state_->applied = state_->set;
    return changed("configuration applied");
}

Answer ConfigurationStore::restoreDefaults() {
    receiving_ = false;
    state_->set = *defaults_;
    state_->applied = *defaults_;
    return changed("defaults restored");
}

void ConfigurationStore::restart() {
    receiving_ = false;
    state_->set = state_->applied;
    paramsInForce_ = state_->paramsSet = state_->paramsApplied;
    ++revision_;
}

}  // namespace korvane
