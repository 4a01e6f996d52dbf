#include "simulator/state_file.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "device/command_frame.h"
#include "device/crc32.h"
#include "model/whole_file.h"

namespace korvane {

namespace {

constexpr std::string_view mark = "KVSIM001";
constexpr std::size_t sizeAt = 8, checksumAt = 12;

std::uint32_t checksumOf(ByteView file) {
    const ByteView content = file.subspan(state_file::headerSize);
    return Crc32(content.data(), static_cast<int>(content.size()));
}

// The one order of the parts, for both directions.
template <class State, class Visit>
void forEachPart(State& state, Visit visit) {
    visit(state.paramsSet);
    visit(state.paramsApplied);
    for (auto* configuration : {&state.set, &state.applied}) {
        visit(configuration->image);
        visit(configuration->descriptions);
        visit(configuration->block2002);
        visit(configuration->channels);
    }
}

bool isIntact(ByteView bytes, std::string& error) {
    if (bytes.size() < state_file::headerSize ||
        std::memcmp(bytes.data(), mark.data(), mark.size()) != 0) {
        error = "it is no state file";
    } else if (bytes.size() != state_file::fileSize ||
               getBigEndian32(bytes.data() + sizeAt) != bytes.size()) {
        error = "it has " + std::to_string(bytes.size()) + " bytes instead of " +
                std::to_string(state_file::fileSize);
    } else if (getBigEndian32(bytes.data() + checksumAt) != checksumOf(bytes)) {
        error = "its checksum is wrong";
    }
    return error.empty();
}

}  // namespace

Bytes encodeState(const DeviceState& state) {
    Bytes file(state_file::fileSize);
    std::ranges::copy(mark, file.begin());
    putBigEndian32(file.data() + sizeAt, static_cast<std::uint32_t>(file.size()));
    std::uint8_t* target = file.data() + state_file::headerSize;
    forEachPart(state, [&target](const auto& part) {
        std::memcpy(target, &part, sizeof(part));
        target += sizeof(part);
    });
    putBigEndian32(file.data() + checksumAt, checksumOf(file));
    return file;
}

std::unique_ptr<DeviceState> decodeState(ByteView bytes, std::string& error) {
    error.clear();
    if (!isIntact(bytes, error)) return nullptr;
    auto state = std::make_unique<DeviceState>();
    const std::uint8_t* source = bytes.data() + state_file::headerSize;
    forEachPart(*state, [&source](auto& part) {
        std::memcpy(&part, source, sizeof(part));
        source += sizeof(part);
    });
    for (const DeviceConfiguration* configuration : {&state->set, &state->applied}) {
        if (configuration->channels[0] <= limits::inputChannels) continue;
        error = "it counts " + std::to_string(configuration->channels[0]) + " input channels";
        return nullptr;
    }
    return state;
}

bool saveState(const std::filesystem::path& path, const DeviceState& state, std::string& error) {
    if (replaceFile(path, encodeState(state))) return true;
    error = "cannot write " + path.string();
    return false;
}

std::unique_ptr<DeviceState> loadState(const std::filesystem::path& path, std::string& error) {
    // One byte more than a good file has tells a longer one without reading it all.
    Bytes bytes;
    if (readFile(path, state_file::fileSize + 1, bytes) == 0) return decodeState(bytes, error);
    error = "it cannot be read";
    return nullptr;
}

}  // namespace korvane
