#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "device/status_records.h"
#include "model/config_image.h"

namespace korvane {

enum class CommandCode : std::uint32_t {
    SetInputChannels = 1,
    GetInputChannels = 2,
    SetDeviceParams = 100,
    GetDeviceParams = 101,
    ApplyDeviceParams = 102,
    SetServiceDescriptions = 103,
    GetServiceDescriptions = 104,
    BeginConfigSet = 2000,
    SetImageHeader = 2001,
    SetImageBlock2002 = 2002,
    SetImageBlock624 = 2003,
    SetImageBlockA = 2004,
    SetImageBlockC = 2005,
    SetImageBlock264 = 2006,
    SetImageBlock92 = 2007,
    SetImageBlock72 = 2008,
    SetImageBlockB = 2009,
    SetImageBlockD = 2010,
    EndConfigSet = 2999,
    BeginConfigGet = 3000,
    GetImageHeader = 3001,
    GetImageBlock2002 = 3002,
    GetImageBlock624 = 3003,
    GetImageBlockA = 3004,
    GetImageBlockC = 3005,
    GetImageBlock264 = 3006,
    GetImageBlock92 = 3007,
    GetImageBlock72 = 3008,
    GetImageBlockB = 3009,
    GetImageBlockD = 3010,
    EndConfigGet = 3999,
    ActivateConfig = 4000,
    RebootDevice = 4001,
    RestoreDefaults = 4002,
    GetHeartbeat = 4006,
    GetDeviceStatus = 4007,
    GetStatusSummary = 4008,
    BeginUpgrade = 4009,
    FinishUpgrade = 4010,
    UpgradeData = 4011,
    GetUpgradeState = 4012,
};

// What an answer must look like before its payload is taken.
enum class AnswerRule : std::uint8_t {
    StatusOnly,   // any payload is ignored
    ExactSize,    // size first (-3), then the status word
    StatusFirst,  // a non-zero status word is returned before the size is looked at
    RecordList,   // as StatusFirst; a count byte and whole 120-byte records, else -1
};

struct Command {
    static constexpr std::size_t variable = static_cast<std::size_t>(-1);

    CommandCode code;
    std::string_view name;
    std::size_t requestSize;  // payload bytes that go out; `variable`: the operation says
    std::size_t answerSize;   // payload bytes that must come back
    AnswerRule rule;
    std::size_t imageOffset = noBlock;  // where a block command's payload stands in ConfigImage

    static constexpr std::size_t noBlock = static_cast<std::size_t>(-1);
    constexpr bool isBlock() const { return imageOffset != noBlock; }
};

namespace detail {
using enum CommandCode;
using enum AnswerRule;

// Of the channel list: a count byte and the records.
constexpr std::size_t channelListLimit = 1 + limits::inputChannels * sizeof(InputChannelRecord);
constexpr std::size_t headerBytes = 12;              // of the image's header, those that travel
constexpr std::size_t headerSize = 1 + headerBytes;  // behind the length byte, which comes first
constexpr std::size_t block2002Size = 974;  // u16 and 972 bytes; no image byte belongs to it

// Where a member of the image stands in it.
struct Block {
    std::size_t offset, size;
};
#define KORVANE_BLOCK(member) \
    (detail::Block{offsetof(ConfigImage, member), sizeof(ConfigImage::member)})

// What happens to one block of the image in both directions.
constexpr Command setBlock(CommandCode code, std::string_view name, Block block) {
    return {code, name, block.size, 0, StatusOnly, block.offset};
}
constexpr Command getBlock(CommandCode code, std::string_view name, Block block) {
    return {code, name, 0, block.size, ExactSize, block.offset};
}
constexpr Command action(CommandCode code, std::string_view name, std::size_t requestSize = 0) {
    return {code, name, requestSize, 0, StatusOnly};
}
constexpr Command query(CommandCode code, std::string_view name, std::size_t answerSize,
                        std::size_t requestSize = 0, AnswerRule rule = ExactSize) {
    return {code, name, requestSize, answerSize, rule};
}
}  // namespace detail

// Every command of the device, ordered by code.
inline constexpr std::array commandTable = {
    detail::action(CommandCode::SetInputChannels, "SetInputChannels", Command::variable),
    detail::query(CommandCode::GetInputChannels, "GetInputChannels", Command::variable, 0,
                  AnswerRule::RecordList),
    detail::action(CommandCode::SetDeviceParams, "SetDeviceParams", sizeof(DeviceParamBlock)),
    detail::query(CommandCode::GetDeviceParams, "GetDeviceParams", sizeof(DeviceParamBlock)),
    detail::action(CommandCode::ApplyDeviceParams, "ApplyDeviceParams"),
    detail::action(CommandCode::SetServiceDescriptions, "SetServiceDescriptions",
                   sizeof(ServiceDescriptionImage)),
    detail::query(CommandCode::GetServiceDescriptions, "GetServiceDescriptions",
                  sizeof(ServiceDescriptionImage)),
    detail::action(CommandCode::BeginConfigSet, "BeginConfigSet", 1),
    detail::action(CommandCode::SetImageHeader, "SetImageHeader", detail::headerSize),
    detail::action(CommandCode::SetImageBlock2002, "SetImageBlock2002", detail::block2002Size),
    detail::setBlock(CommandCode::SetImageBlock624, "SetImageBlock624", KORVANE_BLOCK(network)),
    detail::setBlock(CommandCode::SetImageBlockA, "SetImageBlockA", KORVANE_BLOCK(continuous)),
    detail::setBlock(CommandCode::SetImageBlockC, "SetImageBlockC",
                     KORVANE_BLOCK(continuousServices)),
    detail::setBlock(CommandCode::SetImageBlock264, "SetImageBlock264", KORVANE_BLOCK(params264)),
    detail::setBlock(CommandCode::SetImageBlock92, "SetImageBlock92",
                     KORVANE_BLOCK(caDescriptions)),
    detail::setBlock(CommandCode::SetImageBlock72, "SetImageBlock72", KORVANE_BLOCK(outputParams)),
    detail::setBlock(CommandCode::SetImageBlockB, "SetImageBlockB", KORVANE_BLOCK(shortTime)),
    detail::setBlock(CommandCode::SetImageBlockD, "SetImageBlockD",
                     KORVANE_BLOCK(shortTimeServices)),
    detail::action(CommandCode::EndConfigSet, "EndConfigSet", 1),
    detail::action(CommandCode::BeginConfigGet, "BeginConfigGet", 1),
    detail::query(CommandCode::GetImageHeader, "GetImageHeader", detail::headerSize, 0,
                  AnswerRule::StatusFirst),
    detail::query(CommandCode::GetImageBlock2002, "GetImageBlock2002", detail::block2002Size, 0,
                  AnswerRule::StatusFirst),
    detail::getBlock(CommandCode::GetImageBlock624, "GetImageBlock624", KORVANE_BLOCK(network)),
    detail::getBlock(CommandCode::GetImageBlockA, "GetImageBlockA", KORVANE_BLOCK(continuous)),
    detail::getBlock(CommandCode::GetImageBlockC, "GetImageBlockC",
                     KORVANE_BLOCK(continuousServices)),
    detail::getBlock(CommandCode::GetImageBlock264, "GetImageBlock264", KORVANE_BLOCK(params264)),
    detail::getBlock(CommandCode::GetImageBlock92, "GetImageBlock92",
                     KORVANE_BLOCK(caDescriptions)),
    detail::getBlock(CommandCode::GetImageBlock72, "GetImageBlock72", KORVANE_BLOCK(outputParams)),
    detail::getBlock(CommandCode::GetImageBlockB, "GetImageBlockB", KORVANE_BLOCK(shortTime)),
    detail::getBlock(CommandCode::GetImageBlockD, "GetImageBlockD",
                     KORVANE_BLOCK(shortTimeServices)),
    detail::action(CommandCode::EndConfigGet, "EndConfigGet", 1),
    detail::action(CommandCode::ActivateConfig, "ActivateConfig"),
    detail::action(CommandCode::RebootDevice, "RebootDevice"),
    detail::action(CommandCode::RestoreDefaults, "RestoreDefaults"),
    detail::query(CommandCode::GetHeartbeat, "GetHeartbeat", 2),
    detail::query(CommandCode::GetDeviceStatus, "GetDeviceStatus", sizeof(DeviceStatusImage)),
    detail::query(CommandCode::GetStatusSummary, "GetStatusSummary", StatusSummary::wireSize, 1),
    detail::action(CommandCode::BeginUpgrade, "BeginUpgrade", 264),
    detail::action(CommandCode::FinishUpgrade, "FinishUpgrade"),
    detail::action(CommandCode::UpgradeData, "UpgradeData", Command::variable),
    detail::query(CommandCode::GetUpgradeState, "GetUpgradeState", 1),
};

static_assert(std::ranges::adjacent_find(commandTable, std::ranges::greater_equal{},
                                         &Command::code) == commandTable.end());
#undef KORVANE_BLOCK

// The row of a code, or null: the device's other codes go out empty and come back unchecked.
constexpr const Command* findCommand(std::uint32_t code) {
    for (const Command& command : commandTable)
        if (static_cast<std::uint32_t>(command.code) == code) return &command;
    return nullptr;
}

// The row of a code that is known to have one: a command without does not build.
consteval const Command& commandOf(CommandCode code) {
    return *findCommand(static_cast<std::uint32_t>(code));
}

// A command as the operations name it, by its code; again one without a row does not build.
class KnownCommand {
  public:
    consteval KnownCommand(CommandCode code) : row_(&commandOf(code)) {}
    const Command* operator->() const { return row_; }

  private:
    const Command* row_;
};

}  // namespace korvane
