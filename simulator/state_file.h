#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>

#include "simulator/device_state.h"

namespace korvane {

// What a device keeps without power, as one file. Everything stands in it as it travels, so that
// scripts can compare bytes; the numbers of the file itself are big-endian as well.
//
//        offset     bytes  content
//             0         8  "KVSIM001"
//             8         4  size of the file, 1,360,334
//            12         4  CRC-32/MPEG-2 of all bytes from 16 on
//            16       144  device parameters as last set
//           160       144  device parameters as last applied
//           304   680,015  configuration as last set:
//           304   629,896    configuration image, its four reserved bytes zero
//       630,200    41,944    service descriptions
//       672,144       974    block 2002
//       673,118     7,201    number of input channels (1 byte), their records, zeros
//       680,319   680,015  configuration as last applied, laid out likewise
namespace state_file {
inline constexpr std::size_t headerSize = 16;
inline constexpr std::size_t configurationSize =
    sizeof(ConfigImage) + sizeof(ServiceDescriptionImage) + DeviceConfiguration::block2002Size +
    DeviceConfiguration::channelListSize;
inline constexpr std::size_t setOffset = headerSize + 2 * sizeof(DeviceParamBlock);
inline constexpr std::size_t appliedOffset = setOffset + configurationSize;
inline constexpr std::size_t fileSize = appliedOffset + configurationSize;
static_assert(configurationSize == 680'015 && setOffset == 304 && appliedOffset == 680'319 &&
              fileSize == 1'360'334);
}  // namespace state_file

Bytes encodeState(const DeviceState& state);

// Null, and why in `error`, when these bytes are no whole and intact state.
std::unique_ptr<DeviceState> decodeState(ByteView bytes, std::string& error);

// Writes beside the file and renames, so that the file is always whole. False, and why in `error`,
// when that failed; the old file is then as it was.
bool saveState(const std::filesystem::path& path, const DeviceState& state, std::string& error);

// Null, and why in `error`, when the file is not readable or not intact.
std::unique_ptr<DeviceState> loadState(const std::filesystem::path& path, std::string& error);

}  // namespace korvane
